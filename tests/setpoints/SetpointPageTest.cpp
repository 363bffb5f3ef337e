#include "setpoints/SetpointPage.h"

#include "core/Errors.h"
#include "link/Nabto.h"
#include "link/NabtoDevice.h"
#include "setpoints/InputDialog.h"
#include "support/FakePorts.h"
#include "support/MemoryFiles.h"
#include "support/ScriptedDialogs.h"
#include "support/VirtualTime.h"

#include <gmock/gmock.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tidewell::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::ThrowsMessage;

struct THost : TSetpointPage::IHost, TNabtoDevice::IHost, TInputDialog::IHost {
    bool DatalogOn() const override { return On; }
    bool DatalogFileOpen() const override { return FileOpen; }
    std::string LastDatalogLine() const override { return LastLine; }
    std::string CurrentDataString() const override { return Data; }
    std::size_t DatalogCount() const override { return 4; }
    void UpdateTimerTimer() override {}
    void StopLog() override {}
    void Setup1Click() override {}
    void AddEventLog(const std::string&) override {}
    bool ShowButtonDevid() const override { return false; }
    bool ErrorLogVisible() const override { return false; }
    bool FormOpen() const override { return true; }
    void RepaintStatusBar() override {}

    bool On = false;
    bool FileOpen = false;
    std::string LastLine, Data;
};

// A list row of a profile; one without a help number has fewer fields.
struct TRow {
    std::string Name = {};
    std::string Structnumber = "3";
    std::string Min = "0";
    std::string Max = "100";
    std::string Decimal = "0";
    std::string Offset = "0";
    std::string Code = "1";
    std::string BitNames = {};
    std::string Group = "Air";
    std::string Help = {};
    std::string Text() const {
        return Name + ";9;" + Min + ";" + Max + ";" + Decimal + ";" + Offset + ";401;" + Structnumber + ";" +
               Code + ";" + BitNames + ";;;;0;" + Group + ";" + (Help.empty() ? "" : ";;" + Help + ";");
    }
};

class SetpointPage : public testing::Test {
  protected:
    SetpointPage() {
        for (const char* function : {"NabtoCloseSession", "NabtoShutdown"})
            LinkDialogs.AllowMessage(std::string("No ") + function + " Function Loaded");
    }
    void Load(const std::string& profile) {
        Files.Put("/t/p.pls", profile);
        Panel.SetMpanelWorkingpath("/t");
        Panel.SetMpanelPLSpath("/t/p.pls");
        Panel.InitQuestionStringlistStructures();
        Page.BuildSetpointTree();
    }
    void Load(const std::vector<TRow>& rows) {
        std::string profile = "[MainDevice]\nEnable=1\nR1=30;3;0;1;List;\n[List]\n";
        for (std::size_t i = 0; i < rows.size(); ++i)
            profile += "K" + std::to_string(i) + "=" + rows[i].Text() + "\n";
        Load(profile);
    }
    void Choose(int root, int child) {
        Page.SetpointTreeView.SetSelected(TTreeView::TSelection{root, child});
        Page.SetpointTreeView.OnClick();
    }
    std::vector<std::string> Shown(int column) const {
        std::vector<std::string> texts;
        for (std::size_t row = 1; row < Page.SetpointGrid.Cells.RowCount(); ++row)
            texts.push_back(Page.SetpointGrid.OnDrawCell(column, static_cast<int>(row)).Text);
        return texts;
    }
    void Select(int row) {
        Page.SetpointGrid.SetSelectedRow(row);
        Page.SetpointGrid.OnSelectCell(row);
    }
    // What the dialog was given, as "<name>:<text>:<all selected>".
    std::string Edited(const std::function<void()>& action) {
        std::string seen;
        Dialogs.ExpectForm("InputDialog", [&](TForm&) {
            seen = ParseListRow(Dialog.CurrentSetpointSpecific).Name + ":" + Dialog.CurrentDatavalue + ":" +
                   (Dialog.ValueSelectAll ? "all" : "end");
        });
        action();
        return seen;
    }

    TMemoryFiles Files;
    TVirtualTime Time;
    TScriptedDialogs Dialogs, LinkDialogs;
    TNoLibraries Libraries;
    THost Host;
    TCurrentInifilesPath Paths;
    TModbusPanel Panel{Files, Time};
    TUNabto Nabto{Libraries, LinkDialogs, Time, Time, Files, "/t"};
    TNabtoDevice Device{Dialogs, Time, Time, Files, Paths, Nabto, Panel, Host};
    TMemo MemoEventLog{"MemoEventLog"};
    TInputDialog Dialog{{Dialogs, Panel, Device, MemoEventLog, Host}};
    THelpfileDoc Help;
    TSetpointTexts Texts{{"Name", "Value", "Unit", "Min", "Max", "never"},
                         TIniSection({{"1", "m\u00B3/h"}, {"8", "\u00D8re"}}),
                         {},
                         {},
                         {},
                         {}};
    TSetpointPage Page{{Host, Dialogs, Time, Panel, Help, Dialog, Texts}};
};

const std::string twoDevices =
    "[MainDevice]\nEnable=1\nR1=30;3;0;1;First;\nR2=31;4;0;1;Second;\n"
    "[OffDevice]\nEnable=0\nR1=2;3;0;1;Missing\n"
    "[BareDevice]\nEnable=1\n"
    "[SideDevice]\nEnable=1\nR1=none;3;0;1;First;\n"
    "[First]\nA=" +
    TRow{.Name = "c", .Help = "12"}.Text() + "\nB=" + TRow{.Name = "b", .Group = " Air "}.Text() +
    "\nC=" + TRow{.Name = "a", .Group = "Heat"}.Text() + "\nD=" + TRow{.Name = "d", .Group = "0"}.Text() +
    "\nE=" + TRow{.Name = "e", .Group = ""}.Text() +
    "\nF=short;\n[Second]\nA=" + TRow{.Name = "x", .Structnumber = "4"}.Text() + "\n";

} // namespace

TEST_F(SetpointPage, BuildsTheTree) {
    Load(twoDevices);
    const auto& roots = Page.SetpointTreeView.Nodes();
    ASSERT_EQ(roots.size(), 4U);
    EXPECT_EQ(roots[0].Text, "MainDevice");
    EXPECT_THAT(roots[0].Children, ElementsAre("Heat", "Air", "Air"));
    EXPECT_EQ(roots[1].Text, "0"); // the list's name took in the device's
    EXPECT_THAT(roots[1].Children, IsEmpty());
    EXPECT_EQ(roots[2].Text, "BareDevice");

    Load("");
    EXPECT_TRUE(Page.SetpointTreeView.Nodes().empty());
}

TEST_F(SetpointPage, ArrangesItsParts) {
    int expanded = 0;
    const auto connection = Page.SetpointTreeView.ExpandAllRequested.Connect([&] { ++expanded; });
    Page.CategoryPanelDebug.SetCollapsed(true);
    Page.ArrangeSetpointPage(718, 301);
    EXPECT_THAT(Page.SetpointGrid.ColWidths, ElementsAre(303, 101, 101, 101, 101));
    EXPECT_EQ(Page.CategoryPanelSetpoints.Height(), 200);
    EXPECT_EQ(Page.CategoryPanelDebug.Height(), 100);
    EXPECT_FALSE(Page.CategoryPanelDebug.Collapsed());
    EXPECT_EQ(expanded, 1);
}

TEST_F(SetpointPage, ShowsTheRowsOfAGroup) {
    Load(twoDevices);
    Page.SetpointTreeView.OnClick(); // nothing is selected
    Choose(0, -1);
    EXPECT_TRUE(Page.LblSetpointPageEmpty.Visible());
    EXPECT_FALSE(Page.SetpointListReady);

    Choose(0, 1); // rows of both questions that bear the group
    EXPECT_THAT(Shown(0), ElementsAre("b", "c", "x"));
    EXPECT_THAT(Shown(1), ElementsAre("", "", ""));
    EXPECT_THAT(Help.ParaID, ElementsAre("12"));
    EXPECT_EQ(Page.CurrentModbusID, 30);
    EXPECT_FALSE(Page.LblSetpointPageEmpty.Visible());
    Select(3);
    Choose(0, -1);
    EXPECT_EQ(Page.SetpointValues.size(), 3U);

    Page.ApplyDataLine("1;d;t;5;6;");
    EXPECT_THAT(Shown(1), ElementsAre("5", "5", "6"));
    Choose(3, 0);
    EXPECT_THAT(Shown(0), ElementsAre("a"));
    EXPECT_THAT(Shown(1), ElementsAre("")); // not those of the group before
    EXPECT_THAT(Help.ParaID, IsEmpty());
    EXPECT_EQ(Panel.SelectedDevice, 3);
    EXPECT_EQ(Page.CurrentModbusID, -1);
    EXPECT_EQ(Page.SetpointGrid.SelectedRow(), 1);

    Load(std::vector<TRow>{{.Name = "new"}});
    EXPECT_THAT(Shown(0), ElementsAre("a")); // until the next choice
}

// The shown datalog counts only while nothing is logged; otherwise the values of the last cycle.
TEST_F(SetpointPage, ShowsValuesAtOnce) {
    Load({{.Name = "a"}, {.Name = "b", .Structnumber = "0"}, {.Name = "c", .Structnumber = "5"}});
    struct {
        bool On, FileOpen;
        std::string LastLine, Data;
        std::vector<std::string> Values;
    } const cases[] = {
        {false, true, "8;d;t;7;", "1; 2; 3; ", {"7", "8", "0"}},
        {false, true, "", "1; 2; 3; ", {"", "", ""}},
        {true, true, "8;d;t;7;", "1; 2; 3; ", {"1", "4", "3"}},
        {false, false, "8;d;t;7;", "1; 2; ", {"1", "4", "0"}}, // behind the last value is the line end
        {true, false, "8;d;t;7;", "", {"", "", ""}},
    };
    for (const auto& c : cases) {
        Host.On = c.On;
        Host.FileOpen = c.FileOpen;
        Host.LastLine = c.LastLine;
        Host.Data = c.Data;
        Choose(0, 0);
        EXPECT_EQ(Shown(1), c.Values) << c.LastLine << " " << c.Data;
    }
    Host.Data = "5;";
    Load({{.Name = "a", .Structnumber = "2", .Min = "-1"}}); // a signed value must be one
    EXPECT_THAT([&] { Choose(0, 0); },
                ThrowsMessage<EConvertError>(
                    "'08:00:00' is not a valid floating point value (device value of row \"a\")"));
}

// A bad limit, scale or offset stops the choice; the rows before it are shown, without values.
TEST_F(SetpointPage, ABadRowEndsTheChoice) {
    struct {
        TRow Row;
        std::string Message;
    } const cases[] = {
        {{.Name = "x", .Min = "zero"}, "'zero' is not a valid integer value (field 3 of row \"x\")"},
        {{.Name = "x", .Max = "4294967296"},
         "'4294967296' is not a valid integer value (field 4 of row \"x\")"},
        {{.Name = "x", .Decimal = ""}, "'' is not a valid integer value (field 5 of row \"x\")"},
        {{.Name = "x", .Offset = "1.0"}, "'1.0' is not a valid integer value (field 6 of row \"x\")"},
    };
    for (const auto& c : cases) {
        Load({{.Name = "a"}, {.Name = "b"}, {.Name = "old", .Group = "Good"}});
        Host.Data = "5;";
        Choose(0, 1);
        EXPECT_THAT(Shown(1), ElementsAre("5"));
        Load({{.Name = "a"}, c.Row, {.Name = "y"}});
        EXPECT_THAT([&] { Choose(0, 0); }, ThrowsMessage<EConvertError>(c.Message));
        EXPECT_THAT(Shown(0), ElementsAre("a"));
        EXPECT_THAT(Shown(1), ElementsAre(""));
        Page.ApplyDataLine("1;d;t;6;");
        EXPECT_THAT(Shown(1), ElementsAre("6"));
    }
}

TEST_F(SetpointPage, ABadRowEndsEveryRefresh) {
    int painted = 0;
    Load({{.Name = "a"}, {.Name = "b", .Structnumber = "three"}, {.Name = "c"}});
    Choose(0, 0);
    const auto connection = Page.SetpointGrid.Changed.Connect([&] { ++painted; });
    for (int i = 0; i < 2; ++i)
        EXPECT_THROW(Page.ApplyDataLine("1;d;t;5;"), EConvertError);
    EXPECT_EQ(painted, 0);
    EXPECT_THAT(Shown(1), ElementsAre("5", "", ""));
    Host.On = true;
    EXPECT_THROW(Page.SetpointGrid.OnDblClick(2), EListError); // it has no value
    Host.Data = "5;";
    EXPECT_THROW(Choose(0, 0), EConvertError);
    EXPECT_TRUE(Page.SetpointListReady);
}

TEST_F(SetpointPage, DrawsCells) {
    EXPECT_EQ(Page.SetpointGridDrawCell(4, 0).Text, "Max");
    EXPECT_EQ(Page.SetpointGridDrawCell(0, 1).Text, "");
    Load({{.Name = " a ", .Min = "-1", .Max = " 20 ", .Decimal = "1", .Code = " 8 "},
          {.Name = "b", .Code = "100", .BitNames = "On,Off"},
          {.Name = "c", .Structnumber = "4", .Max = "70000", .Decimal = "-1", .Code = "102"},
          {.Name = "d", .Structnumber = "5", .Code = "103"}});
    Choose(0, 0);
    Page.ApplyDataLine("1;d;t;5;1;16706;");
    struct {
        int Column;
        std::vector<std::string> Texts;
    } const cases[] = {{0, {"a", "b", "c", "d"}},
                       {1, {"0.5", "00000000  00000101", "\n", "AB"}},
                       {2, {"\u00D8re", "", "", ""}},
                       {3, {"-0.1", "0", "0", "0"}},
                       {4, {"2.0", "100", "700000", "100"}},
                       {5, {"", "", "", ""}},
                       {-1, {"", "", "", ""}}};
    for (const auto& c : cases)
        EXPECT_EQ(Shown(c.Column), c.Texts) << c.Column;
    Texts.DataUnits = {};
    EXPECT_THAT(Shown(2), ElementsAre("8", "100", "102", "103"));

    Page.SetpointGrid.SetSelectedRow(2);
    for (int row = 0; row < 5; ++row) {
        const TCellLook look = Page.SetpointGridDrawCell(0, row);
        EXPECT_EQ(look.Selected, row == 2) << row;
        EXPECT_EQ(look.Stripe, row == 2 || row == 4) << row;
    }
}

TEST_F(SetpointPage, OpensTheInputDialog) {
    Load({{.Name = "a", .Help = "1"}, {.Name = "bits", .Code = "100", .Help = "2"}});
    Choose(0, 0);
    Host.On = true;
    Select(1);
    const auto press = [this](const std::string& key) {
        return [this, key] {
            Page.SetpointGrid.OnKeyPress(key);
        };
    };
    // Without values the dialog keeps what it was last given.
    Dialog.CurrentDatavalue = "left";
    EXPECT_EQ(Edited(press("5")), "a:left:end");

    Page.ApplyDataLine("1;d;t;42;");
    struct {
        int Row;
        std::string Key, Seen;
    } const cases[] = {
        {1, "5", "a:5:end"},     {1, ",", "a:,:end"},      {1, "-", "a:-:end"},   {1, ".", "a:.:end"},
        {1, "\r", "a:42:all"},   {1, "x", "a:42:all"},     {1, "55", "a:42:all"}, {1, "\u0665", "a:42:all"},
        {2, "5", "bits:42:end"}, {2, "\r", "bits:42:all"},
    };
    for (const auto& c : cases) {
        Select(c.Row);
        EXPECT_EQ(Edited(press(c.Key)), c.Seen) << c.Key;
    }
    // The row under the mouse, not the selected one.
    EXPECT_EQ(Edited([this] { Page.SetpointGrid.OnDblClick(1); }), "a:42:all");
    for (const int row : {-1, 0, 3})
        EXPECT_THROW(Page.SetpointGrid.OnDblClick(row), EListError) << row;
}

TEST_F(SetpointPage, RefusesAnEditInSilence) {
    const auto tryAll = [this] {
        for (const int row : {-1, 0, 1, 9})
            Page.SetpointGrid.OnDblClick(row);
        Page.SetpointGrid.OnKeyPress("5");
    };
    Host.On = true;
    tryAll(); // no rows
    Load({{.Name = "a"}});
    Choose(0, 0);
    Page.SetpointGrid.OnKeyPress("5"); // nothing is selected
    Page.SetpointGrid.SetSelectedRow(1);
    Host.On = false;
    tryAll();
    Host.On = true;
    Page.CurrentModbusID = -1;
    for (TEdit* edit : {&Dialog.EId, &Dialog.EAdress, &Dialog.EValue})
        edit->SetText("before");
    Page.SetpointGrid.OnDblClick(1);
    EXPECT_EQ(Dialog.EId.Text() + Dialog.EAdress.Text() + Dialog.EValue.Text(), "");
    EXPECT_THAT(Dialogs.Shown, IsEmpty());
}

TEST_F(SetpointPage, TakesTheHelpNumberOfTheSelectedRow) {
    Load({{.Name = "a", .Help = "12"},
          {.Name = "b"},
          {.Name = "c", .Help = "none"},
          {.Name = "d"},
          {.Name = "e"}});
    Choose(0, 0);
    Select(1);
    EXPECT_EQ(Help.currentParaID, 12);
    for (const int row : {2, 4, 5, 6, 0, -1}) { // the second number is none, and the rest is beyond
        Help.currentParaID = 3;
        Select(row);
        EXPECT_EQ(Help.currentParaID, 0) << row;
    }
    EXPECT_THAT([this] { Select(3); }, ThrowsMessage<EListError>("List index out of bounds (2)"));
}

TEST_F(SetpointPage, OpensThePopupOnADevice) {
    Load(twoDevices);
    struct {
        std::optional<TTreeView::TSelection> Selected;
        bool Right;
        std::string Parent;
    } const cases[] = {{TTreeView::TSelection{2, -1}, true, "BareDevice"},
                       {TTreeView::TSelection{2, -1}, false, ""},
                       {TTreeView::TSelection{0, -1}, true, "MainDevice"},
                       {TTreeView::TSelection{0, 1}, true, ""},
                       {std::nullopt, true, ""}};
    for (const auto& c : cases) {
        Page.SetpointTreeView.SetSelected(c.Selected);
        std::string within;
        if (!c.Parent.empty())
            Dialogs.ExpectPopup("Setpointpopup", [&](TPopupMenu& menu) {
                within = Page.SelectedSetpointParent;
                EXPECT_EQ(menu.Items.at(1).get().Caption(), "Load setpoint from file");
            });
        c.Right ? Page.SetpointTreeView.OnRightMouseButton() : Page.SetpointTreeView.OnOtherMouseButton();
        EXPECT_EQ(within, c.Parent);
        EXPECT_EQ(Page.SelectedSetpointParent, c.Parent);
    }
}

TEST_F(SetpointPage, FiltersByNameUnitOrAddress) {
    Load({{.Name = "1 Zuluft \u00C4rger"},
          {.Name = "2 Abluft", .Code = "8"},
          {.Name = "3 zu"},
          {.Name = "4"}});
    Choose(0, 0);
    struct {
        std::string Typed;
        std::vector<std::size_t> Rows;
    } const cases[] = {
        {"ZU", {0, 2}},         {"luft", {0, 1}},      {"\u00E4RG", {0}},     {"\u00F8RE", {1}},
        {"M\u00B3", {0, 2, 3}}, {"401", {0, 1, 2, 3}}, {" 4 ", {0, 1, 2, 3}}, {"nowhere", {}},
        {" ", {0, 1, 2, 3}},    {"", {0, 1, 2, 3}},
    };
    for (const auto& c : cases) {
        Page.SetpointFilter.Enter(c.Typed);
        EXPECT_EQ(Page.ShownRows, c.Rows) << c.Typed;
        EXPECT_EQ(Page.SetpointGrid.Cells.RowCount(), c.Rows.size() + 1) << c.Typed;
    }
    EXPECT_FALSE(Page.ClearSetpointFilter());

    // Rows are those of the filter, entries and help numbers those of the group.
    Host.On = true;
    Page.ApplyDataLine("1;d;t;6;");
    Help.ParaID = {"1", "2", "3"};
    Select(3);
    Page.SetpointFilter.Enter("zu");
    EXPECT_EQ(Page.SetpointGrid.SelectedRow(), 2);
    EXPECT_EQ(Edited([this] { Page.SetpointGrid.OnDblClick(2); }), "3 zu:6:all");
    Select(2);
    EXPECT_EQ(Help.currentParaID, 3);
    EXPECT_THROW(Page.SetpointGrid.OnDblClick(3), EListError);
    Page.SetpointFilter.Enter("abl");
    EXPECT_EQ(Page.SetpointGrid.SelectedRow(), -1);
    Page.SetpointGrid.OnKeyPress("5"); // the selected one is hidden
    EXPECT_TRUE(Page.ClearSetpointFilter());
    EXPECT_EQ(Page.SetpointGrid.SelectedRow(), 3);

    // It stays in force for the next group.
    Page.SetpointFilter.Enter("3");
    Choose(0, 0);
    EXPECT_THAT(Shown(0), ElementsAre("3 zu"));
    EXPECT_EQ(Page.SetpointGrid.SelectedRow(), 1);
}

} // namespace tidewell::test
