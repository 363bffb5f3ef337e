#include "link/DeviceQueries.h"
#include "sim/controller/Firmware.h"
#include "sim/nabto/RowText.h"
#include "sim/nabto/SimulatedNabto.h"
#include "support/Test.h"

namespace tidewell {
namespace {

constexpr const char* Installed = R"([Simulation]
Controllers=vent
[Controller vent]
Id=410000000001
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
    // The answer to "read <obj> <address> <length>", "data ..." for datapoints or "write <obj> <address>
    // <value>": the values, the status or the text of an error.
    std::string Do(const std::string& line, std::int64_t now) {
        const std::vector<std::string> words = SplitWords(line);
        const bool isWrite = words[0] == "write";
        const std::string query = isWrite              ? "setpointWriteValue.json"
                                  : words[0] == "read" ? "setpointReadValue.json"
                                                       : "datapointReadValue.json";
        const std::string request =
            isWrite ? FormatSaveSetpoint(std::stoi(words[1]), std::stoi(words[2]), std::stoi(words[3]))
                    : ValueToJson(words[2], words[3], words[1]);
        const TDeviceReply reply = ParseReply(Nabto.FindController("vent")->Query(query, request, now).Text);
        return reply.Error    ? *reply.Error
               : reply.Values ? *reply.Values
                              : "status " + reply.Status.value().Text;
    }

    test::TMemoryFiles Files;
    test::TVirtualTime Clock;
    TPortTime Time{Clock, Clock};
    TSimulatedNabto Nabto{Files, Time};
};

TEST_F(TSimulationTest, ValuesMoveAndAreWrittenByTheirRows) {
    Load();
    test::ExpectRows(
        [this](std::string_view input) { // time and request
            return Do(test::Piece(input, 1), std::stoll(test::Piece(input, 0)));
        },
        {"0|read 0 102 2 -> unknown address 103 of object 0", "0|read 0 110 1 -> -5; ",
         "3500|data 3 7 1 -> 1; ", // wraps at 16 bits
         "500|data 0 0 3 -> 50; 60; 70; ", "1000|data 0 10 4 -> 250; 150; 30; 100; ",
         "999|data 0 12 1 -> 15; ", "0|write 0 101 65535 -> status 1", "0|read 0 100 3 -> 1; 65535; 3; ",
         "0|write 2 600 65534 -> status 1", "0|read 0 110 1 -> -2; ", "0|write 0 512 6 -> status 1",
         "0|read 0 110 1 -> 6; ", "0|write 0 120 1 -> status 2",
         "0|write 3 7 1 -> unknown address 7 of object 3"});
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
         "Error=x; obj=0; address=102; skip=1|0|read 0 110 1|read 0 100 3|read 0 100 3 -> -5; |1; 2; 3; |x|",
         "Error=x; obj=3|2000|read 0 100 1|data 3 7 1 -> 1; |x|", "Error=off|0|read 0 100 1 -> 1; |"});
}

} // namespace
} // namespace tidewell
