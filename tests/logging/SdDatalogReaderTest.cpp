#include "logging/SdDatalogReader.h"

#include "logging/DatalogRig.h"
#include "support/Test.h"

namespace tidewell::test {
namespace {

using testing::ElementsAre;

// Columns 3 and 18; the type codes, one of which is none, play no part.
constexpr const char* TwoChannels = "[GraphPoints]\r\n"
                                    "A=First;1;clBlue;3;0;1;250;;;;;;1;\r\n"
                                    "B=Off;1;clBlue;4;0;1;x;;;;;;0;\r\n"
                                    "C=Last;1;clRed;18;-5;0;x;;;;;;1;\r\n";

// A row whose number is the low byte of its first field.
std::string Row(int number) {
    std::string row = "001" + std::to_string(number) + ";";
    for (int column = 1; column < 15; ++column)
        row += "000000;";
    return row + "255255;";
}

// A file, with another text on one of its lines, counted from 1.
std::string File(int changed = 0, const std::string& text = {}, const char* end = "\r\n") {
    std::string file;
    for (int line = 1; line <= 362; ++line) {
        if (line == changed)
            file += text;
        else if (line <= 360)
            file += Row(line - 1);
        else
            file += line == 361 ? "2024;3;1;0;10;1;2;3;4;5" : "QX410_SD_datalog_by_Korvanium_A/S";
        file += end;
    }
    return file;
}

class TSdRig : public TDatalogRig {
  public:
    explicit TSdRig(const std::string& profile = TwoChannels) : TDatalogRig(profile) {
        Reader.OnOpenProfile = [this](const std::filesystem::path& path) { Profile.Open(path); };
        Dialogs.Opened = "/t/profile/card.SDpls";
        Files.Put(*Dialogs.Opened, profile);
    }
    // What is told at last: that of the error, or of the box before it.
    std::string Open(const std::vector<std::string>& contents) {
        Choose(contents);
        std::string outcome;
        try {
            Reader.Open_sd_datalogClick();
            EXPECT_EQ(Page.CurrentLogStartDate, "29-2-2024");
        } catch (const TError& failure) {
            outcome = failure.what();
        }
        EXPECT_FALSE(FileProgressBar.Visible());
        return Dialogs.Boxes.size() > 1 ? Dialogs.Boxes.back().substr(0, 12) : outcome;
    }
    // "text@X" of the labels that the reader has added behind those of the page.
    std::vector<std::string> Labels() {
        std::vector<std::string> labels;
        for (std::size_t i = 12; i < Page.graph.Labels.Count(); ++i) {
            const TSLScopeTextLabel& label = Page.graph.Labels[i];
            EXPECT_TRUE(label.YAxisIndex() == 2 && label.Position().Y == 0.05);
            labels.push_back(label.Name() + '@' + std::to_string(static_cast<int>(label.Position().X)));
        }
        return labels;
    }
    TSdDatalogReader Reader{Needs};
};

} // namespace

TEST(SdDatalogReader, TellsWhatIsWrongWithAFileAndItsProfile) {
    const std::string good = File();
    const std::string none = "SD Card file";
    const auto error = [](int line, const std::string& text, const std::string& kind = "integer value") {
        return "/t/0.log, line " + std::to_string(line) + ": '" + text + "' is not a valid " + kind;
    };
    std::vector<std::pair<std::string, std::string>> cases{
        {"", none},
        {std::string("\0\xFF\x80\0", 4), none},
        {good.substr(good.find('\n') + 1), none}, // magic on line 361
        {good.substr(0, 9000), none},
        {File(362, "SD_datalog_by_Korvanium_A/S "), none},
        {File(361, "2024;March;1;0;10"), error(361, "March")},
        {File(361, "2024;3;1;0"), error(361, "")},
        {File(8, "00x000;" + Row(7)), error(8, "00x")},
        {File(360, ";" + Row(359)), error(360, "")},
        {File(4, "001000;001000;"), error(4, "")},
    };
    for (const char* const stamp : {"2023;2;29;0;10", "2023;0;1;0;0", "2023;13;1;0;10", "2023;1;0;0;0",
                                    "2023;1;32;0;0", "2023;1;257;0;10", "2023;1;1;24;0", "2023;1;1;-1;0",
                                    "2023;1;1;0;-1", "2023;1;1;0;60", "10000;1;1;0;0", "0;1;1;0;0"})
        cases.emplace_back(File(361, stamp), error(361, stamp, "date and time"));
    for (const auto& [file, outcome] : cases) {
        TSdRig rig;
        EXPECT_EQ(rig.Open({file}), outcome);
        EXPECT_TRUE(rig.Drawn().empty());
        EXPECT_EQ(rig.MemoEventLog.Lines().back(),
                  "SD-card datalog refused: " + (outcome == none ? "/t/0.log" : outcome));
    }
    const std::string bad = "'x' is not a valid integer value (field 3 of row \"Bad\")";
    for (const auto& [profile, outcome] : std::vector<std::pair<std::string, std::string>>{
             {"[NabtoSection]\r\n", "/t/profile/card.SDpls: no row of [GraphPoints] is a channel"},
             {"[GraphPoints]\r\nA=Bad;1;clRed;x;0;0;0;;;;;;1;\r\n", bad}})
        EXPECT_EQ(TSdRig(profile).Open({good}), outcome);
}

TEST(SdDatalogReader, ReadsValuesAndStampsOfManyForms) {
    const std::string good = File();
    // The first value drawn, and the first label; the stamp is that of the last row.
    for (const auto& [file, value, label] : std::vector<std::tuple<std::string, std::string, std::string>>{
             {File(0, {}, "\n"), "25.6", "18:11:00"},
             {good.substr(0, good.size() - 2), "25.6", "18:11:00"},
             {good + "1;2;3\r\n" + std::string(5000, 'x'), "25.6", "18:11:00"},
             {"\xEF\xBB\xBF" + good, "25.6", "18:11:00"},
             {File(362, "SD_datalog_by_Korvanium_A/S"), "25.6", "18:11:00"},
             {File(1, "002000"), "51.2", "18:11:00"}, // stands for all that are missing
             {File(1, "  1  1;" + Row(0)), "25.7", "18:11:00"},
             {File(1, "999999;" + Row(0)), "25674.3", "18:11:00"},
             {File(361, "2024;3;1;0;0"), "25.6", "18:01:00"},
             {File(361, "2024;2;29;23;59"), "25.6", "18:00:00"}}) {
        TSdRig rig;
        EXPECT_EQ(rig.Open({file}), "");
        const auto drawn = rig.Drawn();
        ASSERT_EQ(drawn.size(), 360U);
        EXPECT_EQ(FixedText(drawn[0], 1), value);
        EXPECT_EQ(drawn[1], 25.7);
        EXPECT_EQ(drawn[359], 61.5); // bytes are not masked
        EXPECT_EQ(rig.Labels().at(0), label + "@1");
    }
    TSdRig rig;
    rig.Open({good});
    EXPECT_THAT(rig.Labels(), ElementsAre("18:11:00@1", "19:51:00@101", "21:31:00@201", "23:11:00@301"));
    EXPECT_EQ(rig.Drawn(1), std::vector<double>(360, 65530));
    EXPECT_EQ(rig.Page.graph.Channels[0].Data.Points()[359].X, 359);
    EXPECT_EQ(rig.Page.GraphSampleCount(), 0U); // the page itself holds none of it
    EXPECT_TRUE(rig.Page.DatalogFileOpen && !rig.Profile.ProfileLoaded);
    EXPECT_EQ(rig.Log.Stopped, 2);
}

TEST(SdDatalogReader, JoinsFilesAndCutsManyDown) {
    const std::string good = File();
    struct {
        std::vector<std::string> Files;
        int Jump;
        EModalResult Truncate;
        std::string Told;
        std::size_t Rows;
        double Last, Max;
        std::size_t Labels;
    } const cases[] = {
        {{good, good}, 721, EModalResult::Yes, "", 720, 61.5, 721, 8},
        {{good, good}, 720, EModalResult::Yes, "", 720, 61.5, 1440, 2},
        {{good, "bad", good}, 1000, EModalResult::Yes, "SD Card file", 720, 61.5, 1000, 8},
        {{good, "bad"}, 1000, EModalResult::Yes, "SD Card file", 360, 61.5, 1000, 4},
        {std::vector(27, good), 1000, EModalResult::Yes, "", 9720, 61.5, 10720, 20},
        {std::vector(28, good), 1000, EModalResult::Yes, "Datalog size", 1008, 60.6, 2008, 3},
        {std::vector(28, good), 1000, EModalResult::No, "Datalog size", 10080, 61.5, 11080, 21},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.Files.size()) + " files, jump " + std::to_string(c.Jump));
        TSdRig rig;
        rig.Page.XAxisJump = c.Jump;
        rig.Dialogs.YesOrNo = c.Truncate;
        EXPECT_EQ(rig.Open(c.Files), c.Told);
        EXPECT_EQ(rig.Drawn().size(), c.Rows);
        EXPECT_EQ(rig.Drawn().back(), c.Last);
        EXPECT_EQ(rig.Page.graph.XAxis.Max.DataValue(), c.Max);
        EXPECT_EQ(rig.Labels().size(), c.Labels);
    }
}

} // namespace tidewell::test
