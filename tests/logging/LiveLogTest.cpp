#include "logging/LiveLog.h"

#include "core/Errors.h"
#include "core/controls/Form.h"
#include "core/controls/StatusBar.h"
#include "model/ModbusPanel.h"
#include "model/Profile.h"
#include "support/IdleProgram.h"
#include "support/MemoryFiles.h"
#include "support/ScriptedDialogs.h"
#include "support/VirtualTime.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tidewell {

using testing::ElementsAre;

namespace {

class TRecordingPolling : public TLiveLog::IPolling {
  public:
    bool Link() override {
        Calls.emplace_back("link");
        return Links;
    }
    void Start() override { Calls.emplace_back("start"); }
    void Stop() override { Calls.emplace_back("stop"); }
    bool Running() const override { return Runs; }
    std::vector<std::string> TakeCalls() { return std::exchange(Calls, {}); }

    bool Links = true;
    bool Runs = true;
    std::vector<std::string> Calls;
};

constexpr const char* ProfileText = "[MainDevice]\r\nEnable=True\r\nR1=1;3;0;2;Setpoints;\r\n"
                                    "[SlaveDevice]\r\nEnable=False\r\nR1=2;3;8;1;Others;\r\nR2=2;4;9;1;;\r\n"
                                    "[GraphPoints]\r\nA=Temp;1;clRed;3;0;1;150;;;;;;1;\r\n";
constexpr const char* Header = ";[HeaderStart]1;3;0;2;Setpoints;MainDevice;0;2;3;8;1;Others;SlaveDevice;0;"
                               "2;4;9;1;;SlaveDevice;1;/t/profile/a.pls[HeaderEnd]\r\n";
constexpr const char* Partial = "/t/log/userlog/datalog02-03-20260800partial.csv";
constexpr const char* Question = "Clear the old log?";

class TRig {
  public:
    TRig() {
        Files.Put("/t/profile/a.pls", ProfileText);
        Files.CreateDirectories("/t/log/userlog");
        Profile.Open("/t/profile/a.pls");
        Panel.SetMpanelWorkingpath("/t");
        Panel.SetMpanelPLSpath("/t/profile/a.pls");
        Panel.InitQuestionStringlistStructures();
        Page.GraphInit(true);
        Log.OnDataLine = [this](const std::string& line) { Lines.push_back(line); };
        Log.OnNoProfile = [this] { Polling.Calls.emplace_back("no profile"); };
        Log.TakeTexts(TIniFile(std::string("[HeadAppl]\nMessageLoggingStart=Started\n"
                                           "MessageLoggingStop=Stopped\nTrafficButtonON=ON\n"
                                           "TrafficButtonOFF=OFF\nDialogSaveDatalogFile=Save it\n"
                                           "MessageClearGraphData=") +
                               Question));
    }
    void Step(const std::string& values) {
        Log.SetCycleResult(values);
        Log.UpdateTimerTimer();
        Time.Advance(2000);
    }
    std::string Saved(const std::string& path) const { return Files.Read(path); }

    test::TMemoryFiles Files;
    test::TVirtualTime Time;
    test::TScriptedDialogs Dialogs;
    TRecordingPolling Polling;
    test::TIdleProgram Program;
    std::vector<std::string> Lines; // given to the grid
    TModbusPanel Panel{Files, Time};
    TProfile Profile{Files};
    TMemo MemoEventLog{"MemoEventLog"};
    TLogBuffers Buffers;
    TProgressBar FileProgressBar{"FileProgressBar"};
    TForm Form{"FormMain"};
    TGraphPage Page{Form, {Profile, Buffers, Dialogs, Time, MemoEventLog, FileProgressBar}};
    TButton TrafficButton{"TrafficButton"};
    TStatusBar StatusBar{Form, "StatusBar", {}};
    TExtensions Extensions;
    TExclusiveUse Opening;
    TCurrentInifilesPath Paths{{}, {}, {}, {}, "/t"};
    TLiveLog Log{Form,
                 {Polling, Program, Dialogs, Time, Files, Time, Panel, Profile, Page, Buffers, TrafficButton,
                  StatusBar, MemoEventLog, Paths, Extensions, Opening}};
};

} // namespace

TEST(LiveLog, TurnsValuesIntoRowsOfTheFile) {
    TRig rig;
    std::string expected;
    for (const auto& [values, saved] : {std::pair("1; -2; ", "1;-2;0;"),
                                        {"40000; x; ", "40000;0;0;"},
                                        {"2147483648; 2147483647; ", "0;2147483647;0;"}}) {
        const std::string number = std::to_string(rig.Lines.size());
        const std::string stamp = ";02-03-2026;08:00:0" + std::to_string(rig.Lines.size() * 2) + ';';
        rig.Step(values);
        EXPECT_EQ(rig.Lines.back(), number + stamp + values);
        expected += std::to_string(rig.Lines.size()) + stamp + saved + "\r\n";
    }
    EXPECT_THROW(rig.Log.SaveDataLogFile("/t/new/deep/datalog.csv"), EInOutError);
    rig.Log.SaveDataLogFile("/t/new/datalog.csv"); // makes one missing level
    EXPECT_EQ(rig.Saved("/t/new/datalog.csv"), expected + Header);
}

TEST(LiveLog, JoinsAllSevenStringsAndSkipsAnEmptyLine) {
    TRig rig;
    rig.Log.UpdateTimerTimer();
    auto& events = rig.Log.UpdateTimerCallBackEvents;
    events.str_ModbusSeriel = "a; ";
    events.str_RS232string5 = "z";
    rig.Step("1; ");
    events.ClearStrings();
    rig.Log.UpdateTimerTimer();
    EXPECT_THAT(rig.Lines, ElementsAre("1;02-03-2026;08:00:00;a; 1; z"));
    rig.Log.SaveDataLogFile(Partial);
    EXPECT_THAT(rig.Saved(Partial), testing::HasSubstr("\r\n3;;;")); // a row that was never dated
}

TEST(LiveLog, WritesACumulativePartialFileEverySoManyRows) {
    TRig rig;
    rig.Log.UpdateTimerCallBackEvents.DatalogCount = 3;
    for (int row = 0; row < 7; ++row) {
        rig.Step("1; ");
        // The row at hand is not yet counted.
        const std::size_t partials = row < 3 ? 0 : row < 6 ? 1 : 2;
        EXPECT_EQ(rig.Files.List("/t/log/userlog", "*partial.csv").size(), partials);
        rig.Time.Advance(58'000);
    }
    EXPECT_EQ(rig.Saved("/t/log/userlog/datalog02-03-20260803partial.csv"),
              "1;02-03-2026;08:00:00;1;0;\r\n2;02-03-2026;08:01:00;1;0;\r\n3;02-03-2026;08:02:00;1;0;\r\n" +
                  std::string(Header));
    EXPECT_THAT(rig.Saved("/t/log/userlog/datalog02-03-20260806partial.csv"),
                testing::HasSubstr("\r\n6;02-03-2026;08:05:00;1;0;\r\n;[HeaderStart]"));
    rig.Log.UpdateTimerCallBackEvents.DatalogCount = 0;
    EXPECT_THAT([&] { rig.Step("1; "); },
                testing::ThrowsMessage<TError>(testing::EndsWith("[UpdateTimer] DatalogCount is 0")));
    EXPECT_EQ(rig.Buffers.DatalogCount, 7U);
}

TEST(LiveLog, AFullDiskKeepsTheOldFileAndTheLog) {
    TRig rig;
    rig.Log.UpdateTimerCallBackEvents.DatalogCount = 2;
    rig.Step("1; ");
    rig.Step("2; ");
    rig.Files.Put(Partial, "old");
    rig.Files.Room = 40;
    EXPECT_THROW(rig.Step("3; "), EInOutError);
    rig.Dialogs.ExpectSaveFile("Save it", Partial);
    EXPECT_THROW(rig.Log.SaveUserDatalog1Click(), EInOutError);
    EXPECT_EQ(rig.MemoEventLog.Lines().back(), "Stopped 08:00 02-03-2026");
    // A restart that cannot save the old log goes on with it.
    rig.Dialogs.ExpectMessage(Question, EModalResult::Yes);
    rig.Dialogs.ExpectMessage(
        "Cannot write /t/log/userlog/datalog02-03-20260800partial-2.csv: No space left on device");
    rig.Log.StartLog(true, true);
    EXPECT_TRUE(rig.Log.DatalogOn);
    EXPECT_EQ(rig.Saved(Partial), "old");
    EXPECT_EQ(rig.Buffers.DatalogCount, 2U);
}

TEST(LiveLog, KeepsARowThatGraphAndGridCannotShow) {
    TRig rig;
    rig.Files.Put("/t/profile/a.pls", std::string(ProfileText) + "B=Bad;1;clRed;x;0;1;150;;;;;;1;\r\n" +
                                          "C=Good;1;clRed;4;0;0;150;;;;;;1;\r\n");
    rig.Profile.Open("/t/profile/a.pls");
    rig.Page.GraphInit(true);
    rig.Log.UpdateTimerCallBackEvents.DatalogCount = 1;
    for (std::size_t row = 0; row < 2; ++row)
        EXPECT_THAT([&] { rig.Step("1; 2; "); },
                    testing::ThrowsMessage<EConvertError>(testing::HasSubstr("Bad")));
    EXPECT_EQ(rig.Buffers.DatalogCount, 2U);
    EXPECT_EQ(rig.Lines.size(), 2U);
    EXPECT_EQ(rig.Page.DataLogDataValues.At(2, 1), 2);
    EXPECT_THAT(rig.Saved("/t/log/userlog/datalog02-03-20260800partial.csv"),
                testing::StartsWith("1;02-03-2026;"));
}

// With the key the automatic start leaves an opened file alone; it never comes in the middle of an opening.
TEST(LiveLog, StartsByItselfOnce) {
    for (const bool spare : {false, true})
        for (const bool file : {false, true}) {
            TRig rig;
            rig.Extensions.LogAutoStartSpareOpenFile = spare;
            rig.Log.TimerLogAutostart->SetEnabled(true);
            {
                const TExclusiveUse::THold opening(rig.Opening);
                rig.Page.DatalogFileOpen = file;
                rig.Time.Advance(5000);
                EXPECT_FALSE(rig.Log.DatalogOn);
            }
            rig.Time.Advance(5000);
            EXPECT_EQ(rig.Log.DatalogOn, !(spare && file));
            EXPECT_EQ(rig.Page.DatalogFileOpen, spare && file);
            EXPECT_EQ(rig.MemoEventLog.Lines().back() == rig.Log.Texts.AutoStartSpared, spare && file);
            EXPECT_FALSE(rig.Log.TimerLogAutostart->Enabled());
        }
}

TEST(LiveLog, StartAsksAndClearsOrContinues) {
    TRig rig;
    const auto painted = rig.StatusBar.Changed.Connect([&rig] { rig.Polling.Calls.emplace_back("repaint"); });
    // The first start saves an empty log.
    rig.Dialogs.ExpectMessage(Question, EModalResult::Yes);
    rig.Log.TrafficButtonClick();
    EXPECT_THAT(rig.Polling.TakeCalls(), ElementsAre("link", "repaint", "start", "repaint"));
    EXPECT_EQ(rig.Saved(Partial), Header);
    EXPECT_TRUE(rig.Log.DatalogOn);
    EXPECT_EQ(rig.Page.CurrentLogStartDate, "02-03-2026");
    EXPECT_EQ(rig.TrafficButton.Color(), TColor{32768});
    EXPECT_EQ(rig.TrafficButton.Caption(), "ON");
    EXPECT_FALSE(rig.Page.graph.Cursors[0].Visible());

    rig.Step("1; ");
    rig.Time.Advance(5 * 60'000);
    rig.Log.TrafficButtonClick();
    EXPECT_THAT(rig.Polling.TakeCalls(), ElementsAre("stop"));
    EXPECT_TRUE(rig.Panel.WannaClose && !rig.Log.DatalogOn && rig.Page.graph.Cursors[0].Visible());
    EXPECT_EQ(rig.TrafficButton.Color(), TColor{0x808080});
    EXPECT_EQ(rig.TrafficButton.Caption(), "OFF");

    // No: the log goes on behind its rows. Yes: it is saved, then it begins at 0.
    rig.Dialogs.ExpectMessage(Question, EModalResult::No);
    rig.Log.TrafficButtonClick();
    rig.Step("2; ");
    EXPECT_EQ(rig.Page.GraphSampleCount(), 2U);
    rig.Log.StopLog();
    rig.Dialogs.ExpectMessage(Question, EModalResult::Yes);
    rig.Log.StartLog(true, true);
    EXPECT_EQ(rig.Saved("/t/log/userlog/datalog02-03-20260805partial.csv"),
              "1;02-03-2026;08:00:00;1;0;\r\n2;02-03-2026;08:05:02;2;0;\r\n" + std::string(Header));
    EXPECT_EQ(rig.Buffers.DatalogCount + rig.Page.GraphSampleCount(), 0U);
    std::vector<std::string> events = rig.MemoEventLog.Lines();
    std::erase(events, "Clear Graph execute");
    EXPECT_THAT(events, ElementsAre("Started 08:00 02-03-2026", "Stopped 08:05 02-03-2026",
                                    "Started 08:05 02-03-2026", "Stopped 08:05 02-03-2026",
                                    "Started 08:05 02-03-2026"));

    // One that the driver takes no notice of says so, as long as it is so.
    for (const bool linked : {false, true}) {
        rig.Log.StopLog();
        rig.Polling.Runs = linked;
        rig.Log.StartLog(false, true);
        EXPECT_EQ(rig.Log.LogNotice.Visible(), !linked);
        EXPECT_EQ(std::ranges::count(rig.MemoEventLog.Lines(), rig.Log.Texts.NoSession), 1);
    }

    // A start that is not to report only polls; one without a link does nothing.
    rig.Log.StopLog();
    rig.Step("3; ");
    rig.Polling.TakeCalls();
    rig.Log.StartLog(false, false);
    rig.Polling.Links = false;
    rig.Log.StartLog(true, true);
    EXPECT_THAT(rig.Polling.TakeCalls(), ElementsAre("link", "repaint", "start", "link"));
    EXPECT_FALSE(rig.Log.DatalogOn);
    EXPECT_EQ(rig.Buffers.DatalogCount, 1U);
}

// An opened datalog of two rows, and a log that is not to clear it: its rows go behind, with their own times.
TEST(LiveLog, GoesOnBehindAnOpenedDatalog) {
    class TThreeLines : public IDataLines {
      public:
        std::size_t Count() const override { return 3; }
        std::string_view Next() override { return "1;01-01-2020;12:00:00;50;"; }
    } lines;
    TRig rig;
    rig.Page.DrawGraphDatafromList(lines);
    rig.Dialogs.ExpectMessage(Question, EModalResult::No);
    rig.Log.StartLog(true, true);
    rig.Step("1; ");
    rig.Log.UpdateTimerCallBackEvents.DatalogCount =
        1; // the step that saves finds a full disk, and is repeated
    rig.Files.Room = 0;
    EXPECT_THROW(rig.Step("2; "), EInOutError);
    rig.Files.Room = 1000;
    rig.Step("3; ");
    EXPECT_EQ(rig.Page.GraphSampleCount(), 4U);
    EXPECT_EQ(rig.Page.graph.Channels[0].Data.GetSize(), 4U); // no second point at the same place
    EXPECT_EQ(rig.Page.GraphDataLabelsTimeText.Count(), 4U);
    EXPECT_EQ(rig.Page.DataLogDataValues.At(0, 1), 5);
    EXPECT_EQ(rig.Page.DataLogDataValues.At(0, 3), 0.3);
    rig.Log.SaveDataLogFile(Partial);
    EXPECT_EQ(rig.Saved(Partial),
              "1;02-03-2026;08:00:00;1;0;\r\n2;02-03-2026;08:00:02;3;0;\r\n" + std::string(Header));
}

} // namespace tidewell
