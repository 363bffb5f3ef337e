#include "logging/DatalogReader.h"

#include "logging/DatalogLines.h"
#include "logging/DatalogRig.h"
#include "support/Test.h"

namespace tidewell::test {
namespace {

// One row per number, or 3 for "3".
std::string Rows(std::string_view numbers, const std::string& end = "\r\n") {
    std::string text;
    for (const char number : numbers)
        text += std::string(1, number) + ";02-03-2026;08:00:00;9;" + number + ";" + end;
    return text;
}

const std::string Header = ";[HeaderStart]30;3;100;2;List;a.pls[HeaderEnd]\r\n";

class TReaderRig : public TDatalogRig {
  public:
    TReaderRig() : TDatalogRig("[GraphPoints]\r\nA=Temp;1;clBlue;4;0;0;150;;;;;;1;\r\n") {}
    // The samples shown, or what was told; then the bar, if it stays.
    std::string Open(const std::vector<std::string>& contents) {
        Choose(contents);
        std::string outcome;
        try {
            Reader.OpenDatalogfile1Click();
        } catch (const TError& error) {
            outcome = (Dialogs.Boxes == std::vector<std::string>{NoDatalogMessage} ? "no datalog " : "") +
                      std::string(error.what());
        }
        for (const double sample : Samples())
            outcome += std::to_string(static_cast<int>(sample)) + ' ';
        if (FileProgressBar.Visible())
            outcome += " bar at " + std::to_string(FileProgressBar.Position());
        return outcome;
    }
    TDatalogReader Reader{Needs};
};

} // namespace

TEST(DatalogReader, ShowsEveryRowButTheLastOrTellsWhatIsWrong) {
    const std::string index = "List index out of bounds ";
    const std::string none = "no datalog " + index + "(-2) bar at 10";
    const std::string longLine(std::size_t{3} << 20U, '7');
    const std::string binary("\0\x01\xFF;\x80;\0;\n\0\0\r", 12);
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases{
        // Malformed: an empty file, no header as its last line, or too few rows.
        {{""}, index + "(-1)"},
        {{"", Rows("12345") + Header}, index + "(-1)"},
        {{Header, ""}, index + "(-1)"},
        {{Header}, index + "(-2) bar at 10"},
        {{Rows("1") + Header}, index + "(-1) bar at 10"},
        {{Rows("123")}, none},
        {{Rows("123") + ";[HeaderSta"}, none},
        {{Rows("123") + Header + "\r\n"}, none},
        {{Rows("123") + ";[headerstart]"}, none},
        {{"\n\n\n"}, none},
        {{std::string("\x7F"
                      "ELF\0\0;[Header",
                      14)},
         none},
        // Where the header may stand, and what joins several files.
        {{Rows("12") + Header}, "1 "},
        {{Rows("123") + ";[HeaderStart]"}, "1 2 "},
        {{Rows("123") + "4;d;t;[HeaderStart]5;\n"}, "1 2 "},
        {{Rows("12") + Header + Rows("45") + Header}, "1 2 2 4 "},
        {{Rows("123") + Header, Rows("4567") + Header}, "1 2 3 4 5 6 "},
        {{Rows("123"), Rows("456") + Header}, "1 2 3 4 5 "},
        {{Rows("123") + Header, Rows("456")}, "1 2 3 4 5 "},
        {{Rows("123") + Header, ""}, "1 2 "},
        {{Rows("123") + Header, Header, Rows("45")}, "1 2 3 4 "},
        // Lines of all kinds.
        {{Rows("123", "\n") + Header}, "1 2 "},
        {{Rows("123", "\r") + Header}, "1 2 "},
        {{Rows("12", "\n") + Rows("34") + Rows("56", "\r") + Header}, "1 2 3 4 5 "},
        {{"\xEF\xBB\xBF" + Rows("123") + Header}, "1 2 "},
        {{"\r\n" + Rows("1") + "\r\n\r\n" + Rows("23") + Header}, "0 1 0 0 2 "},
        {{"1;d;t;9;\r\n2;d;t;9;2;3;4;5;\r\n3\r\n4;d;t;9;4\r\n" + Rows("5") + Header}, "0 2 0 4 "},
        {{Rows("1") + "2;d;t;9;2;" + longLine + "\r\n" + longLine + "\r\n" + Rows("45") + Header},
         "1 2 0 4 "},
        {{binary + "\r\n" + Rows("12") + Header}, "0 0 0 1 "},
    };
    for (const auto& [files, outcome] : cases) {
        SCOPED_TRACE(testing::PrintToString(files).substr(0, 400));
        TReaderRig rig;
        EXPECT_EQ(rig.Open(files), outcome);
        EXPECT_EQ(rig.Page.GraphDataLabelsTimeText.Count(), rig.Samples().size());
        EXPECT_EQ(rig.Page.GraphDataLabelsDateText.Count(), rig.Samples().size());
        EXPECT_EQ(rig.Page.DatalogFileOpen, !outcome.starts_with("no datalog"));
        EXPECT_EQ(rig.Log.Stopped, 1);
    }
    TReaderRig rig;
    rig.Profile.GraphPoints.at(0).Error = "a bad row";
    EXPECT_EQ(rig.Open({Rows("123") + Header}), "a bad row");
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
