#include "logging/LiveLog.h"

#include "core/Errors.h"
#include "model/ModbusPanel.h"
#include "model/Profile.h"
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

class TRecordingHost : public TLiveLog::IHost {
  public:
    bool NabtoEnabled() override { return Enabled; }
    int InitLink() override { return Told("init", LinkResult); }
    void StartPolling() override { Told("startLog"); }
    void StopPolling() override { Told("stopLog"); }
    void ShowSetpointPage() override { Told("TabSetpoint"); }
    void Setup1Click() override { Told("Setup1Click"); }
    void RepaintStatusBar() override { Told("repaint"); }
    bool FormOpen() override { return Open; }
    void ApplyDataLine(const std::string& line) override { Lines.push_back(line); }
    std::vector<std::string> TakeCalls() { return std::exchange(Calls, {}); }

    bool Enabled = true;
    bool Open = true;
    int LinkResult = 0;
    std::vector<std::string> Calls;
    std::vector<std::string> Lines; // given to the grid

  private:
    int Told(const std::string& call, int result = 0) {
        Calls.push_back(call);
        return result;
    }
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
    TRecordingHost Host;
    TModbusPanel Panel{Files, Time};
    TProfile Profile{Files};
    TMemo MemoEventLog{"MemoEventLog"};
    TLogBuffers Buffers;
    TProgressBar FileProgressBar{"FileProgressBar"};
    TGraphPage Page{{Profile, Buffers, Dialogs, Time, MemoEventLog, FileProgressBar}};
    TButton TrafficButton{"TrafficButton"};
    TLoggingTexts Texts{"Started", "Stopped", Question, "ON", "OFF", "Save it"};
    TCurrentInifilesPath Paths{{}, {}, {}, {}, "/t"};
    TLiveLog Log{{Host, Dialogs, Time, Files, Time, Panel, Profile, Page, Buffers, TrafficButton,
                  MemoEventLog, Texts, Paths}};
};

} // namespace

TEST(LiveLog, SavesEachRowAndTheHeader) {
    TRig rig;
    rig.Step("1; -2; ");
    rig.Step("40000; x; ");
    rig.Step("3; 2147483647; ");
    rig.Log.SaveDataLogFile("/t/log/systemlog/datalog.csv");
    EXPECT_EQ(rig.Saved("/t/log/systemlog/datalog.csv"), "1;02-03-2026;08:00:00;1;-2;0;\r\n"
                                                         "2;02-03-2026;08:00:02;40000;0;0;\r\n"
                                                         "3;02-03-2026;08:00:04;3;2147483647;0;\r\n" +
                                                             std::string(Header));
    EXPECT_THAT(rig.Host.Lines,
                ElementsAre("0;02-03-2026;08:00:00;1; -2; ", "1;02-03-2026;08:00:02;40000; x; ",
                            "2;02-03-2026;08:00:04;3; 2147483647; "));
    EXPECT_EQ(rig.Page.DataLogDataValues.At(0, 1), 4000);
    EXPECT_EQ(rig.Page.graph.Channels[0].Name(), "Temp:[0.30]");
}

TEST(LiveLog, SavesNumbersOfEveryLength) {
    TRig rig;
    rig.Step(
        "0; 9; 10; 99; 100; 999; 1000; 9999; 10000; -9999; -10000; 2147483647; -2147483648; 2147483648; ");
    rig.Log.SaveDataLogFile(Partial);
    EXPECT_EQ(rig.Saved(Partial), "1;02-03-2026;08:00:00;0;9;10;99;100;999;1000;9999;10000;-9999;-10000;"
                                  "2147483647;-2147483648;0;0;\r\n" +
                                      std::string(Header));
}

TEST(LiveLog, SavesMoreThanOneBlock) {
    TRig rig;
    std::string wide;
    for (int value = 0; value < 30'000; ++value)
        wide += std::to_string(value) + "; ";
    for (int row = 0; row < 5; ++row)
        rig.Step(wide);
    rig.Log.SaveDataLogFile(Partial);
    std::string expected;
    for (int row = 0; row < 5; ++row) {
        expected += std::to_string(row + 1) + ";02-03-2026;08:00:0" + std::to_string(row * 2) + ';';
        for (int value = 0; value < 30'000; ++value)
            expected += std::to_string(value) + ';';
        expected += "0;\r\n";
    }
    EXPECT_TRUE(rig.Saved(Partial) == expected + Header);
}

TEST(LiveLog, TheLastRowSetsTheColumns) {
    TRig rig;
    rig.Step("1; 2; 3; ");
    rig.Step("4; ");
    rig.Step("5; 6; 7; 8; ");
    rig.Log.SaveDataLogFile(Partial);
    EXPECT_EQ(rig.Saved(Partial), "1;02-03-2026;08:00:00;1;2;0;0;0;\r\n"
                                  "2;02-03-2026;08:00:02;4;0;0;0;0;\r\n"
                                  "3;02-03-2026;08:00:04;5;6;7;8;0;\r\n" +
                                      std::string(Header));
}

TEST(LiveLog, JoinsAllSevenStringsAndSkipsAnEmptyLine) {
    TRig rig;
    rig.Log.UpdateTimerTimer();
    EXPECT_EQ(rig.Buffers.DatalogCount, 1U);
    EXPECT_TRUE(rig.Host.Lines.empty());
    auto& events = rig.Log.UpdateTimerCallBackEvents;
    events.str_ModbusSeriel = "a; ";
    events.str_RS232string5 = "z";
    rig.Step("1; ");
    EXPECT_THAT(rig.Host.Lines, ElementsAre("1;02-03-2026;08:00:00;a; 1; z"));
    events.ClearStrings();
    rig.Log.UpdateTimerTimer();
    EXPECT_EQ(rig.Host.Lines.size(), 1U);
    rig.Log.SaveDataLogFile(Partial);
    EXPECT_THAT(rig.Saved(Partial), testing::HasSubstr("\r\n3;;;")); // a row that was never dated
}

TEST(LiveLog, WritesACumulativePartialFileEverySoManyRows) {
    TRig rig;
    rig.Log.UpdateTimerCallBackEvents.DatalogCount = 3;
    const auto partials = [&rig] {
        return rig.Files.List("/t/log/userlog", "*partial.csv").size();
    };
    for (int row = 0; row < 3; ++row)
        rig.Step("1; ");
    EXPECT_EQ(partials(), 0U);
    rig.Time.Advance(60'000);
    rig.Step("2; ");
    // The row at hand is not yet counted.
    EXPECT_EQ(rig.Saved("/t/log/userlog/datalog02-03-20260801partial.csv"),
              "1;02-03-2026;08:00:00;1;0;\r\n2;02-03-2026;08:00:02;1;0;\r\n3;02-03-2026;08:00:04;1;0;\r\n" +
                  std::string(Header));
    rig.Time.Advance(60'000);
    for (int row = 0; row < 3; ++row)
        rig.Step("3; ");
    EXPECT_EQ(partials(), 2U);
    EXPECT_THAT(rig.Saved("/t/log/userlog/datalog02-03-20260802partial.csv"),
                testing::HasSubstr("\r\n6;02-03-2026;08:02:10;3;0;\r\n;[HeaderStart]"));
}

TEST(LiveLog, DatalogCountZeroDividesByZeroAtTheFirstRow) {
    TRig rig;
    rig.Log.UpdateTimerCallBackEvents.DatalogCount = 0;
    try {
        rig.Step("1; ");
        FAIL() << "no error";
    } catch (const TError& error) {
        EXPECT_THAT(error.what(), testing::EndsWith("[UpdateTimer] DatalogCount is 0"));
    }
    EXPECT_EQ(rig.Buffers.DatalogCount, 0U);
    EXPECT_EQ(rig.Host.Lines.size(), 1U);
}

TEST(LiveLog, AFullDiskKeepsTheOldFileAndTheLog) {
    TRig rig;
    rig.Log.UpdateTimerCallBackEvents.DatalogCount = 2;
    rig.Step("1; ");
    rig.Step("2; ");
    rig.Files.Put(Partial, "old");
    rig.Files.Room = 40;
    EXPECT_THROW(rig.Step("3; "), EInOutError);
    EXPECT_EQ(rig.Saved(Partial), "old");
    EXPECT_EQ(rig.Buffers.DatalogCount, 2U);

    rig.Dialogs.ExpectSaveFile("Save it", Partial);
    EXPECT_THROW(rig.Log.SaveUserDatalog1Click(), EInOutError);
    EXPECT_EQ(rig.Saved(Partial), "old");
    EXPECT_EQ(rig.MemoEventLog.Lines().back(), "Stopped 08:00 02-03-2026");

    // A restart that cannot save the old log does not clear it.
    rig.Dialogs.ExpectMessage(Question, EModalResult::Yes);
    EXPECT_THROW(rig.Log.StartLog(true, true), EInOutError);
    EXPECT_EQ(rig.Buffers.DatalogCount, 2U);

    rig.Files.Room = 1000;
    rig.Log.SaveDataLogFile(Partial);
    EXPECT_THAT(rig.Saved(Partial), testing::StartsWith("1;02-03-2026;08:00:00;1;0;\r\n2;"));
}

TEST(LiveLog, MakesOneMissingDirectoryLevel) {
    TRig rig;
    EXPECT_THROW(rig.Log.SaveDataLogFile("/t/new/deep/datalog.csv"), EInOutError);
    EXPECT_FALSE(rig.Files.DirectoryExists("/t/new"));
    rig.Log.SaveDataLogFile("/t/new/datalog.csv");
    EXPECT_EQ(rig.Saved("/t/new/datalog.csv"), Header);
}

TEST(LiveLog, StartAsksAndClearsOrContinues) {
    TRig rig;
    // The first start saves an empty log.
    rig.Dialogs.ExpectMessage(Question, EModalResult::Yes);
    rig.Log.TrafficButtonClick();
    EXPECT_THAT(rig.Host.TakeCalls(), ElementsAre("init", "repaint", "startLog", "repaint"));
    EXPECT_EQ(rig.Saved(Partial), Header);
    EXPECT_TRUE(rig.Log.DatalogOn);
    EXPECT_EQ(rig.Page.CurrentLogStartDate, "02-03-2026");
    EXPECT_EQ(rig.TrafficButton.Color(), TColor{32768});
    EXPECT_EQ(rig.TrafficButton.Caption(), "ON");
    EXPECT_FALSE(rig.Page.graph.Cursors[0].Visible());

    rig.Step("1; ");
    rig.Time.Advance(5 * 60'000);
    rig.Log.TrafficButtonClick();
    EXPECT_THAT(rig.Host.TakeCalls(), ElementsAre("stopLog"));
    EXPECT_FALSE(rig.Log.DatalogOn);
    EXPECT_TRUE(rig.Panel.WannaClose);
    EXPECT_EQ(rig.TrafficButton.Color(), TColor{0x808080});
    EXPECT_EQ(rig.TrafficButton.Caption(), "OFF");
    EXPECT_TRUE(rig.Page.graph.Cursors[0].Visible());

    // No: the log goes on behind its rows.
    rig.Dialogs.ExpectMessage(Question, EModalResult::No);
    rig.Log.TrafficButtonClick();
    rig.Step("2; ");
    EXPECT_EQ(rig.Host.Lines.back(), "1;02-03-2026;08:05:02;2; ");
    EXPECT_EQ(rig.Page.GraphSampleCount(), 2U);
    rig.Log.StopLog();

    // Yes: it is saved, then it begins at 0.
    rig.Dialogs.ExpectMessage(Question, EModalResult::Yes);
    rig.Log.StartLog(true, true);
    EXPECT_EQ(rig.Saved("/t/log/userlog/datalog02-03-20260805partial.csv"),
              "1;02-03-2026;08:00:00;1;0;\r\n2;02-03-2026;08:05:02;2;0;\r\n" + std::string(Header));
    EXPECT_EQ(rig.Buffers.DatalogCount, 0U);
    EXPECT_EQ(rig.Page.GraphSampleCount(), 0U);
    EXPECT_THAT(rig.MemoEventLog.Lines(),
                ElementsAre("Clear Graph execute", "Clear Graph execute", "Clear Graph execute",
                            "Started 08:00 02-03-2026", "Stopped 08:05 02-03-2026",
                            "Started 08:05 02-03-2026", "Stopped 08:05 02-03-2026", "Clear Graph execute",
                            "Clear Graph execute", "Started 08:05 02-03-2026"));
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
    EXPECT_EQ(rig.Page.GraphDataLabelsTimeText.Count(), 4U);
    EXPECT_EQ(rig.Page.DataLogDataValues.At(0, 1), 5);
    EXPECT_EQ(rig.Page.DataLogDataValues.At(0, 3), 0.3);
    rig.Log.SaveDataLogFile(Partial);
    EXPECT_EQ(rig.Saved(Partial),
              "1;02-03-2026;08:00:00;1;0;\r\n2;02-03-2026;08:00:02;3;0;\r\n" + std::string(Header));
}

TEST(LiveLog, AStartThatIsNotToReportOnlyPolls) {
    TRig rig;
    rig.Step("1; ");
    rig.Log.StartLog(false, false);
    EXPECT_THAT(rig.Host.TakeCalls(), ElementsAre("init", "repaint", "startLog"));
    EXPECT_FALSE(rig.Log.DatalogOn);
    EXPECT_EQ(rig.Buffers.DatalogCount, 1U);
}

TEST(LiveLog, RefusesToStartWithoutLinkOrProfile) {
    TRig rig;
    rig.Host.LinkResult = -2;
    rig.Log.StartLog(true, true);
    EXPECT_THAT(rig.Host.TakeCalls(), ElementsAre("init"));

    rig.Host.Enabled = false;
    rig.Profile.ProfileLoaded = false;
    rig.Dialogs.ExpectMessage("Profile NOT loaded...");
    rig.Log.StartLog(true, true);
    EXPECT_EQ(rig.Dialogs.Shown.back().Kind, EMessageKind::Information);
    EXPECT_THAT(rig.Host.TakeCalls(), ElementsAre("TabSetpoint", "Setup1Click"));
    EXPECT_FALSE(rig.Log.DatalogOn);
    EXPECT_EQ(rig.TrafficButton.Caption(), "");
}

TEST(LiveLog, AutostartClearsWithoutAQuestion) {
    TRig rig;
    rig.Step("1; ");
    rig.Log.TimerLogAutostart->SetEnabled(true);
    rig.Time.Advance(4999);
    EXPECT_FALSE(rig.Log.DatalogOn);
    rig.Time.Advance(20'000);
    EXPECT_THAT(rig.Host.TakeCalls(), ElementsAre("init", "repaint", "startLog"));
    EXPECT_TRUE(rig.Log.DatalogOn);
    EXPECT_EQ(rig.Buffers.DatalogCount, 0U);
    EXPECT_TRUE(rig.Files.List("/t/log/userlog", "*").empty());
}

TEST(LiveLog, TheUserSavesUnderANameOfHisOwn) {
    struct TCase {
        const char* Chosen;
        const char* Written;
    };
    for (const auto& sample : {TCase{"/t/a", "/t/a.csv"}, TCase{"/t/b.csv", "/t/b.csv"},
                               TCase{"/t/c.csv.txt", "/t/c.csv.txt"}, TCase{"/t/d.CSV", "/t/d.CSV.csv"}}) {
        TRig rig;
        rig.Step("7; ");
        rig.Dialogs.ExpectSaveFile("Save it", sample.Chosen);
        rig.Log.SaveUserDatalog1Click();
        EXPECT_EQ(rig.Saved(sample.Written), "1;02-03-2026;08:00:00;7;0;\r\n" + std::string(Header));
        EXPECT_EQ(rig.MemoEventLog.Lines().back(), "StringDatalog saved and cleared");
        EXPECT_EQ(rig.Dialogs.LastFileDialog.InitialDirectory, "/t/log/userlog");
        EXPECT_EQ(rig.Buffers.DatalogCount, 1U);
    }
    TRig rig;
    rig.Dialogs.ExpectSaveFile("Save it", std::nullopt);
    rig.Log.SaveUserDatalog1Click();
    EXPECT_THAT(rig.Host.TakeCalls(), ElementsAre("stopLog"));
    EXPECT_EQ(rig.MemoEventLog.Lines().back(), "Stopped 08:00 02-03-2026");
}

} // namespace tidewell
