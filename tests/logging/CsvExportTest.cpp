#include "logging/CsvExport.h"

#include "logging/DatalogRig.h"
#include "rig/Test.h"

// Where it goes and what a disk refuses is told in tests/journeys/log.txt.
namespace tidewell::test {
namespace {

constexpr const char* Target = "/t/log/exported/a.csv";

class TExportRig : public TDatalogRig {
  public:
    TExportRig(const std::string& graphRows, std::size_t rows)
        : TDatalogRig("[GraphPoints]\r\n" + graphRows) {
        Files.Put(Target, "old");
        Dialogs.Saved = Target;
        Page.CurrentLogStartDate = "02-03-2026";
        for (std::size_t row = 0; row < rows; ++row) {
            Page.GraphDataLabelsTimeText.Add("08:00:0" + std::to_string(row % 10));
            Page.AddGraphSample("0;d;t;" + std::to_string(row) + ";-" + std::to_string(row) + ";", row);
        }
    }
    // The lines saved, without their ends; fails the test for an end that is not CR LF.
    std::vector<std::string> Save() {
        TCsvExport(Needs).Exportdatatocsv1Click();
        EXPECT_FALSE(Dialogs.WaitCursor);
        const std::string bytes = Files.Read(Target);
        EXPECT_EQ(std::ranges::count(bytes, '\n'), std::ranges::count(bytes, '\r'));
        return SplitLines(bytes);
    }
};

} // namespace

TEST(CsvExport, SavesATableForASpreadsheet) {
    TExportRig rig("A=Temp;1;clBlue;3;0;1;150;;;;;;1;\r\n"
                   "B=Flags;1;clRed;4;0;0;100;a,b;;;;;1;\r\n"
                   "C=Hidden;1;clRed;3;0;0;150;;;;;;1;\r\n"
                   "D=\"A \"\"b\"\"; c\";1;clRed;4;0;-7;150;;;;;;1;\r\n"
                   "E=Last;1;clRed;3;-1;2;250;;;;;;1;\r\n",
                   100);
    rig.Page.graph.Channels[2].SetVisible(false);
    const auto lines = rig.Save();
    ASSERT_EQ(lines.size(), 100U);
    EXPECT_EQ(lines[0], "LogStartDate;02-03-2026;Profile;/t/profile/a.pls;");
    EXPECT_EQ(lines[1], "Time;Temp:[9.90];Flags:[11111111 10011101];\"A \"\"b\"\"; c:[-9.9E8]\";Last:[0.98]");
    EXPECT_EQ(lines[2], "08:00:00;0,00;0,00;0,00;-0,01");
    EXPECT_EQ(lines[3], "08:00:01;0,10;-1,00;-10000000,00;0,00");
    EXPECT_EQ(lines[99], "08:00:07;9,70;-97,00;-9,7E8;0,96");
}

TEST(CsvExport, SavesMoreThanAMebibyte) {
    const auto lines = TExportRig("K=C;1;clRed;3;0;0;150;;;;;;1;\r\n", 70'002).Save();
    ASSERT_EQ(lines.size(), 70'002U);
    for (std::size_t row = 0; row < 70'000; ++row)
        ASSERT_EQ(lines[row + 2], "08:00:0" + std::to_string(row % 10) + ';' + std::to_string(row) + ",00");
}

// Rows and channels shown; the lines between "/".
TEST(CsvExport, SmallTablesLackWhatHasNoCell) {
    ExpectRows(
        [](std::string_view input) {
            TExportRig rig("K=C0;1;;3;0;0;0;;;;;;1;\nK=C1;1;;3;0;0;0;;;;;;1;\nK=C2;1;;3;0;0;0;;;;;;1;\n",
                           static_cast<std::size_t>(input[0] - '0'));
            for (std::size_t i = static_cast<std::size_t>(input[2] - '0'); i < 3; ++i)
                rig.Page.graph.Channels[i].SetVisible(false);
            return Join(rig.Save(), "/");
        },
        {"1|1 -> LogStartDate;02-03-2026", "2|1 -> LogStartDate;02-03-2026/Time;C0:[1.00]",
         "3|0 -> LogStartDate/Time/08:00:00", "3|1 -> LogStartDate;02-03-2026/Time;C0:[2.00]/08:00:00;0,00",
         "3|2 -> LogStartDate;02-03-2026;Profile/Time;C0:[2.00];C1:[2.00]/08:00:00;0,00;0,00",
         "2|3 -> LogStartDate;02-03-2026;Profile;/t/profile/a.pls/Time;C0:[1.00];C1:[1.00];C2:[1.00]"});
}

TEST(CsvExport, TellsEveryFailureInTheSameWords) {
    for (const std::string what : {"no log", "rows without a time", "other channels"}) {
        TExportRig rig("K=C;1;clRed;3;0;0;150;;;;;;1;\r\n", 5);
        if (what == "no log")
            rig.Page.ClearGraphPage();
        else if (what == "rows without a time")
            rig.Page.GraphDataLabelsTimeText.Truncate(4);
        else // a profile that could not be opened to its end leaves curves without samples
            rig.Page.graph.Channels.Add();
        EXPECT_EQ(rig.Save(), std::vector<std::string>{"old"}) << what;
        EXPECT_EQ(rig.Dialogs.Boxes, std::vector<std::string>{"No data in graph buffer"}) << what;
    }
}

} // namespace tidewell::test
