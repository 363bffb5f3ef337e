#include "core/KvSupport.h"
#include "core/Table.h"
#include "link/DeviceQueries.h"
#include "sim/controller/Firmware.h"
#include "sim/nabto/RowText.h"
#include "sim/nabto/SimulatedNabto.h"
#include "support/MemoryFiles.h"
#include "support/VirtualTime.h"

#include <gtest/gtest.h>

#include <optional>

namespace tidewell {
namespace {

constexpr const char* Installed = R"([Simulation]
Controllers=vent,gate,far
Domain=remote.example.com
[Controller vent]
Id=410000000001
Model=30021
Devicenumber=7
[Controller gate]
Id=410000000002
Model=30011
Devicenumber=8
Users=friend@example.com
[Controller far]
Id=410000000003
Local=false
Model=30021
Devicenumber=7
[Values vent]
setpoint 0 100..102 = list 1 2 3
setpoint 0 110 = -5; signed; write=512; write=2/600
setpoint 0 120 = 9; refused
datapoint 3 7 = counter 65534 1 1s
datapoint 0 0..2 = ramp 0 100 1s; stagger=100ms
datapoint 0 10 = sine 200 50 4s
datapoint 0 11 = sine 200 50 4s; shift=2s
datapoint 0 12 = bits 15 17 1s
datapoint 0 13 = noise 100 0 1s
)";

// What no run of the program asks of the simulation; what the program asks is told by its journeys.
class TSimulationTest : public ::testing::Test {
  protected:
    void Load(const std::string& rows = {}) {
        Nabto.Configure(ParseSimulation(Installed + rows, "simulation.ini"));
    }
    TSimulatedController& Controller() { return *Nabto.FindController("vent"); }

    // The answer of the controller to "read <obj> <address> <length>", "data ..." for datapoints, "write
    // <obj> <address> <value>", or to a query's name and its request: the values, the status, the text of an
    // error, or what else came.
    std::string Do(const std::string& line, std::int64_t now) {
        const std::vector<std::string> words = SplitWords(line);
        std::string query = words[0];
        std::string request = words.size() > 1 ? words[1] : PingRequest();
        if (query == "read" || query == "data") {
            query = query == "read" ? "setpointReadValue.json" : "datapointReadValue.json";
            request = ValueToJson(words[2], words[3], words[1]);
        } else if (query == "write") {
            query = "setpointWriteValue.json";
            request = FormatSaveSetpoint(std::stoi(words[1]), std::stoi(words[2]), std::stoi(words[3]));
        }
        const TControllerReply reply = Controller().Query(query, request, now);
        const TDeviceReply parsed = ParseReply(reply.Text);
        return !reply.Answered ? "silent"
               : parsed.Error  ? *parsed.Error
               : parsed.Values ? *parsed.Values
               : parsed.Status ? "status " + parsed.Status->Text
                               : reply.Text;
    }

    test::TMemoryFiles Files;
    test::TVirtualTime Clock;
    TPortTime Time{Clock, Clock};
    TSimulatedNabto Nabto{Files, Time};
};

TEST_F(TSimulationTest, AnswersByItsRowsAndRefusesWhatIsMalformed) {
    Load();
    const auto answer = [this](std::string_view input) { // time and request
        return Do(test::Piece(input, 1), std::stoll(test::Piece(input, 0)));
    };
    // Malformed requests.
    test::ExpectRows(
        answer,
        {"0|ping.json {\"request\":{ -> malformed request",
         "0|ping.json {\"request\":{\"ping\":\"1\"}} -> wrong ping",
         "0|read 0 1x 1 -> member \"address\" is no string of decimal digits",
         "0|read 0 2147483647 2 -> member \"length\" is out of range",
         "0|read 0 -1 2 -> member \"address\" is out of range",
         "0|setpointWriteValue.json {\"request\":{\"list\":[]}} -> member \"list\" is empty",
         "0|setpointWriteValue.json {\"request\":{\"list\":[3]}} -> member \"address\" is missing",
         "0|FlashWriteNostream.json {\"request\":{\"nostreamstate\":\"15\",\"blocknumber\":0,\"list\":[]}} "
         "-> member \"nostreamstate\" is no whole number",
         "0|noQuery.json {\"request\":{}} -> unknown query noQuery.json"});
    // Values as they move, and as they are written.
    test::ExpectRows(answer,
                     {"0|read 0 102 2 -> unknown address 103 of object 0", "0|read 0 110 1 -> -5; ",
                      "3500|data 3 7 1 -> 1; ", // wraps at 16 bits
                      "500|data 0 0 3 -> 50; 60; 70; ", "1000|data 0 10 4 -> 250; 150; 30; 100; ",
                      "999|data 0 12 1 -> 15; ", "0|write 0 101 65535 -> status 1",
                      "0|read 0 100 3 -> 1; 65535; 3; ", "0|write 2 600 65534 -> status 1",
                      "0|read 0 110 1 -> -2; ", "0|write 0 512 6 -> status 1", "0|read 0 110 1 -> 6; ",
                      "0|write 0 120 1 -> status 2", "0|write 3 7 1 -> unknown address 7 of object 3"});
    EXPECT_EQ(Crc32("123456789"), 0xCBF43926U);
}

TEST_F(TSimulationTest, FaultsAreDueByTheirConditions) {
    test::ExpectRows(
        [this](std::string_view input) { // the fault, the time, then requests
            Load("[Faults vent]\n" + test::Piece(input, 0) + "\n");
            std::string answers;
            for (std::size_t i = 2; i < SplitStrictly(input, '|').size(); ++i)
                answers += Do(test::Piece(input, i), std::stoll(test::Piece(input, 1))) + "|";
            return answers;
        },
        {"Error=x; skip=1; times=2|0|read 0 100 1|read 0 100 1|read 0 100 1|read 0 100 1 -> 1; |x|x|1; |",
         "Error=x; from=1s|999|read 0 100 1 -> 1; |", "Error=x; from=1s; to=2m30s|1000|read 0 100 1 -> x|",
         "Error=x; to=2m30s|150000|read 0 100 1 -> 1; |",
         // Only what touches the address is counted.
         "Error=x; obj=0; address=102; skip=1|0|read 0 110 1|read 0 100 3|ping|read 0 100 3 -> "
         "-5; |1; 2; 3; |unknown query ping|x|",
         "Error=x; obj=3|2000|read 0 100 1|data 3 7 1 -> 1; |x|", "Error=off|0|read 0 100 1 -> 1; |"});
}

TEST_F(TSimulationTest, ReachesAndAdmitsAsItsRowsTell) {
    Load("[Users]\na@example.com=secret\n");
    void* session = nullptr;
    ASSERT_EQ(Nabto.Startup("home"), NABTO_OK);
    EXPECT_EQ(Nabto.CreateProfile("a@example.com", "wrong"), NABTO_PORTAL_LOGIN_FAILURE);
    EXPECT_EQ(Nabto.CreateProfile("../a@example.com", "secret"), NABTO_ILLEGAL_PARAMETER);
    EXPECT_EQ(Nabto.CreateProfile("a@example.com", "secret"), NABTO_OK);
    EXPECT_EQ(Nabto.OpenSession("a@example.com", "other", session), NABTO_UNLOCK_PK_FAILED);
    EXPECT_EQ(Nabto.OpenSession("a@example.com", "secret", session), NABTO_OK);
    std::string error;
    EXPECT_EQ(
        Nabto.RpcSetDefaultInterface(
            session, R"(<query name="ping.json"><request><parameter name="ping"/></request></query>)", error),
        NABTO_OK);
    const auto answered = [&](std::string_view url) {
        std::optional<std::string> response;
        const auto status = Nabto.RpcInvoke(session, std::string(url), response);
        return response ? ParseReply(*response).Error.value() : "status " + std::to_string(status);
    };
    test::ExpectRows(
        answered,
        {"http://410000000001/ping.json?json={} -> status 21", "nabto://410000000001?json=/ -> status 21",
         "nabto://41/ping.json?json={} -> status 13", "nabto://410000000009/ping.json?json={} -> status 13",
         "nabto://410000000001x/ping.json?json={} -> status 13",
         "nabto://410000000003/ping.json?json={} -> status 13",
         "nabto://410000000003.other.example.com/ping.json?json={} -> status 13",
         "nabto://410000000003.Remote.example.com/ping.json?json={} -> malformed request",
         "nabto://410000000001/ping.json?json={} -> malformed request",
         "nabto://410000000002/ping.json?json={} -> access denied for a@example.com",
         "nabto://410000000001/x.json?json={} -> the interface definition in force has no query x.json",
         "nabto://410000000001/ping.json?json={\"request\":{\"user\":\"x\"}} -> query ping.json has no "
         "request member user"});
}

} // namespace
} // namespace tidewell
