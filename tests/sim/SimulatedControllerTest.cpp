#include "sim/controller/SimulatedController.h"

#include "link/DeviceQueries.h"
#include "sim/nabto/RowText.h"
#include "sim/nabto/SimulatedNabto.h"
#include "support/MemoryFiles.h"
#include "support/VirtualTime.h"

#include <gtest/gtest.h>

#include <array>
#include <set>

namespace tidewell {

namespace {

// A controller as the rows of a simulation file tell it.
class TSimulatedControllerTest : public ::testing::Test {
  protected:
    static constexpr const char* Values = R"([Values a]
; runs, and values written elsewhere
setpoint 0 100..102 = list 1 2 3
setpoint 0 110 = -5; signed; write=512; write=2/600
setpoint 0 120 = 9; refused
setpoint 0 121 = 9; refused=4
datapoint 3 7 = counter 65534 1 1s
datapoint 0 0..2 = ramp 0 100 1s; stagger=100ms
datapoint 0 10 = sine 200 50 4s
datapoint 0 11 = sine 200 50 4s; shift=2s
datapoint 0 12 = bits 15 17 1s
datapoint 0 13 = counter 5 -2 1s; signed
datapoint 0 14 = ramp 100 0 1s
)";

    TSimulatedControllerTest() { Load(Values); }
    void Load(const std::string& rows) {
        Nabto.Configure(ParseSimulation("[Simulation]\nControllers=a\n[Controller a]\nId=410000000001\n"
                                        "Model=30021\nDevicenumber=7\nVersion HP=0x70\n" +
                                            rows,
                                        "simulation.ini"));
    }
    TSimulatedController& Controller() { return *Nabto.FindController("a"); }

    // The answer to "ping", "read <obj> <address> <length>", "data ..." for datapoints, "write <obj>
    // <address> <value>", or to a query's name and its request: the values, "status <number>", "error:
    // <text>", what else came as it is, or "silent". A late answer begins with its delay.
    std::string Do(const std::string& line, std::int64_t now = 0) {
        const std::vector<std::string> words = SplitWords(line);
        std::string query = words[0];
        std::string request = words.size() > 1 ? words[1] : PingRequest();
        if (query == "ping") {
            query = "ping.json";
        } else if (query == "read" || query == "data") {
            query = query == "read" ? "setpointReadValue.json" : "datapointReadValue.json";
            request = ValueToJson(words[2], words[3], words[1]);
        } else if (query == "write") {
            query = "setpointWriteValue.json";
            request = FormatSaveSetpoint(std::stoi(words[1]), std::stoi(words[2]), std::stoi(words[3]));
        }
        const TControllerReply reply = Controller().Query(query, request, now);
        const TDeviceReply parsed = ParseReply(reply.Text);
        std::string text = reply.Text;
        if (parsed.Error) {
            text = "error: " + *parsed.Error;
        } else if (parsed.Values) {
            text = *parsed.Values;
        } else if (parsed.Status) {
            text = "status " + parsed.Status->Text;
        }
        const std::string late = reply.DelayMs > 0 ? std::to_string(reply.DelayMs) + " ms: " : "";
        return late + (reply.Answered ? text : "silent");
    }

    test::TMemoryFiles Files;
    test::TVirtualTime Clock;
    TPortTime Time{Clock, Clock};
    TSimulatedNabto Nabto{Files, Time};
};

TEST_F(TSimulatedControllerTest, ReadsAndWritesAsItsRowsTell) {
    struct TStep {
        const char *Request, *Answer;
        std::int64_t Now = 0;
    };
    const TStep steps[] = {
        {"ping", R"({"response":{"Pong":1886350951,"Model":30021,"Devicenumber":7,"Version HP":112}})"},
        {"read 0 100 3", "1; 2; 3; "},
        {"read 0 110 1", "-5; "},
        {"read 0 102 2", "error: unknown address 103 of object 0"},
        {"read 1 100 1", "error: unknown address 100 of object 1"},
        {"data 3 7 1", "1; ", 3500}, // wraps at 16 bits
        {"data 0 0 3", "50; 60; 70; ", 500},
        {"data 0 10 5", "250; 150; 30; 3; 100; ", 1000},
        {"data 0 12 3", "15; 5; 0; ", 999},
        {"data 0 13 2", "-1; 75; ", 3250},
        {"write 0 101 65535", "status 1"},
        {"read 0 101 1", "65535; "},
        {"write 2 600 65534", "status 1"},
        {"read 0 110 1", "-2; "},
        {"write 0 512 6", "status 1"},
        {"read 0 110 1", "6; "},
        {"write 0 110 7", "status 1"},
        {"read 0 110 1", "7; "},
        {"write 0 120 1", "status 2"},
        {"write 0 121 1", "status 4"},
        {"read 0 120 2", "9; 9; "},
        {"write 3 7 1", "error: unknown address 7 of object 3"},
        // All of a list or nothing.
        {R"(setpointWriteValue.json {"request":{"list":[{"obj":"0","address":"100","value":"8"},{"obj":"0","address":"120","value":"8"}]}})",
         "status 2"},
        {"read 0 100 1", "1; "},
        // Queries without equipment behind them. The packet number comes back in the high half.
        {R"(ping.json {"request":{"usernumber":"1","user":"a@example.com"}})", "status 0"},
        {R"(admincmd.json {"request":{"cmd":"42"}})", "status 1"},
        {R"(FlashWriteNostream.json {"request":{"nostreamstate":1,"blocknumber":0,"list":[{"payload":9}]}})",
         "status 6"},
        {R"(FlashWriteNostreamV2.json {"request":{"nostreamstate":2,"blocknumber":3,"blockCRC":41259,"list":[{"payload":9}]}})",
         "status 196609"},
        // Malformed requests.
        {"ping.json {\"request\":{", "error: malformed request"},
        {R"(ping.json {"request":{"ping":"1"}})", "error: wrong ping"},
        {"read 0 1x 1", "error: member \"address\" is no string of decimal digits"},
        {"read 0 2147483647 2", "error: member \"length\" is out of range"},
        {"read 0 -1 2", "error: member \"address\" is out of range"},
        {R"(setpointWriteValue.json {"request":{"list":[3]}})", "error: member \"address\" is missing"},
        {R"(setpointWriteValue.json {"request":{"list":[{"obj":"0","address":"100","value":"65536"}]}})",
         "error: member \"value\" is out of range"},
        {R"(FlashWriteNostream.json {"request":{"nostreamstate":"15","blocknumber":0,"list":[]}})",
         "error: member \"nostreamstate\" is no whole number"},
        {R"(noQuery.json {"request":{}})", "error: unknown query noQuery.json"},
    };
    for (const TStep& step : steps) {
        EXPECT_EQ(Do(step.Request, step.Now), step.Answer) << step.Request;
    }
}

TEST_F(TSimulatedControllerTest, NoiseTakesEachValueWithinItsDeviation) {
    Load("[Values a]\nsetpoint 0 1 = noise 100 10 1s\n");
    std::set<std::string> values;
    for (std::int64_t second = 0; second < 200; ++second) {
        values.insert(Do("read 0 1 1", second * 1000));
        EXPECT_EQ(Do("read 0 1 1", second * 1000), Do("read 0 1 1", second * 1000 + 999));
    }
    EXPECT_EQ(values.size(), 21U);
    EXPECT_TRUE(values.contains("90; ") && values.contains("110; "));
}

TEST_F(TSimulatedControllerTest, FaultsSpoilTheAnswersThatTheyConcern) {
    struct TCase {
        const char* Faults;
        std::vector<std::string> Requests, Answers;
        std::int64_t Now = 0;
    };
    const std::string read = "read 0 100 1";
    const TCase cases[] = {
        {"Error=Device \"busy\"", {read}, {"error: Device \"busy\""}},
        {"Garbage=<html> no JSON; times=1", {read, read}, {"<html> no JSON", "1; "}},
        {"Huge=11", {read}, {"xxxxxxxxxxx"}},
        {"WrongCount=-1", {"read 0 100 3", "write 0 100 1"}, {"1; 2; ", "status 1"}},
        {"WrongCount=1", {read}, {"1; 0; "}},
        {"WrongCount=off", {read}, {"1; "}},
        {"RefuseWrite=3", {"write 0 100 5", read}, {"status 3", "1; "}},
        {"ChangeAfterWrite=-6", {"write 0 100 5", read}, {"status 1", "65535; "}},
        {"NoAnswer=on; query=ping.json; times=2", {"ping", read, "ping"}, {"silent", "1; ", "silent"}},
        {"Latency=20ms\nLatency=5", {read}, {"25 ms: 1; "}},
        {"Error=x; skip=1; times=2", {read, "ping", read, read}, {"1; ", "error: x", "error: x", "1; "}},
        {"Error=x; from=1s", {read}, {"1; "}, 999},
        {"Error=x; from=1s; to=2m30s", {read}, {"error: x"}, 1000},
        {"Error=x; to=2m30s", {read}, {"1; "}, 150000},
        // Only what touches the address is counted.
        {"Error=x; obj=0; address=102; skip=1",
         {"read 0 110 1", "read 0 100 3", "ping", "read 0 100 3"},
         {"-5; ", "1; 2; 3; ",
          R"({"response":{"Pong":1886350951,"Model":30021,"Devicenumber":7,"Version HP":112}})", "error: x"}},
        {"Error=x; obj=3", {read, "data 3 7 1"}, {"1; ", "error: x"}},
    };
    for (const TCase& test : cases) {
        Load(std::string(Values) + "[Faults a]\n" + test.Faults + "\n");
        std::vector<std::string> answers;
        for (const std::string& request : test.Requests) {
            answers.push_back(Do(request, test.Now));
        }
        EXPECT_EQ(answers, test.Answers) << test.Faults;
    }
}

TEST_F(TSimulatedControllerTest, KeysOfTheControllerAndFaultsOfItsStreams) {
    Load("WriteStatus=0\nStreamPiece=4\n[Values a]\nsetpoint 0 1 = 5\n[Faults a]\nNoAnswer=on; query=stream; "
         "times=1\nBrokenStream=9\nSlowStream=50ms\n");
    EXPECT_EQ(Do("write 0 1 5"), "status 0");
    Controller().PrepareStream("0123456789");
    EXPECT_FALSE(Controller().OpenStream(0));
    ASSERT_TRUE(Controller().OpenStream(0));
    EXPECT_EQ(Controller().ReadStream(100, 0).Bytes, "0123");
    EXPECT_EQ(Controller().ReadStream(3, 0).Bytes, "456");
    const TStreamPiece last = Controller().ReadStream(100, 0);
    EXPECT_EQ(last.Bytes, "78");
    EXPECT_EQ(last.DelayMs, 50);
    EXPECT_EQ(Controller().ReadStream(100, 0).Outcome, EStreamOutcome::Closed);

    Controller().Faults.Replace({});
    EXPECT_EQ(Controller().ReadStream(100, 0).Bytes, "9");
    EXPECT_EQ(Controller().ReadStream(100, 0).Outcome, EStreamOutcome::Silent);
    Controller().Faults.Replace({{EFault::BrokenStream, 12, {}, {}}});
    EXPECT_EQ(Controller().WriteStream("cde", 0).Outcome, EStreamOutcome::Closed);
    EXPECT_EQ(Controller().StreamReceived(), "cd"); // of 12 bytes, 10 were read
}

} // namespace

} // namespace tidewell
