#include "model/Profile.h"

#include "core/Errors.h"
#include "model/ColorText.h"
#include "support/MemoryFiles.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace tidewell::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* profilePath = "/t/profile/M3_english.pls";

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
    EXPECT_TRUE(Model.ProfileLoaded);
    EXPECT_EQ(Model.currentprofilefile, profilePath);
    EXPECT_EQ(Model.GraphValues.size(), 3U);
    EXPECT_EQ(Model.GraphEnableCount, 2U);
    EXPECT_THAT(Model.FindGraphNameList, ElementsAre("Air in", "Bad", "Again"));
    EXPECT_EQ(Model.VisibleGraph.ValueAt(1), "0");
    EXPECT_EQ(Model.GraphPoints[0].Structnumber, 3);
    EXPECT_NE(Model.GraphPoints[1].Error, "");

    Open("[NabtoDevice]\nQ=0;3;1;1;\n");
    EXPECT_TRUE(Model.ProfileLoaded);
    EXPECT_EQ(Model.GraphEnableCount, 0U);
    EXPECT_THAT(Model.GraphValues, IsEmpty());
    EXPECT_THAT(Model.FindGraphNameList, IsEmpty());
    EXPECT_TRUE(Model.VisibleGraph.Empty());
}

TEST_F(Profile, ReadsTheSettings) {
    Open("[NabtoSection]\nEnabled=TRUE\nDebugLog=yes\nDF_FDCountNum=$10\nErrorLogOffset=many\n"
         "NabtoErrorlogEnable=true\nDF_HPM_SNUM=4\nDF_HPM_SETPKTNUM=500\n");
    Model.ReadNabtoSection(profilePath);
    EXPECT_TRUE(Model.FlashPage.doFlashPage);
    EXPECT_FALSE(Model.DebugLog);
    EXPECT_EQ(Model.FlashPage.DF_FDCountNum, 16);
    EXPECT_EQ(Model.ErrorLogOffset, 0);
    EXPECT_TRUE(Model.NabtoErrorlogEnable);
    EXPECT_EQ(Model.DF_HPM_SNUM, 4);
    EXPECT_EQ(Model.DF_HPM_SETPKTNUM, 500);
    EXPECT_EQ(Model.FlashPage.FlashLogProfile, "/t/profile/M3_english_Flash.pls");
    EXPECT_EQ(Model.GetFlashLogProfilepath(), "");
    Files.Put("/t/profile/M3_english_Flash.pls", "");
    EXPECT_EQ(Model.GetFlashLogProfilepath(), "/t/profile/M3_english_Flash.pls");

    Model.ReadNabtoSection("");
    EXPECT_FALSE(Model.FlashPage.doFlashPage);
    EXPECT_EQ(Model.DF_HPM_SETPKTNUM, 0);
    EXPECT_EQ(Model.GetFlashLogProfilepath(), "");
}

TEST_F(Profile, NamesFilesByLanguage) {
    struct {
        const char* Language;
        const char* Result;
    } const cases[] = {{"/t/cfg/english.lng", "/t/profile/M3_english.pls"},
                       {"Deutsch.LNG", "/t/profile/M3_Deutsch.pls"},
                       {"a.lng.bak", "/t/profile/M3_a.pls"},
                       {"plain", "/t/profile/M3_plain.pls"},
                       {"", "/t/profile/M3_.pls"}};
    for (const auto& c : cases)
        EXPECT_EQ(TProfile::PadCurrentProfileExtension("/t/profile/M3", c.Language), c.Result);
    Model.ReadNabtoSection("/t/profile/M.PLS");
    EXPECT_EQ(Model.FlashPage.FlashLogProfile, "/t/profile/M_Flash.pls");
    Model.ReadNabtoSection("/t/profile/M.SDpls");
    EXPECT_EQ(Model.FlashPage.FlashLogProfile, "/t/profile/M.SDpls_Flash.pls");
}

TEST_F(Profile, WritesBackOnlyWhatChanged) {
    // Windows-1252, odd spacing, comments, CR LF and LF mixed, no end at the last line.
    const std::string before = "; K\xFChler\r\n[GraphPoints]\r\n"
                               "P0 = " +
                               GraphRow("Zul\xFC"
                                        "ft;1;$000000FF") +
                               "\n; between\r\nP1=" + GraphRow("Off;1;clLime", "0") +
                               "\r\nP2=" + GraphRow("Fan;;clLime") +
                               "\r\n\r\n[NabtoSection]\r\nEnabled=true\r\n"
                               "[VisibleGraph]\r\ngraph 0=1";
    Open(before);
    EXPECT_THAT(Model.FindGraphNameList, ElementsAre("Zul\xC3\xBC"
                                                     "ft",
                                                     "Off", "Fan"));
    Model.WriteGraphSettings({{"Zul\xC3\xBC"
                               "ft:[12.50]",
                               true, TColor{0x0000FF}, 0},
                              {"Fan:[-3.00]", false, TColor{0x00112233}, 2}});
    EXPECT_EQ(Bytes(), "; K\xFChler\r\n[GraphPoints]\r\n"
                       "P0 = " +
                           GraphRow("Zul\xFC"
                                    "ft;1;$000000FF") +
                           "\n; between\r\nP1=" + GraphRow("Off;1;clLime", "0") +
                           "\r\nP2=" + GraphRow("Fan;3;$00112233") +
                           "\r\n\r\n[NabtoSection]\r\nEnabled=true\r\n"
                           "[VisibleGraph]\r\ngraph 0=True\r\ngraph 1=False");
    const auto written = Bytes();
    Model.Open(profilePath);
    Files.Unwritable.insert(profilePath);
    Model.WriteGraphSettings({{"Zul\xC3\xBC"
                               "ft",
                               true, TColor{0x0000FF}, 0},
                              {"Fan", false, TColor{0x00112233}, 2}});
    EXPECT_EQ(Bytes(), written); // nothing to write, so nothing failed
}

TEST_F(Profile, WritesAsManyRowsAsThereAreChannels) {
    Open("[GraphPoints]\nA=" + GraphRow("One;1;rosso") + "\nB=" + GraphRow("Two;1;clRed") + "\n");
    Model.WriteGraphSettings({{"One", true, ColorFromText("rosso"), -1}});
    EXPECT_EQ(Bytes(), "[GraphPoints]\nA=" + GraphRow("One;0;rosso") + "\nB=" + GraphRow("Two;1;clRed") +
                           "\n[VisibleGraph]\ngraph 0=True\n");
}

TEST_F(Profile, MatchesRowsToKeysByPosition) {
    Open("[GraphPoints]\nA=" + GraphRow("One;1;clRed") + "\nA=" + GraphRow("Two;1;clRed") +
         "\nB=" + GraphRow("Three;1;clRed") + "\n[VisibleGraph]\n");
    const TColor blue{0xFF0000};
    Model.WriteGraphSettings({{"One", true, blue, 0}, {"Two", true, blue, 1}, {"Three", true, blue, 2}});
    EXPECT_EQ(Bytes(), "[GraphPoints]\nA=" + GraphRow("Two;2;clBlue") + "\nA=" + GraphRow("Two;1;clRed") +
                           "\nB=" + GraphRow("Three;3;clBlue") +
                           "\n[VisibleGraph]\ngraph 0=True\ngraph 1=True\ngraph 2=True\n");
}

TEST_F(Profile, CutsTheValueFromANameOnly) {
    struct {
        std::string Name, Written;
    } const cases[] = {{"T:[1.00]", "T"},
                       {"T", "T"},
                       {":[00000000 00000001]", ""},
                       {"T:[" + std::string(28, 'x') + "rest", "Trest"},
                       {"T:[\xC3\xA5" + std::string(27, 'x') + "rest", "Trest"},
                       {"a;b", "\"a;b\""}};
    for (const auto& c : cases) {
        Open("[GraphPoints]\nA=" + GraphRow("T;1;clRed") + "\n[VisibleGraph]\ngraph 0=True\n");
        Model.WriteGraphSettings({{c.Name, true, TColor{0x0000FF}, 0}});
        EXPECT_EQ(Bytes(), "[GraphPoints]\nA=" + GraphRow(c.Written + ";1;clRed") +
                               "\n[VisibleGraph]\ngraph 0=True\n");
    }
}

TEST_F(Profile, LosesNothingWhenItCannotWrite) {
    const std::string before = "[GraphPoints]\nA=" + GraphRow("T;1;clRed") + "\n";
    const std::vector<TGraphChannelSettings> channels{{"T", false, TColor{0xFF0000}, 1}};
    Files.Put(profilePath, before);
    Model.WriteGraphSettings(channels); // no profile is loaded
    EXPECT_EQ(Bytes(), before);
    Open(before);
    Files.Locked.insert(profilePath); // read-only: lost in silence
    Model.WriteGraphSettings(channels);
    EXPECT_EQ(Bytes(), before);
    Files.Locked.clear();
    Files.Room = 10;
    EXPECT_THROW(Model.WriteGraphSettings(channels), EInOutError);
    EXPECT_EQ(Bytes(), before);
    Files.Content.clear();
    Files.Room = 1000;
    Model.WriteGraphSettings(channels); // deleted meanwhile
    EXPECT_TRUE(Files.Content.empty());
}

TEST_F(Profile, ReadsPollQuestionsInFileOrder) {
    Open("[NabtoDevice]\nB=8;3;100;4;\nA=8;4;0;2;extra;\nB=0;3;7;1;\n");
    const TIniSection questions = ReadPollQuestions(Files, profilePath);
    ASSERT_EQ(questions.Count(), 3U);
    EXPECT_EQ(questions.ValueAt(0), "8;3;100;4;");
    EXPECT_EQ(questions.ValueAt(2), "0;3;7;1;");
    EXPECT_TRUE(ReadPollQuestions(Files, "/t/none.pls").Empty());
}

} // namespace tidewell::test
