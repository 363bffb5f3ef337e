#include "scenario/ProgramFixture.h"

#include <gmock/gmock.h>

namespace tidewell::test {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

class TFirstLiveData : public TProgramFixture {};

TEST_F(TFirstLiveData, LogsFiftyCyclesWithNoClickAndLeavesItsFiles) {
    const auto before = Files.Content;
    Start();
    EXPECT_EQ(Program->FormMain.Caption(), Profile);
    EXPECT_FALSE(Program->LiveLog.DatalogOn);
    EXPECT_TRUE(Program->LiveLog.TimerLogAutostart->Enabled());
    Time.Advance(5000);
    EXPECT_TRUE(Program->LiveLog.DatalogOn);
    RunUntilRows(50);
    EXPECT_EQ(Program->NabtoDevice.LblNabto.Caption(), "ID : 410000000001.hv.example -> Pause Data");
    Close();

    EXPECT_TRUE(Dialogs.Texts() == std::vector<std::string>{}) << testing::PrintToString(Dialogs.Texts());
    EXPECT_TRUE(Application.IsTerminated);
    EXPECT_EQ(CaFile, "/t/cfg/cloud-ca.pem");

    // What the run leaves: the event log, the datalog, the device in the system file, the graph settings.
    std::vector<std::string> made;
    std::vector<std::string> changed;
    for (const auto& [path, bytes] : Files.Content)
        if (!before.contains(path))
            made.push_back(path.string());
        else if (before.at(path) != bytes)
            changed.push_back(path.string());
    EXPECT_THAT(made, ElementsAre(StartsWith("/t/log/systemlog/02-03-20260801"),
                                  StartsWith("/t/log/systemlog/datalog02-03-202608")));
    EXPECT_THAT(changed, ElementsAre(SystemFile, Profile));
}

TEST_F(TFirstLiveData, LeavesTheFilesByteForByte) {
    Start();
    RunUntilRows(50);
    Close();
    EXPECT_EQ(FilesBelow("/t/log").size(), 2U);
    for (const std::string& path : FilesBelow("/t/log"))
        ExpectGolden("fifty_cycles" / std::filesystem::path(path).filename(), Files.Content.at(path));
    EXPECT_TRUE(FilesBelow("/t/nabto_config/users").empty());
}

} // namespace
} // namespace tidewell::test
