#include "setpoints/SetpointFiles.h"

#include "core/ChosenFile.h"
#include "core/KvSupport.h"
#include "core/LanguageTexts.h"
#include "core/LogControl.h"
#include "core/OpenDialogFilters.h"
#include "core/ProgramState.h"
#include "core/TextFile.h"
#include "core/controls/Lists.h"
#include "model/ModbusPanel.h"
#include "setpoints/LoadSetpoints.h"
#include "setpoints/SetpointRecords.h"

#include <exception>
#include <iterator>

namespace tidewell {

namespace {

constexpr int loadCancelled = 9999;
constexpr std::size_t snapshotRow = 1;

} // namespace

void TSetpointFiles::Savesetpoints1Click() {
    if (Parts.ReadBack.Running())
        return;
    const std::string deviceName = Parts.SelectedSetpointParent; // which a click may change meanwhile
    if (deviceName.empty()) {
        Parts.Log.StopLog();
        return;
    }
    const TDeviceUse::TAction action(Parts.ReadBack.Use());
    if (!action)
        return;
    Parts.Log.StopLog();
    SetpointSaveSetpoints(deviceName);
}

void TSetpointFiles::SetpointSaveSetpoints(const std::string& deviceName) {
    try {
        Save(deviceName);
    } catch (const std::exception& error) {
        TellNotSaved(error.what());
        throw;
    }
}

void TSetpointFiles::TellNotSaved(const std::string& reason) {
    Parts.MemoEventLog.Add(FillText(Parts.Texts.Files.NotSaved, {reason}));
}

void TSetpointFiles::Save(const std::string& deviceName) {
    const int device = Parts.Panel.GetSelectedDeviceListNumber(deviceName);
    if (device < 0) {
        TellNotSaved(Parts.Texts.Files.UnknownDevice);
        return;
    }
    auto records = DeviceSetpointRecords(Parts.Panel, device);
    if (const std::string* const reason = ReadDevice()) {
        TellNotSaved(*reason);
        return;
    }
    FillRawValues(records, Parts.ReadBack.SnapshotRow(snapshotRow));
    std::vector<std::string> lines = HeadLines(deviceName);
    auto recordLines = SetpointLines(std::move(records), Parts.Texts, Parts.Dialogs);
    lines.insert(lines.end(), std::make_move_iterator(recordLines.begin()),
                 std::make_move_iterator(recordLines.end()));
    if (!Parts.Program.IsOpen())
        return;
    TFileDialog dialog;
    dialog.Title = Parts.Texts.DialogSaveDatalogFile;
    dialog.InitialDirectory = Parts.directorypath / "setpoint";
    dialog.Filters = {{"csv", "*.csv"}};
    dialog.AskOverwrite = false;
    const auto choose = [&] { return ChooseCsvFile(Parts.Files, Parts.Dialogs, dialog); };
    auto path = choose();
    if (path)
        path = SaveOrElsewhere(
            Parts.Dialogs, *path, [&](const auto& file) { WriteLines(Parts.Files, file, lines); }, choose,
            [this](const std::string& reason) { TellNotSaved(reason); });
    if (path)
        Parts.MemoEventLog.Add("Saved Setpointfile " + path->string());
}

// What else the user does meanwhile must not bring values of one profile under the names of another.
const std::string* TSetpointFiles::ReadDevice() {
    const TSetpointFileTexts& texts = Parts.Texts.Files;
    const std::filesystem::path profile = Parts.Panel.GlobalPlsFilePath;
    switch (Parts.ReadBack.Run()) {
    case TReadBack::EResult::Failed:
        return &texts.Differed;
    case TReadBack::EResult::NotStarted:
        return &texts.NotStarted;
    case TReadBack::EResult::Ended:
        return &texts.Ended;
    case TReadBack::EResult::Done:
        break;
    }
    return Parts.Panel.GlobalPlsFilePath == profile ? nullptr : &texts.OtherProfile;
}

std::vector<std::string> TSetpointFiles::HeadLines(const std::string& deviceName) const {
    return {"Created at : " + DigitsOnly(Parts.Clock.ShortDate(Parts.Clock.Now())) + ";",
            "Device name : " + deviceName + ";", "Profile : " + Parts.Panel.GlobalPlsFilePath.string() + ";",
            "SetpointName;Formatted value;RawValue;Min;Max;Decimal;Offset;ModbusAdr;Enhed;User1;User2;User3;"
            "User4;User5;"};
}

void TSetpointFiles::Loadsetpointfromfile1Click() {
    if (Parts.ReadBack.Running())
        return;
    Parts.Log.StopLog();
    TFileDialog dialog;
    dialog.Title = Parts.Texts.DialogOpenProfileCaption;
    dialog.InitialDirectory = Parts.directorypath / "setpoint";
    dialog.Filters = OpenDialogFilters();
    dialog.SelectedFilter = OpenDialogCsvFilter;
    dialog.FileMustExist = true;
    const auto path = Parts.Dialogs.OpenFile(dialog);
    if (!path) {
        Parts.LoadSetpoints.ErrorCount = loadCancelled;
        return;
    }
    if (!Parts.LoadSetpoints.LoadForm(*path)) {
        Parts.Dialogs.ShowMessage(Parts.Texts.SetpointFileRefused);
        return;
    }
    Parts.MemoEventLog.Add("Load Setpointfile " + path->string());
    Parts.LoadSetpoints.ResultList.Clear();
    if (Parts.Program.IsOpen())
        Parts.Dialogs.ShowModal(Parts.LoadSetpoints);
}

} // namespace tidewell
