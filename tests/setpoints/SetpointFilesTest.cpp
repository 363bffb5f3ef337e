#include "core/Errors.h"
#include "scenario/SetpointProgram.h"

#include <gmock/gmock.h>

#include <deque>

namespace tidewell::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class SetpointFiles : public TSetpointProgram {
  protected:
    SetpointFiles() {
        Start();
        Program->LiveLog.TimerLogAutostart->SetEnabled(false);
        Driver().Cycle.SetIntervals(100, 10);
        OpenRows("A=Air ;100;0;99;1;0;40100;3;1;;;;;;G;\n");
        for (std::int32_t i = 0; i < 4; ++i)
            Hold(100 + i, 10 * (i + 1));
    }
    void AfterEachCycle(const std::function<void()>& action) {
        const std::function<void()> taken = [this] {
            Program->LiveLog.SetCycleResult(Driver().NabtoResultstring());
        };
        Driver().FOnCycleDone = [taken, action] {
            taken();
            action();
        };
    }
};

TEST_F(SetpointFiles, ASaveOfNothingOrOfAFaultyProfile) {
    // No setpoint question: the head alone. No such device: nothing.
    OpenProfile("[Main Device]\nEnable=1\nR1=1;4;0;4;L;\n[L]\na=x;\n");
    EXPECT_EQ(SplitLines(Save()).size(), 4U);
    Program->SetpointFiles.SetpointSaveSetpoints("0");
    OpenRows("X=Mode;1;0;9;a;0;7;3;1;;;;;G;\n");
    EXPECT_THAT([this] { Program->SetpointFiles.SetpointSaveSetpoints("Main Device"); },
                testing::ThrowsMessage<EConvertError>("Setpoint Mode: 'a' is not a valid integer value"));
    EXPECT_FALSE(Program->ReadBack.Running());
}

TEST_F(SetpointFiles, TheFileGoesWhereItCan) {
    for (const char* chosen : {"/t/setpoint/a", "/t/setpoint/a.csv.txt", "/t/setpoint/a.CSV"})
        Save(chosen);
    EXPECT_THAT(FilesBelow("/t/setpoint"),
                ElementsAre("/t/setpoint/a.CSV.csv", "/t/setpoint/a.csv", "/t/setpoint/a.csv.txt"));
    // A folder that is gone, a file that is kept, a full disk, then a place that will do; the reading is not
    // lost.
    Files.Put("/t/old.csv", "old");
    Files.Unwritable.insert("/t/old.csv");
    ExpectEntry(Page().Savesetpoints1);
    for (const auto& [place, reason] : std::vector<std::pair<std::string, std::string>>{
             {"/gone/a.csv", "No such file or directory"}, {"/t/old.csv", "Permission denied"}}) {
        Dialogs.ExpectSaveFile("Save file", place);
        Dialogs.ExpectMessage("Cannot write " + place + ": " + reason);
    }
    Dialogs.ExpectSaveFile("Save file", "/t/b.csv");
    RightClick();
    EXPECT_EQ(Files.Read("/t/old.csv"), "old");
    EXPECT_EQ(Files.Read("/t/b.csv"), Files.Read("/t/setpoint/a.csv"));
    EXPECT_EQ(EventLog().back(), "Saved Setpointfile /t/b.csv");
    Files.Room = 10;
    ExpectEntry(Page().Savesetpoints1);
    Dialogs.ExpectSaveFile("Save file", "/t/c.csv");
    Dialogs.ExpectMessage("Cannot write /t/c.csv: No space left on device");
    Dialogs.ExpectSaveFile("Save file", std::nullopt);
    RightClick();
    EXPECT_FALSE(Files.FileExists("/t/c.csv"));
    EXPECT_EQ(EventLog().back(), "Setpoints not saved: Cannot write /t/c.csv: No space left on device");

    // What is loaded must be a setpoint file.
    ExpectEntry(Page().Loadsetpointfromfile1);
    Dialogs.ExpectOpenFile("Open profile or setpoint file", std::nullopt);
    RightClick();
    EXPECT_EQ(Form().ErrorCount, 9999);
    const TFileDialog& dialog = Dialogs.LastFileDialog;
    EXPECT_EQ(dialog.Filters[dialog.SelectedFilter].Mask, " *.zls;*.csv");
    EXPECT_EQ(dialog.InitialDirectory, "/t/setpoint");
    EXPECT_TRUE(dialog.FileMustExist);
    ExpectEntry(Page().Loadsetpointfromfile1);
    Dialogs.ExpectOpenFile("Open profile or setpoint file", "/t/old.csv");
    Dialogs.ExpectMessage(Language("TestfileComport", "SetpointFileRefused"));
    RightClick();
}

TEST_F(SetpointFiles, TheReadBackTakesTwoEqualCycles) {
    struct TCase {
        std::deque<int> Values; // of one setpoint, cycle by cycle; their lengths count
        TReadBack::EResult Result;
        std::string Snapshot;
    };
    using enum TReadBack::EResult;
    for (const auto& [values, result, snapshot] :
         std::vector<TCase>{{{1, 2, 3}, Done, "3; 20; 30; 40; "},
                            {{100, 2, 33, 4, 5, 6}, Done, "6; 20; 30; 40; "},
                            {{1, 2, 33, 4, 5, 66, 7, 8, 99, 10, 11, 12}, Failed, "12; 20; 30; 40; "},
                            {{1, 2, 33, 4, 5, 66, 7, 8, 99, 10, 1, 12}, Failed, "12; 20; 30; 40; "}}) {
        std::deque<int> next = values;
        AfterEachCycle([this, &next] {
            next.pop_front();
            if (!next.empty())
                Hold(100, next.front());
        });
        Hold(100, next.front());
        EXPECT_EQ(Program->ReadBack.Run(), result);
        EXPECT_TRUE(next.empty());
        EXPECT_EQ(Program->ReadBack.SnapshotRow(1), snapshot);
        EXPECT_FALSE(Program->LiveLog.DatalogOn);
    }
    // Retries used up: no file, no message.
    AfterEachCycle([this] { Hold(100, Held(100) == "1" ? 10 : 1); });
    SaveInVain();
    EXPECT_EQ(EventLog().back(), "Setpoints not saved: the poll cycles differed three times");
}

TEST_F(SetpointFiles, TheUserSeesAWaitAndCanEndIt) {
    std::vector<std::string> seen;
    TReadBack& readBack = Program->ReadBack;
    const auto watch = readBack.Changed.Connect([&] { seen.push_back(readBack.ProgressText()); });
    readBack.Run();
    const std::string text = "Reading the device: ";
    EXPECT_THAT(seen, ElementsAre(text + "the log starts", text + "cycle 1 of 3, question 1 of 1",
                                  text + "cycle 2 of 3, question 1 of 1",
                                  text + "cycle 3 of 3, question 1 of 1", ""));

    const auto savedMeanwhile = [this](const std::function<void()>& action) {
        Time.After(150, action);
        SaveInVain();
        EXPECT_FALSE(Program->ReadBack.Running());
        return EventLog().back();
    };
    const std::string ended = "Setpoints not saved: the reading was ended";
    EXPECT_EQ(savedMeanwhile([&] {
                  Program->SetpointFiles.Savesetpoints1Click();
                  Program->SetpointFiles.Loadsetpointfromfile1Click();
                  EXPECT_THROW(readBack.Run(), TError);
                  readBack.Cancel();
              }),
              ended);
    Main().MemoEventLog.Clear();
    EXPECT_EQ(savedMeanwhile([this] { Driver().init("410000000003", Program->ApiClient); }),
              "The device 410000000001.hv.example was left in the middle of an action, which has ended");
    EXPECT_EQ(savedMeanwhile([&] {
                  Program->LiveLog.StopLog();
                  Time.After(60000, [&] {
                      EXPECT_EQ(readBack.ProgressText(), text + "the log is stopped");
                      Program->LiveLog.StartLog(false, true);
                      Program->ModbusPanel.SetMpanelPLSpath("/t/q.pls");
                  });
              }),
              "Setpoints not saved: another profile was opened");
    // A row that cannot be shown ends the polling.
    OpenRows("A=Air ;100;0;99;1;0;40100;x;1;;;;;;G;\n");
    Page().SetpointTreeView.SetSelected(TTreeView::TSelection{0, 0});
    EXPECT_THROW(Page().SetpointTreeView.OnClick(), EConvertError);
    ExpectEntry(Page().Savesetpoints1);
    Dialogs.ExpectMessage("'x' is not a valid integer value (field 8 of row \"Air\")");
    Time.After(60000, [&] {
        EXPECT_EQ(Main().LblReadBack.Caption(), text + "the log is stopped");
        readBack.Cancel();
    });
    RightClick();
}

} // namespace
} // namespace tidewell::test
