#include "logging/CsvExport.h"

#include "core/TextFile.h"
#include "logging/DatalogRig.h"

#include <gmock/gmock.h>

#include <optional>

namespace tidewell::test {

namespace {

constexpr const char* FiveChannels = "[GraphPoints]\r\n"
                                     "A=Temp;1;clBlue;3;0;1;150;;;;;;1;\r\n"
                                     "B=Flags;1;clRed;4;0;0;100;a,b;;;;;1;\r\n"
                                     "C=Hidden;1;clRed;3;0;0;150;;;;;;1;\r\n"
                                     "D=\"A \"\"b\"\"; c\";1;clRed;4;0;-7;150;;;;;;1;\r\n"
                                     "E=Last;1;clRed;3;-1;2;250;;;;;;1;\r\n"
                                     "[VisibleGraph]\r\nv=1\r\nv=1\r\nv=0\r\nv=1\r\nv=1\r\n";
constexpr const char* NoData = "No data in graph buffer";

class TExportRig : public TDatalogRig {
  public:
    explicit TExportRig(const std::string& profile = FiveChannels) : TDatalogRig(profile) {
        Export.TakeTexts(TIniFile("[HeadAppl]\nDialogSaveDatalogFile=Save it\n"));
        Files.CreateDirectories("/t/log/exported");
        Page.CurrentLogStartDate = "02-03-2026";
    }
    void Log(std::size_t rows) {
        for (std::size_t row = 0; row < rows; ++row) {
            Page.GraphDataLabelsTimeText.Add("08:00:0" + std::to_string(row % 10));
            Page.GraphDataLabelsDateText.Add("02-03-2026");
            Page.ExtendGraph("0;d;t;" + std::to_string(row) + "; " + std::to_string(-static_cast<int>(row)) +
                             "; ");
        }
    }
    // The lines saved, without their ends; fails the test for an end that is not CR LF.
    std::vector<std::string> Save() {
        Dialogs.ExpectSaveFile("Save it", "/t/log/exported/a.csv");
        Export.Exportdatatocsv1Click();
        const std::string bytes = Files.Read("/t/log/exported/a.csv");
        const auto lines = SplitLines(bytes);
        std::string again;
        for (const auto& line : lines)
            again += line + "\r\n";
        EXPECT_EQ(again, bytes);
        return lines;
    }
    TCsvExport Export{Needs};
};

} // namespace

TEST(CsvExport, SavesATableForASpreadsheet) {
    TExportRig rig;
    rig.Log(100);
    const auto lines = rig.Save();
    ASSERT_EQ(lines.size(), 100U);
    EXPECT_EQ(lines[0], "LogStartDate;02-03-2026;Profile;/t/profile/a.pls;");
    EXPECT_EQ(lines[1], "Time;Temp:[9.90];Flags:[11111111 10011101];\"A \"\"b\"\"; c:[-9.9E8]\";Last:[0.98]");
    EXPECT_EQ(lines[2], "08:00:00;0,00;0,00;0,00;-0,01");
    EXPECT_EQ(lines[3], "08:00:01;0,10;-1,00;-10000000,00;0,00");
    EXPECT_EQ(lines[99], "08:00:07;9,70;-97,00;-9,7E8;0,96");
    EXPECT_EQ(rig.TDatalogRig::Log.Stopped, 1);
    EXPECT_EQ(rig.MemoEventLog.Lines().back(), "Saved Visualgraphdata /t/log/exported/a.csv");
    EXPECT_EQ(rig.Dialogs.LastFileDialog.InitialDirectory, "/t/log/exported");
    EXPECT_EQ(rig.Dialogs.LastFileDialog.Filters.at(0).Mask, "*.csv");
    EXPECT_FALSE(rig.Dialogs.WaitCursor);

    // A name is completed unless it holds the ending; one that is cancelled writes nothing.
    const std::size_t files = rig.Files.Content.size();
    for (const char* const name : {"/t/data.csv.bak", "/t/data", ""}) {
        rig.Dialogs.ExpectSaveFile("Save it", *name != '\0' ? std::optional(name) : std::nullopt);
        rig.Export.Exportdatatocsv1Click();
    }
    EXPECT_EQ(rig.Files.Content.size(), files + 2);
    EXPECT_TRUE(rig.Files.FileExists("/t/data.csv.bak") && rig.Files.FileExists("/t/data.csv"));
}

TEST(CsvExport, SmallTablesLackWhatHasNoCell) {
    struct TCase {
        std::size_t Rows;
        std::size_t Channels; // that are visible
        std::vector<std::string> Lines;
    };
    const std::vector<TCase> cases{
        {1, 1, {"LogStartDate;02-03-2026"}},
        {2, 1, {"LogStartDate;02-03-2026", "Time;C0:[1.00]"}},
        {3, 0, {"LogStartDate", "Time", "08:00:00"}},
        {3, 1, {"LogStartDate;02-03-2026", "Time;C0:[2.00]", "08:00:00;0,00"}},
        {3, 2, {"LogStartDate;02-03-2026;Profile", "Time;C0:[2.00];C1:[2.00]", "08:00:00;0,00;0,00"}},
        {2, 3, {"LogStartDate;02-03-2026;Profile;/t/profile/a.pls", "Time;C0:[1.00];C1:[1.00];C2:[1.00]"}},
    };
    for (const auto& sample : cases) {
        std::string profile = "[GraphPoints]\r\n";
        for (std::size_t i = 0; i < 3; ++i)
            profile += "K=C" + std::to_string(i) + ";1;clRed;3;0;0;150;;;;;;1;\r\n";
        TExportRig rig(profile);
        for (std::size_t i = sample.Channels; i < 3; ++i)
            rig.Page.graph.Channels[i].SetVisible(false);
        rig.Log(sample.Rows);
        EXPECT_EQ(rig.Save(), sample.Lines) << sample.Rows << " rows of " << sample.Channels;
    }
}

TEST(CsvExport, TellsEveryFailureInTheSameWords) {
    struct TCase {
        const char* What;
        void (*Spoil)(TExportRig&);
        bool Asked; // for a name
    };
    const std::vector<TCase> cases{
        {"no log", [](TExportRig& rig) { rig.Page.ClearGraphPage(); }, false},
        {"rows without a time", [](TExportRig& rig) { rig.Page.GraphDataLabelsTimeText.Truncate(3); }, false},
        {"a full disk", [](TExportRig& rig) { rig.Files.Room = 40; }, true},
        {"a read-only folder", [](TExportRig& rig) { rig.Files.Unwritable.insert("/t/log/exported"); }, true},
        // A profile that could not be opened to its end leaves curves without samples.
        {"other channels", [](TExportRig& rig) { rig.Page.graph.Channels.Add(); }, true},
    };
    for (const auto& sample : cases) {
        SCOPED_TRACE(sample.What);
        TExportRig rig;
        rig.Log(5);
        rig.Files.Put("/t/log/exported/a.csv", "old");
        sample.Spoil(rig);
        if (sample.Asked)
            rig.Dialogs.ExpectSaveFile("Save it", "/t/log/exported/a.csv");
        rig.Dialogs.ExpectMessage(NoData);
        rig.Export.Exportdatatocsv1Click();
        EXPECT_EQ(rig.Files.Read("/t/log/exported/a.csv"), "old");
        EXPECT_FALSE(rig.Dialogs.WaitCursor);
        EXPECT_EQ(rig.TDatalogRig::Log.Stopped, 1);
    }
}

} // namespace tidewell::test
