#include "setpoints/SetpointPage.h"

#include "core/Errors.h"
#include "core/KvSupport.h"
#include "core/LanguageTexts.h"
#include "core/Numbers.h"
#include "core/ports/IClock.h"
#include "core/ports/IDialogs.h"
#include "graph/GraphPage.h"
#include "logging/LiveLog.h"
#include "logging/LogBuffers.h"
#include "model/ListField.h"
#include "setpoints/Finputdialog.h"

#include <algorithm>
#include <numeric>
#include <set>
#include <utility>

namespace tidewell {

namespace {

constexpr std::size_t shownColumns = 5;
constexpr int defaultColumnWidth = 120;

// Appends the groups of one question's list rows; a group of an earlier question may come again.
void AddGroups(const TStringTable& grid, std::vector<std::string>& groups) {
    std::set<std::string, std::less<>> seen;
    for (std::size_t row = 0; row < grid.RowCount(); ++row) {
        const std::string_view group = Trim(grid.Cell(ListField::Group, row));
        if (!group.empty() && group != "0" && seen.emplace(group).second)
            groups.emplace_back(group);
    }
}

std::string JoinedCells(const std::vector<std::string>& cells) {
    std::string row;
    for (const std::string& cell : cells) {
        if (&cell != &cells.front())
            row += ';';
        row += cell;
    }
    return row;
}

// Appends the text with its letters, those of Latin-1 too, made small.
void AppendFolded(std::string& target, std::string_view text) {
    bool latin = false;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        const bool large = latin && byte >= 0x80 && byte <= 0x9E && byte != 0x97;
        target += large ? static_cast<char>(byte + 0x20U) : LowerCase(c);
        latin = byte == 0xC3;
    }
}

bool StartsNumber(const std::string& key) {
    return key.size() == 1 && key.find_first_of("0123456789,-.") == 0;
}

} // namespace

TSetpointPage::TSetpointPage(TForm& form, const TNeeds& needs) : TControls(form), Needs(needs) {
    SetpointGrid.Cells.SetColCount(shownColumns);
    SetpointGrid.Cells.SetRowCount(1);
    SetpointGrid.ColWidths.assign(shownColumns, defaultColumnWidth);
    Setpointpopup.Items = {Savesetpoints1, Loadsetpointfromfile1};
    ConnectControls();
}

void TSetpointPage::ConnectControls() {
    SetpointTreeView.OnClick = [this] { SetpointTreeViewClick(); };
    SetpointTreeView.OnKeyPress = [this](const std::string& key) { SetpointTreeViewKeyPress(key); };
    SetpointTreeView.OnRightMouseButton = [this] { SetpointTreeViewMouseDown(true); };
    SetpointTreeView.OnOtherMouseButton = [this] { SetpointTreeViewMouseDown(false); };
    SetpointGrid.OnDrawCell = [this](int column, int row) { return SetpointGridDrawCell(column, row); };
    SetpointGrid.OnDblClick = [this](int row) { SetpointGridDblClick(row); };
    SetpointGrid.OnKeyPress = [this](const std::string& key) { SetpointGridKeyPress(key); };
    SetpointGrid.OnSelectCell = [this](int row) { SetpointGridSelectCell(row); };
    LblSetpointRows.SetVisible(false);
    SetpointFilter.OnChange = [this] { SetpointFilterChange(); };
}

void TSetpointPage::TakeTexts(const TIniFile& language) {
    ReadTexts(
        language, "HeadAppl",
        {{CategoryPanelSetpoints, "CategoryPanelSetpoint"}, {CategoryPanelDebug, "CategoryPanelEventlog"}});
    ReadTexts(language, "EmptyPages", {{LblSetpointPageEmpty, "Setpoint"}});
}

void TSetpointPage::BuildSetpointTree() {
    std::vector<TTreeView::TNode> roots;
    for (const TMDevice& device : Needs.Panel.DeviceList) {
        TTreeView::TNode root;
        // A device without questions cannot be named by one.
        root.Text = device.ReadList.empty() ? device.Name : GetRowField(device.ReadList.front(), 5);
        for (const TStringTable& grid : device.ReadListText)
            AddGroups(grid, root.Children);
        roots.push_back(std::move(root));
    }
    SetpointTreeView.SetNodes(std::move(roots));
    const std::filesystem::path former = std::exchange(TreeProfile, Needs.Panel.GlobalPlsFilePath);
    if (former != TreeProfile && Needs.Extensions.SetpointPageForgetRows)
        ForgetRows();
    ShowWhoseRows();
}

void TSetpointPage::ArrangeSetpointPage(int gridClientWidth, int groupClientHeight) {
    GridClientWidth = gridClientWidth;
    GroupClientHeight = groupClientHeight;
    const int unit = (gridClientWidth - 5) / 7;
    std::vector<int> widths(shownColumns, unit);
    widths.front() = 3 * unit;
    if (SetpointGrid.ColWidths != widths) {
        SetpointGrid.ColWidths = std::move(widths);
        SetpointGrid.Repaint();
    }
    SetpointTreeView.ExpandAllRequested.Emit();
    CategoryPanelSetpoints.SetHeight(groupClientHeight / 3 * 2);
    CategoryPanelDebug.SetHeight(groupClientHeight / 3);
    CategoryPanelDebug.SetCollapsed(false);
}

void TSetpointPage::SetpointTreeViewClick() {
    const auto selected = SetpointTreeView.Selected();
    if (!selected || selected->Child < 0)
        return;
    const TTreeView::TNode& root = SetpointTreeView.Nodes().at(static_cast<std::size_t>(selected->Root));
    try {
        ReadGroup(root.Text, Trim(root.Children.at(static_cast<std::size_t>(selected->Child))));
    } catch (const EConvertError&) {
        // Values of the group before must not stand beside the rows read so far.
        ShowGroup();
        throw;
    }
    SetpointListReady = false;
    ShowGroup();
    CurrentModbusID = Needs.Panel.GetModbusIDFromDeviceName(root.Text);
    SetpointListReady = true;
    ShowCurrentValues();
}

void TSetpointPage::SetpointTreeViewKeyPress(const std::string& key) {
    if (key == "\r")
        SetpointTreeViewClick();
}

// A device that bears another name than its node leaves the rows as they were.
void TSetpointPage::ReadGroup(std::string_view device, std::string_view group) {
    std::vector<std::string>& paraIds = Needs.HelpfileDoc.ParaID;
    int index = 0;
    for (const TMDevice& candidate : Needs.Panel.DeviceList) {
        if (candidate.Name == device) {
            Needs.Panel.SelectedDevice = index;
            SetpointValues.clear();
            RowsProfile = TreeProfile;
            paraIds.clear();
            for (const TStringTable& grid : candidate.ReadListText)
                for (std::size_t row = 0; row < grid.RowCount(); ++row)
                    if (Trim(grid.Cell(ListField::Group, row)) == group)
                        SetpointValues.push_back(
                            ParseListRow(FormatRowLimits(JoinedCells(grid.Row(row)), paraIds)));
        }
        ++index;
    }
}

void TSetpointPage::ShowGroup() {
    LblSetpointPageEmpty.SetVisible(false);
    ShowWhoseRows();
    CurrentSetpointValue.clear();
    SelectedEntry.reset();
    FilterRows();
    // The grid keeps its current row, as far as there is one.
    const int last = static_cast<int>(ShownRows.size());
    ShowRows(last == 0 ? -1 : std::min(SetpointGrid.SelectedRow(), last));
}

void TSetpointPage::ShowWhoseRows() {
    const bool former = !SetpointValues.empty() && RowsProfile != TreeProfile;
    LblSetpointRows.SetVisible(former);
    LblSetpointRows.SetCaption(former ? FillText(Needs.Texts.RowsOfFormer, {RowsProfile.filename().string(),
                                                                            TreeProfile.filename().string()})
                                      : std::string());
}

void TSetpointPage::ForgetRows() {
    SetpointListReady = false;
    SetpointValues.clear();
    Needs.HelpfileDoc.ParaID.clear();
    Needs.HelpfileDoc.currentParaID = 0;
    CurrentModbusID = -1;
    ShowGroup();
    LblSetpointPageEmpty.SetVisible(true);
}

// Values show at once, and not only with the next cycle.
void TSetpointPage::ShowCurrentValues() {
    if (!Needs.LiveLog.DatalogOn && Needs.GraphPage.DatalogFileOpen) {
        if (const std::string line = Needs.GraphPage.DatalogLastLineSetpoint; !line.empty())
            ApplyDataLine(line);
        return;
    }
    const std::string data = Needs.LiveLog.CurrentDataString();
    if (data.empty())
        return;
    const TTime now = Needs.Clock.Now();
    ApplyDataLine(std::to_string(Needs.LogBuffers.DatalogCount) + ';' + Needs.Clock.ShortDate(now) + ';' +
                  Needs.Clock.LongTime(now) + ';' + data + "\r\n");
}

void TSetpointPage::ApplyDataLine(std::string_view line) {
    if (!SetpointListReady)
        return;
    ValueLine = line;
    FormatListValues(line, CurrentSetpointValue, SetpointValues);
    SetpointGrid.Repaint();
}

void TSetpointPage::ForgetValues() {
    CurrentSetpointValue.clear();
    SetpointGrid.Repaint();
}

void TSetpointPage::FilterRows() {
    std::string wanted;
    AppendFolded(wanted, Trim(SetpointFilter.Text()));
    if (wanted.empty()) {
        ShownRows.resize(SetpointValues.size());
        std::iota(ShownRows.begin(), ShownRows.end(), std::size_t{0});
        return;
    }
    ShownRows.clear();
    std::string searched;
    for (std::size_t entry = 0; entry < SetpointValues.size(); ++entry) {
        const TListRow& row = SetpointValues[entry];
        searched.clear();
        AppendFolded(searched, row.Name);
        AppendFolded(searched += '\n', UnitOf(row));
        AppendFolded(searched += '\n', row.ModbusAdr);
        if (searched.find(wanted) != std::string::npos)
            ShownRows.push_back(entry);
    }
}

void TSetpointPage::SetpointFilterChange() {
    if (const auto entry = EntryOf(SetpointGrid.SelectedRow()))
        SelectedEntry = entry;
    FilterRows();
    const auto shown =
        SelectedEntry ? std::find(ShownRows.begin(), ShownRows.end(), *SelectedEntry) : ShownRows.end();
    ShowRows(shown == ShownRows.end() ? -1 : static_cast<int>(shown - ShownRows.begin()) + 1);
}

bool TSetpointPage::ClearSetpointFilter() {
    if (SetpointFilter.Text().empty())
        return false;
    SetpointFilter.Enter({});
    return true;
}

void TSetpointPage::ShowRows(int selectedRow) {
    SetpointGrid.Cells.SetRowCount(ShownRows.size() + 1);
    SetpointGrid.SetSelectedRow(selectedRow);
    SetpointGrid.Repaint();
    LblSetpointCount.SetCaption(std::to_string(ShownRows.size()) + " of " +
                                std::to_string(SetpointValues.size()) + " setpoints");
}

std::optional<std::size_t> TSetpointPage::EntryOf(int row) const {
    if (row < 1 || static_cast<std::size_t>(row) > ShownRows.size())
        return std::nullopt;
    return ShownRows[static_cast<std::size_t>(row) - 1];
}

TCellLook TSetpointPage::SetpointGridDrawCell(int column, int row) const {
    TCellLook look;
    if (column < 0 || static_cast<std::size_t>(column) >= shownColumns)
        return look;
    if (row == 0) {
        look.Text = Needs.Texts.SetpointHeadline.at(static_cast<std::size_t>(column));
        return look;
    }
    look.Selected = row == SetpointGrid.SelectedRow();
    look.Stripe = row % 2 == 0;
    if (const auto entry = EntryOf(row))
        look.Text = CellOf(*entry, column);
    return look;
}

std::string TSetpointPage::CellOf(std::size_t entry, int column) const {
    const TListRow& row = SetpointValues.at(entry);
    switch (column) {
    case 0:
        return row.Name;
    case 1: // no value yet, or none since a row before this one failed
        return entry < CurrentSetpointValue.size() ? CellText(row, CurrentSetpointValue[entry])
                                                   : std::string();
    case 2:
        return UnitOf(row);
    case 3:
        return row.Min;
    default:
        return row.Max;
    }
}

std::string TSetpointPage::UnitOf(const TListRow& row) const {
    const TIniSection& units = Needs.Texts.DataUnits;
    return units.Empty() ? row.Code : units.Value(row.Code);
}

bool TSetpointPage::CanEdit() const {
    return !SetpointValues.empty() && Needs.LiveLog.DatalogOn;
}

void TSetpointPage::SetpointGridDblClick(int row) {
    if (!CanEdit())
        return;
    const auto entry = EntryOf(row);
    if (!entry)
        throw EListError(row - 1);
    EditSetpoint(*entry, {});
}

void TSetpointPage::SetpointGridKeyPress(const std::string& key) {
    const auto entry = EntryOf(SetpointGrid.SelectedRow());
    if (entry && CanEdit())
        EditSetpoint(*entry, StartsNumber(key) ? key : std::string());
}

void TSetpointPage::EditSetpoint(std::size_t entry, const std::string& typed) {
    TInputDialog& dialog = Needs.InputDialog;
    for (TEdit* edit : {&dialog.EId, &dialog.EAdress, &dialog.EValue})
        edit->SetText({});
    dialog.CurrentSetpointSpecific = SetpointValues.at(entry).Text;
    OfferValue(entry, typed);
    if (CurrentModbusID != -1)
        Needs.Dialogs.ShowModal(dialog);
}

// The dialog starts with what was typed, or else with the present value. Before the first value it starts
// with what it was last given, or, if it is strict, with no value.
void TSetpointPage::OfferValue(std::size_t entry, const std::string& typed) {
    const TListRow& row = SetpointValues.at(entry);
    TInputDialog& dialog = Needs.InputDialog;
    const bool present = typed.empty() || row.Code == "100"; // bits are not typed
    dialog.PresentRaw.reset();
    if (Needs.Extensions.InputDialogStrict) {
        dialog.CurrentDatavalue = present ? std::string() : typed;
        dialog.ValueSelectAll = typed.empty();
    }
    if (CurrentSetpointValue.empty())
        return;
    if (entry >= CurrentSetpointValue.size())
        throw EListError(entry);
    const std::string& initial = present ? CurrentSetpointValue[entry] : typed;
    if (!initial.empty())
        dialog.CurrentDatavalue = initial;
    dialog.ValueSelectAll = typed.empty();
    if (Needs.Extensions.InputDialogStrict && present)
        dialog.PresentRaw = RawListValue(row, ValueLine);
}

void TSetpointPage::SetpointGridSelectCell(int row) {
    THelpfileDoc& help = Needs.HelpfileDoc;
    help.currentParaID = 0;
    const auto entry = EntryOf(row);
    if (!entry || *entry > help.ParaID.size())
        return;
    if (*entry == help.ParaID.size())
        throw EListError(*entry);
    help.currentParaID = ToIntegerOr(help.ParaID[*entry], 0);
}

void TSetpointPage::SetpointTreeViewMouseDown(bool rightButton) {
    SelectedSetpointParent.clear();
    const auto selected = SetpointTreeView.Selected();
    if (!rightButton || !selected || selected->Child >= 0)
        return;
    SelectedSetpointParent = SetpointTreeView.Nodes().at(static_cast<std::size_t>(selected->Root)).Text;
    Needs.Dialogs.Popup(Setpointpopup);
}

} // namespace tidewell
