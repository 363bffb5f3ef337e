#include "rig/Journey.h"

// Where a click hits the boxes of a grid, how wide its columns are and what is selected; all else is told in
// tests/journeys/setpoints.txt and load.txt.
namespace tidewell::test {
namespace {

using testing::ElementsAre;

// Column, row and pixel of a click into that cell.
TCellClick ClickOf(std::string_view input, const TCellRect& cell) {
    const auto number = [&](std::size_t piece) { return ToInteger(Piece(input, piece)); };
    return {number(0), number(1), number(2), number(3), cell};
}

// The program is linked while that is looked at.
void Look(const std::function<void(TJourney& person)>& action) {
    TJourneyCase journey{"setpoints", {{"start linked", "start", "linked", {}}}};
    TJourney person(journey);
    person.OnStep = [&] { action(person); };
    person.Play();
}

void Open(TJourney& person, const std::string& unit, const std::string& value, bool all = true) {
    TInputDialog& dialog = person.World.Program->InputDialog;
    dialog.CurrentSetpointSpecific = "0; Air ;512;0;65535;0;0;40101;3;" + unit + ";;;;2;Air;";
    dialog.CurrentDatavalue = value;
    dialog.ValueSelectAll = all;
    dialog.Hide();
    person.Show(dialog);
}

TEST(SetpointMouse, FlipsBits) {
    Look([](TJourney& person) {
        TInputDialog& dialog = person.World.Program->InputDialog;
        TStringGrid& grid = dialog.binaryvaluegrid;
        const auto digits = [&grid] { return Join(grid.Cells.Row(1), ""); };
        Open(person, "100;Frost", "5");
        const auto click = [&](std::string_view input) {
            dialog.EValue.Enter("typed"); // gives way, even if no box was hit
            const int left = ToInteger(Piece(input, 0)) * 25;
            grid.OnClick(ClickOf(input, {left, 50, left + 25, 90}));
            return dialog.EValue.Text();
        };
        // The box of 18 pixels in the middle of a cell of 25 by 40, and 2 pixels around it.
        ExpectRows(click, {"0|1|1|59 -> 32773", "0|1|0|59 -> 32773", "0|1|1|58 -> 32773", "0|1|22|80 -> 5",
                           "0|1|23|80 -> 5", "0|1|22|81 -> 5", "15|1|386|70 -> 4", "0|0|12|70 -> 4",
                           "-1|-1|12|70 -> 4", "16|1|412|70 -> 4"});
        {
            const auto again = grid.Changed.Connect([&] { click("1|1|37|70"); }); // cannot flip
            ExpectRows(click, {"0|1|12|70 -> 32772"});
        }
        Open(person, "100;a", "-2");
        EXPECT_EQ(digits(), "1111111111111110");
        EXPECT_THROW(Open(person, "100;a", "65536"), ERangeError);
        EXPECT_EQ(digits(), ""); // nothing is left of the row before
    });
}

TEST(SetpointMouse, SelectsWhatIsTypedAnew) {
    Look([](TJourney& person) {
        std::vector<std::string> caret;
        TInputDialog& dialog = person.World.Program->InputDialog;
        TEdit& entry = dialog.EValue;
        const auto all = entry.SelectAllRequested.Connect([&] { caret.push_back("all " + entry.Text()); });
        const auto end = entry.CaretAtEndRequested.Connect([&] { caret.push_back("end " + entry.Text()); });
        const auto focus = entry.FocusRequested.Connect([&] { caret.emplace_back("focus"); });
        Open(person, "1;", "5", false);
        entry.Enter("70000");
        dialog.ButSend.Click();
        EXPECT_THAT(caret, ElementsAre("focus", "end 5", "focus", "all 70000"));
    });
}

TEST(SetpointMouse, ChecksSetpointsOfAList) {
    Look([](TJourney& person) {
        TLoadSetpoints& form = person.World.Program->LoadSetpoints;
        TStringGrid& grid = form.setpointgrid;
        for (const std::string value : {"7", "2"}) { // of a list that is loaded anew nothing is left
            person.World.Files.Put("/t/f.csv", "\xEF\xBB\xBF"
                                               "1\n2\n3\nSetpointName;F;RawValue;\nAir;x;" +
                                                   value + ";0;9;0;0;40100;1;\n");
            ASSERT_TRUE(form.LoadForm("/t/f.csv"));
            EXPECT_EQ(grid.Cells.Cell(1, 1), value);
        }
        // The box of a cell from 200 to 260 and from 16 to 34 spans 244 to 256 and 19 to 31.
        ExpectRows(
            [&](std::string_view input) {
                const std::string before = grid.Cells.Cell(2, 1);
                grid.OnClick(ClickOf(input, {200, 16, 260, 34}));
                return grid.Cells.Cell(2, 1) == before ? "same" : "other";
            },
            {"2|1|242|17 -> other", "2|1|257|32 -> other", "2|1|241|17 -> same", "2|1|258|20 -> same",
             "2|1|250|16 -> same", "2|1|250|33 -> same", "1|1|250|20 -> same", "2|0|250|20 -> same",
             "2|2|250|20 -> same", "2|-1|250|20 -> same"});
        EXPECT_EQ(grid.BoxRect({200, 0, 210, 18}).Left, 204); // a cell narrower than the box
        form.SetpointGridResized(712);
        EXPECT_THAT(grid.ColWidths, ElementsAre(404, 202, 101));
        TSetpointPage& page = person.World.Program->SetpointPage;
        page.CategoryPanelDebug.SetCollapsed(true);
        page.ArrangeSetpointPage(718, 301);
        EXPECT_THAT(page.SetpointGrid.ColWidths, ElementsAre(303, 101, 101, 101, 101));
        EXPECT_EQ(page.CategoryPanelSetpoints.Height(), 200);
        EXPECT_EQ(page.CategoryPanelDebug.Height(), 100);
        EXPECT_FALSE(page.CategoryPanelDebug.Collapsed());
        // What a run has no device for.
        page.SelectedSetpointParent.clear();
        form.ButWriteSetpoints.Click();
        EXPECT_EQ(person.Boxes.back(), "Click on a device name");
    });
}

} // namespace
} // namespace tidewell::test
