#include "scenario/ProgramFixture.h"

#include <gmock/gmock.h>

namespace tidewell::test {
namespace {

// What lies wrong beside the program, or answers wrong from the cloud.
class TBadInstallation : public TProgramFixture {};

TEST_F(TBadInstallation, NamesTheIntervalThatIsNoNumber) {
    Edit(SystemFile, "PauseTime=1000", "PauseTime=soon");
    Dialogs.ExpectMessage(
        "/t/cfg/system_hushvane.inn: [CommInitNabto] PauseTime: 'soon' is not a valid floating point "
        "value");
    Start();
    EXPECT_TRUE(Application.IsTerminated);
}

TEST_F(TBadInstallation, AsksForAProfileWhenTheOneOfTheModelIsMissing) {
    Files.Content.erase(Profile);
    Dialogs.ExpectMessage(Language("TestfileComport", "ProfileMissing") + " \\t\\profile\\Aria450");
    Dialogs.ExpectOpenFile(Language("HeadAppl", "DialogOpenProfileCaption"), std::nullopt);
    Start();
    EXPECT_FALSE(Main().Profile.ProfileLoaded);
    EXPECT_TRUE(Main().FCurrentInifilesPath.plsfile.empty());
    Close();
}

TEST_F(TBadInstallation, FindsTheProfileOfTheControllerBehindAGateway) {
    Arguments[1] = "410000000002";
    Start();
    EXPECT_EQ(Main().Caption(), "/t/profile/Loft120_english.pls");
    RunUntilRows(2);
    EXPECT_EQ(Program->Nabto.queriesFile, "gateway.xml");
    Close();
}

TEST_F(TBadInstallation, LeavesAReadOnlyProfileAsItIs) {
    Files.Unwritable.insert(Profile);
    const std::string before = Files.Content[Profile];
    Start();
    Close();
    EXPECT_EQ(Files.Content[Profile], before);
    EXPECT_EQ(FilesBelow("/t/log/systemlog").size(), 2u);
}

} // namespace
} // namespace tidewell::test
