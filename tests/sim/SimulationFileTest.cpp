#include "sim/nabto/SimulationFile.h"

#include "core/Errors.h"
#include "sim/nabto/RowText.h"

#include <gtest/gtest.h>

namespace tidewell {

namespace {

constexpr const char* Complete = R"([Simulation]
Controllers=vent, gate
Domain=remote.example.com
AnswerTimeout=1m
[Users]
a@example.com=secret
[Controller vent]
Id=410000000001
Model=30021
Devicenumber=120034
Version HP=0x70
Users=a@example.com, b@example.com
WriteStatus=0
StreamPiece=16
[Values vent]
; two runs
setpoint 0 100..102 = list 1 -2 3; signed; write=512; write=2/600
datapoint 1 7..8 = sine 10.5 2 1.5s; shift=250ms; stagger=1s
setpoint 0 120 = 215; refused
[Faults vent]
Error=Device busy; query=datapointReadValue.json; obj=1; address=7; skip=2; times=1
NoAnswer=on; from=1s; to=2m30s; query=stream
WrongCount=off
[Controller gate]
Id=410000000002
Local=false
Remote=False
Model=30011
Devicenumber=1
SlaveModel=30022
SlaveDevicenumber=2
Version=3
Values=vent
[Library]
nabtoOpenSession=NABTO_FAILED; times=1
)";

TEST(SimulationFile, ReadsEverything) {
    const TSimulation simulation = ParseSimulation(Complete, "simulation.ini");
    EXPECT_EQ(simulation.Domain, "remote.example.com");
    EXPECT_EQ(simulation.AnswerTimeoutMs, 60000);
    EXPECT_FALSE(simulation.AnyUser);
    EXPECT_EQ(simulation.Users.at("a@example.com"), "secret");
    ASSERT_EQ(simulation.LibraryFaults.size(), 1U);
    EXPECT_EQ(simulation.LibraryFaults[0].Status, 18);
    EXPECT_EQ(simulation.LibraryFaults[0].When.Times, 1U);

    ASSERT_EQ(simulation.Controllers.size(), 2U);
    const TControllerSetup& vent = simulation.Controllers[0];
    EXPECT_EQ(vent.Id, "410000000001");
    EXPECT_EQ(vent.Identity, (TSimulatedController::TIdentity{
                                 {"Model", 30021}, {"Devicenumber", 120034}, {"Version HP", 0x70}}));
    EXPECT_EQ(vent.Users, (std::vector<std::string>{"a@example.com", "b@example.com"}));
    EXPECT_EQ(vent.WriteStatus, 0);
    EXPECT_EQ(vent.StreamPiece, 16U);

    ASSERT_EQ(vent.Values.size(), 3U);
    EXPECT_EQ(vent.Values[0].Count, 3);
    EXPECT_EQ(vent.Values[0].Sources.at(1).First, -2);
    EXPECT_TRUE(vent.Values[0].Signed);
    EXPECT_EQ(vent.Values[0].WrittenAt, (std::vector<TRegisterAddress>{{0, 512}, {2, 600}}));
    EXPECT_EQ(vent.Values[1].Table, ETable::Datapoint);
    EXPECT_EQ(vent.Values[1].First, (TRegisterAddress{1, 7}));
    EXPECT_EQ(vent.Values[1].Sources.at(0).First, 10.5);
    EXPECT_EQ(vent.Values[1].Sources.at(0).PeriodMs, 1500);
    EXPECT_EQ(vent.Values[1].Sources.at(0).AheadMs, 250);
    EXPECT_EQ(vent.Values[1].StaggerMs, 1000);
    EXPECT_EQ(vent.Values[2].RefusedStatus, 2);

    ASSERT_EQ(vent.Faults.size(), 2U);
    EXPECT_EQ(vent.Faults[0].Text, "Device busy");
    EXPECT_EQ(vent.Faults[0].When.Query, "datapointReadValue.json");
    EXPECT_EQ(vent.Faults[0].When.Obj, 1);
    EXPECT_EQ(vent.Faults[0].When.Address, 7);
    EXPECT_EQ(vent.Faults[0].When.Skip, 2U);
    EXPECT_EQ(vent.Faults[1].When.Query, "stream");
    EXPECT_EQ(vent.Faults[1].When.FromMs, 1000);
    EXPECT_EQ(vent.Faults[1].When.ToMs, 150000);

    const TControllerSetup& gate = simulation.Controllers[1];
    EXPECT_FALSE(gate.Local);
    EXPECT_FALSE(gate.Remote);
    EXPECT_EQ(gate.Values.size(), 3U);

    EXPECT_NO_THROW(
        ParseSimulation("\xEF\xBB\xBF; by an editor that marks UTF-8\r\n" + std::string(Complete), ""));
}

TEST(SimulationFile, ReadsTimes) {
    EXPECT_EQ(ParseTime("40"), 40);
    EXPECT_EQ(ParseTime("1m1s5ms"), 61005);
    for (const char* bad : {"", "s", "10 s", "-1s", "5h", "1e3s", "99999999999999s", "1..2s"}) {
        EXPECT_THROW(ParseTime(bad), TError) << bad;
    }
}

TEST(SimulationFile, TellsMistakesByFileSectionAndKey) {
    struct TCase {
        const char* Section; // with the rows that replace or follow the good ones
        const char* Rows;
        const char* Message;
    };
    const TCase cases[] = {
        {"Values vent", "setpoint 0 100 = sinus 1 2 3s",
         R"(section "Values vent", key "setpoint 0 100": unknown kind "sinus")"},
        {"Values vent", "setpoint 0 100 = sine 1 2",
         R"(section "Values vent", key "setpoint 0 100": expected "sine <middle> <amplitude> <time>")"},
        {"Values vent", "setpoint 0 100 = ramp 1 2 0s",
         R"(section "Values vent", key "setpoint 0 100": the time must be above 0)"},
        {"Values vent", "setpoint 0 100 = ramp 1 nan 1s",
         R"(section "Values vent", key "setpoint 0 100": "nan" is no number of 16 bits)"},
        {"Values vent", "setpoint 0 100 = 65536",
         R"(section "Values vent", key "setpoint 0 100": "65536" is not within -32768 and 65535)"},
        {"Values vent", "setpoint 0 100..102 = list 1 2",
         R"(section "Values vent", key "setpoint 0 100..102": the list has 2 values for 3 addresses)"},
        {"Values vent", "setpoint 0 9..8 = 1",
         R"(section "Values vent", key "setpoint 0 9..8": "8" is not within 9 and 65544)"},
        {"Values vent", "setpoint 0 x = 1",
         R"(section "Values vent", key "setpoint 0 x": "x" is no integer)"},
        {"Values vent", "setpoint 100 = 1",
         R"(section "Values vent", key "setpoint 100": expected "setpoint <obj> <address>")"},
        {"Values vent", "datpoint 0 100 = 1",
         R"(section "Values vent", key "datpoint 0 100": unknown value "datpoint")"},
        {"Values vent", "setpoint 0 100 = 1; singed",
         R"(section "Values vent", key "setpoint 0 100": unknown option "singed")"},
        {"Values vent", "setpoint 0 100", R"(line 8: "setpoint 0 100" is neither a section nor key=value)"},
        {"Faults vent", "Latency=soon",
         R"(section "Faults vent", key "Latency": "soon" is no time such as 250ms, 10s or 2m30s)"},
        {"Faults vent", "Explode=on", R"(section "Faults vent", key "Explode": unknown fault "Explode")"},
        {"Faults vent", "NoAnswer=1", R"(section "Faults vent", key "NoAnswer": "1" is neither on nor off)"},
        {"Faults vent", "NoAnswer=on; till=3s",
         R"(section "Faults vent", key "NoAnswer": unknown option "till")"},
        {"Faults vent", "Error=x; query=pong.json",
         R"(section "Faults vent", key "Error": unknown query "pong.json")"},
        {"Faults vent", "Latency=1s; query=stream",
         R"(section "Faults vent", key "Latency": this fault never comes with query=stream)"},
        {"Faults vent", "WrongCount=1; query=ping.json",
         R"(section "Faults vent", key "WrongCount": this fault never comes with query=ping.json)"},
        {"Library", "nabtoFree=NABTO_FAILED",
         R"(section "Library", key "nabtoFree": unknown function "nabtoFree")"},
        {"Library", "nabtoStartup=18", R"(section "Library", key "nabtoStartup": unknown status "18")"},
        {"Controller vent", "Locl=true", R"(section "Controller vent", key "Locl": unknown key)"},
        {"Controller vent", "Local=yes",
         R"(section "Controller vent", key "Local": "yes" is neither true nor false)"},
        {"Controller vent", "Id=41", R"(section "Controller vent", key "Id": "41" is no id of 12 digits)"},
        {"Faults vnet", "Latency=1s", R"(section "Faults vnet" belongs to nothing)"},
    };
    const std::string good = "[Simulation]\nControllers=vent\n[Controller vent]\nId=410000000001\nModel=1\n";
    for (const TCase& test : cases) {
        const bool sameSection = std::string_view(test.Section) == "Controller vent";
        const std::string text = good + "Devicenumber=2" +
                                 (sameSection ? "" : "\n[" + std::string(test.Section) + "]") + "\n" +
                                 test.Rows + "\n";
        try {
            ParseSimulation(text, "dir/simulation.ini");
            ADD_FAILURE() << test.Rows;
        } catch (const TError& error) {
            EXPECT_EQ(error.what(), "dir/simulation.ini: " + std::string(test.Message));
        }
    }
}

TEST(SimulationFile, NeedsControllersWithAnIdentity) {
    const auto message = [](const std::string& text) -> std::string {
        try {
            ParseSimulation(text, "s.ini");
            return "";
        } catch (const TError& error) {
            return error.what();
        }
    };
    EXPECT_EQ(message(""), R"(s.ini: section "Simulation", key "Controllers": it names no controller)");
    EXPECT_EQ(message("[Simulation]\nControllers=a\n"),
              R"(s.ini: section "Controller a", key "Id": it is missing)");
    EXPECT_EQ(message("[Simulation]\nControllers=a\n[Controller a]\nId=410000000001\nModel=1\n"),
              R"(s.ini: section "Controller a", key "Devicenumber": it is missing)");
    EXPECT_EQ(
        message("[Simulation]\nControllers=a,b\n[Controller a]\nId=410000000001\nModel=1\nDevicenumber=1\n"
                "[Controller b]\nId=410000000001\nModel=1\nDevicenumber=1\n"),
        R"(s.ini: section "Controller b", key "Id": another controller has the id 410000000001)");
}

} // namespace

} // namespace tidewell
