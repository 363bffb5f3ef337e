#include "link/DeviceQueries.h"

#include "support/Test.h"

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
    ExpectRows(
        [](std::string_view response) {
            const TDeviceReply reply = ParseReply("{" + std::string(response) + "}");
            EXPECT_TRUE(reply.IsObject) << response;
            return reply.Values.value_or("none");
        },
        {R"("response":{"data":{"value":1}} -> none)", R"("response":[{"data":[{"value":1}]}] -> none)",
         R"("other":{"response":{"data":[]}},"data":[{"value":1}] -> none)",
         // What has no value adds nothing, so that the count of values tells.
         R"("response":{"data":[1,"x",[{"value":3}],{},{"other":4},{"value":{"value":5}},{"value":[6]}]} -> )",
         R"("response":{"data":[]} -> )", R"("response":{"data":[{"value":1},{"value":2}]} -> 1; 2; )",
         R"("response":{"data":[{"value":-7},{"value":1.50},{"value":12.0},{"value":1e3}]} -> -7; 1.50; 12.0; 1e3; )",
         R"("response":{"data":[{"value":99999999999999999999}]} -> 99999999999999999999; )",
         R"("response":{"data":[{"value":"a;b"},{"value":true},{"value":null}]} -> a;b; true; null; )",
         R"("response":{"data":[{"a":{"value":1},"value":2,"value":3}]} -> 2; )",
         R"("response":{"x":{"data":[{"value":1}]},"data":[{"value":2}],"data":[{"value":3}]} -> 2; )"});
}

TEST(DeviceQueries, TellsErrorsFromResponses) {
    ExpectRows(
        [](std::string_view json) {
            const TDeviceReply reply = ParseReply(json);
            return reply.Error.value_or("none") + (reply.HasResponse ? ", response" : "");
        },
        {R"({"error":"x"} -> none)", R"({"body":"x"} -> none)", R"({"response":1,"response":{}} -> none)",
         R"({"response":{}} -> none, response)",
         R"({"error":{"code":5,"body":"x"},"response":{}} -> x, response)",
         R"({"error":{"body":"x","body":"y"},"error":{"body":"z"}} -> x)", R"({"error":{}} -> )",
         R"({"error":{"body":{"body":"x"}}} -> )", R"({"error":{"body":5}} -> 5)"});
}

TEST(DeviceQueries, NumbersOf32BitsKeepTheirBits) {
    ExpectRows(
        [](std::string_view text) {
            const auto bits =
                ParseReply("{\"response\":{\"status\":" + std::string(text) + "}}").Status->Bits();
            return bits ? std::to_string(*bits) : "none";
        },
        {"4294967296 -> none", "-2147483649 -> none", "0.5 -> none", "99999999999999999999 -> none", "0 -> 0",
         "-1 -> 4294967295", "4294967295 -> 4294967295", "-2147483648 -> 2147483648", "2.0 -> 2",
         "1886350951 -> 1886350951"});
    EXPECT_FALSE(ParseReply(R"({"response":{"status":"0"}})").Status);
    EXPECT_FALSE(ParseReply(R"({"response":{"x":{"status":0}},"status":0})").Status);
}

} // namespace

} // namespace tidewell::test
