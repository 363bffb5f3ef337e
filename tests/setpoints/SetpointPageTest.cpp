#include "core/Errors.h"
#include "scenario/SetpointProgram.h"

#include <gmock/gmock.h>

#include <map>

namespace tidewell::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::ThrowsMessage;

// A list row of a profile, with other texts in some of its fields: 3 Min, 4 Max, 5 Decimal, 6 Offset, 7
// ModbusAdr, 8 structnumber, 9 unit code, 10 bit names, 15 group, 18 help number.
std::string Row(const std::string& name, const std::map<std::size_t, std::string>& others = {}) {
    std::vector<std::string> fields{name, "9", "0", "100", "0", "0", "401", "3",
                                    "1",  "",  "",  "",    "",  "0", "Air"};
    for (const auto& [field, text] : others) {
        fields.resize(std::max(fields.size(), field));
        fields[field - 1] = text;
    }
    std::string row;
    for (const std::string& field : fields)
        row += field + ";";
    return row;
}

class SetpointPage : public TSetpointProgram {
  protected:
    SetpointPage() {
        Start();
        Program->LiveLog.TimerLogAutostart->SetEnabled(false);
    }
    void OpenList(const std::vector<std::string>& rows) {
        std::string list;
        for (std::size_t i = 0; i < rows.size(); ++i)
            list += "K" + std::to_string(i) + "=" + rows[i] + "\n";
        OpenRows(list);
    }
    void Choose(int root, int child) {
        Page().SetpointTreeView.SetSelected(TTreeView::TSelection{root, child});
        Page().SetpointTreeView.OnClick();
    }
    // The cells of each row, "name|value|unit|min|max".
    std::vector<std::string> Grid() {
        std::vector<std::string> rows;
        for (std::size_t row = 1; row < Page().SetpointGrid.Cells.RowCount(); ++row) {
            std::string& text = rows.emplace_back();
            for (int column = 0; column < 5; ++column)
                text += (column > 0 ? "|" : "") +
                        Page().SetpointGrid.OnDrawCell(column, static_cast<int>(row)).Text;
        }
        return rows;
    }
    void Select(int row) {
        Page().SetpointGrid.SetSelectedRow(row);
        Page().SetpointGrid.OnSelectCell(row);
    }
    // What the dialog was given by a double click, or by a key on the selected row: "<name>:<text>:<all
    // selected>".
    std::string Edited(int row, const std::string& key = {}) {
        std::string seen;
        Dialogs.ExpectForm("InputDialog", [&](TForm& form) {
            seen = form.Caption() + ":" + Dialog().CurrentDatavalue +
                   (Dialog().ValueSelectAll ? ":all" : ":end");
        });
        if (key.empty()) {
            Page().SetpointGrid.OnDblClick(row);
        } else {
            Select(row);
            Page().SetpointGrid.OnKeyPress(key);
        }
        return seen;
    }
    std::int32_t Help() { return Program->ContextHelp.HelpfileDoc.currentParaID; }
};

TEST_F(SetpointPage, ShowsDevicesTheirGroupsAndTheRowsOfAGroup) {
    OpenProfile("[MainDevice]\nEnable=1\nR1=30;3;0;1;First;\nR2=31;4;0;1;Second;\n"
                "[OffDevice]\nEnable=0\nR1=2;3;0;1;Missing\n[BareDevice]\nEnable=1\n"
                "[SideDevice]\nEnable=1\nR1=none;3;0;1;First;\n[First]\nA=" +
                Row("c", {{18, "12"}}) + "\nB=" + Row("b", {{15, " Air "}}) +
                "\nC=" + Row("a", {{15, "Heat"}}) + "\nD=" + Row("d", {{15, "0"}}) +
                "\nE=" + Row("e", {{15, ""}}) + "\nF=short;\n[Second]\nA=" + Row("x", {{8, "4"}}) + "\n");
    TTreeView& tree = Page().SetpointTreeView;
    std::vector<std::string> nodes;
    for (const auto& root : tree.Nodes())
        nodes.push_back(root.Text + testing::PrintToString(root.Children));
    EXPECT_THAT(nodes, ElementsAre("MainDevice{ \"Heat\", \"Air\", \"Air\" }",
                                   "0{}", // the list's name took in the device's
                                   "BareDevice{}", "SideDevice{ \"Heat\", \"Air\" }"));
    tree.OnClick(); // nothing is selected
    Choose(0, -1);
    EXPECT_TRUE(Page().LblSetpointPageEmpty.Visible());
    EXPECT_FALSE(Page().SetpointListReady);
    Choose(0, 1); // rows of both questions that bear the group
    EXPECT_THAT(Grid(), ElementsAre("b||°C|0|100", "c||°C|0|100", "x||°C|0|100"));
    EXPECT_THAT(Program->ContextHelp.HelpfileDoc.ParaID, ElementsAre("12"));
    EXPECT_EQ(Page().CurrentModbusID, 30);
    EXPECT_FALSE(Page().LblSetpointPageEmpty.Visible());
    Page().SetpointGrid.SetSelectedRow(3);
    Choose(0, -1);
    Page().ApplyDataLine("1;d;t;5;6;");
    EXPECT_THAT(Grid(), ElementsAre("b|5|°C|0|100", "c|5|°C|0|100", "x|6|°C|0|100"));
    tree.SetSelected(TTreeView::TSelection{3, 0});
    tree.OnKeyPress("x");
    EXPECT_EQ(Grid().size(), 3U);
    tree.OnKeyPress("\r");
    EXPECT_THAT(Grid(), ElementsAre("a||°C|0|100")); // without values of the group before
    EXPECT_THAT(Program->ContextHelp.HelpfileDoc.ParaID, IsEmpty());
    EXPECT_EQ(Program->ModbusPanel.SelectedDevice, 3);
    EXPECT_EQ(Page().CurrentModbusID, -1);
    EXPECT_EQ(Page().SetpointGrid.SelectedRow(), 1);

    // The popup needs a selected device, and any other press forgets the device.
    tree.SetSelected(TTreeView::TSelection{2, -1});
    Dialogs.ExpectPopup("Setpointpopup");
    tree.OnRightMouseButton();
    EXPECT_EQ(Page().SelectedSetpointParent, "BareDevice");
    tree.OnOtherMouseButton();
    EXPECT_EQ(Page().SelectedSetpointParent, "");
    Page().SelectedSetpointParent = "MainDevice";
    tree.SetSelected(TTreeView::TSelection{0, 1});
    tree.OnRightMouseButton();
    EXPECT_EQ(Page().SelectedSetpointParent, "");
    OpenProfile("");
    EXPECT_THAT(tree.Nodes(), IsEmpty());
    EXPECT_EQ(Grid().size(), 1U); // until the next choice
}

// The datalog on the graph counts only while nothing is logged; otherwise the values of the last cycle.
TEST_F(SetpointPage, ShowsValuesAtOnce) {
    OpenList({Row("a"), Row("b", {{8, "0"}}), Row("c", {{8, "5"}})});
    const auto values = [this](bool on, bool fileOpen, const std::string& data) {
        Program->LiveLog.DatalogOn = on;
        Program->GraphPage.DatalogFileOpen = fileOpen;
        Program->LiveLog.SetCycleResult(data);
        Choose(0, 0);
        return Page().CurrentSetpointValue;
    };
    EXPECT_THAT(values(false, true, "1; 2; 3; "), IsEmpty());
    Program->GraphPage.DatalogLastLineSetpoint = "9;d;t;7;8;";
    EXPECT_THAT(values(false, true, "1; 2; 3; "), ElementsAre("7", "9", "0"));
    Program->LogBuffers.DatalogCount = 4;
    EXPECT_THAT(values(true, true, "1; 2; 3; "), ElementsAre("1", "4", "3"));
    EXPECT_THAT(values(false, false, "1; 2; "), ElementsAre("1", "4", "0")); // behind them is the line end
    EXPECT_THAT(values(true, false, ""), IsEmpty());
}

// A bad limit or offset stops the choice, and the rows before it are shown, without values. A bad
// structnumber stops every refresh.
TEST_F(SetpointPage, ABadRowEndsTheChoiceOrTheRefresh) {
    Program->LiveLog.SetCycleResult("5;");
    for (const auto& [field, text] :
         std::map<std::size_t, std::string>{{3, "zero"}, {4, "4294967296"}, {5, ""}, {6, "1.0"}}) {
        OpenList({Row("a"), Row("b"), Row("old", {{15, "Good"}})});
        Choose(0, 1);
        EXPECT_THAT(Grid(), ElementsAre("old|5|°C|0|100"));
        OpenList({Row("a"), Row("x", {{field, text}}), Row("y")});
        EXPECT_THAT([&] { Choose(0, 0); },
                    ThrowsMessage<EConvertError>("'" + text + "' is not a valid integer value (field " +
                                                 std::to_string(field) + " of row \"x\")"));
        EXPECT_THAT(Grid(), ElementsAre("a||°C|0|100"));
        Page().ApplyDataLine("1;d;t;6;");
        EXPECT_THAT(Grid(), ElementsAre("a|6|°C|0|100"));
    }
    OpenList({Row("a"), Row("b", {{8, "three"}}), Row("c")});
    EXPECT_THROW(Choose(0, 0), EConvertError);
    EXPECT_THROW(Page().ApplyDataLine("1;d;t;7;"), EConvertError);
    EXPECT_THAT(Grid(), ElementsAre("a|7|°C|0|100", "b||°C|0|100", "c||°C|0|100"));
    Program->LiveLog.DatalogOn = true;
    EXPECT_THROW(Page().SetpointGrid.OnDblClick(2), EListError); // it has no value
}

TEST_F(SetpointPage, ArrangesItsPartsAndDrawsCells) {
    int expanded = 0;
    const auto connection = Page().SetpointTreeView.ExpandAllRequested.Connect([&] { ++expanded; });
    Page().CategoryPanelDebug.SetCollapsed(true);
    Page().ArrangeSetpointPage(718, 301);
    EXPECT_THAT(Page().SetpointGrid.ColWidths, ElementsAre(303, 101, 101, 101, 101));
    EXPECT_EQ(Page().CategoryPanelSetpoints.Height(), 200);
    EXPECT_EQ(Page().CategoryPanelDebug.Height(), 100);
    EXPECT_FALSE(Page().CategoryPanelDebug.Collapsed());
    EXPECT_EQ(expanded, 1);

    OpenList({Row(" a ", {{3, "-1"}, {4, " 20 "}, {5, "1"}, {9, " 8 "}}), Row("b", {{9, "99"}})});
    Choose(0, 0);
    Page().ApplyDataLine("1;d;t;5;");
    EXPECT_THAT(Grid(), ElementsAre("a|0.5|h|-0.1|2.0", "b|5||0|100"));
    Program->SetpointTexts.DataUnits = {};
    EXPECT_THAT(Grid(), ElementsAre("a|0.5|8|-0.1|2.0", "b|5|99|0|100"));
    EXPECT_EQ(Page().SetpointGridDrawCell(4, 0).Text, Language("SetpointHeadlines", "Col4"));
    Page().SetpointGrid.SetSelectedRow(2);
    for (int row = 0; row < 3; ++row) {
        const TCellLook look = Page().SetpointGridDrawCell(0, row);
        EXPECT_TRUE(look.Selected == (row == 2) && look.Stripe == (row == 2)) << row;
    }
}

TEST_F(SetpointPage, OpensTheInputDialogWhileValuesAreLogged) {
    TStringGrid& grid = Page().SetpointGrid;
    const auto tryInVain = [&grid] { // no form is expected
        for (const int row : {-1, 0, 1, 9})
            grid.OnDblClick(row);
        grid.OnKeyPress("5");
    };
    Program->LiveLog.DatalogOn = true;
    tryInVain(); // no rows
    OpenList({Row("a", {{18, "1"}}), Row("bits", {{9, "100"}, {18, "2"}})});
    Choose(0, 0);
    grid.OnKeyPress("5"); // nothing is selected
    Select(1);
    Program->LiveLog.DatalogOn = false;
    tryInVain();
    Program->LiveLog.DatalogOn = true;
    Page().CurrentModbusID = -1;
    Dialog().EValue.SetText("before");
    grid.OnDblClick(1);
    EXPECT_EQ(Dialog().EValue.Text(), "");
    Page().CurrentModbusID = 30;
    // Without values the dialog keeps what it was last given.
    Dialog().CurrentDatavalue = "left";
    EXPECT_EQ(Edited(1, "5"), "a:left:end");
    Page().ApplyDataLine("1;d;t;42;");
    for (const std::string key : {"5", ",", "-", "."})
        EXPECT_EQ(Edited(1, key), "a:" + key + ":end");
    for (const std::string key : {"\r", "x", "55", "\u0665"})
        EXPECT_EQ(Edited(1, key), "a:42:all");
    EXPECT_EQ(Edited(2, "5"), "bits:42:end");
    EXPECT_EQ(Edited(2, "\r"), "bits:42:all");
    EXPECT_EQ(Edited(1), "a:42:all"); // the row under the mouse, not the selected one
    for (const int row : {-1, 0, 3})
        EXPECT_THROW(grid.OnDblClick(row), EListError) << row;
}

TEST_F(SetpointPage, SendsAnUntouchedValueAsItStandsIfStrict) {
    OpenList({Row("a low", {{4, "65535"}, {9, "102"}}), Row("b high", {{4, "65535"}, {9, "103"}}),
              Row("c wide", {{3, "-5"}, {4, "2147483647"}}), Row("d tenths", {{5, "1"}, {6, "7"}})});
    Choose(0, 0);
    Program->LiveLog.DatalogOn = true;
    const auto sent = [this](int row, const std::string& value, const std::string& retyped = {}) {
        if (!value.empty())
            Page().ApplyDataLine("1;d;t;" + value + ";");
        Libraries.Calls.clear();
        std::string text;
        Dialogs.ExpectForm("InputDialog", [&](TForm& form) {
            text = Dialog().EValue.Text();
            if (!retyped.empty())
                Dialog().EValue.Enter(retyped);
            if (!value.empty())
                PressReturn(form);
            form.Close();
        });
        Page().SetpointGrid.OnDblClick(row);
        const auto writes = Writes();
        return writes.empty() ? "'" + text + "'" : writes.front().substr(2);
    };
    struct {
        bool Strict;
        std::vector<std::string> Sent;
    } const cases[] = {{false, {"'left'", "65", "16640", "52502", "99"}},
                       {true, {"''", "16640", "65", "52501", "99"}}};
    for (const auto& c : cases) {
        Program->Extensions.InputDialogStrict = c.Strict;
        Choose(0, 0);
        Dialog().CurrentDatavalue = "left";
        std::vector<std::string> seen{sent(4, "")};
        for (const auto& [row, value] :
             std::map<int, std::string>{{1, "16640"}, {2, "65"}, {3, "123456789"}, {4, "99"}})
            seen.push_back(sent(row, value));
        EXPECT_EQ(seen, c.Sent);
        EXPECT_EQ(sent(1, "16640", "A"), "65"); // typed, if the same
        EXPECT_EQ(sent(2, "0", "A"), "16640");
    }
}

TEST_F(SetpointPage, FiltersByNameUnitOrAddress) {
    OpenList({Row("1 Zuluft \u00C4rger \u00C0 \u00DE \u00D7", {{9, "4"}, {18, "7"}}),
              Row("2 Abluft", {{9, "13"}, {18, "none"}}), Row("3 zu", {{9, "4"}, {18, "9"}}), Row("4"),
              Row("5")});
    Choose(0, 0);
    const std::vector<std::size_t> all{0, 1, 2, 3, 4};
    for (const auto& [typed, rows] :
         std::vector<std::pair<std::string, std::vector<std::size_t>>>{{"ZU", {0, 2}},
                                                                       {"luft", {0, 1}},
                                                                       {"\u00E4RG", {0}},
                                                                       {"\u00E0", {0}},
                                                                       {"\u00FE", {0}},
                                                                       {"\u00D7", {0}},
                                                                       {"\u00F7", {}},
                                                                       {"\u00BF", {}},
                                                                       {"% RH", {1}},
                                                                       {"M\u00B3", {0, 2}},
                                                                       {"401", all},
                                                                       {"nowhere", {}},
                                                                       {" ", all},
                                                                       {"", all}}) {
        Page().SetpointFilter.Enter(typed);
        EXPECT_EQ(Page().ShownRows, rows) << typed;
    }
    EXPECT_FALSE(Page().ClearSetpointFilter());

    // Help numbers go by entry; the fourth entry lies just behind the last number.
    for (const auto& [row, number] : std::map<int, int>{{1, 7}, {2, 0}, {3, 9}, {5, 0}, {-1, 0}}) {
        Select(row);
        EXPECT_EQ(Help(), number) << row;
    }
    EXPECT_THAT([this] { Select(4); }, ThrowsMessage<EListError>("List index out of bounds (3)"));
    EXPECT_EQ(Help(), 0);
    // Rows are those of the filter, entries and help numbers those of the group.
    Program->LiveLog.DatalogOn = true;
    Page().ApplyDataLine("1;d;t;6;");
    Select(3);
    Page().SetpointFilter.Enter("zu");
    EXPECT_EQ(Page().SetpointGrid.SelectedRow(), 2);
    EXPECT_EQ(Edited(2), "3 zu:6:all");
    Select(2);
    EXPECT_EQ(Help(), 9);
    EXPECT_THROW(Page().SetpointGrid.OnDblClick(3), EListError);
    Page().SetpointFilter.Enter("abl");
    EXPECT_EQ(Page().SetpointGrid.SelectedRow(), -1);
    Page().SetpointGrid.OnKeyPress("5"); // the selected one is hidden
    EXPECT_TRUE(Page().ClearSetpointFilter());
    EXPECT_EQ(Page().SetpointGrid.SelectedRow(), 3);
    Page().SetpointFilter.Enter("3"); // it stays in force for the next group
    Choose(0, 0);
    EXPECT_THAT(Grid(), ElementsAre("3 zu||m³/h|0|100"));
    EXPECT_EQ(Page().LblSetpointCount.Caption(), "1 of 5 setpoints");
}

} // namespace
} // namespace tidewell::test
