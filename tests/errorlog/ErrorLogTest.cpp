#include "errorlog/ErrorLog.h"

#include "core/Configuration.h"
#include "core/Errors.h"
#include "core/Paths.h"
#include "core/ProgramState.h"
#include "core/TextFile.h"
#include "core/controls/Form.h"
#include "model/ModbusPanel.h"
#include "model/Profile.h"
#include "support/MemoryFiles.h"
#include "support/VirtualTime.h"

#include <gmock/gmock.h>

namespace tidewell::test {

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

TEST(ErrorLog, DecodesAnEvent) {
    struct TCase {
        std::uint16_t MoDy, MinErr;
        std::string Text;
    };
    for (const auto& [MoDy, MinErr, text] :
         std::vector<TCase>{{0x3A15, 0x8A0F, "Time 23:00 Date 20/03 2021 Errornumber 07 ON"},
                            {14869, 35343, "Time 23:00 Date 20/03 2021 Errornumber 07 ON"},
                            {0, 0, "Time 00:00 Date 00/00 2000 Errornumber 00 OFF"},
                            {0, 1, "Time 00:00 Date 00/00 2000 Errornumber 00 ON"},
                            {0, 288 << 7, "Time 24:00 Date 00/00 2000 Errornumber 00 OFF"},
                            {0xFFFF, 0xFFFF, "Time 42:35 Date 31/15 2127 Errornumber 63 ON"}})
        EXPECT_EQ(ErrorEventText(MoDy, MinErr), text);
}

class TErrorLogTest : public testing::Test, public ILogControl {
  protected:
    TErrorLogTest() {
        TheTab.Pages = {Setpoints};
        Log.emplace(Form, TErrorLog::TNeeds{*this, Files, Time, Paths, Settings, Profile, Panel, TheTab});
        Panel.SetMpanelWorkingpath("/app");
        Panel.SetMpanelPLSpath("/app/p.pls");
        Files.Put("/app/p.pls", "[Device]\nEnable=true\nR1=1;3;100;2;List;\n");
    }
    void StopLog() override { Events.emplace_back("StopLog"); }
    void StartLog(bool, bool) override { Events.emplace_back("StartLog"); }
    std::vector<std::string> Saved(const std::string& stamp = "02-03-2026080000") const {
        return ReadLines(Files, "/app/log/userlog/errorlog " + stamp + ".csv");
    }

    TForm Form{"FormMain"};
    TMemoryFiles Files;
    TVirtualTime Time;
    TCurrentInifilesPath Paths{{}, {}, {}, {}, "/app"};
    TErrorLogSettings Settings;
    TProfile Profile{Files};
    TModbusPanel Panel{Files, Time};
    TTabSheet Setpoints{"TabSetpoint"};
    TPageControl TheTab{"TheTab"};
    std::optional<TErrorLog> Log;
    std::vector<std::string> Events;
};

const std::string now = "02-03-2026 08:00:00";

TEST_F(TErrorLogTest, ShowsAndSavesAHundredEvents) {
    EXPECT_FALSE(Log->TabErrorlog.Visible());
    std::string words;
    for (int word = 0; word < 200; ++word)
        words += "65535;";
    Log->EvalErrorlog(words);
    std::vector<std::string> lines{now};
    for (int event = 1; event <= 100; ++event)
        lines.push_back("Number" + std::to_string(event) + " Time 42:35 Date 31/15 2127 Errornumber 63 ON");
    EXPECT_EQ(Saved(), lines);
    lines.emplace_back("File saved in userlog directory");
    EXPECT_THAT(Log->Memo.Lines(), ElementsAreArray(lines));
    EXPECT_TRUE(Log->TabErrorlog.Visible() && TheTab.IsActive(Log->TabErrorlog));
    EXPECT_EQ(Log->TabErrorlog.Caption(), "ErrorLog");
    EXPECT_EQ(Panel.CycleReadList.size(), 1U); // rebuilt
    EXPECT_THAT(Events, ElementsAre("StopLog"));

    // A second log replaces the first on the page, not its file.
    Time.Advance(61000);
    TheTab.SetActivePageIndex(0);
    Settings.doIncludeValuesInFile = true;
    Log->EvalErrorlog("14869;x;35343;1;");
    EXPECT_THAT(Saved("02-03-2026080101"),
                ElementsAre("02-03-2026 08:01:01", "DataValues for calculation -> MoDy 14869 MinErr 35343",
                            "Number1 Time 23:00 Date 20/03 2021 Errornumber 07 ON",
                            "DataValues for calculation -> MoDy x MinErr 1",
                            "Number2 Time 00:00 Date 00/00 2000 Errornumber 00 ON"));
    EXPECT_EQ(Log->Memo.Lines().size(), 6U);
    EXPECT_TRUE(TheTab.IsActive(Log->TabErrorlog));
    EXPECT_EQ(TheTab.Pages.size(), 2U);
    EXPECT_EQ(Saved().size(), 101U);
}

TEST_F(TErrorLogTest, WordsThatAreMissingEndItWithThePageStanding) {
    struct TCase {
        std::string Words;
        std::size_t Events;
    };
    for (const auto& [words, events] :
         std::vector<TCase>{{"1;", 0}, {"0;0;0;", 1}, {"0;0;0;0;0;", 2}, {"no end", 0}}) {
        EXPECT_THROW(Log->EvalErrorlog(words), EListError) << words;
        EXPECT_EQ(Log->Memo.Lines().size(), 1 + events) << words;
        EXPECT_TRUE(Log->TabErrorlog.Visible());
    }
    EXPECT_TRUE(Files.List("/app/log/userlog", "*").empty());
    Files.Room = 20;
    EXPECT_THROW(Log->EvalErrorlog("0;0;"), EInOutError);
    EXPECT_THAT(Log->Memo.Lines(), ElementsAre(now, "Number1 Time 00:00 Date 00/00 2000 Errornumber 00 OFF"));
}

} // namespace

} // namespace tidewell::test
