#pragma once

#include "core/controls/Simple.h"
#include "core/controls/StringGrid.h"
#include "core/controls/TreeView.h"
#include "model/ModbusPanel.h"

#include <string>
#include <string_view>
#include <vector>

namespace tidewell {

// One of a group of stacked panels; collapsed, only its caption is left.
class TCategoryPanel : public TPanel {
  public:
    using TPanel::TPanel;
    int Height() const { return PanelHeight; } // pixels
    void SetHeight(int height) { Assign(PanelHeight, height); }
    bool Collapsed() const { return IsCollapsed; }
    void SetCollapsed(bool collapsed) { Assign(IsCollapsed, collapsed); }

  private:
    int PanelHeight = 0;
    bool IsCollapsed = false;
};

// The page of the device tree and the setpoint grid. Values arrive as data lines and are matched to list rows
// by their structnumber alone.
class TSetpointPage {
  public:
    explicit TSetpointPage(const TModbusPanel& panel);

    // A root per device of the panel, below it the groups of its list rows.
    void BuildSetpointTree();
    // Client sizes in pixels, of SetpointGrid and of the group of the two category panels.
    void ArrangeSetpointPage(int gridClientWidth, int groupClientHeight);
    // Renews CurrentSetpointValue from a data line "<number>;<date>;<time>;<values>"; nothing while
    // SetpointListReady is false. Throws EConvertError for a row with a bad field.
    void ApplyDataLine(std::string_view line);

    TTreeView SetpointTreeView{"SetpointTreeView"};
    TStringGrid SetpointGrid{"SetpointGrid"};
    TCategoryPanel CategoryPanelSetpoints{"CategoryPanelSetpoints"}; // holds the tree
    TCategoryPanel CategoryPanelDebug{"CategoryPanelDebug"};         // holds the event log

    std::vector<std::string> SetpointValues;       // list rows of the chosen group, limits in shown form
    std::vector<std::string> CurrentSetpointValue; // shown value of each of them; empty before the first line
    bool SetpointListReady = false;

  private:
    const TModbusPanel& Panel;
};

} // namespace tidewell
