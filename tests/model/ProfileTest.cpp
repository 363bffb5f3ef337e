#include "model/Profile.h"

#include "model/ColorText.h"
#include "rig/Test.h"

namespace tidewell::test {

namespace {

using testing::ElementsAre;

constexpr const char* profilePath = "/t/M3_english.pls";

class Profile : public testing::Test {
  protected:
    void Open(const std::string& bytes) {
        Files.Put(profilePath, bytes);
        Model.Open(profilePath);
    }
    const std::string& Bytes() const { return Files.Content.at(profilePath); }

    TMemoryFiles Files;
    TProfile Model{Files};
};

std::string GraphRow(const std::string& head, const std::string& enabled = "1") {
    return head + ";3;0;1;1;;;;;;" + enabled + ";";
}

} // namespace

TEST_F(Profile, OpensTheGraphSide) {
    Open("[GraphPoints]\nP1=" + GraphRow(" Air in ;1;clRed") + "\nP2=" + GraphRow("Bad;1;clRed;x", "0") +
         "\nP1=" + GraphRow("Again;2;clBlue", " 1 ") + "\n[VisibleGraph]\ngraph 0=True\ngraph 7=0\n");
    EXPECT_EQ(Model.GraphEnableCount, 2U);
    EXPECT_THAT(Model.FindGraphNameList, ElementsAre("Air in", "Bad", "Again"));
    EXPECT_TRUE(Model.VisibleGraph.ValueAt(1) == "0" && !Model.GraphPoints.at(1).Error.empty());
    Model.Open("/t/none.pls");
    EXPECT_EQ(Model.GraphEnableCount + Model.VisibleGraph.Count() + Model.GraphPoints.size(), 0U);
    EXPECT_TRUE(Model.GraphValues.empty() && Model.FindGraphNameList.empty() && !Model.HoldsNoProfile);
    EXPECT_NE(Model.ReadFailure, "");
    std::string profiles;
    for (const std::string section : {"GraphPoints", "nabtosection", "MyDevice2", "mydevice", "x"}) {
        Open("[" + section + "]\n");
        profiles += Model.HoldsNoProfile ? "" : section + " ";
    }
    EXPECT_EQ(profiles, "GraphPoints nabtosection MyDevice2 ");
}

TEST_F(Profile, ReadsTheSettings) {
    const auto read = [this](std::string_view rows) {
        Files.Put(profilePath, "[NabtoSection]\n" + std::string(rows));
        Model.ReadNabtoSection(rows == "no file" ? "" : profilePath);
        std::string text = Model.GetFlashLogProfilepath().string();
        for (const int value :
             {+Model.FlashPage.doFlashPage, +Model.DebugLog, +Model.NabtoErrorlogEnable,
              Model.FlashPage.DF_FDCountNum, Model.ErrorLogOffset, Model.DF_HPM_SNUM, Model.DF_HPM_SETPKTNUM})
            text += " " + std::to_string(value);
        return text;
    };
    ExpectRows(read, {"DebugLog=true\nErrorLogOffset=-3\n ->  0 1 0 0 -3 0 0", "no file ->  0 0 0 0 0 0 0"});
    Files.Put("/t/M3_english_Flash.pls", "");
    ExpectRows(read, {"Enabled=TRUE\nDebugLog=yes\nDF_FDCountNum=$10\nErrorLogOffset=many\n"
                      "NabtoErrorlogEnable=true\nDF_HPM_SNUM=4\nDF_HPM_SETPKTNUM=500\n -> "
                      "/t/M3_english_Flash.pls 1 0 1 16 0 4 500"});
}

// Windows-1252, odd spacing, comments, CR LF and LF mixed, no end at the last line.
TEST_F(Profile, WritesBackOnlyWhatChanged) {
    const std::string head = "; K\xFChler\r\n[GraphPoints]\r\nP0 = " + GraphRow("Z\xFCge;1;$000000FF") +
                             "\n; between\r\nP1=" + GraphRow("Off;1;clLime", "0") + "\r\nP2=";
    const std::string tail = "\r\n\r\n[NabtoSection]\r\nEnabled=true\r\n[VisibleGraph]\r\ngraph 0=";
    Open(head + GraphRow("Fan;;clLime") + tail + "1");
    const std::string written = head + GraphRow("Fan;3;$00112233") + tail + "True\r\ngraph 1=False";
    std::vector<TGraphChannelSettings> channels{{"Z\u00FCge:[12.50]", true, TColor{0x0000FF}, 0},
                                                {"Fan:[-3.00]", false, TColor{0x00112233}, 2}};
    for (int time = 0; time < 2; ++time) {
        Model.WriteGraphSettings(channels);
        EXPECT_EQ(Bytes(), written);
        Model.Open(profilePath);
        Files.Room = 0; // with nothing to write, nothing fails
    }
    channels[1].Visible = true;
    EXPECT_THROW(Model.WriteGraphSettings(channels), EInOutError);
    Files.Locked.insert(profilePath); // held, or read-only: lost in silence
    Model.WriteGraphSettings(channels);
}

// Rows go to keys by position, a repeated key to its first line; a row without a channel and a colour that
// was not understood stay.
TEST_F(Profile, MatchesRowsToChannelsAndKeys) {
    Open("[GraphPoints]\nA=" + GraphRow("One;1;clRed") + "\nA=" + GraphRow("Two;1;clRed") +
         "\nB=" + GraphRow("Three;1;rosso") + "\nC=" + GraphRow("Four;1;clRed") + "\n");
    const TColor blue{0xFF0000};
    Model.WriteGraphSettings(
        {{"One", true, blue, 0}, {"Two", true, blue, 1}, {"Three", false, ColorFromText("rosso"), -1}});
    EXPECT_EQ(Bytes(), "[GraphPoints]\nA=" + GraphRow("Two;2;clBlue") + "\nA=" + GraphRow("Two;1;clRed") +
                           "\nB=" + GraphRow("Three;0;rosso") + "\nC=" + GraphRow("Four;1;clRed") +
                           "\n[VisibleGraph]\ngraph 0=True\ngraph 1=True\ngraph 2=False\n");
}

TEST_F(Profile, LeavesAloneWhatOthersHaveEdited) {
    const auto bytes = [](const char* first, const char* one, const char* three, const char* shown) {
        return std::string("[GraphPoints]\n") + first + "A=" + GraphRow(one) +
               "\nB=" + GraphRow("Two;1;clRed") + "\nC=" + GraphRow(three) +
               "\n[VisibleGraph]\ngraph 0=1\ngraph 1=TRUE\ngraph 2=" + shown + "\n";
    };
    Open(bytes("", "One;1;clRed", "Three;1;clRed", "false"));
    Files.Put(profilePath, bytes("New=x\n", "Uno;1;clRed", "Three;1;clRed", "true"));
    const TColor blue{0xFF0000}, red{0x0000FF};
    EXPECT_THAT(
        Model.WriteChangedSettings({{"One", true, blue, 0}, {"Two", true, red, 0}, {"Three", true, blue, 0}}),
        testing::ElementsAre("graph 2", "A"));
    EXPECT_EQ(Bytes(), bytes("New=x\n", "Uno;1;clRed", "Three;1;clBlue", "true"));
}

// Up to 30 characters of it.
TEST_F(Profile, CutsTheValueFromANameOnly) {
    const std::string tail = ";1;clRed;3;0;1;1;;;;;;1;\n[VisibleGraph]\ngraph 0=True\n";
    const auto written = [&](std::string_view name) {
        Open("[GraphPoints]\nA=T" + tail);
        Model.WriteGraphSettings({{std::string(name), true, TColor{0x0000FF}, 0}});
        return Bytes().substr(16, Bytes().size() - 16 - tail.size());
    };
    const std::string x27(27, 'x');
    ExpectRows(written,
               {"T:[1.00] -> T", "T -> T", "T: -> T:", ":[00000000 00000001] -> ", "a;b -> \"a;b\"",
                "T:[x" + x27 + "rest -> Trest", "T:[\u00E5" + x27 + "rest -> Trest", "T:[x" + x27 + " -> T"});
}

} // namespace tidewell::test
