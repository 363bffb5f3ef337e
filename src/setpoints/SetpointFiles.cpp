#include "setpoints/SetpointFiles.h"

#include "core/ChosenFile.h"
#include "core/KvSupport.h"
#include "core/LanguageTexts.h"
#include "core/OpenDialogFilters.h"
#include "core/ProgramState.h"
#include "core/TextFile.h"
#include "core/controls/Lists.h"
#include "model/ModbusPanel.h"
#include "setpoints/LoadSetpointToDevice.h"
#include "setpoints/SetpointRecords.h"

#include <exception>
#include <iterator>

namespace tidewell {

namespace {

constexpr int loadCancelled = 9999;
constexpr std::size_t snapshotRow = 1;

} // namespace

void TSetpointFiles::Savesetpoints1Click() {
    if (Needs.ReadBack.Running())
        return;
    const std::string deviceName = Needs.SelectedSetpointParent; // which a click may change meanwhile
    if (deviceName.empty()) {
        Needs.Log.StopLog();
        return;
    }
    const TDeviceUse::TAction action(Needs.ReadBack.Use());
    if (!action)
        return;
    Needs.Log.StopLog();
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
    Needs.MemoEventLog.Add(FillText(Needs.Texts.Files.NotSaved, {reason}));
}

void TSetpointFiles::Save(const std::string& deviceName) {
    const int device = Needs.Panel.GetSelectedDeviceListNumber(deviceName);
    if (device < 0) {
        TellNotSaved(Needs.Texts.Files.UnknownDevice);
        return;
    }
    auto records = DeviceSetpointRecords(Needs.Panel, device);
    if (const std::string* const reason = ReadDevice()) {
        TellNotSaved(*reason);
        return;
    }
    FillRawValues(records, Needs.ReadBack.SnapshotRow(snapshotRow));
    std::vector<std::string> lines = HeadLines(deviceName);
    auto recordLines = SetpointLines(std::move(records), Needs.Texts, Needs.Dialogs);
    lines.insert(lines.end(), std::make_move_iterator(recordLines.begin()),
                 std::make_move_iterator(recordLines.end()));
    if (!Needs.Program.IsOpen())
        return;
    TFileDialog dialog;
    dialog.Title = Needs.Texts.DialogSaveDatalogFile;
    dialog.InitialDirectory = Needs.directorypath / "setpoint";
    dialog.Filters = {{"csv", "*.csv"}};
    dialog.AskOverwrite = false;
    const auto choose = [&] { return ChooseCsvFile(Needs.Files, Needs.Dialogs, dialog); };
    auto path = choose();
    if (path)
        path = SaveOrElsewhere(
            Needs.Dialogs, *path, EName::Chosen,
            [&](const auto& file, EName) {
                KeepBackup(Needs.Files, file);
                return WriteLines(*Needs.Files.Replace(file), lines);
            },
            choose, [this](const std::string& reason) { TellNotSaved(reason); });
    if (path)
        Needs.MemoEventLog.Add("Saved Setpointfile " + path->string());
}

// What else the user does meanwhile must not bring values of one profile under the names of another.
const std::string* TSetpointFiles::ReadDevice() {
    const TSetpointFileTexts& texts = Needs.Texts.Files;
    const std::filesystem::path profile = Needs.Panel.GlobalPlsFilePath;
    switch (Needs.ReadBack.Run()) {
    case TReadBack::EResult::Failed:
        return &texts.Differed;
    case TReadBack::EResult::NotStarted:
        return &texts.NotStarted;
    case TReadBack::EResult::Ended:
        return &texts.Ended;
    case TReadBack::EResult::Done:
        break;
    }
    return Needs.Panel.GlobalPlsFilePath == profile ? nullptr : &texts.OtherProfile;
}

std::vector<std::string> TSetpointFiles::HeadLines(const std::string& deviceName) const {
    return {"Created at : " + StampDigits(Needs.Clock.ShortDate(Needs.Clock.Now())) + ";",
            "Device name : " + deviceName + ";", "Profile : " + Needs.Panel.GlobalPlsFilePath.string() + ";",
            "SetpointName;Formatted value;RawValue;Min;Max;Decimal;Offset;ModbusAdr;Enhed;User1;User2;User3;"
            "User4;User5;"};
}

void TSetpointFiles::Loadsetpointfromfile1Click() {
    if (Needs.ReadBack.Running())
        return;
    Needs.Log.StopLog();
    TFileDialog dialog;
    dialog.Title = Needs.Texts.DialogOpenProfileCaption;
    dialog.InitialDirectory = Needs.directorypath / "setpoint";
    dialog.Filters = OpenDialogFilters();
    dialog.SelectedFilter = OpenDialogCsvFilter;
    dialog.FileMustExist = true;
    const auto path = Needs.Dialogs.OpenFile(dialog);
    if (!path) {
        Needs.LoadSetpoints.ErrorCount = loadCancelled;
        return;
    }
    if (!Needs.LoadSetpoints.LoadForm(*path)) {
        Needs.Dialogs.ShowMessage(Needs.Texts.SetpointFileRefused);
        return;
    }
    Needs.MemoEventLog.Add("Load Setpointfile " + path->string());
    Needs.LoadSetpoints.ResultList.Clear();
    if (Needs.Program.IsOpen())
        Needs.Dialogs.ShowModal(Needs.LoadSetpoints);
}

} // namespace tidewell
