#include "mainform/SignIn.h"

#include "core/AtExit.h"
#include "core/Configuration.h"
#include "core/IniFile.h"
#include "mainform/LogonLoop.h"

namespace tidewell {

namespace {

constexpr int keepAliveInterval = 300000;

} // namespace

TSignIn::TSignIn(const TPorts& ports, TNeeds needs)
    : KeepAliveTimer(ports.Timers.CreateTimer()), Ports(ports), Needs(needs) {
    KeepAliveTimer->SetInterval(keepAliveInterval);
    KeepAliveTimer->SetHandler([this] { KeepAliveTimerTimer(); });
}

void TSignIn::MakeClient() {
    const TCloudSettings cloud =
        ReadCloudSettings(TIniFile(Ports.Files, Needs.Paths.Systemfile), Needs.Paths.directorypath);
    TMemo& eventLog = Needs.Main.MemoEventLog;
    for (const TReplacedNumber& number : cloud.Replaced)
        eventLog.Add(LineOn(number, Needs.Texts));
    Http = Ports.MakeHttp(cloud.CaFile);
    Needs.ApiClient.UseService(*Http, {cloud.ApiHost, cloud.ApiPort});
    Needs.ApiClient.OnNoToken = [this, &eventLog] { eventLog.Add(Needs.Texts.NoToken); };
    Needs.ApiClient.OnNoConnection = [this, &eventLog](const std::string& reason) {
        const std::string line = FillText(Needs.Texts.NoConnection, {reason});
        if (eventLog.Lines().empty() || eventLog.Lines().back() != line) // keep-alive fails again and again
            eventLog.Add(line);
    };
    Needs.LogOn.OnNotLoaded = [this, &eventLog](const TLoadedLibrary& loaded) {
        eventLog.Add(FillText(Needs.Texts.LibraryNotLoaded, {loaded.File, loaded.Failure}));
    };
}

bool TSignIn::Run() {
    const TAtExit forget([this] { ForgetPasswords(); });
    if (EvalSystemParameters(Needs.Options.Arguments, Needs.Parameters, *this, Ports.Dialogs) != 0) {
        Ports.Dialogs.ShowMessage("Some parameters were not parsed correctly. Closing the program.");
        return false;
    }
    if (Needs.ApiClient._isLoggedIn)
        return true;
    return TLogonLoop({Ports.Dialogs, Ports.Wait, Needs.Main, Needs.ApiClient, Needs.LogOn,
                       Needs.Device.lblConnectedUser, Needs.Main.StatusBar})
               .Run(Needs.Parameters.UserNamePW) == 0;
}

void TSignIn::ForgetPasswords() {
    ForgetPassword(Needs.Options.Arguments);
    Needs.Parameters.UserNamePW.clear();
    Needs.Device.LastPW.clear();
}

void TSignIn::KeepAliveTimerTimer() {
    KeepAliveTimer->SetEnabled(false);
    Needs.ApiClient.KeepAlive();
    KeepAliveTimer->SetEnabled(Needs.Main.IsOpen());
}

void TSignIn::InitDevice(const std::string& devid) {
    Needs.Device.Link(devid, Needs.ApiClient); // a failure shows at the first ping
}

void TSignIn::SetAccessToken(const std::string& jwt) {
    Needs.ApiClient.SetAccessToken(jwt);
}

void TSignIn::ShowEEpromPanel() {
    Needs.Device.ServiceTools.PanelReadEEprom.SetVisible(true);
}

void TSignIn::ShowFlashPanel() {
    Needs.Device.ServiceTools.PanelReadFlash.SetVisible(true);
}

void TSignIn::EnableContineousUpdate() {
    Needs.Device.EnableContineousUpdate = true;
}

void TSignIn::EnableExtendedVersionInfo() {
    Needs.Device.Enable_debugShowExtendedVersionInfo = true;
}

// On standard error as well, for who started the program.
void TSignIn::TellUnknownOption(const std::string& name) {
    const std::string line = FillText(Texts.UnknownOption, {name});
    Needs.Main.MemoEventLog.Add(line);
    Ports.Application.WriteError(line);
}

} // namespace tidewell
