#include "core/Errors.h"
#include "scenario/SetpointProgram.h"

#include <gmock/gmock.h>

namespace tidewell::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string head = "Created at : 1;\nDevice name : M;\nProfile : p;\nSetpointName;F;RawValue;Min;\n";
const std::string record = "Air ;x;215;0;9;1;5;40100;1;\n";

class LoadSetpoints : public TSetpointProgram {
  protected:
    LoadSetpoints() {
        Start();
        Program->LiveLog.TimerLogAutostart->SetEnabled(false);
        Page().SelectedSetpointParent = "Main Device";
    }
    bool Take(const std::string& bytes) {
        Files.Put("/t/f.csv", bytes);
        return Form().LoadForm("/t/f.csv");
    }
};

TEST_F(LoadSetpoints, TakesOnlyASetpointFile) {
    const TStringTable& cells = Form().setpointgrid.Cells;
    // Rows of the grid; none for a file that is refused.
    for (const auto& [bytes, rows] :
         std::vector<std::pair<std::string, std::size_t>>{{"", 0},
                                                          {"1\n2\nSetpointName;\n", 0},
                                                          {"1\n2\n3\nSetpointname;F;RawValue;\n", 0},
                                                          {head, 1},
                                                          {head + record + record, 3},
                                                          {"\xEF\xBB\xBF" + head + record, 2}}) {
        SCOPED_TRACE(bytes);
        ASSERT_EQ(Take(bytes), rows > 0);
        EXPECT_EQ(Form().FileName.empty(), rows == 0);
        EXPECT_EQ(cells.RowCount(), std::max<std::size_t>(rows, 1));
    }
    EXPECT_EQ(Form().Caption(), "Created at : 1; Device name : M;");
    EXPECT_THAT(cells.Row(0), ElementsAre("SetpointName", "RawValue", "Enabled"));
    EXPECT_THAT(cells.Row(1), ElementsAre("Air", "22.0", "1"));
    EXPECT_TRUE(Take(head + "K\xFChler;x;1;0;9;0;0;1;0;\r\n")); // Windows-1252
    EXPECT_EQ(cells.Cell(0, 1), "Kühler");
    EXPECT_THAT(
        [&] { Take(head + record + "Boost;x;3;\n"); },
        testing::ThrowsMessage<EConvertError>(HasSubstr("/t/f.csv, line 6 (Boost), Decimal or Offset: ''")));
    EXPECT_EQ(cells.RowCount(), 1U);
    EXPECT_THROW(Form().LoadForm("/t/none.csv"), EInOutError);
}

TEST_F(LoadSetpoints, ChecksAreSetByMouseKeyAndButton) {
    TStringGrid& grid = Form().setpointgrid;
    ASSERT_TRUE(Take(head + record + record));
    // The box of a cell from 200 to 260 and from 16 to 34 spans 244 to 256 and 19 to 31.
    const auto flips = [&grid](int column, int row, int x, int y) {
        const std::string before = grid.Cells.Cell(2, 1);
        grid.OnClick({column, row, x, y, {200, 16, 260, 34}});
        return grid.Cells.Cell(2, 1) != before;
    };
    EXPECT_TRUE(flips(2, 1, 242, 17));
    EXPECT_TRUE(flips(2, 1, 257, 32));
    EXPECT_FALSE(flips(2, 1, 241, 17) || flips(2, 1, 258, 20) || flips(2, 1, 250, 16) ||
                 flips(2, 1, 250, 33) || flips(1, 1, 250, 20) || flips(2, 0, 250, 20) ||
                 flips(2, 3, 250, 20) || flips(2, -1, 250, 20));
    EXPECT_EQ(grid.BoxRect({200, 0, 210, 18}).Left, 204); // a cell narrower than the box
    grid.SetSelectedRow(2);
    grid.OnKeyPress(" ");
    grid.OnKeyPress("x");
    EXPECT_EQ(Form().LabSelected.Caption(), "1 of 2 selected");
    const TCellLook box = grid.OnDrawCell(2, 2);
    EXPECT_TRUE(box.Box == false && box.Selected && box.Stripe);
    Form().SetpointGridResized(712);
    EXPECT_THAT(grid.ColWidths, ElementsAre(404, 202, 101));
    Form().ButcheckAll.Click();
    EXPECT_EQ(Form().LabSelected.Caption(), "2 of 2 selected");
    EXPECT_EQ(grid.Cells.Cell(2, 0), "Enabled");

    // A run needs a selection and a device.
    Form().ButClearAll.Click();
    Dialogs.ExpectMessage("Please select a setpoint...");
    Form().ButWriteSetpoints.Click();
    Page().SelectedSetpointParent.clear();
    Dialogs.ExpectMessage("Click on a device name");
    Form().ButWriteSetpoints.Click();
    EXPECT_TRUE(grid.Visible() && Form().ButPanel.Visible() && !Form().ResultList.Visible());
    EXPECT_THAT(FilesBelow("/t/log"), IsEmpty());
}

TEST_F(LoadSetpoints, ARunTellsEachStepOfEachKindOfRecord) {
    OpenRows("A=Air;100;0;99;1;0;40100;3;1;;;;;;G;\nB=Boost;101;0;9;0;0;40101;4;0;;;;;;G;\n"
             "C=Code;102;0;9;0;0;40102;;0;;;;;;G;\nD=Duct;103;-9;9;0;0;40103;6;0;;;;;;G;\n"
             "E=Empty;;-9;9;0;0;40104;7;0;;;;;;G;\nF=Far;103;-9;9;0;0;40105;77;0;;;;;;G;\n");
    Controller().Faults.Replace({{EFault::RefuseWrite, 2, "", {.Address = 101}}});
    Dialogs.ExpectMessage("Error Data not valid Code= 1");
    ASSERT_TRUE(Take(head + "Air;a;7;0;9;0;0;40100;\nBoost;b;2;0;9;0;0;40101;\n"
                            "Code;c;Error strucnumber;0;9;0;0;40102;\nDuct;=d ;-4;0;9;0;0;40103;\n"
                            "Empty;e;5;0;9;0;0;40104;\nAir;a;007;0;9;0;0; 40100;\nOther;o;5;0;9;0;0;41000;\n"
                            "None;n;5;0;9;0;0;x;\nFar;f;-5;0;9;0;0;40105;\nOff;o;6;0;9;0;0;40100;\n"));
    Form().setpointgrid.SetSelectedRow(10);
    Form().setpointgrid.OnKeyPress(" ");
    int shown = 0;
    const auto results = Form().ResultList.Changed.Connect([&] { ++shown; });
    Time.After(2000, [&] {
        EXPECT_EQ(shown, 4); // shown, emptied twice, filled; held back since
        EXPECT_FALSE(Form().ButPanel.Visible());
        EXPECT_TRUE(Form().ResultList.Visible());
        EXPECT_EQ(Form().progresslabel.Caption(), "Please wait reading of setpoints is in progress");
        EXPECT_TRUE(Form().ButEndReadBack.Visible());
        EXPECT_THAT(Form().LabReadBack.Caption(), HasSubstr("cycle 2 of 3"));
        Form().ButWriteSetpoints.Click(); // nothing while a run is on
        Form().ButCancel.Click();
        EXPECT_TRUE(Form().Visible());
    });
    Dialogs.Show(Form());
    // The folder of the result is gone: it goes where the user wants it.
    Files.Directories.erase("/t/log/systemlog");
    Dialogs.ExpectMessage(Result(4, 4));
    for (int second = 0; second < 10; ++second)
        Dialogs.AllowMessage("Cannot write " + ResultPath(second) + ": No such file or directory");
    // The dialog asks about the name as it was typed.
    Files.Put("/t/kept.csv", "kept");
    Dialogs.ExpectSaveFile("Save the result of the setpoint write", "/t/kept");
    Dialogs.ExpectMessage("/t/kept.csv already exists. Replace it?", EModalResult::No);
    Dialogs.ExpectSaveFile("Save the result of the setpoint write", "/t/r");
    Form().ButWriteSetpoints.Click();
    EXPECT_EQ(shown, 5);
    EXPECT_EQ(Form().ErrorCount, 4);
    ExpectGolden("each_kind_of_record.csv", Files.Read("/t/r.csv"));
    EXPECT_EQ(EventLog().back(), "Saved file /t/r.csv");
    EXPECT_EQ(Files.Read("/t/kept.csv"), "kept");
    EXPECT_THAT(EventLog(), testing::Contains(testing::StartsWith(
                                "Result of the setpoint write not saved: Cannot write /t/log/systemlog/")));
    // A result of the same second stays.
    Files.CreateDirectories("/t/log/systemlog");
    for (int second = 0; second < 10; ++second)
        Files.Put(ResultPath(second), "earlier");
    Dialogs.ExpectMessage(Result(4, 4));
    Form().ButWriteSetpoints.Click();
    EXPECT_EQ(FilesBelow("/t/log/systemlog").size(), 11u);
    EXPECT_THAT(EventLog().back(), testing::EndsWith("-2.csv"));
    Form().ResultList.OnClick();
    EXPECT_TRUE(Form().setpointgrid.Visible() && Form().ButPanel.Visible());
    EXPECT_FALSE(Form().ResultList.Visible() || Form().ProgressBar.Visible() ||
                 Form().progresslabel.Visible() || Form().ButEndReadBack.Visible());
    Form().ButCancel.Click();
    EXPECT_FALSE(Form().Visible());
}

TEST_F(LoadSetpoints, AWriteThatTheCloseHasKeptBackIsNoSuccess) {
    OpenRows("A=Air;100;0;99;1;0;40100;3;1;;;;;;G;\n");
    ASSERT_TRUE(Take(head + "Air;a;7;0;9;0;0;40100;\n"));
    Dialogs.Show(Form());
    Time.After(0, [this] { Main().Close(); });
    Form().ButWriteSetpoints.Click();
    EXPECT_THAT(Writes(), IsEmpty());
    EXPECT_THAT(ResultLines().at(0), HasSubstr("_Write_Error"));
}

} // namespace
} // namespace tidewell::test
