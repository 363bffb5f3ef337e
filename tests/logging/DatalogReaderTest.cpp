#include "logging/DatalogReader.h"

#include "logging/DatalogLines.h"
#include "logging/DatalogRig.h"
#include "rig/Test.h"

// How lines end, and what rows hold, is told by tests/fuzz and tests/model.
namespace tidewell::test {
namespace {

// Files between "|", in which "3" is a row of that value and "#" the header; all else stands for itself. The
// samples shown, or what was told; then the bar, if it stays.
std::string Opened(std::string_view input) {
    TDatalogRig rig("[GraphPoints]\r\nA=Temp;1;clBlue;4;0;0;150;;;;;;1;\r\n");
    std::vector<std::string> files;
    for (const std::string_view piece : SplitStrictly(input, '|')) {
        std::string& file = files.emplace_back();
        for (const char c : piece)
            if (c == '#')
                file += ";[HeaderStart]30;3;100;2;List;a.pls[HeaderEnd]\r\n";
            else
                file += c >= '0' && c <= '9' ? std::string("1;d;t;9;") + c + ";\r\n" : std::string(1, c);
    }
    rig.Choose(files);
    std::string outcome;
    try {
        TDatalogReader(rig.Needs).OpenDatalogfile1Click();
    } catch (const TError& error) {
        outcome = error.what();
    }
    const bool refused = rig.Dialogs.Boxes == std::vector<std::string>{NoDatalogMessage};
    for (const double sample : rig.Samples())
        outcome += std::to_string(static_cast<int>(sample)) + ' ';
    EXPECT_EQ(rig.Page.GraphDataLabelsTimeText.Count(), rig.Samples().size());
    EXPECT_EQ(rig.Page.GraphDataLabelsDateText.Count(), rig.Samples().size());
    EXPECT_EQ(rig.Page.DatalogFileOpen, !refused);
    EXPECT_EQ(rig.Log.Stopped, 1);
    if (rig.FileProgressBar.Visible())
        outcome += " bar at " + std::to_string(rig.FileProgressBar.Position());
    return (refused ? "no datalog " : "") + outcome;
}

} // namespace

TEST(DatalogReader, ShowsEveryRowButTheLastOrTellsWhatIsWrong) {
    // An empty file, no header as its last line, or too few rows.
    ExpectRows(Opened, {"|12345# -> List index out of bounds (-1)", "#| -> List index out of bounds (-1)",
                        "# -> List index out of bounds (-2) bar at 10",
                        "1# -> List index out of bounds (-1) bar at 10",
                        "123 -> no datalog List index out of bounds (-2) bar at 10",
                        "123;[HeaderSta -> no datalog List index out of bounds (-2) bar at 10",
                        "123;[headerstart] -> no datalog List index out of bounds (-2) bar at 10",
                        "123#\r\n -> no datalog List index out of bounds (-2) bar at 10"});
    // Where the header may stand, and what joins several files.
    ExpectRows(Opened, {"12# -> 1 ", "123;[HeaderStart] -> 1 2 ", "123x;d;t;[HeaderStart]y;\n -> 1 2 ",
                        "12#45# -> 1 2 2 4 ", "123#|4567# -> 1 2 3 4 5 6 ", "123|456# -> 1 2 3 4 5 ",
                        "123#|456 -> 1 2 3 4 5 ", "123#| -> 1 2 ", "123#|#|45 -> 1 2 3 4 ",
                        "\xEF\xBB\xBF"
                        "123# -> 1 2 ",
                        "\r\n1\n\r\n23# -> 0 1 0 0 2 "});
}

// The headers are kept to their first kibibyte; behind the last row there is nothing.
TEST(DatalogReader, GivesRowsAndHeadersOfAllFiles) {
    TMemoryFiles files;
    files.Put("/a", "1\n;[HeaderStart]" + std::string(2000, 'h'));
    files.Put("/b", "");
    files.Put("/c", "2\r3\r\n");
    files.Put("/d", ";[HeaderStart]d");
    TDatalogLines lines(files, {"/a", "/b", "/c", "/d"});
    EXPECT_EQ(lines.Count(), 3U);
    EXPECT_THAT(lines.CurrentFileImportHeaders(),
                testing::ElementsAre(";[HeaderStart]" + std::string(1010, 'h'), ";[HeaderStart]d"));
    for (const char* const row : {"1", "2", "3", "", ""})
        EXPECT_EQ(lines.Next(), row);
    EXPECT_THROW(TDatalogLines(files, {"/none"}), EInOutError);
}

} // namespace tidewell::test
