#include "core/DiskFiles.h"
#include "core/TextFile.h"
#include "scenario/ProgramFixture.h"

#include <gmock/gmock.h>

#include <cstdlib>

namespace tidewell::test {
namespace {

class TDatalogGolden : public TProgramFixture {
  protected:
    // What each channel holds of the first rows.
    std::vector<double> Samples(std::size_t rows) {
        std::vector<double> samples;
        const TSampleTable& table = Main().GraphPage.DataLogDataValues;
        for (std::size_t channel = 0; channel < table.Channels(); ++channel)
            for (std::size_t row = 0; row < rows; ++row)
                samples.push_back(table.At(channel, row));
        return samples;
    }
    // With TIDEWELL_UPDATE_GOLDEN set the file is written anew instead of compared; look at the difference
    // then.
    void ExpectGolden(const std::filesystem::path& path) {
        const auto golden =
            std::filesystem::path(TIDEWELL_SOURCE_DIR) / "tests/scenario/golden/opened_datalog";
        const auto kept = golden / path.filename();
        TDiskFiles disk;
        if (std::getenv("TIDEWELL_UPDATE_GOLDEN") != nullptr) {
            disk.CreateDirectories(golden);
            const auto file = disk.Replace(kept);
            file->Write(Files.Content.at(path));
            file->Commit();
        }
        ASSERT_TRUE(disk.FileExists(kept)) << kept;
        EXPECT_TRUE(Files.Content.at(path) == disk.Read(kept)) << path << " differs from " << kept;
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
    Dialogs.ExpectSaveFile(Main().Texts.DialogSaveDatalogFile, "/t/log/userlog/saved");
    Main().SaveUserDatalog1.Click();
    ExpectGolden(saved);

    // The last row is not drawn, and two fewer rows than are drawn are exported.
    Dialogs.ExpectOpenFiles(Main().Texts.DialogOpenDatalogFileCaption, {saved});
    Main().OpenDatalogfile1.Click();
    EXPECT_FALSE(Main().FileProgressBar.Visible());
    EXPECT_EQ(Main().GraphPage.GraphSampleCount(), rows - 1);
    EXPECT_TRUE(Samples(rows - 1) == live);
    Dialogs.ExpectSaveFile(Main().Texts.DialogSaveDatalogFile, exported);
    Main().GraphPage.Exportdatatocsv1.Click();
    ExpectGolden(exported);
    EXPECT_EQ(SplitLines(Files.Content.at(exported)).size(), rows - 1);

    // A log that is not to clear the opened rows goes on behind them.
    Dialogs.ExpectMessage(Main().LoggingTexts.MessageClearGraphData, EModalResult::No);
    Main().StartLog1.Click();
    RunUntilRows(2);
    EXPECT_EQ(Main().GraphPage.GraphSampleCount(), rows + 1);
    EXPECT_TRUE(Dialogs.AllAnswered());
    Close();
    EXPECT_THAT(FilesBelow("/t/log"), testing::Contains(testing::HasSubstr("/systemlog/datalog")));
}

} // namespace
} // namespace tidewell::test
