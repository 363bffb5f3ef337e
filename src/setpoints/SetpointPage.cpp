#include "setpoints/SetpointPage.h"

#include "core/KvSupport.h"
#include "core/Numbers.h"
#include "model/ValueCodec.h"

#include <algorithm>
#include <set>
#include <utility>

namespace tidewell {

namespace {

constexpr std::size_t groupColumn = 15;
constexpr std::size_t shownColumns = 5;

// Appends the groups of one question's list rows; a group of an earlier question may come again.
void AddGroups(const TStringTable& grid, std::vector<std::string>& groups) {
    std::set<std::string, std::less<>> seen;
    for (std::size_t row = 0; row < grid.RowCount(); ++row) {
        const std::string_view group = Trim(grid.Cell(groupColumn, row));
        if (!group.empty() && group != "0" && seen.emplace(group).second)
            groups.emplace_back(group);
    }
}

} // namespace

TSetpointPage::TSetpointPage(const TParts& parts) : Parts(parts) {
    SetpointGrid.Cells.SetColCount(shownColumns);
    SetpointGrid.Cells.SetRowCount(1);
}

void TSetpointPage::BuildSetpointTree() {
    std::vector<TTreeView::TNode> roots;
    for (const TMDevice& device : Parts.Panel.DeviceList) {
        TTreeView::TNode root;
        // A device without questions cannot be named by one.
        root.Text = device.ReadList.empty() ? device.Name : GetRowField(device.ReadList.front(), 5);
        for (const TStringTable& grid : device.ReadListText)
            AddGroups(grid, root.Children);
        roots.push_back(std::move(root));
    }
    SetpointTreeView.SetNodes(std::move(roots));
}

void TSetpointPage::ArrangeSetpointPage(int gridClientWidth, int groupClientHeight) {
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

void TSetpointPage::ApplyDataLine(std::string_view line) {
    if (!SetpointListReady)
        return;
    FormatListValues(line, CurrentSetpointValue, SetpointValues);
    SetpointGrid.Repaint();
}

void TSetpointPage::SetpointTreeViewClick() {}
void TSetpointPage::SetpointTreeViewMouseDown(bool) {}
void TSetpointPage::SetpointGridDblClick(int) {}
void TSetpointPage::SetpointGridKeyPress(const std::string&) {}
void TSetpointPage::SetpointGridSelectCell(int) {}
TCellLook TSetpointPage::SetpointGridDrawCell(int, int) const {
    return {};
}

} // namespace tidewell
