#include "core/TextFile.h"
#include "scenario/ProgramFixture.h"

#include <gmock/gmock.h>

namespace tidewell::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

// What a technician reads from the simulated controller, through the whole program.
class TServiceTools : public TProgramFixture {
  protected:
    TFlashDatalog& Flash() { return Program->NabtoDevice.FlashDatalog; }
    std::vector<std::string> Saved(const std::string& mask) const {
        return Files.List("/t/log/userlog", mask);
    }
    std::vector<std::string> Lines(const std::string& name) const {
        return ReadLines(Files, "/t/log/userlog/" + name);
    }
    std::size_t Count(const std::string& call) const {
        return static_cast<std::size_t>(std::ranges::count_if(
            Log, [&call](const std::string& line) { return line.find(call) != std::string::npos; }));
    }
};

TEST_F(TServiceTools, TheFlashLogIsDownloadedAndShown) {
    Start();
    ASSERT_TRUE(Main().FlasDatalog1.Visible());
    Main().FlasDatalog1.Click();
    EXPECT_TRUE(Program->NabtoDevice.Visible() && Flash().PanelFDDatalog.Visible());
    EXPECT_GT(Flash().DayTracker.UpperPosition(), 6000);

    const int blocks = Flash().CurrentLogBlock + 2; // back across the end of the ring
    Flash().DayTracker.SetUpperPosition(blocks);
    Dialogs.ExpectMessage(Language("Nabtodriver", "questiondatalog"), EModalResult::Yes);
    Flash().DT_GetData.Click();
    ASSERT_EQ(Saved("FDlog_*").size(), 1U);
    const auto lines = Lines(Saved("FDlog_410000000001_*")[0]);
    const auto rows = static_cast<std::size_t>(blocks) * 16;
    ASSERT_EQ(lines.size(), rows + 1);
    EXPECT_THAT(lines[0], StartsWith("1;"));
    EXPECT_THAT(lines[32], StartsWith("32;")); // the number of the row before once more
    EXPECT_THAT(lines[rows], StartsWith(";[HeaderStart]30;3;100;16;"));
    EXPECT_THAT(lines[rows], HasSubstr("Aria450_english.pls[HeaderEnd]"));

    EXPECT_EQ(Main().GraphPage.GraphSampleCount(), rows);
    EXPECT_GT(Main().GraphPage.graph.Channels.Count(), 0U);
    EXPECT_TRUE(Main().TheTab.IsActive(Main().TabGraph));
    EXPECT_FALSE(Main().TabSetpoint.Visible() || Main().WindowSetpoint1.Enabled());
    EXPECT_FALSE(Main().Profile.ProfileLoaded || Program->NabtoDevice.Visible());
    EXPECT_EQ(Main().Caption(), "/t/profile/Aria450_english_Flash.pls");
    Close();
}

TEST_F(TServiceTools, TheErrorLogGetsItsPage) {
    Start();
    Main().but_errorlog.Click();
    auto& page = Main().ErrorLog;
    EXPECT_TRUE(Main().TheTab.IsActive(page.TabErrorlog));
    ASSERT_EQ(page.Memo.Lines().size(), 102U);
    EXPECT_THAT(page.Memo.Lines()[1], StartsWith("Number1 Time "));
    EXPECT_EQ(page.Memo.Lines().back(), "File saved in userlog directory");
    ASSERT_EQ(Saved("errorlog *").size(), 1U);
    EXPECT_EQ(Lines(Saved("errorlog *")[0]).size(), 101U);
    Program->NabtoDevice.device = "410000000099.hv.example"; // nobody there: the old page stays
    Main().but_errorlog.Click();
    EXPECT_EQ(page.Memo.Lines().size(), 102U);
    Close();
}

TEST_F(TServiceTools, ACloseInTheMiddleEndsTheRead) {
    Start();
    Main().FlasDatalog1.Click();
    Log.clear();
    Time.After(0, [this] {
        Time.After(0, [this] { Main().Close(); }); // the stream is open by then
    });
    Flash().DT_GetData.Click();
    EXPECT_TRUE(Application.IsTerminated);
    EXPECT_EQ(Count("nabtoStreamOpen"), Count("nabtoStreamClose"));
    EXPECT_LT(Count("nabtoStreamRead"), 10U);
    EXPECT_TRUE(Saved("FDlog_*").empty());
    Program->Finish();
}

TEST_F(TServiceTools, ThePanelsAreShownByTheirOptions) {
    Arguments.insert(Arguments.end(), {"-debugShowEEPanel", "true", "-debugShowFlashPanel", "true",
                                       "-debugShowExtendedVersionInfo", "true"});
    Start();
    Main().Nabtodebug1Click();
    auto& tools = Program->NabtoDevice.ServiceTools;
    EXPECT_TRUE(tools.PanelReadEEprom.Visible() && tools.PanelReadFlash.Visible() &&
                tools.ExtendedSystemVersion.Visible());
    tools.RErrorlogStart.SetText("256");
    tools.RErrorlogLength.SetText("2");
    Dialogs.ExpectMessage("done... download");
    tools.butGetEepromValues.Click();
    ASSERT_EQ(Saved("EElist_410000000001_*").size(), 1U);
    EXPECT_THAT(Lines(Saved("EElist_*")[0]),
                testing::ElementsAre(StartsWith("EENum- 256;"), StartsWith("EENum- 258;")));
    Dialogs.ExpectMessage(Language("Nabtodriver", "questiondatalog"), EModalResult::No);
    tools.editReadLength.SetText("300");
    tools.BtnReadFlash.Click();
    EXPECT_EQ(Lines(Saved("FDlog_*")[0]).size(), 2U);
    Close();
}

} // namespace
} // namespace tidewell::test
