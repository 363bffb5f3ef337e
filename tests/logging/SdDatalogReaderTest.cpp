#include "logging/SdDatalogReader.h"

#include "core/Errors.h"
#include "core/Numbers.h"
#include "logging/DatalogRig.h"

#include <gmock/gmock.h>

#include <functional>
#include <optional>

namespace tidewell::test {

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

constexpr const char* Question = "Stop the log?";
constexpr const char* NoSdCard = "SD Card file is not a valid datalog file";
// Columns 3 and 18; the type codes, one of which is none, play no part.
constexpr const char* TwoChannels = "[GraphPoints]\r\n"
                                    "A=First;1;clBlue;3;0;1;250;;;;;;1;\r\n"
                                    "B=Off;1;clBlue;4;0;1;x;;;;;;0;\r\n"
                                    "C=Last;1;clRed;18;-5;0;x;;;;;;1;\r\n";

// The lines of a file; the row's number is the low byte of the first field.
std::vector<std::string> Lines(const std::string& stamp = "2024;3;1;0;10;1;2;3;4;5") {
    std::vector<std::string> lines;
    for (int row = 0; row < 360; ++row) {
        std::string line = "001" + std::to_string(row) + ";";
        for (int column = 1; column < 15; ++column)
            line += "000000;";
        lines.push_back(line + "255255;");
    }
    lines.push_back(stamp);
    lines.emplace_back("QX410_SD_datalog_by_Korvanium_A/S");
    return lines;
}

std::string Text(const std::vector<std::string>& lines, const char* end = "\r\n") {
    std::string text;
    for (const std::string& line : lines)
        text += line + end;
    return text;
}

class TSdRig : public TDatalogRig {
  public:
    explicit TSdRig(const std::string& profile = TwoChannels) : TDatalogRig(profile) {
        Reader.MessageStopLog = Question;
        Reader.DialogOpenProfileCaption = "Profile";
        Reader.DialogOpenDatalogFileCaption = "Datalog";
        Files.Put("/t/profile/card.SDpls", profile);
    }
    void OpenFiles(const std::vector<std::string>& contents) {
        std::vector<std::filesystem::path> paths;
        for (const std::string& content : contents) {
            paths.push_back("/t/" + std::to_string(paths.size()) + ".DAL");
            Files.Put(paths.back(), content);
        }
        Dialogs.ExpectMessage(Question);
        Dialogs.ExpectOpenFile("Profile", "/t/profile/card.SDpls");
        Dialogs.ExpectOpenFiles("Datalog", paths);
        for (const std::string& text : Messages)
            Dialogs.ExpectMessage(text, Answer);
        Reader.Open_sd_datalogClick();
    }
    // "text@X" of the labels that the reader has added behind those of the page.
    std::vector<std::string> Labels() {
        std::vector<std::string> labels;
        for (std::size_t i = 12; i < Page.graph.Labels.Count(); ++i) {
            const TSLScopeTextLabel& label = Page.graph.Labels[i];
            EXPECT_EQ(label.YAxisIndex(), 2);
            EXPECT_EQ(label.Position().Y, 0.05);
            labels.push_back(label.Name() + '@' + std::to_string(static_cast<int>(label.Position().X)));
        }
        return labels;
    }
    std::vector<std::string> Messages; // behind the dialogs
    EModalResult Answer = EModalResult::Ok;
    TSdDatalogReader Reader{Parts};
};

} // namespace

TEST(SdDatalogReader, DrawsTheMinutesBeforeTheStamp) {
    TSdRig rig;
    rig.OpenFiles({Text(Lines())});
    EXPECT_EQ(rig.Page.CurrentLogStartDate, "29-2-2024");
    EXPECT_THAT(rig.Labels(), ElementsAre("18:11:00@1", "19:51:00@101", "21:31:00@201", "23:11:00@301"));
    const auto first = rig.Drawn(0);
    ASSERT_EQ(first.size(), 360U);
    EXPECT_EQ(first[0], 25.6);
    EXPECT_EQ(first[44], 30);
    EXPECT_EQ(first[359], 61.5); // bytes are not masked
    EXPECT_EQ(rig.Drawn(1), std::vector<double>(360, 65530));
    EXPECT_EQ(rig.Page.graph.Channels[0].Data.Points()[359].X, 359);
    EXPECT_EQ(rig.Page.graph.XAxis.Max.Value(), 1000);

    // The page itself holds none of it, and no profile is open any more.
    EXPECT_EQ(rig.Page.GraphSampleCount() + rig.Page.GraphDataLabelsTimeText.Count(), 0U);
    EXPECT_FALSE(rig.Page.GraphScroll.Enabled());
    EXPECT_TRUE(rig.Page.DatalogFileOpen);
    EXPECT_FALSE(rig.Profile.ProfileLoaded);
    EXPECT_FALSE(rig.FileProgressBar.Visible());
    EXPECT_EQ(rig.Profile.currentprofilefile, "/t/profile/card.SDpls");
    EXPECT_EQ(rig.MemoEventLog.Lines().back(), "/t/0.DAL");
    EXPECT_EQ(rig.Stopped, 2);
    EXPECT_EQ(rig.Dialogs.Shown[0].Kind, EMessageKind::Information);
    EXPECT_EQ(rig.Dialogs.Shown[0].Buttons, EButtons::OkCancel);
    EXPECT_EQ(rig.Dialogs.LastFileDialog.InitialDirectory, "/t");
    EXPECT_EQ(rig.Dialogs.LastFileDialog.Filters.at(rig.Dialogs.LastFileDialog.SelectedFilter).Mask, "*.DAL");
}

TEST(SdDatalogReader, StandsFilesOfManyKinds) {
    struct TCase {
        const char* What;
        std::function<std::string()> File;
        std::string Outcome; // start of the error, the message box, or first value drawn in row 0 and 1
    };
    const auto with = [](std::size_t line, const std::string& text) {
        return [line, text] {
            auto lines = Lines();
            lines.at(line) = text;
            return Text(lines);
        };
    };
    const std::string zeros = "0;0;0;0;0;0;0;0;0;0;0;0;0;0;0;0";
    const std::string refused = "List index out of bounds (-1)";
    const std::vector<TCase> cases{
        {"LF", [] { return Text(Lines(), "\n"); }, "25.6"},
        {"no end", [] { return Text(Lines()).substr(0, Text(Lines()).size() - 2); }, "25.6"},
        {"the other magic", with(361, "SD_datalog_by_Korvanium_A/S"), "25.6"},
        {"more lines", [] { return Text(Lines()) + "1;2;3\r\n" + std::string(5000, 'x'); }, "25.6"},
        {"byte-order mark", [] { return "\xEF\xBB\xBF" + Text(Lines()); }, "25.6"},
        {"one field for all", with(0, "002000"), "51.2"},
        {"leading blanks", with(0, "  1  1;" + Lines()[0]), "25.7"},
        {"unmasked", with(0, "999999;" + Lines()[0]), "25674.3"},
        {"empty", [] { return std::string(); }, refused},
        {"binary", [] { return std::string("\0\xFF\x80\0", 4); }, refused},
        {"another magic", with(361, "sd_datalog_by_Korvanium_A/S"), refused},
        {"a blank behind the magic", with(361, "SD_datalog_by_Korvanium_A/S "), refused},
        {"magic on line 361",
         [] {
             auto lines = Lines();
             lines.erase(lines.begin());
             return Text(lines);
         },
         refused},
        {"cut", [] { return Text(Lines()).substr(0, 9000); }, refused},
        {"a word in the stamp", with(360, "2024;March;1;0;10"),
         "/t/0.DAL, line 361: 'March' is not a valid integer"},
        {"a short stamp", with(360, "2024;3;1;0"), "/t/0.DAL, line 361: '' is not a valid integer"},
        {"no leap year", with(360, "2023;2;29;0;10"),
         "/t/0.DAL, line 361: '2023;2;29;0;10' is not a valid date"},
        {"month 13", with(360, "2023;13;1;0;10"), "/t/0.DAL, line 361: '2023;13;1;0;10' is not a valid date"},
        {"day 257", with(360, "2023;1;257;0;10"),
         "/t/0.DAL, line 361: '2023;1;257;0;10' is not a valid date"},
        {"hour 24", with(360, "2023;1;1;24;0"), "/t/0.DAL, line 361: '2023;1;1;24;0' is not a valid date"},
        {"minute -1", with(360, "2023;1;1;0;-1"), "/t/0.DAL, line 361: '2023;1;1;0;-1' is not a valid date"},
        {"year 99999", with(360, "99999;1;1;0;0"), "/t/0.DAL, line 361: '99999;1;1;0;0' is not a valid date"},
        {"no number", with(7, "00x000;" + Lines()[7]), "/t/0.DAL, line 8: '00x' is not a valid integer"},
        {"no low byte", with(7, "001;" + Lines()[7]), "/t/0.DAL, line 8: '' is not a valid integer"},
        {"an empty field", with(359, ";" + Lines()[7]), "/t/0.DAL, line 360: '' is not a valid integer"},
        {"an empty line", with(3, ""), "/t/0.DAL, line 4: '' is not a valid integer"},
        {"a short line", with(3, "001000;001000;"), "/t/0.DAL, line 4: '' is not a valid integer"},
    };
    for (const auto& sample : cases) {
        SCOPED_TRACE(sample.What);
        TSdRig rig;
        if (sample.Outcome == refused)
            rig.Messages = {NoSdCard};
        std::string outcome;
        try {
            rig.OpenFiles({sample.File()});
            ASSERT_EQ(rig.Drawn(0).size(), 360U);
            outcome = FixedText(rig.Drawn(0)[0], 1);
            EXPECT_EQ(rig.Drawn(0)[1], 25.7);
        } catch (const TError& error) {
            outcome = error.what();
            EXPECT_TRUE(rig.Drawn(0).empty());
            EXPECT_FALSE(rig.FileProgressBar.Visible());
        }
        EXPECT_THAT(outcome, testing::StartsWith(sample.Outcome));
    }
    TSdRig rig;
    rig.Dialogs.ExpectMessage(Question);
    rig.Dialogs.ExpectOpenFile("Profile", "/t/profile/card.SDpls");
    rig.Dialogs.ExpectOpenFiles("Datalog", {"/t/none.DAL"});
    EXPECT_THROW(rig.Reader.Open_sd_datalogClick(), EInOutError);
}

TEST(SdDatalogReader, JoinsFilesAndCutsManyDown) {
    constexpr const char* Big = "Datalog size is big proceed with truncated size";
    struct TCase {
        std::vector<std::string> Files;
        std::vector<std::string> Messages;
        EModalResult Answer;
        std::size_t Rows;
        double Max;
        std::size_t Labels;
    };
    const std::string good = Text(Lines());
    const std::vector<TCase> cases{
        {{good, good}, {}, EModalResult::Ok, 720, 1000, 8},
        {{good, good, good}, {}, EModalResult::Ok, 1080, 2080, 3},
        {{good, "bad", good}, {NoSdCard}, EModalResult::Ok, 720, 1000, 8},
        {{good, "bad"}, {NoSdCard}, EModalResult::Ok, 360, 1000, 4},
        {std::vector<std::string>(28, good), {Big}, EModalResult::No, 10080, 11080, 21},
        {std::vector<std::string>(28, good), {Big}, EModalResult::Yes, 1008, 2008, 3},
        {std::vector<std::string>(27, good), {}, EModalResult::Ok, 9720, 10720, 20},
    };
    for (const auto& sample : cases) {
        TSdRig rig;
        rig.Messages = sample.Messages;
        rig.Answer = sample.Answer;
        rig.OpenFiles(sample.Files);
        EXPECT_EQ(rig.Drawn(0).size(), sample.Rows);
        EXPECT_EQ(rig.Drawn(0).back(), sample.Answer == EModalResult::Yes ? 60.6 : 61.5);
        EXPECT_EQ(rig.Page.graph.XAxis.Max.DataValue(), sample.Max);
        EXPECT_EQ(rig.Labels().size(), sample.Labels);
        EXPECT_TRUE(rig.Dialogs.AllAnswered());
    }
}

TEST(SdDatalogReader, EndsWhereTheUserOrTheProfileEndsIt) {
    struct TCase {
        const char* What;
        EModalResult Stop;
        std::optional<std::filesystem::path> Profile;
        bool DataAsked;
        bool Loaded; // a profile counts as open in the end
    };
    const std::vector<TCase> cases{
        {"not to be stopped", EModalResult::Cancel, std::nullopt, false, true},
        {"no profile", EModalResult::Ok, std::nullopt, false, false},
        {"no data", EModalResult::Ok, "/t/profile/card.SDpls", true, false},
    };
    for (const auto& sample : cases) {
        SCOPED_TRACE(sample.What);
        TSdRig rig("[GraphPoints]\r\nA=First;1;clBlue;3;0;1;250;;;;;;1;\r\n");
        rig.Page.AddGraphSample("0;d;t;1;", 0);
        rig.Dialogs.ExpectMessage(Question, sample.Stop);
        if (sample.Stop == EModalResult::Ok)
            rig.Dialogs.ExpectOpenFile("Profile", sample.Profile);
        if (sample.DataAsked)
            rig.Dialogs.ExpectOpenFiles("Datalog", {});
        rig.Reader.Open_sd_datalogClick();
        EXPECT_EQ(rig.Profile.ProfileLoaded, sample.Loaded);
        EXPECT_EQ(rig.Page.GraphSampleCount(), sample.Stop == EModalResult::Ok ? 0U : 1U);
        EXPECT_TRUE(rig.Dialogs.AllAnswered());
    }
    for (const char* profile : {"[NabtoSection]\r\n", "[GraphPoints]\r\nA=Bad;1;clRed;x;0;0;0;;;;;;1;\r\n"}) {
        TSdRig rig(profile);
        try {
            rig.OpenFiles({Text(Lines())});
            FAIL() << profile;
        } catch (const TError& error) {
            EXPECT_THAT(
                error.what(),
                testing::AnyOf(HasSubstr("card.SDpls: no row of [GraphPoints] is a channel"),
                               HasSubstr("'x' is not a valid integer value (field 3 of row \"Bad\")")));
        }
    }
}

} // namespace tidewell::test
