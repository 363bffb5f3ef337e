#include "logging/SdDatalogReader.h"

#include "core/Errors.h"
#include "core/Numbers.h"
#include "logging/DatalogRig.h"

#include <gmock/gmock.h>

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
        Reader.OnOpenProfile = [this](const std::filesystem::path& path) { Profile.Open(path); };
        Reader.TakeTexts(
            TIniFile(std::string("[HeadAppl]\nMessageStopLog=") + Question +
                     "\nDialogOpenProfileCaption=Profile\nDialogOpenDatalogFileCaption=Datalog\n"));
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
    TSdDatalogReader Reader{Needs};
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
    EXPECT_EQ(rig.Log.Stopped, 2);
    EXPECT_EQ(rig.Dialogs.Shown[0].Kind, EMessageKind::Information);
    EXPECT_EQ(rig.Dialogs.Shown[0].Buttons, EButtons::OkCancel);
    EXPECT_EQ(rig.Dialogs.LastFileDialog.InitialDirectory, "/t");
    EXPECT_EQ(rig.Dialogs.LastFileDialog.Filters.at(rig.Dialogs.LastFileDialog.SelectedFilter).Mask, "*.DAL");
}

TEST(SdDatalogReader, StandsFilesOfManyKinds) {
    struct TCase {
        std::string File;
        std::string Outcome; // the first value drawn, or the start of the error
    };
    const auto with = [](std::size_t line, const std::string& text) {
        auto lines = Lines();
        lines.at(line - 1) = text;
        return Text(lines);
    };
    const auto error = [](int line, const std::string& text, const char* kind) {
        return "/t/0.DAL, line " + std::to_string(line) + ": '" + text + "' is not a valid " + kind;
    };
    const std::string good = Text(Lines());
    const std::string row = Lines()[0];
    const std::string refused = "List index out of bounds (-1)";
    std::vector<TCase> cases{
        {Text(Lines(), "\n"), "25.6"},
        {good.substr(0, good.size() - 2), "25.6"},
        {good + "1;2;3\r\n" + std::string(5000, 'x'), "25.6"},
        {"\xEF\xBB\xBF" + good, "25.6"},
        {with(362, "SD_datalog_by_Korvanium_A/S"), "25.6"},
        {with(1, "002000"), "51.2"}, // stands for all that are missing
        {with(1, "  1  1;" + row), "25.7"},
        {with(1, "999999;" + row), "25674.3"},
        {"", refused},
        {std::string("\0\xFF\x80\0", 4), refused},
        {good.substr(row.size() + 2), refused}, // magic on line 361
        {good.substr(0, 9000), refused},
        {with(362, "sd_datalog_by_Korvanium_A/S"), refused},
        {with(362, "SD_datalog_by_Korvanium_A/S "), refused},
        {with(361, "2024;March;1;0;10"), error(361, "March", "integer")},
        {with(361, "2024;3;1;0"), error(361, "", "integer")},
        {with(8, "00x000;" + row), error(8, "00x", "integer")},
        {with(8, "001;" + row), error(8, "", "integer")},
        {with(360, ";" + row), error(360, "", "integer")},
        {with(4, ""), error(4, "", "integer")},
        {with(4, "001000;001000;"), error(4, "", "integer")},
    };
    for (const char* const stamp : {"2023;2;29;0;10", "2023;13;1;0;10", "2023;1;257;0;10", "2023;1;1;24;0",
                                    "2023;1;1;0;-1", "99999;1;1;0;0", "0;1;1;0;0"})
        cases.push_back({with(361, stamp), error(361, stamp, "date and time")});
    for (const auto& sample : cases) {
        TSdRig rig;
        if (sample.Outcome == refused)
            rig.Messages = {NoSdCard};
        std::string outcome;
        try {
            rig.OpenFiles({sample.File});
            ASSERT_EQ(rig.Drawn(0).size(), 360U);
            outcome = FixedText(rig.Drawn(0)[0], 1);
            EXPECT_EQ(rig.Drawn(0)[1], 25.7);
        } catch (const TError& failure) {
            outcome = failure.what();
            EXPECT_TRUE(rig.Drawn(0).empty());
            EXPECT_FALSE(rig.FileProgressBar.Visible());
            EXPECT_EQ(rig.MemoEventLog.Lines().back(),
                      "SD-card datalog refused: " + (sample.Outcome == refused ? "/t/0.DAL" : outcome));
        }
        EXPECT_THAT(outcome, testing::StartsWith(sample.Outcome));
    }
    TSdRig rig;
    rig.Dialogs.ExpectMessage(Question);
    rig.Dialogs.ExpectOpenFile("Profile", "/t/profile/card.SDpls");
    rig.Dialogs.ExpectOpenFiles("Datalog", {"/t/none.DAL"});
    EXPECT_THROW(rig.Reader.Open_sd_datalogClick(), EInOutError);
    EXPECT_THAT(rig.MemoEventLog.Lines().back(), testing::HasSubstr("refused: Cannot read /t/none.DAL"));
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
