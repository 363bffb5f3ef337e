#include "link/DeviceQueries.h"

#include "rig/Test.h"

namespace tidewell::test {

namespace {

TEST(DeviceQueries, RequestsHaveTheirExactBytes) {
    const std::array<std::uint8_t, 2> bytes{10, 100};
    for (const auto& [got, members] : std::vector<std::pair<std::string, std::string>>{
             {PingRequest(), R"("ping":"1885957735")"},
             {ValueToJson("a\"b\\c/d", "\b\t\n\f\r\x01\x1f ", "\xC3\xA6\x7F"),
              R"("address":"a\"b\\c\/d","length":"\b\t\n\f\r\u0001\u001F ","obj":")"
              "\xC3\xA6\x7F\""},
             {FormatSaveSetpoint(-1, -5, -2), R"("list":[{"obj":"-1","address":"-5","value":"65534"}])"},
             {FormatRWData(4294967295U, 256), R"("address":"4294967295","length":"256")"},
             {GetCMD(-3), R"("cmd":"-3")"},
             {prepareUpdateData(1, 2, 4294967295U), R"("fileid":"1","filesize":"2","crc32":"4294967295")"},
             {prepareFlashWriteNostream(3, 100, {}), R"("nostreamstate":3,"blocknumber":100,"list":[])"},
             {prepareFlashWriteNostream(3, 4294967295U, bytes),
              R"("nostreamstate":3,"blocknumber":4294967295,"list":[{"payload":10},{"payload":100}])"},
             {V2prepareFlashWriteNostream(15, 4294967295U, 7, {}),
              R"("nostreamstate":15,"blocknumber":4294967295,"blockCRC":7,"list":[])"},
             {prepareSystemIdentify(-4), R"("SystemIdentify":-4)"},
             {UserAccountRequest("1", "a"), R"("usernumber":"1","user":"a")"}})
        EXPECT_EQ(got, "{\"request\":{" + members + "}}");
    EXPECT_EQ(QueryUrl("123", "ping.json", "{}"), "nabto://123/ping.json?json={}");
}

TEST(DeviceQueries, WhatIsNoJsonObjectIsNoReply) {
    const std::string deep(8'000'000, '[');
    using namespace std::string_literals;
    for (const std::string& text :
         {""s, "{"s, "[{\"response\":{}}]"s, "\"x\""s, "{\"response\":{}} x"s,
          "{\"response\":{\"status\":1e999}}"s, "{\"error\":{\"body\":\"x\"}"s, "\xFF{}"s, deep,
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
