#include "logging/DatalogReader.h"

#include "core/Errors.h"
#include "core/TextFile.h"
#include "logging/DatalogLines.h"
#include "logging/DatalogRig.h"

#include <gmock/gmock.h>

#include <numeric>

namespace tidewell::test {

using testing::ElementsAre;

namespace {

constexpr const char* Header = ";[HeaderStart]30;3;100;2;List;a.pls[HeaderEnd]\r\n";
constexpr const char* OneChannel = "[GraphPoints]\r\nA=Temp;1;clBlue;4;0;0;150;;;;;;1;\r\n";

std::string Rows(int first, int last, const std::string& end = "\r\n") {
    std::string text;
    for (int row = first; row <= last; ++row)
        text += std::to_string(row) + ";02-03-2026;08:00:00;9;" + std::to_string(row) + ";" + end;
    return text;
}

class TReaderRig : public TDatalogRig {
  public:
    TReaderRig() : TDatalogRig(OneChannel) {
        Reader.TakeTexts(TIniFile("[HeadAppl]\nDialogOpenDatalogFileCaption=Open it\n"));
    }
    void OpenFiles(const std::vector<std::string>& contents) {
        std::vector<std::filesystem::path> paths;
        for (const std::string& content : contents) {
            paths.push_back("/t/log/userlog/" + std::to_string(paths.size()) + ".csv");
            Files.Put(paths.back(), content);
        }
        Dialogs.ExpectOpenFiles("Open it", paths);
        Reader.OpenDatalogfile1Click();
    }
    TDatalogReader Reader{Needs};
};

} // namespace

TEST(DatalogReader, ShowsEveryRowButTheLast) {
    struct TCase {
        const char* What;
        std::vector<std::string> Files;
        std::vector<double> Samples;
    };
    const auto range = [](int first, int last) {
        std::vector<double> values(static_cast<std::size_t>(last - first + 1));
        std::iota(values.begin(), values.end(), first);
        return values;
    };
    const std::string longLine(std::size_t{3} << 20U, '7');
    std::string binary("\0\x01\xFF;\x80;\0;\n\0\0\r", 12);
    const std::vector<TCase> cases{
        {"101 rows", {Rows(1, 101) + Header}, range(1, 100)},
        {"two files", {Rows(1, 10) + Header, Rows(11, 20) + Header}, range(1, 19)},
        {"the first without header", {Rows(1, 3), Rows(4, 6) + Header}, range(1, 5)},
        {"the second without header", {Rows(1, 3) + Header, Rows(4, 6)}, range(1, 5)},
        {"the second empty", {Rows(1, 3) + Header, ""}, range(1, 2)},
        {"the second its header only", {Rows(1, 3) + Header, Header}, range(1, 2)},
        {"LF", {Rows(1, 5, "\n") + Header}, range(1, 4)},
        {"CR", {Rows(1, 5, "\r") + Header}, range(1, 4)},
        {"mixed ends", {Rows(1, 2, "\n") + Rows(3, 4, "\r\n") + Rows(5, 6, "\r") + Header}, range(1, 5)},
        {"no end behind the header", {Rows(1, 3) + ";[HeaderStart]"}, range(1, 2)},
        {"the mark inside the line", {Rows(1, 3) + "4;d;t;[HeaderStart]5;\n"}, range(1, 2)},
        {"a mark in the middle", {Rows(1, 2) + Header + Rows(4, 5) + Header}, {1, 2, 2, 4}},
        {"byte-order mark", {"\xEF\xBB\xBF" + Rows(1, 3) + Header}, range(1, 2)},
        {"blank lines", {"\r\n" + Rows(1, 1) + "\r\n\r\n" + Rows(2, 3) + Header}, {0, 1, 0, 0, 2}},
        {"other columns",
         {"1;d;t;9;\r\n2;d;t;9;2;3;4;5;\r\n3\r\n4;d;t;9;4" + ("\r\n" + Rows(5, 5)) + Header},
         {0, 2, 0, 4}},
        {"no numbers",
         {"1;d;t;9;x;\r\n2;d;t;9;1.5;\r\n3;d;t;9;\xE6;\r\n4;d;t;9;99999999999;\r\n-;;;;-5;\r\n" + Rows(6, 6) +
          Header},
         {0, 0, 0, 0, -5}},
        {"a very long line",
         {Rows(1, 1) + "2;d;t;9;2;" + longLine + "\r\n" + longLine + "\r\n" + Rows(4, 5) + Header},
         {1, 2, 0, 4}},
        {"binary rows", {binary + "\r\n" + Rows(1, 2) + Header}, {0, 0, 0, 1}},
    };
    for (const auto& sample : cases) {
        SCOPED_TRACE(sample.What);
        TReaderRig rig;
        rig.OpenFiles(sample.Files);
        EXPECT_EQ(rig.Samples(0), sample.Samples);
        EXPECT_EQ(rig.Page.GraphDataLabelsTimeText.Count(), sample.Samples.size());
        EXPECT_EQ(rig.Page.GraphDataLabelsDateText.Count(), sample.Samples.size());
        EXPECT_TRUE(rig.Page.DatalogFileOpen);
        EXPECT_FALSE(rig.FileProgressBar.Visible());
        EXPECT_TRUE(rig.Profile.ProfileLoaded);
    }
}

TEST(DatalogReader, TellsWhatIsNoDatalog) {
    struct TCase {
        const char* What;
        std::vector<std::string> Files;
        bool Message;
        int Index; // that is out of bounds
        int Bar = 10;
    };
    const std::vector<TCase> cases{
        {"empty", {""}, false, -1, 0},
        {"the first of two empty", {"", Rows(1, 5) + Header}, false, -1, 0},
        {"an empty one behind a header", {Header, ""}, false, -1, 0},
        {"header only", {Header}, false, -2},
        {"one row", {Rows(1, 1) + Header}, false, -1},
        {"no header", {Rows(1, 9)}, true, -2},
        {"no header in two", {Rows(1, 9), Rows(1, 9)}, true, -2},
        {"cut in the middle of a line", {Rows(1, 9).substr(0, 150)}, true, -2},
        {"cut in the middle of the mark", {Rows(1, 9) + ";[HeaderSta"}, true, -2},
        {"a blank line behind the header", {Rows(1, 9) + Header + "\r\n"}, true, -2},
        {"another case", {Rows(1, 9) + ";[headerstart]"}, true, -2},
        {"line ends only", {"\n\n\n"}, true, -2},
        {"binary",
         {std::string("\x7F"
                      "ELF\0\0;[Header",
                      14)},
         true,
         -2},
    };
    for (const auto& sample : cases) {
        SCOPED_TRACE(sample.What);
        TReaderRig rig;
        try {
            if (sample.Message)
                rig.Dialogs.AllowMessage("File is not a valid datalog file");
            rig.OpenFiles(sample.Files);
            FAIL() << "no error";
        } catch (const EListError& error) {
            EXPECT_EQ(error.what(), "List index out of bounds (" + std::to_string(sample.Index) + ")");
        }
        EXPECT_EQ(rig.Dialogs.Shown.size(), sample.Message ? 2U : 1U);
        EXPECT_TRUE(rig.Samples(0).empty());
        EXPECT_EQ(rig.Page.GraphDataLabelsTimeText.Count(), 0U);
        EXPECT_EQ(rig.FileProgressBar.Position(), sample.Bar);
        EXPECT_EQ(rig.FileProgressBar.Visible(), sample.Bar != 0); // stays
        EXPECT_EQ(rig.Page.DatalogFileOpen, !sample.Message);
    }
    TReaderRig rig;
    rig.Dialogs.ExpectOpenFiles("Open it", {"/t/none.csv"});
    EXPECT_THROW(rig.Reader.OpenDatalogfile1Click(), EInOutError);
    rig.Profile.GraphPoints.at(0).Error = "a bad row";
    EXPECT_THROW(rig.OpenFiles({Rows(1, 9) + Header}), EConvertError);
    EXPECT_FALSE(rig.FileProgressBar.Visible());
}

TEST(DatalogReader, GoesStepByStep) {
    TReaderRig rig;
    rig.MemoEventLog.Clear();
    // While the program waits, the bar is shown and no row is.
    rig.Time.After(0, [&rig] {
        EXPECT_TRUE(rig.FileProgressBar.Visible());
        EXPECT_EQ(rig.FileProgressBar.Position(), 10);
        EXPECT_EQ(rig.Page.GraphSampleCount(), 0U);
        EXPECT_TRUE(rig.Page.DatalogFileOpen);
        EXPECT_EQ(rig.Log.Stopped, 1);
    });
    rig.OpenFiles({Rows(1, 3) + Header, Rows(4, 9) + Header});
    EXPECT_THAT(rig.MemoEventLog.Lines(),
                ElementsAre("Clear Graph execute", "/t/log/userlog/0.csv", "/t/log/userlog/1.csv"));
    EXPECT_EQ(rig.Time.Sleeps.at(0), 100);
    EXPECT_EQ(rig.FileProgressBar.Max(), 9);
    EXPECT_EQ(rig.Page.CurrentLogStartDate, "02-03-2026");
    EXPECT_EQ(rig.Page.DatalogLastLineSetpoint, "8;02-03-2026;08:00:00;9;8;");

    const TFileDialog& dialog = rig.Dialogs.LastFileDialog;
    EXPECT_EQ(dialog.InitialDirectory, "/t/log/userlog");
    EXPECT_EQ(dialog.Filters.at(dialog.SelectedFilter).Mask, " *.zls;*.csv");
    EXPECT_TRUE(dialog.FileMustExist);

    // Cancelled: all stays, and a bar that a failed opening has left goes.
    rig.FileProgressBar.SetVisible(true);
    rig.OpenFiles({});
    EXPECT_EQ(rig.Log.Stopped, 1);
    EXPECT_EQ(rig.Page.GraphSampleCount(), 8U);
    EXPECT_FALSE(rig.FileProgressBar.Visible());

    // The form is closed while it waits.
    rig.Time.After(0, [&rig] { rig.Program.Open = false; });
    rig.OpenFiles({Rows(1, 3) + Header});
    EXPECT_EQ(rig.Page.GraphSampleCount(), 0U);

    rig.Program.Open = true;
    rig.Profile.ProfileLoaded = false;
    rig.Reader.OpenDatalogfile1Click(); // shows nothing
}

TEST(DatalogReader, ReadsLinesWithAnyBlockSize) {
    const std::vector<std::string> texts{"",
                                         "a",
                                         "\n",
                                         "\r\n",
                                         "\r",
                                         "a\nb",
                                         "a\r\nb\r\n",
                                         "a\rb\r\r\nc",
                                         "\n\n\n",
                                         "\r\r\n\n\r",
                                         "abcdefgh\r\n",
                                         "abcd\nabcdefgh\n",
                                         "abcdefghijkl",
                                         "ab\r\n\r\ncd",
                                         "abc\r\ndefghijklmnop\r\nq\r\n"};
    for (const std::string& text : texts) {
        const std::vector<std::string> whole = SplitLines(text);
        for (std::size_t block = 1; block < 20; ++block) {
            TMemoryFiles files;
            files.Put("/f", text);
            TDatalogLineReader reader(files.Open("/f"), block, 6);
            std::vector<std::string> lines;
            for (std::string_view line; reader.Next(line);)
                lines.emplace_back(line);
            ASSERT_EQ(lines.size(), whole.size()) << text << " in blocks of " << block;
            for (std::size_t i = 0; i < lines.size(); ++i) {
                EXPECT_TRUE(whole[i].starts_with(lines[i])) << text << " in blocks of " << block;
                EXPECT_GE(lines[i].size(), std::min<std::size_t>(6, whole[i].size()))
                    << text << " in blocks of " << block;
            }
            std::string_view line;
            EXPECT_FALSE(reader.Next(line));
        }
    }
}

} // namespace tidewell::test
