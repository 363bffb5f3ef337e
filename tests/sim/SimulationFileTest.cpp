#include "sim/nabto/SimulationFile.h"

#include "rig/Test.h"
#include "sim/controller/Firmware.h"
#include "sim/nabto/RowText.h"
#include "sim/nabto/Status.h"

namespace tidewell::test {
namespace {

TEST(SimulationFile, TellsMistakesByFileSectionAndKey) {
    // Section and rows; the message, in which ":" at the beginning names the section and the row's key.
    const auto told = [](std::string_view input) {
        const std::string section = Piece(input, 0);
        const std::string rows = Piece(input, 1);
        try {
            ParseSimulation("[Simulation]\nControllers=a\n[Controller a]\nId=410000000001\nModel=1\n"
                            "Devicenumber=2\n[" +
                                section + "]\n" + rows + "\n",
                            "file");
        } catch (const TError& error) {
            const std::string key(Trim(rows.substr(0, rows.find('='))));
            const std::string place = "file: section \"" + section + "\", key \"" + key + "\"";
            const std::string message = error.what();
            return message.starts_with(place) ? message.substr(place.size()) : message.substr(6);
        }
        return std::string("accepted");
    };
    ExpectRows(
        told,
        {"Values a|setpoint 0 100 = sinus 1 2 3s -> : unknown kind \"sinus\"",
         "Values a|setpoint 0 100 = sine 1 2 -> : expected \"sine <middle> <amplitude> <time>\"",
         "Values a|setpoint 0 100 = 65536 -> : \"65536\" is not within -32768 and 65535",
         "Faults a|Latency=1s; query=stream -> : this fault never comes with query=stream",
         "Service a|Image 2=0xA10007; room=2\nImage 1=0xA10000; room=8 -> section \"Service a\", key \"Image "
         "1\": its room overlaps that of image 2",
         "Service a|LogValues=setpoint 0 1..127 -> : a record has room for 126 values, not 127",
         "Faults b|Latency=1s -> section \"Faults b\" belongs to nothing",
         "Simulation|Domian=x -> : unknown key",
         "Simulation|Controllers=b -> section \"Controller b\", key \"Id\": it is missing",
         "Simulation|Controllers=a,b\n[Controller b]\nModel=1\nDevicenumber=1\nId=410000000001 -> section "
         "\"Controller b\", key \"Id\": another controller has the id 410000000001"});
    EXPECT_THROW(ParseSimulation("", ""), TError);
}

TEST(SimulationFile, ReadsTimesAndStatusNames) {
    EXPECT_EQ(ParseTime("40"), 40);
    EXPECT_EQ(ParseTime("1m1.5s5ms"), 61505);
    for (const char* bad : {"", "s", "10 s", "-1s", "5h", "1e3s", "99999999999999s", "1..2s"})
        EXPECT_THROW(ParseTime(bad), TError) << bad;
    EXPECT_EQ(Crc32("123456789"), 0xCBF43926U);
    EXPECT_STREQ(StatusText(26), "Failed; the reply tells why");
}

} // namespace
} // namespace tidewell::test
