#include "sim/nabto/SimulationFile.h"

#include "core/Errors.h"
#include "core/Numbers.h"
#include "sim/nabto/RowText.h"
#include "sim/nabto/Status.h"

#include <gmock/gmock.h>

#include <tuple>

namespace tidewell {

namespace {

TEST(SimulationFile, TellsMistakesByFileSectionAndKey) {
    // Section, rows and message; one that begins with ":" names the section and the row's key.
    const std::tuple<std::string, std::string, std::string> cases[] = {
        {"Values a", "setpoint 0 100 = sinus 1 2 3s", R"(: unknown kind "sinus")"},
        {"Values a", "setpoint 0 100 = sine 1 2", R"(: expected "sine <middle> <amplitude> <time>")"},
        {"Values a", "setpoint 0 100 = ramp 1 2 0s", ": the time must be above 0"},
        {"Values a", "setpoint 0 100 = ramp 1 nan 1s", R"(: "nan" is no number of 16 bits)"},
        {"Values a", "setpoint 0 100 = 65536", R"(: "65536" is not within -32768 and 65535)"},
        {"Values a", "setpoint 0 100..102 = list 1 2", ": the list has 2 values for 3 addresses"},
        {"Values a", "setpoint 0 9..8 = 1", R"(: "8" is not within 9 and 65544)"},
        {"Values a", "setpoint 100 = 1", R"(: expected "setpoint <obj> <address>")"},
        {"Values a", "datpoint 0 100 = 1", R"(: unknown value "datpoint")"},
        {"Values a", "setpoint 0 100 = 1; singed", R"(: unknown option "singed")"},
        {"Values a", "setpoint 0 100", R"(line 8: "setpoint 0 100" is neither a section nor key=value)"},
        {"Faults a", "Latency=soon", R"(: "soon" is no time such as 250ms, 10s or 2m30s)"},
        {"Faults a", "Explode=on", R"(: unknown fault "Explode")"},
        {"Faults a", "NoAnswer=1", R"(: "1" is neither on nor off)"},
        {"Faults a", "Error=x; query=pong.json", R"(: unknown query "pong.json")"},
        {"Faults a", "Latency=1s; query=stream", ": this fault never comes with query=stream"},
        {"Faults a", "WrongCount=1; query=ping.json", ": this fault never comes with query=ping.json"},
        {"Faults a", "Refuse=1; block=6608", R"(: "6608" is not within 0 and 6607)"},
        {"Faults a", "BadImage=17", R"(: "17" is not within 1 and 16)"},
        {"Faults a", "NoReturn=on; query=admincmd.json", ": this fault never comes with query=admincmd.json"},
        {"Service a", "Image 0=0xA10000; room=1", R"(: "0" is not within 1 and 16)"},
        {"Service a", "Image 1=0x20000; room=1", R"(: "0x20000" is not within 10551296 and 13828095)"},
        {"Service a", "Image 1=0xA10000", R"(: it has no option "room")"},
        {"Service a", "Image 1=0xD2FFFF; room=2", R"(: "2" is not within 1 and 1)"},
        {"Service a", "Image 2=0xA10007; room=2\nImage 1=0xA10000; room=8",
         R"(section "Service a", key "Image 1": its room overlaps that of image 2)"},
        {"Service a", "LogValues=setpoint 0 1", ": the controller has no setpoint 0 1"},
        {"Service a", "LogValues=setpoint 0 1..127", ": a record has room for 126 values, not 127"},
        {"Service a", "ErrorEvents=101", R"(: "101" is not within 0 and 100)"},
        {"Service a", "UpdateTim=1s", ": unknown key"},
        {"Service b", "UpdateTime=1s", R"(section "Service b" belongs to nothing)"},
        {"Faults b", "Latency=1s", R"(section "Faults b" belongs to nothing)"},
        {"Library", "nabtoFree=NABTO_FAILED", R"(: unknown function "nabtoFree")"},
        {"Library", "nabtoStartup=18", R"(: unknown status "18")"},
        {"Simulation", "Domian=x", ": unknown key"},
        {"Controller a", "Locl=true", ": unknown key"},
        {"Controller a", "Local=yes", R"(: "yes" is neither true nor false)"},
        {"Controller a", "Id=41", R"(: "41" is no id of 12 digits)"},
        {"Controller a", "Copies=1001", R"(: "1001" is not within 0 and 1000)"},
        {"Controller a", "Id=999999999000\nCopies=1000", ": there are no 1000 ids behind 999999999000"},
        {"Simulation", "Controllers=b", R"(section "Controller b", key "Id": it is missing)"},
        {"Simulation", "Controllers=a,b\n[Controller b]\nId=410000000001",
         R"(section "Controller b", key "Model": it is missing)"},
        {"Simulation", "Controllers=a,b\n[Controller b]\nModel=1\nDevicenumber=1\nId=410000000001",
         R"(section "Controller b", key "Id": another controller has the id 410000000001)"},
    };
    for (const auto& [section, rows, message] : cases) {
        const std::string text = "[Simulation]\nControllers=a\n[Controller a]\nId=410000000001\nModel=1\n"
                                 "Devicenumber=2\n[" +
                                 section + "]\n" + rows + "\n";
        const std::string key(Trim(rows.substr(0, rows.find('='))));
        const std::string place = message[0] == ':' ? "section \"" + section + "\", key \"" + key + "\"" : "";
        EXPECT_THAT([&] { ParseSimulation(text, "dir/simulation.ini"); },
                    testing::ThrowsMessage<TError>("dir/simulation.ini: " + place + message))
            << rows;
    }
    EXPECT_THROW(ParseSimulation("", ""), TError);
}

TEST(SimulationFile, ReadsTimesAndStatusNames) {
    EXPECT_EQ(ParseTime("40"), 40);
    EXPECT_EQ(ParseTime("1m1.5s5ms"), 61505);
    for (const char* bad : {"", "s", "10 s", "-1s", "5h", "1e3s", "99999999999999s", "1..2s"}) {
        EXPECT_THROW(ParseTime(bad), TError) << bad;
    }
    EXPECT_EQ(StatusByName("NABTO_BUFFER_FULL"), 17);
    EXPECT_EQ(StatusByName("NABTO_FAILED_WITH_JSON_MESSAGE"), 26);
    EXPECT_STREQ(StatusText(26), "Failed; the reply tells why");
    EXPECT_STREQ(StatusText(27), "Unknown status");
}

} // namespace

} // namespace tidewell
