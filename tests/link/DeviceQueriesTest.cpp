#include "link/DeviceQueries.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

namespace tidewell::test {

namespace {

TEST(DeviceQueries, RequestsHaveTheirExactBytes) {
    const std::array<std::uint8_t, 3> bytes{0, 127, 255};
    const std::vector<std::pair<std::string, std::string>> cases{
        {PingRequest(), R"({"request":{"ping":"1885957735"}})"},
        {ValueToJson("100", "20", "0"), R"({"request":{"address":"100","length":"20","obj":"0"}})"},
        {ValueToJson("a\"b\\c/d", "\b\t\n\f\r\x01\x1f ", "\xC3\xA6\x7F"),
         R"({"request":{"address":"a\"b\\c\/d","length":"\b\t\n\f\r\u0001\u001F ","obj":")"
         "\xC3\xA6\x7F"
         R"("}})"},
        {FormatSaveSetpoint(2, 512, 215),
         R"({"request":{"list":[{"obj":"2","address":"512","value":"215"}]}})"},
        {FormatSaveSetpoint(-1, -5, -2),
         R"({"request":{"list":[{"obj":"-1","address":"-5","value":"65534"}]}})"},
        {FormatSaveSetpoint(0, 0, 65537), R"({"request":{"list":[{"obj":"0","address":"0","value":"1"}]}})"},
        {FormatRWData(4294967295U, 256), R"({"request":{"address":"4294967295","length":"256"}})"},
        {GetCMD(-3), R"({"request":{"cmd":"-3"}})"},
        {prepareUpdateData(1, 2, 4294967295U),
         R"({"request":{"fileid":"1","filesize":"2","crc32":"4294967295"}})"},
        {prepareFlashWriteNostream(3, 100, bytes),
         R"({"request":{"nostreamstate":3,"blocknumber":100,"list":[{"payload":0},{"payload":127},{"payload":255}]}})"},
        {prepareFlashWriteNostream(3, 100, {}),
         R"({"request":{"nostreamstate":3,"blocknumber":100,"list":[]}})"},
        {V2prepareFlashWriteNostream(15, 4294967295U, 7, std::span(bytes).first(1)),
         R"({"request":{"nostreamstate":15,"blocknumber":4294967295,"blockCRC":7,"list":[{"payload":0}]}})"},
        {prepareSystemIdentify(-4), R"({"request":{"SystemIdentify":-4}})"},
        {UserAccountRequest("1", "a"), R"({"request":{"usernumber":"1","user":"a"}})"},
        {QueryUrl("123", "ping.json", "{}"), "nabto://123/ping.json?json={}"},
    };
    for (const auto& [got, wanted] : cases)
        EXPECT_EQ(got, wanted);
}

TEST(DeviceQueries, WhatIsNoJsonObjectIsNoReply) {
    const std::string deep(8'000'000, '[');
    for (const std::string& text :
         {std::string(), std::string("{"), std::string("[{\"response\":{}}]"), std::string("\"x\""),
          std::string("{\"response\":{}} x"), std::string("{\"response\":{\"status\":1e999}}"),
          std::string("{\"error\":{\"body\":\"x\"}"), std::string("\xFF{}"), deep,
          "{\"response\":{\"data\":" + deep, "{\"response\":" + std::string(5'000'000, ' ')}) {
        const TDeviceReply reply = ParseReply(text);
        EXPECT_FALSE(reply.IsObject || reply.Error || reply.HasResponse) << text.substr(0, 40);
    }
}

TEST(DeviceQueries, ReadsValuesAsTheyStandOnTheWire) {
    const std::vector<std::pair<std::string, std::optional<std::string>>> cases{
        {R"({"response":{"data":[{"value":1},{"value":2}]}})", "1; 2; "},
        {R"({"response":{"data":[]}})", ""},
        {R"({"response":{"data":[{"value":-7},{"value":1.50},{"value":12.0},{"value":1e3}]}})",
         "-7; 1.50; 12.0; 1e3; "},
        {R"({"response":{"data":[{"value":99999999999999999999}]}})", "99999999999999999999; "},
        {R"({"response":{"data":[{"value":"a;b"},{"value":true},{"value":null}]}})", "a;b; true; null; "},
        // What has no value adds nothing, so that the count of values tells.
        {R"({"response":{"data":[1,"x",[{"value":3}],{},{"other":4},{"value":{"value":5}},{"value":[6]}]}})",
         ""},
        {R"({"response":{"data":[{"a":{"value":1},"value":2,"value":3}]}})", "2; "},
        {R"({"response":{"x":{"data":[{"value":1}]},"data":[{"value":2}],"data":[{"value":3}]}})", "2; "},
        {R"({"response":{"data":{"value":1}}})", std::nullopt},
        {R"({"response":[{"data":[{"value":1}]}]})", std::nullopt},
        {R"({"other":{"response":{"data":[]}},"data":[{"value":1}]})", std::nullopt},
    };
    for (const auto& [json, values] : cases) {
        const TDeviceReply reply = ParseReply(json);
        EXPECT_TRUE(reply.IsObject) << json;
        EXPECT_EQ(reply.Values, values) << json;
    }
}

TEST(DeviceQueries, TellsErrorsFromResponses) {
    struct TCase {
        const char* Json;
        std::optional<std::string> Error;
        bool HasResponse;
    };
    for (const auto& [json, error, hasResponse] :
         std::vector<TCase>{{R"({"error":{"code":5,"body":"x"},"response":{}})", "x", true},
                            {R"({"error":{"body":"x","body":"y"},"error":{"body":"z"}})", "x", false},
                            {R"({"error":{}})", "", false},
                            {R"({"error":{"body":{"body":"x"}}})", "", false},
                            {R"({"error":{"body":5}})", "5", false},
                            {R"({"error":"x"})", std::nullopt, false},
                            {R"({"body":"x"})", std::nullopt, false},
                            {R"({"response":1,"response":{}})", std::nullopt, false},
                            {R"({"response":{}})", std::nullopt, true}}) {
        EXPECT_EQ(ParseReply(json).Error, error) << json;
        EXPECT_EQ(ParseReply(json).HasResponse, hasResponse) << json;
    }
}

TEST(DeviceQueries, NumbersOf32BitsKeepTheirBits) {
    const std::vector<std::pair<std::string, std::optional<std::uint32_t>>> cases{
        {"0", 0},
        {"-1", 4294967295U},
        {"4294967295", 4294967295U},
        {"4294967296", std::nullopt},
        {"-2147483648", 2147483648U},
        {"-2147483649", std::nullopt},
        {"2.0", 2},
        {"1886350951", PongWord},
        {"0.5", std::nullopt},
        {"99999999999999999999", std::nullopt},
    };
    for (const auto& [text, bits] : cases) {
        const auto status = ParseReply("{\"response\":{\"status\":" + text + "}}").Status;
        ASSERT_TRUE(status) << text;
        EXPECT_EQ(status->Bits(), bits) << text;
    }
    EXPECT_FALSE(ParseReply(R"({"response":{"status":"0"}})").Status);
    EXPECT_FALSE(ParseReply(R"({"response":{"x":{"status":0}},"status":0})").Status);
}

} // namespace

} // namespace tidewell::test
