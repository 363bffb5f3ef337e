#include "logging/CsvExport.h"

#include "logging/DatalogRig.h"
#include "support/Test.h"

namespace tidewell::test {
namespace {

constexpr const char* Target = "/t/log/exported/a.csv";

class TExportRig : public TDatalogRig {
  public:
    explicit TExportRig(const std::string& rows) : TDatalogRig("[GraphPoints]\r\n" + rows) {
        Files.Put(Target, "old");
        Dialogs.Saved = Target;
        Page.CurrentLogStartDate = "02-03-2026";
    }
    static std::string Channels(std::size_t count) {
        std::string rows;
        for (std::size_t i = 0; i < count; ++i)
            rows += "K=C" + std::to_string(i) + ";1;clRed;3;0;0;150;;;;;;1;\r\n";
        return rows;
    }
    void Log(std::size_t rows) {
        for (std::size_t row = 0; row < rows; ++row) {
            Page.GraphDataLabelsTimeText.Add("08:00:0" + std::to_string(row % 10));
            Page.AddGraphSample("0;d;t;" + std::to_string(row) + ";-" + std::to_string(row) + ";", row);
        }
    }
    // The lines saved, without their ends; fails the test for an end that is not CR LF.
    std::vector<std::string> Save() {
        Export.Exportdatatocsv1Click();
        const std::string bytes = Files.Read(Target);
        EXPECT_EQ(std::count(bytes.begin(), bytes.end(), '\n'), std::count(bytes.begin(), bytes.end(), '\r'));
        return SplitLines(bytes);
    }
    TCsvExport Export{Needs};
};

} // namespace

TEST(CsvExport, SavesATableForASpreadsheet) {
    TExportRig rig("A=Temp;1;clBlue;3;0;1;150;;;;;;1;\r\n"
                   "B=Flags;1;clRed;4;0;0;100;a,b;;;;;1;\r\n"
                   "C=Hidden;1;clRed;3;0;0;150;;;;;;1;\r\n"
                   "D=\"A \"\"b\"\"; c\";1;clRed;4;0;-7;150;;;;;;1;\r\n"
                   "E=Last;1;clRed;3;-1;2;250;;;;;;1;\r\n");
    rig.Page.graph.Channels[2].SetVisible(false);
    rig.Log(100);
    const auto lines = rig.Save();
    ASSERT_EQ(lines.size(), 100U);
    EXPECT_EQ(lines[0], "LogStartDate;02-03-2026;Profile;/t/profile/a.pls;");
    EXPECT_EQ(lines[1], "Time;Temp:[9.90];Flags:[11111111 10011101];\"A \"\"b\"\"; c:[-9.9E8]\";Last:[0.98]");
    EXPECT_EQ(lines[2], "08:00:00;0,00;0,00;0,00;-0,01");
    EXPECT_EQ(lines[3], "08:00:01;0,10;-1,00;-10000000,00;0,00");
    EXPECT_EQ(lines[99], "08:00:07;9,70;-97,00;-9,7E8;0,96");
    EXPECT_EQ(rig.MemoEventLog.Lines().back(), "Saved Visualgraphdata " + std::string(Target));
    EXPECT_FALSE(rig.Dialogs.WaitCursor);
}

TEST(CsvExport, SmallTablesLackWhatHasNoCellAndLargeOnesAreWhole) {
    struct {
        std::size_t Rows, Channels;
        std::vector<std::string> Lines;
    } const cases[] = {
        {1, 1, {"LogStartDate;02-03-2026"}},
        {3, 0, {"LogStartDate", "Time", "08:00:00"}},
        {3, 1, {"LogStartDate;02-03-2026", "Time;C0:[2.00]", "08:00:00;0,00"}},
        {3, 2, {"LogStartDate;02-03-2026;Profile", "Time;C0:[2.00];C1:[2.00]", "08:00:00;0,00;0,00"}},
    };
    for (const auto& c : cases) {
        TExportRig rig(TExportRig::Channels(3));
        for (std::size_t i = c.Channels; i < 3; ++i)
            rig.Page.graph.Channels[i].SetVisible(false);
        rig.Log(c.Rows);
        EXPECT_EQ(rig.Save(), c.Lines) << c.Rows << " rows of " << c.Channels;
    }
    constexpr std::size_t many = 70'000; // more than a mebibyte
    TExportRig rig(TExportRig::Channels(1));
    rig.Log(many);
    const auto lines = rig.Save();
    ASSERT_EQ(lines.size(), many);
    for (std::size_t row = 0; row + 2 < many; ++row)
        ASSERT_EQ(lines[row + 2], "08:00:0" + std::to_string(row % 10) + ';' + std::to_string(row) + ",00");
}

TEST(CsvExport, TellsEveryFailureInTheSameWords) {
    struct {
        const char* What;
        std::function<void(TExportRig&)> Spoil;
    } const cases[] = {
        {"no log", [](TExportRig& rig) { rig.Page.ClearGraphPage(); }},
        {"rows without a time", [](TExportRig& rig) { rig.Page.GraphDataLabelsTimeText.Truncate(4); }},
        {"a full disk", [](TExportRig& rig) { rig.Files.Room = 40; }},
        // A profile that could not be opened to its end leaves curves without samples.
        {"other channels", [](TExportRig& rig) { rig.Page.graph.Channels.Add(); }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.What);
        TExportRig rig(TExportRig::Channels(1));
        rig.Log(5);
        c.Spoil(rig);
        rig.Export.Exportdatatocsv1Click();
        EXPECT_EQ(rig.Dialogs.Boxes, std::vector<std::string>{"No data in graph buffer"});
        EXPECT_EQ(rig.Files.Read(Target), "old");
        EXPECT_FALSE(rig.Dialogs.WaitCursor);
        EXPECT_EQ(rig.TDatalogRig::Log.Stopped, 1);
    }
}

} // namespace tidewell::test
