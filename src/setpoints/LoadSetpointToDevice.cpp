#include "setpoints/LoadSetpointToDevice.h"

#include "core/AtExit.h"
#include "core/ChosenFile.h"
#include "core/Errors.h"
#include "core/KvSupport.h"
#include "core/LanguageTexts.h"
#include "core/Numbers.h"
#include "core/Paths.h"
#include "core/ProgramState.h"
#include "core/TextFile.h"
#include "core/ports/IDialogs.h"
#include "link/NabtoDevice.h"
#include "model/ListField.h"
#include "model/ModbusPanel.h"
#include "setpoints/SetpointRecords.h"
#include "setpoints/SetpointTexts.h"

#include <algorithm>
#include <utility>

namespace tidewell {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t checkColumn = 2;
constexpr int boxSize = 12; // pixels
constexpr int boxReach = 2; // around the box, where a click still counts

// At the right side of the cell.
TCellRect CheckBoxRect(const TCellRect& cell) {
    const int left = std::max(cell.Left, cell.Right - 20) + 4;
    const int top = cell.Top + (cell.Bottom - cell.Top - boxSize) / 2;
    return {left, top, left + boxSize, top + boxSize};
}

} // namespace

TLoadSetpoints::TLoadSetpoints(const TNeeds& needs) : TForm("LoadSetpoints"), Needs(needs) {
    for (TControl* control : {static_cast<TControl*>(&ResultList), static_cast<TControl*>(&ProgressBar),
                              static_cast<TControl*>(&LabReadBack), static_cast<TControl*>(&ButEndReadBack)})
        control->SetVisible(false);
    setpointgrid.BoxRect = CheckBoxRect;
    setpointgrid.OnDrawCell = [this](int column, int row) { return setpointgridDrawCell(column, row); };
    setpointgrid.OnClick = [this](const TCellClick& click) { setpointgridClick(click); };
    setpointgrid.OnKeyPress = [this](const std::string& key) {
        if (key == " ")
            ToggleCheck(setpointgrid.SelectedRow());
    };
    ButcheckAll.OnClick = [this] { ButcheckAllClick(); };
    ButClearAll.OnClick = [this] { ButClearAllClick(); };
    ButWriteSetpoints.OnClick = [this] { ButWriteSetpointsClick(); };
    ButCancel.OnClick = [this] { Close(); };
    ResultList.OnClick = [this] { ShowGrid(true); };
    ButEndReadBack.OnClick = [this] { Needs.ReadBack.Cancel(); };
    OnCloseQuery = [this](bool& mayClose) { mayClose = !Running; };
    OnKeyDown = [this](EKey key, bool& handled) {
        handled = key == EKey::Escape;
        if (handled)
            Close();
    };
    ReadBackChanged = Needs.ReadBack.Changed.Connect([this] { ShowReadBack(); });
}

bool TLoadSetpoints::LoadForm(const fs::path& fileName) {
    SetClientSize(DesignedWidth, DesignedHeight);
    Forget();
    std::vector<std::string> lines = ReadLines(Needs.Files, fileName);
    Needs.MemoEventLog.Add("Number of setpoints " + std::to_string(lines.size()));
    if (lines.size() < SetpointHeadLines)
        return false;
    const std::string heading = lines[SetpointHeadLines - 1];
    Needs.MemoEventLog.Add(GetRowField(heading, 0));
    if (GetRowField(heading, 0) != "SetpointName")
        return false;
    SetCaption(lines[0] + " " + lines[1]);
    lines.erase(lines.begin(), lines.begin() + SetpointHeadLines);
    LoadSetpointValues = std::move(lines);
    Needs.MemoEventLog.Add("productionmode = false");
    try {
        FillGrid(fileName, heading);
    } catch (const TError&) {
        Forget();
        throw;
    }
    SetpointGridResized(GridClientWidth);
    SetAllChecks(true);
    FileName = fileName;
    return true;
}

void TLoadSetpoints::Forget() {
    FileName.clear();
    LoadSetpointValues.clear();
    CurrentSetpointValues.clear();
    setpointgrid.Cells.SetRowCount(1);
    setpointgrid.Cells.ClearRow(0);
    setpointgrid.SetSelectedRow(-1);
    setpointgrid.Repaint();
    SelectedCount = 0;
    ShowGrid(true);
    progresslabel.SetCaption({});
}

void TLoadSetpoints::FillGrid(const fs::path& fileName, const std::string& heading) {
    TScaledTexts scaled(Needs.Dialogs);
    CurrentSetpointValues.reserve(LoadSetpointValues.size());
    for (const std::string& record : LoadSetpointValues) {
        try {
            CurrentSetpointValues.push_back(
                scaled.Next(record, GetRowField(record, SetpointColumn::RawValue)));
        } catch (const EConvertError& error) {
            throw EConvertError(fileName.string() + ", line " +
                                std::to_string(CurrentSetpointValues.size() + SetpointHeadLines + 1) + " (" +
                                GetRowField(record, SetpointColumn::SetpointName) +
                                "), Decimal or Offset: " + error.what());
        }
    }
    scaled.TellRest();
    TStringTable& cells = setpointgrid.Cells;
    cells.SetColCount(checkColumn + 1);
    cells.SetRowCount(LoadSetpointValues.size() + 1);
    cells.SetRow(0, {GetRowField(heading, SetpointColumn::SetpointName),
                     GetRowField(heading, SetpointColumn::RawValue), "Enabled"});
    for (std::size_t i = 0; i < LoadSetpointValues.size(); ++i)
        cells.SetRow(i + 1,
                     {std::string(Trim(GetRowField(LoadSetpointValues[i], SetpointColumn::SetpointName))),
                      CurrentSetpointValues[i], "0"});
}

void TLoadSetpoints::SetpointGridResized(int gridClientWidth) {
    GridClientWidth = gridClientWidth;
    const int unit = (gridClientWidth - 5) / 7;
    std::vector<int> widths{4 * unit, 2 * unit, unit};
    if (setpointgrid.ColWidths == widths)
        return;
    setpointgrid.ColWidths = std::move(widths);
    setpointgrid.Repaint();
}

TCellLook TLoadSetpoints::setpointgridDrawCell(int column, int row) const {
    TCellLook look;
    look.Selected = row == setpointgrid.SelectedRow();
    look.Stripe = row % 2 == 0;
    if (column == static_cast<int>(checkColumn))
        look.Box = Checked(static_cast<std::size_t>(row));
    else
        look.Text = setpointgrid.Cells.Cell(static_cast<std::size_t>(column), static_cast<std::size_t>(row));
    return look;
}

bool TLoadSetpoints::Checked(std::size_t row) const {
    return setpointgrid.Cells.Cell(checkColumn, row) == "1";
}

void TLoadSetpoints::setpointgridClick(const TCellClick& click) {
    if (InClick)
        return;
    const TFlagged inside(InClick);
    if (click.Column == static_cast<int>(checkColumn) &&
        CheckBoxRect(click.Cell).Grown(boxReach).Contains(click.X, click.Y))
        ToggleCheck(click.Row);
}

void TLoadSetpoints::ToggleCheck(int row) {
    if (row < 1 || static_cast<std::size_t>(row) > LoadSetpointValues.size())
        return;
    const auto index = static_cast<std::size_t>(row);
    const bool checked = !Checked(index);
    setpointgrid.Cells.SetCell(checkColumn, index, checked ? "1" : "0");
    SelectedCount = checked ? SelectedCount + 1 : SelectedCount - 1;
    setpointgrid.Repaint();
    ShowSelected();
}

// The heading has no check cell of its own: its cell is the caption that is shown.
void TLoadSetpoints::SetAllChecks(bool checked) {
    for (std::size_t row = 1; row <= LoadSetpointValues.size(); ++row)
        setpointgrid.Cells.SetCell(checkColumn, row, checked ? "1" : "0");
    SelectedCount = checked ? LoadSetpointValues.size() : 0;
    setpointgrid.Repaint();
    ShowSelected();
}

void TLoadSetpoints::ShowSelected() {
    LabSelected.SetCaption(std::to_string(SelectedCount) + " of " +
                           std::to_string(LoadSetpointValues.size()) + " selected");
}

void TLoadSetpoints::ShowGrid(bool show) {
    setpointgrid.SetVisible(show);
    ResultList.SetVisible(!show);
    LabHint.SetCaption(show ? "A click on its box, or Space, checks a setpoint or unchecks it."
                            : "A click on the results shows the setpoints again.");
}

void TLoadSetpoints::ShowReadBack() {
    LabReadBack.SetCaption(Needs.ReadBack.ProgressText());
    LabReadBack.SetVisible(Needs.ReadBack.Running());
    ButEndReadBack.SetVisible(Needs.ReadBack.Running());
}

void TLoadSetpoints::ButWriteSetpointsClick() {
    if (Running)
        return;
    const TDeviceUse::TAction action(Needs.Device.Use);
    if (!action || Running)
        return;
    Needs.MemoEventLog.Add("Writing setpoint to device Status Productionmode " + BooleanText(false));
    if (Needs.SelectedSetpointParent.empty()) {
        Needs.Dialogs.ShowMessage("Click on a device name");
        return;
    }
    Needs.Panel.GetProfileListCellsNameValue(Needs.SelectedSetpointParent, DeviceSetpointProfilelist,
                                             ListField::EEadr, ListField::ModbusAdr);
    ResultList.Clear();
    Selected = CollectSelectedSetpoints();
    ShowGrid(false);
    WriteSetpointsToDevice(action, true);
}

TSelectedSetpoints TLoadSetpoints::CollectSelectedSetpoints() const {
    TSelectedSetpoints selected;
    for (std::size_t i = 0; i < LoadSetpointValues.size(); ++i) {
        if (!Checked(i + 1))
            continue;
        const auto field = [&](std::size_t column) { return GetRowField(LoadSetpointValues[i], column); };
        selected.ValueAdrList.push_back({field(SetpointColumn::ModbusAdr), field(SetpointColumn::RawValue)});
        selected.ValueNamelist.push_back(
            {field(SetpointColumn::SetpointName), field(SetpointColumn::FormattedValue)});
    }
    return selected;
}

void TLoadSetpoints::ShowRun(bool running) {
    ButPanel.SetVisible(!running);
    ProgressBar.SetVisible(running);
    progresslabel.SetVisible(running);
    LabHint.SetVisible(!running);
}

void TLoadSetpoints::WriteSetpointsToDevice(const TDeviceUse::TAction& action, bool report) {
    TSetpointWriteRun run({Needs.Dialogs, Needs.Panel, Needs.Device, action, Needs.ReadBack, Needs.Program,
                           ResultList, ProgressBar, progresslabel},
                          Needs.SelectedSetpointParent, DeviceSetpointProfilelist, Selected);
    const std::size_t writes = Selected.ValueAdrList.size();
    {
        const TFlagged running(Running);
        ShowRun(true);
        const TAtExit done([this] {
            Selected = {};
            ShowRun(false);
        });
        Needs.Log.StopLog();
        ResultList.Clear();
        LastWriteResultList.clear();
        ErrorCount = 0;
        ProgressBar.SetPosition(0);
        ProgressBar.SetMax(static_cast<int>(writes));
        if (writes > 0)
            run.Run();
    }
    if (writes == 0) {
        Needs.Log.StopLog();
        ShowGrid(true);
        Needs.Dialogs.ShowMessage("Please select a setpoint...");
        return;
    }
    ErrorCount = static_cast<int>(run.ErrorCount);
    LastWriteResultList = std::move(run.LastWriteResultList);
    if (report) {
        const std::string text = "Setpointwrite is done. Number of write Errors " +
                                 std::to_string(run.ErrorCount) + " Number of Read error " +
                                 std::to_string(run.ReadErrorCount) + " Resultfile saved in systemlog folder";
        if (Needs.Program.IsOpen())
            Needs.Dialogs.ShowMessage(text);
        LastWriteResultList.emplace_back("Result of load setpoints");
        LastWriteResultList.push_back(text);
    }
    SaveResult();
}

void TLoadSetpoints::SaveResult() {
    const auto name = [this] {
        return "WriteMultibleSetpointsResult " + DateTimeStamp(Needs.Clock) + ".csv";
    };
    const fs::path wanted = Needs.directorypath / "log" / "systemlog" / name();
    bool elsewhere = false;
    TFileDialog dialog;
    dialog.Title = "Save the result of the setpoint write";
    dialog.InitialDirectory = Needs.directorypath;
    dialog.Filters = {{"csv", "*.csv"}};
    const auto saved = SaveOrElsewhere(
        Needs.Dialogs, wanted, EName::Made,
        [&](const fs::path& file, EName naming) {
            elsewhere = naming == EName::Chosen;
            return WriteLines(*OpenWriter(Needs.Files, file, naming), LastWriteResultList);
        },
        [&] { return ChooseCsvFile(Needs.Files, Needs.Dialogs, dialog, EIfKept::ChooseAgain); },
        [this](const std::string& reason) {
            Needs.MemoEventLog.Add(FillText(Needs.Texts.ResultNotSaved, {reason}));
        });
    if (!saved)
        return;
    // The name is made anew, so the seconds can differ from those of the file; not if another had that name.
    const std::string shown = *saved == wanted ? name() : saved->filename().string();
    Needs.MemoEventLog.Add(
        "Saved file " +
        (elsewhere ? saved->string() : ShownDirectory(Needs.directorypath) + "log\\systemlog\\" + shown));
}

} // namespace tidewell
