#include "setpoints/LoadSetpoints.h"

#include "core/Errors.h"
#include "core/KvSupport.h"
#include "core/TextFile.h"
#include "setpoints/SetpointFixture.h"

namespace tidewell::test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string head = "Created at : 1;\nDevice name : M;\nProfile : p;\nSetpointName;F;RawValue;Min;\n";

class LoadSetpoints : public TSetpointFixture {
  protected:
    LoadSetpoints() { Files.CreateDirectories("/t/log/systemlog"); }
    bool Load(const std::string& bytes) {
        Files.Put("/t/f.csv", bytes);
        return Form.LoadForm("/t/f.csv");
    }
    // Each record: name, raw value, address.
    void LoadRecords(const std::vector<std::array<std::string, 3>>& records) {
        std::string text = head;
        for (const auto& [name, raw, address] : records)
            text += name + "; =" + raw + " ;" + raw + ";0;9;0;0;" + address + ";0;\r\n";
        ASSERT_TRUE(Load(text));
    }
    // The counts that a run must end with.
    void ExpectResult(int errors, int readErrors) {
        Result = "Setpointwrite is done. Number of write Errors " + std::to_string(errors) +
                 " Number of Read error " + std::to_string(readErrors) +
                 " Resultfile saved in systemlog folder";
        Dialogs.ExpectMessage(Result);
    }
    void Write(int errors, int readErrors) {
        ExpectResult(errors, readErrors);
        Form.ButWriteSetpoints.Click();
        EXPECT_EQ(Form.ErrorCount, errors);
        EXPECT_TRUE(Form.ButPanel.Visible());
        EXPECT_FALSE(Form.ProgressBar.Visible() || Form.progresslabel.Visible() ||
                     Form.ButEndReadBack.Visible());
    }
    std::vector<TColor> Colors() const {
        std::vector<TColor> colors;
        for (const auto& row : Form.ResultList.Rows())
            colors.push_back(row.Color);
        return colors;
    }
    // Of a file written so many seconds from now.
    std::string Stamp(int seconds = 0) const {
        const TTime time = Time.Now() + std::chrono::seconds(seconds);
        return DigitsOnly(Time.ShortDate(time) + Time.LongTime(time));
    }
    std::string Result;
};

constexpr TColor green{0x008000};
constexpr TColor red{0x0000FF};

} // namespace

TEST_F(LoadSetpoints, TakesOnlyASetpointFile) {
    const std::string record = "Air ;x;215;0;9;1;5;40100;1;";
    // Rows of the grid; none for a file that is refused.
    for (const auto& [bytes, rows] :
         std::vector<std::pair<std::string, std::size_t>>{{"", 0},
                                                          {"1\n2\nSetpointName;\n", 0},
                                                          {"1\n2\n3\nSetpointname;F;RawValue;\n", 0},
                                                          {head, 1},
                                                          {head + record + "\n" + record, 3},
                                                          {"\xEF\xBB\xBF" + head + record, 2}}) {
        SCOPED_TRACE(bytes);
        ASSERT_EQ(Load(bytes), rows > 0);
        EXPECT_EQ(Form.FileName.empty(), rows == 0);
        EXPECT_EQ(Form.setpointgrid.Cells.RowCount(), std::max<std::size_t>(rows, 1));
    }
    EXPECT_EQ(Form.Caption(), "Created at : 1; Device name : M;");
    EXPECT_THAT(Form.setpointgrid.Cells.Row(0), ElementsAre("SetpointName", "RawValue", "Enabled"));
    EXPECT_THAT(Form.setpointgrid.Cells.Row(1), ElementsAre("Air", "22.0", "1"));
    EXPECT_EQ(Form.LabSelected.Caption(), "1 of 1 selected");
    MemoEventLog.Clear();
    EXPECT_FALSE(Load("1\r\n2\r\n3\r\nName;F;\r\n5\r\n"));
    EXPECT_THAT(MemoEventLog.Lines(), ElementsAre("Number of setpoints 5", "Name"));
    MemoEventLog.Clear();
    EXPECT_TRUE(Load(head + "K\xFChler;x;1;0;9;0;0;1;0;\r\n")); // Windows-1252
    EXPECT_EQ(Form.setpointgrid.Cells.Cell(0, 1), "Kühler");
    EXPECT_THAT(MemoEventLog.Lines(),
                ElementsAre("Number of setpoints 5", "SetpointName", "productionmode = false"));

    // A record that lacks columns, or whose value is none.
    try {
        Load(head + record + "\nBoost;x;3;\n");
        FAIL();
    } catch (const EConvertError& error) {
        EXPECT_THAT(error.what(), HasSubstr("/t/f.csv, line 6 (Boost), Decimal or Offset: ''"));
    }
    EXPECT_EQ(Form.setpointgrid.Cells.RowCount(), 1U);
    EXPECT_THROW(Form.LoadForm("/t/none.csv"), EInOutError);
    Dialogs.ExpectMessage("Error Data not valid Code= 1");
    Dialogs.ExpectMessage("Error Data not valid Code= 2");
    ASSERT_TRUE(Load(head + record + "\nBad;x;Error no value;0;9;0;0;7;0;\nWorse;x;5--3;0;9;0;0;7;0;\n"));
    EXPECT_EQ(Form.setpointgrid.Cells.Cell(1, 2), "22.0"); // what the text held
}

TEST_F(LoadSetpoints, AHundredThousandRecordsAreTakenAndTheBadOnesCounted) {
    std::string text = head;
    for (int i = 0; i < 100000; ++i)
        text += i % 2 == 0 ? "Air;x;12;0;9;0;0;40100;0;\r\n" : "Bad;x;;0;9;0;0;40100;0;\r\n";
    for (int i = 0; i < 10; ++i)
        Dialogs.ExpectMessage("Error Data not valid Code= 1");
    Dialogs.ExpectMessage("Error Data not valid in 49990 further setpoints");
    ASSERT_TRUE(Load(text));
    EXPECT_EQ(Form.LabSelected.Caption(), "100000 of 100000 selected");
}

TEST_F(LoadSetpoints, ChecksAreSetByMouseKeyAndButton) {
    LoadRecords({{"Air", "1", "40100"}, {"Boost", "2", "40101"}});
    // The box of a cell from 200 to 260 and from 16 to 34 spans 244 to 256 and 19 to 31.
    const auto flips = [this](int column, int row, int x, int y) {
        const std::string before = Form.setpointgrid.Cells.Cell(2, 1);
        Form.setpointgrid.OnClick({column, row, x, y, {200, 16, 260, 34}});
        return Form.setpointgrid.Cells.Cell(2, 1) != before;
    };
    EXPECT_TRUE(flips(2, 1, 242, 17));
    EXPECT_TRUE(flips(2, 1, 257, 32));
    EXPECT_FALSE(flips(2, 1, 241, 17) || flips(2, 1, 258, 20) || flips(2, 1, 250, 16) ||
                 flips(2, 1, 250, 33));
    EXPECT_FALSE(flips(1, 1, 250, 20) || flips(2, 0, 250, 20) || flips(2, 3, 250, 20) ||
                 flips(2, -1, 250, 20));
    EXPECT_EQ(Form.setpointgrid.BoxRect({200, 0, 210, 18}).Left, 204); // a cell narrower than the box
    Form.setpointgrid.SetSelectedRow(2);
    Form.setpointgrid.OnKeyPress(" ");
    Form.setpointgrid.OnKeyPress("x");
    EXPECT_EQ(Form.LabSelected.Caption(), "1 of 2 selected");
    const TCellLook box = Form.setpointgrid.OnDrawCell(2, 2);
    EXPECT_EQ(box.Box, false);
    EXPECT_TRUE(box.Selected && box.Stripe);
    EXPECT_EQ(Form.setpointgrid.OnDrawCell(1, 1).Text, "1");
    // A click below a click counts once.
    auto repaint = Form.setpointgrid.Changed.Connect([&] { EXPECT_FALSE(flips(2, 1, 250, 20)); });
    EXPECT_TRUE(flips(2, 1, 250, 20));
    EXPECT_EQ(Form.LabSelected.Caption(), "0 of 2 selected");
    repaint.Release();
    Form.ButcheckAll.Click();
    EXPECT_EQ(Form.LabSelected.Caption(), "2 of 2 selected");
    EXPECT_EQ(Form.setpointgrid.Cells.Cell(2, 0), "Enabled");
    Form.ButClearAll.Click();
    EXPECT_EQ(Form.LabSelected.Caption(), "0 of 2 selected");
    Form.SetpointGridResized(712);
    EXPECT_THAT(Form.setpointgrid.ColWidths, ElementsAre(404, 202, 101));
}

TEST_F(LoadSetpoints, ARunNeedsADeviceAndASelection) {
    LoadRecords({{"Air", "1", "40100"}});
    Form.ButClearAll.Click();
    Dialogs.ExpectMessage("Please select a setpoint...");
    Form.ButWriteSetpoints.Click();
    EXPECT_THAT(Host.Events, ElementsAre("stop", "stop"));
    SelectedSetpointParent.clear();
    Dialogs.ExpectMessage("Click on a device name");
    Form.ButWriteSetpoints.Click();
    EXPECT_TRUE(Form.setpointgrid.Visible() && Form.ButPanel.Visible());
    EXPECT_FALSE(Form.ResultList.Visible());
    EXPECT_EQ(MemoEventLog.Lines().back(), "Writing setpoint to device Status Productionmode False");
    EXPECT_THAT(Files.List("/t/log/systemlog", "*"), IsEmpty());
}

TEST_F(LoadSetpoints, ARunWritesReadsComparesAndLeavesItsLines) {
    LoadProfile("A=Air;100;0;99;1;0;40100;3;1;;;;;;G;\nB=Boost;101;0;9;0;0;40101;4;0;;;;;;G;\n"
                "C=Code;102;0;9;0;0;40102;;0;;;;;;G;\nD=Duct;103;-9;9;0;0;40103;6;0;;;;;;G;\n"
                "E=Empty;;-9;9;0;0;40104;7;0;;;;;;G;\nF=Far;103;-9;9;0;0;40105;77;0;;;;;;G;\n");
    Controller.Faults.Add(
        {EFault::RefuseWrite, 2, "", {.ToMs = {}, .Query = {}, .Obj = {}, .Address = 101, .Times = {}}});
    Dialogs.ExpectMessage("Error Data not valid Code= 1");
    LoadRecords({{"Air", "7", "40100"},
                 {"Boost", "2", "40101"},
                 {"Code", "Error strucnumber", "40102"},
                 {"Duct", "-4", "40103"},
                 {"Empty", "5", "40104"},
                 {"Air", "007", " 40100"},
                 {"Other", "5", "41000"},
                 {"None", "5", "x"},
                 {"Far", "-5", "40105"},
                 {"Off", "6", "40100"}});
    Form.setpointgrid.SetSelectedRow(10);
    Form.setpointgrid.OnKeyPress(" ");
    int shown = 0;
    const auto results = Form.ResultList.Changed.Connect([&] { ++shown; });
    Host.OnStart = [&] {
        EXPECT_EQ(shown, 4); // shown, emptied twice, filled; held back since
        EXPECT_FALSE(Form.ButPanel.Visible());
        EXPECT_TRUE(Form.ResultList.Visible());
    };
    Time.After(3000, [this] {
        EXPECT_EQ(Form.progresslabel.Caption(), "Please wait reading of setpoints is in progress");
        EXPECT_TRUE(Form.ButEndReadBack.Visible());
        EXPECT_THAT(Form.LabReadBack.Caption(), HasSubstr("cycle 2 of 3"));
        Form.ButWriteSetpoints.Click(); // nothing while a run is on
        Form.ButCancel.Click();
        EXPECT_TRUE(Form.Visible());
    });
    Dialogs.Show(Form);
    Write(4, 4);
    EXPECT_EQ(shown, 5);
    EXPECT_THAT(Colors(), ElementsAre(green, red, green, green, red, green, red, red, green));
    EXPECT_EQ(Held(3), 65531);
    const std::string cycle = "7; 20; 0; 65531; ";
    EXPECT_THAT(
        ReadLines(Files, "/t/log/systemlog/WriteMultibleSetpointsResult " + Stamp() + ".csv"),
        ElementsAre(
            "Name: AirValue:  =7  success Madr : 40100 -> EEadr 100 Value  = 7",
            "Name: BoostValue:  =2  _Write_Error Madr : 40101 -> EEadr 101 Value  = 2 Responsstatus 2",
            "Name: CodeValue:  =Error strucnumber  success Madr : 40102 -> EEadr 102 Value  = 0",
            "Name: DuctValue:  =-4  success Madr : 40103 -> EEadr 103 Value  = -4",
            "Name: EmptyValue:  =5  _Write_Error Madr : 40104 -> EEadr 40104 Value  = 5 Responsstatus 0",
            "Name: AirValue:  =007  success Madr :  40100 -> EEadr 100 Value  = 7",
            "Name: OtherValue:  =5  _Write_Error Madr : 41000 -> EEadr 41000 Value  = 5 Responsstatus 0",
            "Name: NoneValue:  =5  _Write_Error Madr : x -> EEadr 9999 Value  = 5 Responsstatus 0",
            "Name: FarValue:  =-5  success Madr : 40105 -> EEadr 103 Value  = -5",
            "compare written values with read values",
            "Madr : 40100 Structnumber : 3 written value: 7 read value: 7 result : Write/Read success",
            "Madr : 40101 result : Read skipped since write went wrong", "Didnt find structnumber",
            "Madr : 40102 Structnumber :  written value:  read value:  result : Write/Read Error",
            "Madr : 40103 Structnumber : 6 written value: -4 read value: 65531 result : Write/Read Error",
            "Madr : 40104 result : Read skipped since write went wrong",
            "Madr :  40100 Structnumber : 3 written value: 007 read value: 7 result : Write/Read Error",
            "Madr : 41000 result : Read skipped since write went wrong",
            "Madr : x result : Read skipped since write went wrong",
            "Madr : 40105 Structnumber : 77 written value: -5 read value:  result : Write/Read Error",
            "DevStrucnumlist start", "40100=3", "40101=4", "40102=", "40103=6", "40104=7", "40105=77",
            "DevStrucnumlist end", "Device set/datapoint dumb of readlists", cycle, cycle,
            "Result of load setpoints", Result));
    EXPECT_EQ(MemoEventLog.Lines().back(),
              "Saved file \\t\\log\\systemlog\\WriteMultibleSetpointsResult " + Stamp() + ".csv");
    Form.ResultList.OnClick();
    EXPECT_TRUE(Form.setpointgrid.Visible());
    Form.ButCancel.Click();
    EXPECT_FALSE(Form.Visible());
}

// What the link cannot tell reads as status 1, the status of a good write; the compare finds it out.
TEST_F(LoadSetpoints, OnlyTheReadBackTellsALostWrite) {
    for (const EFault fault : {EFault::Error, EFault::NoAnswer, EFault::Garbage, EFault::ChangeAfterWrite}) {
        Controller.Faults.Replace(
            {{fault,
              1,
              "no",
              {.ToMs = {}, .Query = "setpointWriteValue.json", .Obj = {}, .Address = {}, .Times = 1}}});
        Set(0, 10);
        LoadRecords({{"Air", "7", "40100"}, {"Boost", "8", "40101"}});
        Write(0, 1);
        EXPECT_THAT(Colors(), ElementsAre(green, green));
        EXPECT_NE(Held(0), 7);
        EXPECT_EQ(Held(1), 8);
    }
    // A controller whose good writes have the status 0 is told to have refused them all.
    Controller.WriteStatus = 0;
    Write(2, 0);
    EXPECT_THAT(Colors(), ElementsAre(red, red));
    EXPECT_EQ(Held(0), 7);
}

TEST_F(LoadSetpoints, ARunWithoutASnapshotStillLeavesItsResult) {
    LoadRecords({{"Air", "7", "40100"}, {"Boost", "8", "40101"}});
    const auto writeInVain = [this](bool dumped) {
        Write(0, 2);
        EXPECT_EQ(Form.LastWriteResultList[2],
                  "Error reading device set/datapoint No compare of setpoints done");
        EXPECT_EQ(Form.LastWriteResultList.size(), 8U);
        EXPECT_EQ(Form.LastWriteResultList[4].empty(), !dumped);
    };
    Host.OnCycle = [this] { // uses up the retries
        Set(3, Held(3) == 1 ? 10 : 1);
    };
    writeInVain(true);
    Time.After(1000, [this] { Form.ButEndReadBack.Click(); });
    writeInVain(false);
    Device.initialized = false; // no link
    writeInVain(false);
    Device.initialized = true;
    Host.OnStart = [] {
        throw TError("XAxisJump is 0");
    };
    Dialogs.ExpectMessage("XAxisJump is 0");
    writeInVain(false);

    // No folder for the result: it goes where the user wants it.
    Host.OnStart = [] {
    };
    Host.OnCycle = Host.OnStart;
    Files.Directories.erase("/t/log/systemlog");
    for (int second = 0; second < 60; ++second)
        Dialogs.AllowMessage("Cannot write /t/log/systemlog/WriteMultibleSetpointsResult " + Stamp(second) +
                             ".csv: No such file or directory");
    ExpectResult(0, 0);
    Dialogs.ExpectSaveFile("Save the result of the setpoint write", "/t/r");
    Form.ButWriteSetpoints.Click();
    EXPECT_EQ(ReadLines(Files, "/t/r.csv"), Form.LastWriteResultList);
    EXPECT_EQ(MemoEventLog.Lines().back(), "Saved file /t/r.csv");
}

TEST_F(LoadSetpoints, TheCloseOfTheMainFormEndsARun) {
    LoadRecords({{"Air", "7", "40100"}, {"Boost", "8", "40101"}});
    const auto close = [this] {
        Host.Open = false;
    };
    for (const bool duringWrites : {false, true}) {
        Host.Open = true;
        Host.Events.clear();
        Set(1, 20);
        Time.Advance(1000); // the name of the result tells the second
        Library.OnCall = duringWrites ? close : std::function<void()>();
        Time.After(1000, close);
        Form.ButWriteSetpoints.Click(); // shows no message
        EXPECT_EQ(Held(1), duringWrites ? 20 : 8);
        EXPECT_EQ(Host.Events.size(), duringWrites ? 1U : 3U);
        EXPECT_THAT(Form.LastWriteResultList.back(),
                    HasSubstr("Number of Read error " + std::to_string(duringWrites ? 1 : 2)));
    }
    EXPECT_EQ(Files.List("/t/log/systemlog", "Write*").size(), 2U);
    // What closes the form must not outlive it.
    Library.OnCall = {};
    Time.Advance(1000);
}

} // namespace tidewell::test
