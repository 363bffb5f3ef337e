#include "core/Crc16.h"
#include "core/KvSupport.h"
#include "core/Table.h"
#include "link/DeviceQueries.h"
#include "sim/controller/Firmware.h"
#include "sim/nabto/RowText.h"
#include "sim/nabto/SimulatedNabto.h"
#include "support/MemoryFiles.h"
#include "support/VirtualTime.h"

#include <gtest/gtest.h>

#include <array>
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
[Service vent]
Image 1=0xA10000; room=4096
Image 2=0xA11000; room=600; version=Version NP; number=44
CrcResult=903
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
    // <obj> <address> <value>", "command <state>", "packet <state> <number> [crc added]", or to a query's
    // name and its request: the values, the status, the text of an error, or what else came.
    std::string Do(const std::string& line, std::int64_t now) {
        const std::vector<std::string> words = SplitWords(line);
        const auto number = [&words](std::size_t i) {
            return static_cast<std::uint32_t>(i < words.size() ? std::stoul(words[i]) : 0);
        };
        const std::array<std::uint8_t, 2> bytes{1, 2};
        std::string query = words[0];
        std::string request = words.size() > 1 ? words[1] : PingRequest();
        if (query == "read" || query == "data") {
            query = query == "read" ? "setpointReadValue.json" : "datapointReadValue.json";
            request = ValueToJson(words[2], words[3], words[1]);
        } else if (query == "write") {
            query = "setpointWriteValue.json";
            request = FormatSaveSetpoint(std::stoi(words[1]), std::stoi(words[2]), std::stoi(words[3]));
        } else if (query == "command") {
            query = "FlashWriteNostream.json";
            request = prepareFlashWriteNostream(number(1), 0, {});
        } else if (query == "packet") {
            query = "FlashWriteNostreamV2.json";
            request = V2prepareFlashWriteNostream(number(1), number(2),
                                                  Crc16(Crc16Start, bytes, true) + number(3), bytes);
        } else if (query == "prepare") {
            query = "prepareUpdate.json";
            request = prepareUpdateData(number(1), number(2), 0);
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
         "0|noQuery.json {\"request\":{}} -> unknown query noQuery.json",
         "0|packet 8 70000 -> member \"blocknumber\" is out of range"});
    // Values as they move, and as they are written.
    test::ExpectRows(answer,
                     {"0|read 0 102 2 -> unknown address 103 of object 0", "0|read 0 110 1 -> -5; ",
                      "3500|data 3 7 1 -> 1; ", // wraps at 16 bits
                      "500|data 0 0 3 -> 50; 60; 70; ", "1000|data 0 10 4 -> 250; 150; 30; 100; ",
                      "999|data 0 12 1 -> 15; ", "0|write 0 101 65535 -> status 1",
                      "0|read 0 100 3 -> 1; 65535; 3; ", "0|write 2 600 65534 -> status 1",
                      "0|read 0 110 1 -> -2; ", "0|write 0 512 6 -> status 1", "0|read 0 110 1 -> 6; ",
                      "0|write 0 120 1 -> status 2", "0|write 3 7 1 -> unknown address 7 of object 3"});
    // An upload in packets, out of its order.
    test::ExpectRows(answer, {"0|command 1 -> status 1", // nothing is announced
                              "0|command 5 -> status 6",
                              "0|packet 8 5 -> status 327686",
                              "0|prepare 3 10 -> status 0", // there is no such image
                              "0|prepare 2 601 -> status 0",
                              "0|prepare 2 600 -> status 10555392",
                              "0|read 0 903 1 -> 2; ", // bad until it is tested
                              "100|command 15 -> status 0",
                              "1099|command 16 -> status 1",
                              "1100|command 16 -> status 0",
                              "1100|command 6 -> status 6", // before init
                              "1100|command 5 -> status 0",
                              "1100|packet 8 5 -> status 327686", // before the pre-erase
                              "2000|command 7 -> status 0",
                              "2999|command 14 -> status 7",
                              "2999|packet 8 5 -> status 327687",
                              "3000|command 14 -> status 0",
                              "3000|packet 2 5 -> status 327686", // of another target
                              "3000|packet 8 5 1 -> status 327682",
                              "3000|packet 8 5 -> status 327680",
                              "3000|packet 8 5 -> status 327680", // once more
                              "3000|packet 8 7 -> status 458755",
                              "3000|packet 8 6 -> status 393216",
                              "3000|command 13 -> status 0",
                              "3000|packet 8 7 -> status 458758"});
    // Flash and EEPROM end somewhere.
    test::ExpectRows(
        answer,
        {
            "3000|flashRead.json {\"request\":{\"address\":\"33554431\",\"length\":\"2\"}} -> status 1",
            "3000|flashWrite.json {\"request\":{\"address\":\"10551296\",\"length\":\"9\"}} -> status 1",
            "3000|admincmd.json {\"request\":{\"cmd\":\"43\"}} -> status 1",
            "3000|admincmd.json {\"request\":{\"cmd\":\"131114\"}} -> status 0", // restart for image 2
            "3001|read 0 903 1 -> silent", "99000|read 0 903 1 -> 2; "           // which is not whole
        });
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
