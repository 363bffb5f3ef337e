#pragma once

#include "core/Extensions.h"
#include "core/HelpfileDoc.h"
#include "core/controls/Menu.h"
#include "core/controls/Simple.h"
#include "core/controls/StringGrid.h"
#include "core/controls/TreeView.h"
#include "model/ModbusPanel.h"
#include "model/ValueCodec.h"
#include "setpoints/SetpointTexts.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tidewell {

class IClock;
class IDialogs;
class TGraphPage;
class TInputDialog;
class TLiveLog;
class TLogBuffers;

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
// by their structnumber alone. What the grid shows is read from the page while painting; only its number of
// rows stands in its cells.
class TSetpointPage : public TControls {
  public:
    struct TNeeds {
        const TLiveLog& LiveLog;
        const TLogBuffers& LogBuffers;
        const TGraphPage& GraphPage;
        IDialogs& Dialogs;
        const IClock& Clock;
        TModbusPanel& Panel;
        THelpfileDoc& HelpfileDoc;
        TInputDialog& InputDialog;
        const TSetpointTexts& Texts;
        const TExtensions& Extensions;
    };

    TSetpointPage(TForm& form, const TNeeds& needs);

    void TakeTexts(const TIniFile& language);
    // A root per device of the panel, below it the groups of its list rows. The rows of a group chosen before
    // stay, unless they are to be forgotten with their profile.
    void BuildSetpointTree();
    // Client sizes in pixels, of SetpointGrid and of the group of the two category panels.
    void ArrangeSetpointPage(int gridClientWidth, int groupClientHeight);
    void ArrangeAgain() { ArrangeSetpointPage(GridClientWidth, GroupClientHeight); } // in those told last
    // Renews CurrentSetpointValue from a data line "<number>;<date>;<time>;<values>"; nothing while
    // SetpointListReady is false. Throws EConvertError for a row with a bad field.
    void ApplyDataLine(std::string_view line);

    // Shows the setpoints of the chosen group, and their values if any are known; nothing for a device node.
    // Throws EConvertError for a list row with a bad field: the rows before it are then shown without values.
    void SetpointTreeViewClick();
    // Enter does the same.
    void SetpointTreeViewKeyPress(const std::string& key);
    // On a device node the right button opens Setpointpopup.
    void SetpointTreeViewMouseDown(bool rightButton);
    // These two open the input dialog, in silence nothing without rows or while nothing is logged. A double
    // click on no list row throws EListError.
    void SetpointGridDblClick(int row);
    void SetpointGridKeyPress(const std::string& key);
    // Takes the row's help number. Throws EListError for the first row behind those that have one.
    void SetpointGridSelectCell(int row);
    TCellLook SetpointGridDrawCell(int column, int row) const;

    // Empties the column of values until the next data line.
    void ForgetValues();

    // Empties SetpointFilter; false if it was.
    bool ClearSetpointFilter();

    TTreeView SetpointTreeView{*this, "SetpointTreeView"};
    TStringGrid SetpointGrid{*this, "SetpointGrid"};
    TCategoryPanel CategoryPanelSetpoints{*this, "CategoryPanelSetpoints"}; // holds the tree
    TCategoryPanel CategoryPanelDebug{*this, "CategoryPanelDebug"};         // holds the event log
    TPopupMenu Setpointpopup{*this, "Setpointpopup"};
    TMenuItem Savesetpoints1{*this, "Savesetpoints1", "Save setpoints"};
    TMenuItem Loadsetpointfromfile1{*this, "Loadsetpointfromfile1", "Load setpoint from file"};
    // Narrows the rows as one types: to those with the text, letters large or small, as a part of their name,
    // unit or ModbusAdr. A selected setpoint stays selected, and is again when it comes back.
    TEdit SetpointFilter{*this, "SetpointFilter"};
    TLabel LblSetpointCount{*this, "LblSetpointCount"}; // "n of m setpoints", as the filter lets pass
    // What will appear; hidden once a group is chosen.
    TLabel LblSetpointPageEmpty{*this, "LblSetpointPageEmpty"};
    TLabel LblSetpointRows{*this, "LblSetpointRows"}; // that the rows are of a former profile, while they are

    std::vector<TListRow> SetpointValues;          // list rows of the chosen group
    std::vector<std::string> CurrentSetpointValue; // shown value of each of them; empty before the first line
    std::vector<std::size_t> ShownRows; // entries that the filter lets pass; grid row r shows r - 1
    bool SetpointListReady = false;
    std::int32_t CurrentModbusID = -1;  // of the chosen group's device
    std::string SelectedSetpointParent; // device node of the popup menu, empty if none

  private:
    void ConnectControls();
    std::optional<std::size_t> EntryOf(int row) const; // shown in that grid row
    std::string CellOf(std::size_t entry, int column) const;
    std::string UnitOf(const TListRow& row) const;
    void ReadGroup(std::string_view device, std::string_view group);
    void ShowGroup();
    void ShowWhoseRows();
    void ForgetRows();
    void ShowCurrentValues();
    void FilterRows();
    void SetpointFilterChange();
    void ShowRows(int selectedRow);
    bool CanEdit() const;
    void EditSetpoint(std::size_t entry, const std::string& typed);
    void OfferValue(std::size_t entry, const std::string& typed);

    TNeeds Needs;
    int GridClientWidth = 0;
    int GroupClientHeight = 0;
    std::filesystem::path TreeProfile;        // that the tree was built of
    std::filesystem::path RowsProfile;        // likewise SetpointValues
    std::optional<std::size_t> SelectedEntry; // also while the filter hides it
    std::string ValueLine;                    // the data line of CurrentSetpointValue
};

} // namespace tidewell
