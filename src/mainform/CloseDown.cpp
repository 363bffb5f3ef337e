#include "mainform/CloseDown.h"

#include "core/Configuration.h"
#include "core/Errors.h"
#include "core/Extensions.h"
#include "core/Guard.h"
#include "core/KvSupport.h"
#include "core/LanguageTexts.h"
#include "core/Paths.h"
#include "core/TextFile.h"
#include "graph/GraphPage.h"
#include "link/NabtoDevice.h"
#include "logging/LiveLog.h"
#include "mainform/FormMain.h"
#include "mainform/NabtoUserFolder.h"
#include "model/ModbusPanel.h"
#include "model/Profile.h"

#include <utility>

namespace tidewell {

namespace {
constexpr int closeAgainInterval = 60000;
} // namespace

TCloseDown::TCloseDown(const TPorts& ports, TNeeds needs)
    : Ports(ports), Needs(std::move(needs)), CloseAgain(ports.Timers.CreateTimer()) {
    CloseAgain->SetInterval(closeAgainInterval);
    CloseAgain->SetHandler([this] { CloseAgain->SetEnabled(false); });
}

void TCloseDown::FormCloseQuery(bool& mayClose) {
    const TUpdateStatus& update = Needs.Device.UpdateStatus;
    if (AskBeforeClose && update.Running())
        mayClose = Ports.Dialogs.ShowMessageBox(EMessageKind::Confirmation, update.Texts.CloseProgram,
                                                EButtons::YesNo) == EModalResult::Yes;
    const std::size_t rows = Needs.LiveLog.UnsavedRows();
    if (mayClose && MayAskForPlace() && CloseAgain->Enabled() && rows > 0)
        mayClose =
            Ports.Dialogs.ShowMessageBox(EMessageKind::Confirmation,
                                         FillText(Needs.LiveLog.Texts.NotSaved, {std::to_string(rows)}),
                                         EButtons::YesNo) == EModalResult::Yes;
}

bool TCloseDown::MayAskForPlace() const {
    return AskBeforeClose && Needs.Extensions.CloseAsk;
}

void TCloseDown::FormClose() {
    if (!CloseAgain->Enabled()) {
        CloseAgain->SetEnabled(true);
        for (const auto& save : ClosingSaves())
            save();
    } else {
        for (const auto& save : ClosingSaves())
            RunGuarded(Ports.Dialogs, save);
    }
    CloseAgain->SetEnabled(false);
    SaveElsewhere();
    for (ITimer* timer : Needs.Timers)
        timer->SetEnabled(false);
    Needs.Device.stopLog();
    Needs.UserFolder.DeleteNabtoUserFolder();
    Ports.Application.Terminate();
}

void TCloseDown::SaveGraphSettings() {
    const auto settings = Needs.GraphPage.ChannelSettings();
    if (!Needs.Extensions.ProfileKeepEdits)
        return Needs.Profile.WriteGraphSettings(settings);
    const auto edited = Needs.Profile.WriteChangedSettings(settings);
    if (!edited.empty())
        Needs.FormMain.MemoEventLog.Add(FillText(
            Needs.Texts.ProfileEdited, {Needs.Profile.currentprofilefile.string(), Join(edited, ", ")}));
}

void TCloseDown::SaveElsewhere() {
    if (MayAskForPlace() && Needs.LiveLog.UnsavedRows() > 0)
        RunGuarded(Ports.Dialogs, [this] { Needs.LiveLog.SaveUserDatalog1Click(); });
    if (Needs.LiveLog.UnsavedRows() == 0)
        return;
    const auto place = Needs.LiveLog.KeepRows();
    const std::vector<std::string>& events = Needs.FormMain.MemoEventLog.Lines();
    Ports.Application.WriteError(events.back());
    if (!place)
        return;
    try {
        WriteLines(*Ports.Files.Create(place->parent_path() / (DateTimeStamp(Ports.Clock) + "eventlog.log")),
                   events);
    } catch (const EInOutError& error) {
        Ports.Application.WriteError(error.what());
    }
}

std::vector<std::function<void()>> TCloseDown::ClosingSaves() {
    const auto systemlog = Needs.Paths.directorypath / "log" / "systemlog";
    const std::string stamp = DateTimeStamp(Ports.Clock);
    std::vector<std::function<void()>> saves;
    if (Needs.Profile.ProfileLoaded)
        // What cannot be kept of the graph must not cost the logs.
        saves.emplace_back([this] { RunGuarded(Ports.Dialogs, [this] { SaveGraphSettings(); }); });
    if (Ports.Files.DirectoryExists(systemlog)) {
        saves.emplace_back([=, this] {
            WriteLines(*Ports.Files.Create(systemlog / (stamp + "eventlog.log")),
                       Needs.FormMain.MemoEventLog.Lines());
        });
        saves.emplace_back([=, this] {
            Needs.LiveLog.SaveDataLogFile(systemlog / ("datalog" + NowStamp(Ports.Clock) + ".csv"));
        });
    }
    saves.emplace_back([this] { Needs.Panel.WannaClose = true; });
    if (Needs.Configuration.DebugEnable && Ports.Files.DirectoryExists(systemlog))
        saves.emplace_back([=, this] {
            WriteLines(*Ports.Files.Create(systemlog / (stamp + "debug.log")), Needs.Panel.MemoDebug.Lines());
        });
    return saves;
}

} // namespace tidewell
