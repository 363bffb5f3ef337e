#include "sim/controller/SimulatedController.h"

#include <gtest/gtest.h>

#include <set>

namespace tidewell {

namespace {

TValueRun MakeRun(ETable table, std::int32_t obj, std::int32_t address, std::vector<TValueSource> sources) {
    TValueRun run;
    run.Table = table;
    run.First = {obj, address};
    run.Count = static_cast<std::int32_t>(sources.size());
    run.Sources = std::move(sources);
    return run;
}

TValueSource Constant(double value) {
    return {ESource::Constant, value};
}

// Setpoints 0/100..102 are 1, 2, 3; 0/110 is -5, signed, and written at 2/512 too; 0/120 refuses writes.
// Datapoint 3/7 counts.
class TSimulatedControllerTest : public ::testing::Test {
  protected:
    TSimulatedControllerTest() {
        Controller.Values.Add(MakeRun(ETable::Setpoint, 0, 100, {Constant(1), Constant(2), Constant(3)}));
        TValueRun negative = MakeRun(ETable::Setpoint, 0, 110, {Constant(-5)});
        negative.Signed = true;
        negative.WrittenAt = {{2, 512}};
        Controller.Values.Add(negative);
        TValueRun refusing = MakeRun(ETable::Setpoint, 0, 120, {Constant(9)});
        refusing.RefusedStatus = 4;
        Controller.Values.Add(refusing);
        Controller.Values.Add(MakeRun(ETable::Datapoint, 3, 7, {{ESource::Counter, 65534, 1, 1000}}));
    }

    std::string Ask(const std::string& query, const std::string& request, std::int64_t now = 0) {
        return Controller.Query(query, R"({"request":)" + request + "}", now).Text;
    }
    std::string Read(const std::string& address, const std::string& length, const std::string& obj = "0",
                     const std::string& query = "setpointReadValue.json", std::int64_t now = 0) {
        return Ask(query,
                   R"({"address":")" + address + R"(","length":")" + length + R"(","obj":")" + obj + "\"}",
                   now);
    }
    std::string Write(const std::string& obj, const std::string& address, const std::string& value) {
        return Ask("setpointWriteValue.json", R"({"list":[{"obj":")" + obj + R"(","address":")" + address +
                                                  R"(","value":")" + value + "\"}]}");
    }
    void Break(EFault kind, std::int64_t number = 0, const std::string& text = {}) {
        Controller.Faults.Replace({{kind, number, text, {}}});
    }

    TSimulatedController Controller{{{"Devicenumber", 120034}, {"Model", 30021}, {"Version HP", 112}}};
};

constexpr const char* Written = R"({"response":{"status":1}})";

TEST_F(TSimulatedControllerTest, PingTellsTheIdentity) {
    EXPECT_EQ(Ask("ping.json", R"({"ping":"1885957735"})"),
              R"({"response":{"Pong":1886350951,"Devicenumber":120034,"Model":30021,"Version HP":112}})");
    EXPECT_EQ(Ask("ping.json", R"({"ping":"1"})"), R"({"error":{"body":"wrong ping"}})");
    EXPECT_EQ(Ask("ping.json", R"({"usernumber":"1","user":"a@example.com"})"),
              R"({"response":{"status":0}})");
    EXPECT_EQ(Controller.StoredUser(), "a@example.com");
}

TEST_F(TSimulatedControllerTest, ReadsRunsOfValues) {
    EXPECT_EQ(Read("100", "3"), R"({"response":{"data":[{"value":1},{"value":2},{"value":3}]}})");
    EXPECT_EQ(Read("100", "0"), R"({"response":{"data":[]}})");
    EXPECT_EQ(Read("110", "1"), R"({"response":{"data":[{"value":-5}]}})");
    EXPECT_EQ(Read("102", "2"), R"({"error":{"body":"unknown address 103 of object 0"}})");
    EXPECT_EQ(Read("100", "1", "1"), R"({"error":{"body":"unknown address 100 of object 1"}})");
    EXPECT_EQ(Read("100", "1", "0", "datapointReadValue.json"),
              R"({"error":{"body":"unknown address 100 of object 0"}})");
    // Wraps at 16 bits.
    EXPECT_EQ(Read("7", "1", "3", "datapointReadValue.json", 3500), R"({"response":{"data":[{"value":1}]}})");
}

TEST_F(TSimulatedControllerTest, WritesStick) {
    EXPECT_EQ(Write("0", "101", "65535"), Written);
    EXPECT_EQ(Read("101", "1"), R"({"response":{"data":[{"value":65535}]}})");
    EXPECT_EQ(Write("2", "512", "65534"), Written); // the other address of 0/110
    EXPECT_EQ(Read("110", "1"), R"({"response":{"data":[{"value":-2}]}})");
    EXPECT_EQ(Write("0", "110", "7"), Written);
    EXPECT_EQ(Read("110", "1"), R"({"response":{"data":[{"value":7}]}})");

    EXPECT_EQ(Write("0", "120", "1"), R"({"response":{"status":4}})");
    EXPECT_EQ(Read("120", "1"), R"({"response":{"data":[{"value":9}]}})");
    EXPECT_EQ(Write("3", "7", "1"), R"({"error":{"body":"unknown address 7 of object 3"}})");
    // All of a list or nothing.
    EXPECT_EQ(Ask("setpointWriteValue.json", R"({"list":[{"obj":"0","address":"100","value":"8"},)"
                                             R"({"obj":"0","address":"120","value":"8"}]})"),
              R"({"response":{"status":4}})");
    EXPECT_EQ(Read("100", "1"), R"({"response":{"data":[{"value":1}]}})");
}

TEST_F(TSimulatedControllerTest, RefusesMalformedRequests) {
    struct TCase {
        const char* Query;
        const char* Json;
        const char* Body;
    };
    const TCase cases[] = {
        {"ping.json", "", "malformed request"},
        {"ping.json", "{\"request\":{", "malformed request"},
        {"ping.json", "[]", "malformed request"},
        {"ping.json", R"({"request":[]})", "malformed request"},
        {"ping.json", R"({"request":{}})", R"(member \"ping\" is missing)"},
        {"ping.json", R"({"request":{"ping":1885957735}})",
         R"(member \"ping\" is no string of decimal digits)"},
        {"setpointReadValue.json", R"({"request":{"address":"1x","length":"1","obj":"0"}})",
         R"(member \"address\" is no string of decimal digits)"},
        {"setpointReadValue.json", R"({"request":{"address":"1","length":"99999999","obj":"0"}})",
         R"(member \"length\" is out of range)"},
        {"setpointReadValue.json", R"({"request":{"address":"2147483647","length":"2","obj":"0"}})",
         R"(member \"length\" is out of range)"},
        {"setpointReadValue.json", R"({"request":{"address":"-1","length":"2","obj":"0"}})",
         R"(member \"address\" is out of range)"},
        {"setpointWriteValue.json", R"({"request":{"list":[]}})", R"(member \"list\" is empty)"},
        {"setpointWriteValue.json", R"({"request":{"list":[3]}})", R"(member \"address\" is missing)"},
        {"setpointWriteValue.json", R"({"request":{"list":[{"obj":"0","address":"100","value":"65536"}]}})",
         R"(member \"value\" is out of range)"},
        {"FlashWriteNostream.json", R"({"request":{"nostreamstate":"15","blocknumber":0,"list":[]}})",
         R"(member \"nostreamstate\" is no whole number)"},
        {"FlashWriteNostream.json", R"({"request":{"nostreamstate":15,"blocknumber":0,"list":[9]}})",
         R"(member \"payload\" is missing)"},
        {"noQuery.json", R"({"request":{}})", "unknown query noQuery.json"},
    };
    for (const TCase& test : cases) {
        EXPECT_EQ(Controller.Query(test.Query, test.Json, 0).Text,
                  std::string(R"({"error":{"body":")") + test.Body + "\"}}")
            << test.Json;
    }
}

TEST_F(TSimulatedControllerTest, AnswersOtherQueriesWithAStatus) {
    const auto status = [](const std::string& number) {
        return R"({"response":{"status":)" + number + "}}";
    };
    EXPECT_EQ(Ask("admincmd.json", R"({"cmd":"42"})"), status("1"));
    for (const char* query : {"flashRead.json", "flashWrite.json", "eepReadRaw.json"}) {
        EXPECT_EQ(Ask(query, R"({"address":"0","length":"10"})"), status("1")) << query;
    }
    EXPECT_EQ(Ask("prepareUpdate.json", R"({"fileid":"1","filesize":"8192","crc32":"4294967295"})"),
              status("1"));
    EXPECT_EQ(Ask("FlashWriteNostream.json", R"({"nostreamstate":1,"blocknumber":0,"list":[{"payload":9}]})"),
              status("6"));
    // The packet number comes back in the high half.
    EXPECT_EQ(Ask("FlashWriteNostreamV2.json",
                  R"({"nostreamstate":2,"blocknumber":3,"blockCRC":41259,"list":[{"payload":9}]})"),
              status("196609"));
    EXPECT_EQ(Ask("SystemIdentify.json", R"({"SystemIdentify":24})"), status("0"));
}

TEST_F(TSimulatedControllerTest, ValuesMoveWithTheTime) {
    struct TCase {
        TValueSource Source;
        std::int64_t Now;
        std::int64_t Value;
    };
    const TCase cases[] = {
        {{ESource::Ramp, 0, 100, 1000}, 250, 25},       {{ESource::Ramp, 100, 0, 1000}, 1250, 75},
        {{ESource::Sine, 200, 50, 4000}, 1000, 250},    {{ESource::Sine, 200, 50, 4000, 2000}, 1000, 150},
        {{ESource::Bits, 0x0F, 0x11, 1000}, 999, 0x0F}, {{ESource::Bits, 0x0F, 0x11, 1000}, 1000, 0x1E},
        {{ESource::Counter, 5, -2, 1000}, 3999, -1},
    };
    for (const TCase& test : cases) {
        EXPECT_EQ(SourceValue(test.Source, 0, test.Now), test.Value) << static_cast<int>(test.Source.Kind);
    }

    const TValueSource noise{ESource::Noise, 100, 10, 1000};
    std::set<std::int64_t> values;
    for (std::int64_t second = 0; second < 200; ++second) {
        const std::int64_t value = SourceValue(noise, 7, second * 1000);
        EXPECT_EQ(value, SourceValue(noise, 7, second * 1000 + 999));
        values.insert(value);
    }
    EXPECT_EQ(values.size(), 21U); // each from 90 to 110
    EXPECT_EQ(*values.begin(), 90);
    EXPECT_EQ(*values.rbegin(), 110);
}

TEST_F(TSimulatedControllerTest, StaggeredRunsAreTheSameCurveShifted) {
    TValueRun run = MakeRun(ETable::Datapoint, 0, 0, {{ESource::Ramp, 0, 100, 1000}});
    run.Count = 3;
    run.StaggerMs = 100;
    Controller.Values.Add(run);
    EXPECT_EQ(Read("0", "3", "0", "datapointReadValue.json", 500),
              R"({"response":{"data":[{"value":50},{"value":60},{"value":70}]}})");
}

TEST_F(TSimulatedControllerTest, FaultsSpoilTheAnswer) {
    Break(EFault::Error, 0, "Device \"busy\"");
    EXPECT_EQ(Read("100", "1"), R"({"error":{"body":"Device \"busy\""}})");
    Break(EFault::Garbage, 0, "<html>; no JSON");
    EXPECT_EQ(Read("100", "1"), "<html>; no JSON");
    Break(EFault::Huge, 10000000);
    EXPECT_EQ(Read("100", "1").size(), 10000000U);
    Break(EFault::WrongCount, -1);
    EXPECT_EQ(Read("100", "3"), R"({"response":{"data":[{"value":1},{"value":2}]}})");
    EXPECT_EQ(Write("0", "100", "1"), Written);
    Break(EFault::WrongCount, 1);
    EXPECT_EQ(Read("100", "1"), R"({"response":{"data":[{"value":1},{"value":0}]}})");
    Break(EFault::RefuseWrite, 3);
    EXPECT_EQ(Write("0", "100", "5"), R"({"response":{"status":3}})");
    EXPECT_EQ(Read("100", "1"), R"({"response":{"data":[{"value":1}]}})");
    Break(EFault::ChangeAfterWrite, -6);
    EXPECT_EQ(Write("0", "100", "5"), Written);
    EXPECT_EQ(Read("100", "1"), R"({"response":{"data":[{"value":65535}]}})");
    Break(EFault::NoAnswer);
    EXPECT_FALSE(Controller.Query("ping.json", R"({"request":{"ping":"1885957735"}})", 0).Answered);
    EXPECT_FALSE(Controller.OpenStream(0));
    Controller.Faults.Replace({{EFault::Latency, 20, {}, {}}, {EFault::Latency, 5, {}, {}}});
    EXPECT_EQ(Controller.Query("ping.json", R"({"request":{"ping":"1885957735"}})", 0).DelayMs, 25);
}

TEST_F(TSimulatedControllerTest, FaultsComeWhenTheyAreDue) {
    TFault fault{EFault::Garbage, 0, "?", {}};
    const auto hits = [&](const TFaultCondition& when, auto... answers) {
        fault.When = when;
        Controller.Faults.Replace({fault});
        std::string result;
        ((result += answers() == "?" ? 'x' : '.'), ...);
        return result;
    };
    const auto read = [&] {
        return Read("100", "3");
    };
    const auto late = [&] {
        return Read("100", "3", "0", "setpointReadValue.json", 30000);
    };
    const auto elsewhere = [&] {
        return Read("110", "1");
    };
    const auto ping = [&] {
        return Ask("ping.json", R"({"ping":"1885957735"})");
    };

    TFaultCondition when;
    when.Skip = 1;
    when.Times = 2;
    EXPECT_EQ(hits(when, read, ping, read, read), ".xx.");
    when = {};
    when.FromMs = 1;
    EXPECT_EQ(hits(when, read, late), ".x");
    when = {};
    when.ToMs = 30000;
    EXPECT_EQ(hits(when, read, late), "x.");
    when = {};
    when.Query = "ping.json";
    EXPECT_EQ(hits(when, read, ping), ".x");
    when = {};
    when.Address = 102;
    when.Skip = 1; // only what touches the address is counted
    EXPECT_EQ(hits(when, elsewhere, read, ping, read), "...x");
    when = {};
    when.Obj = 3;
    EXPECT_EQ(hits(when, read), ".");
}

TEST_F(TSimulatedControllerTest, StreamsMoveInPieces) {
    Controller.StreamPiece = 4;
    Controller.PrepareStream("0123456789");
    ASSERT_TRUE(Controller.OpenStream(0));
    EXPECT_EQ(Controller.ReadStream(100, 0).Bytes, "0123");
    EXPECT_EQ(Controller.ReadStream(3, 0).Bytes, "456");

    Controller.Faults.Replace({{EFault::BrokenStream, 9, {}, {}}, {EFault::SlowStream, 50, {}, {}}});
    const TStreamPiece last = Controller.ReadStream(100, 0);
    EXPECT_EQ(last.Bytes, "78");
    EXPECT_EQ(last.DelayMs, 50);
    EXPECT_EQ(Controller.ReadStream(100, 0).Outcome, EStreamOutcome::Closed);

    Controller.Faults.Replace({});
    EXPECT_EQ(Controller.ReadStream(100, 0).Bytes, "9");
    EXPECT_EQ(Controller.ReadStream(100, 0).Outcome, EStreamOutcome::Silent);
}

TEST_F(TSimulatedControllerTest, FaultsCanBeBoundToStreams) {
    TFault silent{EFault::NoAnswer, 0, {}, {}};
    silent.When.Query = StreamQuery;
    TFault broken{EFault::BrokenStream, 0, {}, {}};
    broken.When = silent.When;
    broken.When.Times = 2;
    Controller.Faults.Replace({silent, broken});
    EXPECT_NE(Read("100", "1"), "");
    EXPECT_FALSE(Controller.OpenStream(0));
    EXPECT_EQ(Controller.ReadStream(10, 0).Outcome, EStreamOutcome::Closed);
    EXPECT_EQ(Controller.WriteStream("ab", 0).Outcome, EStreamOutcome::Closed);
    EXPECT_EQ(Controller.WriteStream("ab", 0).Outcome, EStreamOutcome::Done);
}

TEST_F(TSimulatedControllerTest, StreamsTakePieces) {
    ASSERT_TRUE(Controller.OpenStream(0));
    TFault full{EFault::BufferFull, 0, {}, {}};
    full.When.Times = 1;
    Controller.Faults.Replace({full});
    EXPECT_EQ(Controller.WriteStream("ab", 0).Outcome, EStreamOutcome::Full);
    EXPECT_EQ(Controller.WriteStream("ab", 0).Outcome, EStreamOutcome::Done);
    Break(EFault::BrokenStream, 3);
    EXPECT_EQ(Controller.WriteStream("cd", 0).Outcome, EStreamOutcome::Closed);
    EXPECT_EQ(Controller.StreamReceived(), "abc");
}

} // namespace

} // namespace tidewell
