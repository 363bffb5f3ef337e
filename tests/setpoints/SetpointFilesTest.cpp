#include "setpoints/SetpointFiles.h"

#include "core/Errors.h"
#include "setpoints/SetpointFixture.h"

#include <deque>

namespace tidewell::test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string blanks = "          ";
const std::string head =
    "Created at : 02-03-2026;\r\nDevice name : Main Device;\r\nProfile : /t/p.pls;\r\n"
    "SetpointName;Formatted value;RawValue;Min;Max;Decimal;Offset;ModbusAdr;Enhed;User1;User2;User3;User4;"
    "User5;\r\n";

class SetpointFiles : public TSetpointFixture {
  protected:
    SetpointFiles() {
        Texts.DataUnits = TIniSection(std::vector<TIniSection::TRow>{{"1", "°C"}});
        Texts.UserUnits = TIniSection({{"a", "off"}, {"b", "low"}, {"c", "high"}, {"d", "full"}, {"e", "-"}});
        Texts.DialogOpenProfileCaption = "Open";
        Texts.DialogSaveDatalogFile = "Save as";
        Texts.SetpointFileRefused = "No setpoint file";
        Files.CreateDirectories("/t/setpoint");
    }
    // The file that a save leaves.
    std::string Save() {
        Dialogs.ExpectSaveFile("Save as", "/t/setpoint/x.csv");
        Setpoints.Savesetpoints1Click();
        return Files.Read("/t/setpoint/x.csv");
    }
    static std::string Record(const std::string& name, const std::string& value, const std::string& rest) {
        return name + ";" + blanks + value + blanks + ";" + rest + "\r\n";
    }

    TSetpointTexts Texts;
    TSetpointFiles Setpoints{TSetpointFiles::TParts{Dialogs, Files, Time, Panel, Host, ReadBack, Form,
                                                    MemoEventLog, Texts, SelectedSetpointParent,
                                                    Paths.directorypath}};
};

} // namespace

TEST_F(SetpointFiles, ASaveHoldsEverySetpointWhateverItsRow) {
    Set(0, -15);
    Set(1, 3);
    Set(2, 4);
    Set(3, 54321);
    // Rows are listed in the order of their text. Key: name; EEadr; Min; Max; Decimal; Offset; ModbusAdr;
    // structnumber; Enhed; User1 to 5.
    LoadProfile("k0=A Air;1;-50;99;1;5; 40100 ;3;1;u1;u2;u3;u4;u5;G;\n"
                "k1=B Mode;1;0;9;0;0;40101;4;7;;;;;;G;\n"
                "k2=B Mode of the last text;1;0;9;0;0;40102;5;10;;;;;;G;\n"
                "k3=C;1;0;9;0;0;40103;3;0;;;;;;G;\n"
                "k4=D none;1;0;9;0;0;40104;;1;;;;;;G;\n"
                "k5=E low;1;0;9;0;0;40105;2;0;;;;;;G;\n"
                "k6=F beyond;1;0;9;0;0;40106;7;8;;;;;;G;\n"
                "k7=G big;1;0;9;-4;0;40107;6;0;;;;;;G;\n"
                "k8=Ø;1;0;9;0;0;40108;3;0;;;;;;G;\n"
                "k9=Øl;1;0;9;2;0;x;s3;zz;;;;;;G;\n");
    for (int marker = 0; marker < 3; ++marker)
        Dialogs.ExpectMessage("Error Data not valid Code= 1");
    EXPECT_EQ(Save(), head + Record("A Air", "-1.0 °C", "-15;-50;99;1;5; 40100 ;1;u1;u2;u3;u4;u5;") +
                          Record("B Mode of the last text", "4", "4;0;9;0;0;40102;10;;;;;;") +
                          Record("B Mode", "full", "3;0;9;0;0;40101;7;;;;;;") +
                          Record("D none", "3 °C", "Error strucnumber;0;9;0;0;40104;1;;;;;;") +
                          Record("E low", "3", "Error structnumber;0;9;0;0;40105;0;;;;;;") +
                          Record("F beyond", "3", "Error no value;0;9;0;0;40106;8;;;;;;") +
                          Record("G big", "5.4321E8", "54321;0;9;-4;0;40107;0;;;;;;") +
                          Record("Øl", "-0.15", "-15;0;9;2;0;x;zz;;;;;;"));
    EXPECT_THAT(Host.Events, ElementsAre("stop", "start clear", "stop"));
    EXPECT_THAT(MemoEventLog.Lines(), ElementsAre("Saved Setpointfile /t/setpoint/x.csv"));
    EXPECT_FALSE(Dialogs.LastFileDialog.AskOverwrite);
    EXPECT_EQ(Dialogs.LastFileDialog.InitialDirectory, "/t/setpoint");

    // No setpoint question: the head alone. A device without such a node: nothing.
    Files.Put("/t/p.pls", "[NabtoDevice]\nq=0;3;100;4;\n[Main Device]\nEnable=1\nR1=1;4;0;4;L;\n[L]\na=x;\n");
    Panel.InitQuestionStringlistStructures();
    EXPECT_EQ(Save(), head);
    for (const char* node : {"0", ""}) {
        SelectedSetpointParent = node;
        Host.Events.clear();
        Setpoints.Savesetpoints1Click();
        EXPECT_THAT(Host.Events, ElementsAre("stop"));
    }
}

TEST_F(SetpointFiles, AFaultOfTheProfileNamesTheSetpointAndLeavesNoFile) {
    for (const auto& [row, error] : std::vector<std::pair<std::string, std::string>>{
             {"X=Mode;1;0;9;1;0;7;3;7;", "Setpoint Mode: '1.0' is not a valid integer value"},
             {"X=Mode;1;0;9;1;0;7;2;10;", "Setpoint Mode: '' is not a valid integer value"},
             {"X=Mode;1;0;9;a;0;7;3;1;", "Setpoint Mode: 'a' is not a valid integer value"},
             {"X=Mode;1;0;9;1;0;7;--3;1;", "Setpoint Mode: structnumber '--3' is not a valid integer value"},
             {"X=Mode;1;0;9;1;0;7;" + std::string(300, '3') + ";1;", ""}}) {
        SCOPED_TRACE(row);
        LoadProfile(row + ";;;;;G;\n");
        if (row.find(";2;") != std::string::npos)
            Dialogs.ExpectMessage("Error Data not valid Code= 1");
        try {
            Setpoints.SetpointSaveSetpoints("Main Device");
            FAIL();
        } catch (const EConvertError& fault) {
            EXPECT_THAT(fault.what(), HasSubstr(error));
        }
        EXPECT_FALSE(ReadBack.Running());
    }
}

TEST_F(SetpointFiles, TheFileGoesWhereItCan) {
    for (const char* chosen :
         {"/t/setpoint/report", "/t/setpoint/report.csv.txt", "/t/setpoint/report.CSV"}) {
        Dialogs.ExpectSaveFile("Save as", chosen);
        Setpoints.Savesetpoints1Click();
    }
    EXPECT_THAT(Files.List("/t/setpoint", "*"),
                ElementsAre("report.CSV.csv", "report.csv", "report.csv.txt"));
    // A folder that is gone, a file that is kept, then a place that will do; the reading is not lost.
    Files.Put("/t/old.csv", "old");
    for (const char* place : {"/gone/a.csv", "/t/old.csv", "/t/b.csv"})
        Dialogs.ExpectSaveFile("Save as", place);
    Dialogs.AllowMessage("Cannot write /gone/a.csv: No such file or directory");
    Dialogs.AllowMessage("Cannot write /t/old.csv: Permission denied");
    Files.Unwritable.insert("/t/old.csv");
    Host.Events.clear();
    Setpoints.Savesetpoints1Click();
    EXPECT_EQ(Files.Read("/t/old.csv"), "old");
    EXPECT_EQ(Files.Read("/t/b.csv"), Files.Read("/t/setpoint/report.csv"));
    EXPECT_THAT(Host.Events, ElementsAre("stop", "start clear", "stop"));

    Files.Room = 10;
    Dialogs.ExpectSaveFile("Save as", "/t/c.csv");
    Dialogs.ExpectMessage("Cannot write /t/c.csv: No space left on device");
    Dialogs.ExpectSaveFile("Save as", std::nullopt);
    Setpoints.Savesetpoints1Click();
    EXPECT_FALSE(Files.FileExists("/t/c.csv"));
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
        Host.OnCycle = [this, &next] {
            next.pop_front();
            if (!next.empty())
                Set(0, next.front());
        };
        Set(0, next.front());
        EXPECT_EQ(ReadBack.Run(), result);
        EXPECT_TRUE(next.empty());
        EXPECT_EQ(ReadBack.SnapshotRow(1), snapshot);
        EXPECT_EQ(Host.Events.back(), "stop");
    }
    EXPECT_THAT(Time.Sleeps, testing::Each(1));

    // Retries used up: no file, no word.
    Host.OnCycle = [this] {
        Set(0, Held(0) == 1 ? 10 : 1);
    };
    Setpoints.Savesetpoints1Click();
    EXPECT_THAT(MemoEventLog.Lines(), IsEmpty());
}

TEST_F(SetpointFiles, TheUserSeesAWaitAndCanEndIt) {
    std::vector<std::string> seen;
    const auto watch = ReadBack.Changed.Connect([&] { seen.push_back(ReadBack.ProgressText()); });
    ReadBack.Run();
    const std::string text = "Reading the device: cycle ";
    EXPECT_THAT(seen, ElementsAre("Reading the device: the log starts", text + "1 of 3, question 1 of 1",
                                  text + "2 of 3, question 1 of 1", text + "3 of 3, question 1 of 1", ""));

    const std::string ended = "Setpoints not saved: the reading was ended";
    const auto saveAndMeanwhile = [this](const std::function<void()>& action) {
        Host.Events.clear();
        Time.After(3000, action);
        Setpoints.Savesetpoints1Click();
        EXPECT_THAT(Host.Events, ElementsAre("stop", "start clear", "stop"));
        EXPECT_FALSE(ReadBack.Running());
        return MemoEventLog.Lines().back();
    };
    EXPECT_EQ(saveAndMeanwhile([this] {
                  Setpoints.Savesetpoints1Click();
                  Setpoints.Loadsetpointfromfile1Click();
                  EXPECT_THROW(ReadBack.Run(), TError);
                  ReadBack.Cancel();
              }),
              ended);
    EXPECT_EQ(saveAndMeanwhile([this] {
                  Device.stopLog();
                  Time.After(60000, [this] {
                      EXPECT_EQ(ReadBack.ProgressText(), "Reading the device: the log is stopped");
                      Device.startLog();
                      Panel.SetMpanelPLSpath("/t/q.pls");
                  });
              }),
              "Setpoints not saved: another profile was opened");
    MemoEventLog.Clear();
    EXPECT_EQ(saveAndMeanwhile([this] { Device.device = "999999999999"; }), ended);
    MemoEventLog.Clear();
    EXPECT_EQ(saveAndMeanwhile([this] { Host.Open = false; }), ended);
    Host.Open = true;
    Device.initialized = false; // the link does not stand
    Setpoints.Savesetpoints1Click();
    EXPECT_EQ(MemoEventLog.Lines().back(), "Setpoints not saved: the log did not start");
}

TEST_F(SetpointFiles, LoadOpensTheFormForASetpointFile) {
    Files.Put("/t/setpoint/good.csv", head + "Air;x;5;0;9;0;0;40100;0;\r\n");
    Files.Put("/t/setpoint/bad.csv", "1\r\n2\r\n3\r\n");
    Dialogs.ExpectOpenFile("Open", std::nullopt);
    Setpoints.Loadsetpointfromfile1Click();
    EXPECT_EQ(Form.ErrorCount, 9999);
    const TFileDialog& dialog = Dialogs.LastFileDialog;
    EXPECT_EQ(dialog.Filters[dialog.SelectedFilter].Mask, " *.zls;*.csv");
    EXPECT_EQ(dialog.InitialDirectory, "/t/setpoint");
    EXPECT_TRUE(dialog.FileMustExist);

    Dialogs.ExpectOpenFile("Open", "/t/setpoint/bad.csv");
    Dialogs.ExpectMessage("No setpoint file");
    Setpoints.Loadsetpointfromfile1Click();

    Form.ResultList.Add({"old", {}});
    Dialogs.ExpectOpenFile("Open", "/t/setpoint/good.csv");
    Dialogs.ExpectForm("LoadSetpoints", [this](TForm&) { EXPECT_THAT(Form.ResultList.Rows(), IsEmpty()); });
    Setpoints.Loadsetpointfromfile1Click();
    EXPECT_EQ(MemoEventLog.Lines().back(), "Load Setpointfile /t/setpoint/good.csv");
    EXPECT_THAT(Host.Events, ElementsAre("stop", "stop", "stop"));
}

} // namespace tidewell::test
