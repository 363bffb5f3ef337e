#include "core/TextFile.h"
#include "scenario/ProgramFixture.h"

#include <gmock/gmock.h>

namespace tidewell::test {
namespace {

class TDatalogGolden : public TProgramFixture {
  protected:
    void ExpectSaved(const std::filesystem::path& path) {
        ExpectGolden("opened_datalog" / path.filename(), Files.Content.at(path));
    }
};

TEST_F(TDatalogGolden, SavesOpensAndExportsALog) {
    constexpr const char* saved = "/t/log/userlog/saved.csv";
    constexpr const char* exported = "/t/log/exported/exported.csv";
    constexpr std::size_t rows = 25;
    Start();
    RunUntilRows(rows);
    const std::vector<double> live = Samples(rows - 1);
    ASSERT_GE(live.size(), 10 * (rows - 1));
    Dialogs.ExpectSaveFile(Language("HeadAppl", "DialogSaveDatalogFile"), "/t/log/userlog/saved");
    Main().SaveUserDatalog1.Click();
    ExpectSaved(saved);

    // The last row is not drawn, and two fewer rows than are drawn are exported.
    Dialogs.ExpectOpenFiles(Language("HeadAppl", "DialogOpenDatalogFileCaption"), {saved});
    Main().OpenDatalogfile1.Click();
    EXPECT_FALSE(Main().FileProgressBar.Visible());
    EXPECT_EQ(Program->GraphPage.GraphSampleCount(), rows - 1);
    EXPECT_TRUE(Samples(rows - 1) == live);
    Dialogs.ExpectSaveFile(Language("HeadAppl", "DialogSaveDatalogFile"), exported);
    Program->GraphPage.Exportdatatocsv1.Click();
    ExpectSaved(exported);
    EXPECT_EQ(SplitLines(Files.Content.at(exported)).size(), rows - 1);

    // A log that is not to clear the opened rows goes on behind them.
    Dialogs.ExpectMessage(Language("HeadAppl", "MessageClearGraphData"), EModalResult::No);
    Main().StartLog1.Click();
    RunUntilRows(2);
    EXPECT_EQ(Program->GraphPage.GraphSampleCount(), rows + 1);
    EXPECT_TRUE(Dialogs.AllAnswered());
    Close();
    EXPECT_THAT(FilesBelow("/t/log"), testing::Contains(testing::HasSubstr("/systemlog/datalog")));
}

} // namespace
} // namespace tidewell::test
