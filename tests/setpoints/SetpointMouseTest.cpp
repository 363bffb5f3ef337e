#include "rig/Journey.h"

// Where a click hits the boxes of a grid, how wide its columns are and what is selected; all else is told in
// tests/journeys/setpoints.txt and load.txt.
namespace tidewell::test {
namespace {

using testing::ElementsAre;

class TSetpointMouse : public testing::Test {
  protected:
    // The program is linked while that is looked at.
    void Look(const std::function<void()>& action) {
        TJourneyCase journey{"setpoints", {{"start linked", "start", "linked", {}}}};
        TJourney person(journey);
        person.OnStep = [&] {
            Program = person.World.Program.get();
            Files = &person.World.Files;
            Dialogs = &person;
            action();
        };
        person.Play();
    }
    void Open(const std::string& unit, const std::string& bits, const std::string& value, bool all = true) {
        TInputDialog& dialog = Program->InputDialog;
        dialog.CurrentSetpointSpecific =
            "0; Air ;512;0;65535;0;0;40101;3;" + unit + ";" + bits + ";;;;2;Air;";
        dialog.CurrentDatavalue = value;
        dialog.ValueSelectAll = all;
        dialog.Hide();
        Dialogs->Show(dialog);
    }
    TProgram* Program = nullptr;
    TMemoryFiles* Files = nullptr;
    IDialogs* Dialogs = nullptr;
};

TEST_F(TSetpointMouse, FlipsBits) {
    Look([this] {
        TInputDialog& dialog = Program->InputDialog;
        TStringGrid& grid = dialog.binaryvaluegrid;
        const auto click = [&grid](int column, int row, int x, int y) {
            grid.OnClick({column, row, x, y, {column * 25, 50, column * 25 + 25, 90}});
        };
        const auto digits = [&grid] {
            std::string all;
            for (const std::string& cell : grid.Cells.Row(1))
                all += cell;
            return all;
        };
        Open("100", "Frost", "5");
        // The box of 18 pixels in the middle of a cell of 25 by 40, and 2 pixels around it.
        struct TClick {
            int Column, Row, X, Y;
            const char* Value;
        };
        for (const auto& [column, row, x, y, value] :
             {TClick{0, 1, 1, 59, "32773"}, TClick{0, 1, 0, 59, "32773"}, TClick{0, 1, 1, 58, "32773"},
              TClick{0, 1, 22, 80, "5"}, TClick{0, 1, 23, 80, "5"}, TClick{0, 1, 22, 81, "5"},
              TClick{15, 1, 386, 70, "4"}, TClick{0, 0, 12, 70, "4"}, TClick{-1, -1, 12, 70, "4"},
              TClick{16, 1, 412, 70, "4"}}) {
            dialog.EValue.Enter("typed"); // gives way, even if no box was hit
            click(column, row, x, y);
            EXPECT_EQ(dialog.EValue.Text(), value) << x << " " << y;
        }
        {
            const auto again = grid.Changed.Connect([&] { click(1, 1, 37, 70); }); // cannot flip
            click(0, 1, 12, 70);
        }
        EXPECT_EQ(digits(), "1000000000000100");
        Open("100", "a", "-2");
        EXPECT_EQ(digits(), "1111111111111110");
        EXPECT_THROW(Open("100", "a", "65536"), ERangeError);
        EXPECT_EQ(digits(), ""); // nothing is left of the row before
        Open("100", "  ", "5");
        EXPECT_FALSE(grid.Visible());
    });
}

TEST_F(TSetpointMouse, SelectsWhatIsTypedAnew) {
    Look([this] {
        std::vector<std::string> caret;
        TEdit& entry = Program->InputDialog.EValue;
        const auto all = entry.SelectAllRequested.Connect([&] { caret.push_back("all " + entry.Text()); });
        const auto end = entry.CaretAtEndRequested.Connect([&] { caret.push_back("end " + entry.Text()); });
        const auto focus = entry.FocusRequested.Connect([&] { caret.emplace_back("focus"); });
        Open("1", "", "5", false);
        entry.Enter("70000");
        Program->InputDialog.ButSend.Click();
        EXPECT_THAT(caret, ElementsAre("focus", "end 5", "focus", "all 70000"));
    });
}

TEST_F(TSetpointMouse, ChecksSetpointsOfAList) {
    Look([this] {
        TLoadSetpoints& form = Program->LoadSetpoints;
        TStringGrid& grid = form.setpointgrid;
        Files->Put("/t/f.csv", "\xEF\xBB\xBF"
                               "1\n2\n3\nSetpointName;F;RawValue;\nAir;x;2;0;9;0;5;40100;1;\n");
        ASSERT_TRUE(form.LoadForm("/t/f.csv"));
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
                     flips(2, 2, 250, 20) || flips(2, -1, 250, 20));
        EXPECT_EQ(grid.BoxRect({200, 0, 210, 18}).Left, 204); // a cell narrower than the box
        form.SetpointGridResized(712);
        EXPECT_THAT(grid.ColWidths, ElementsAre(404, 202, 101));
        TSetpointPage& page = Program->SetpointPage;
        page.CategoryPanelDebug.SetCollapsed(true);
        page.ArrangeSetpointPage(718, 301);
        EXPECT_THAT(page.SetpointGrid.ColWidths, ElementsAre(303, 101, 101, 101, 101));
        EXPECT_EQ(page.CategoryPanelSetpoints.Height(), 200);
        EXPECT_EQ(page.CategoryPanelDebug.Height(), 100);
        EXPECT_FALSE(page.CategoryPanelDebug.Collapsed());
        // What a run has no device for.
        page.SelectedSetpointParent.clear();
        form.ButWriteSetpoints.Click();
        EXPECT_EQ(dynamic_cast<TJourney*>(Dialogs)->Boxes.back(), "Click on a device name");
    });
}

} // namespace
} // namespace tidewell::test
