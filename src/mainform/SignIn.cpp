#include "mainform/SignIn.h"

#include "core/AtExit.h"
#include "core/Configuration.h"
#include "core/IniFile.h"
#include "mainform/LogonLoop.h"

namespace tidewell {

namespace {

constexpr int keepAliveInterval = 300000;

} // namespace

TSignIn::TSignIn(const TPorts& ports, TParts parts)
    : KeepAliveTimer(ports.Timers.CreateTimer()), Ports(ports), Parts(parts) {
    KeepAliveTimer->SetInterval(keepAliveInterval);
    KeepAliveTimer->SetHandler([this] { KeepAliveTimerTimer(); });
}

void TSignIn::MakeClient() {
    const TCloudSettings cloud =
        ReadCloudSettings(TIniFile(Ports.Files, Parts.Paths.Systemfile), Parts.Paths.directorypath);
    TMemo& eventLog = Parts.Main.MemoEventLog;
    for (const TReplacedNumber& number : cloud.Replaced)
        eventLog.Add(LineOn(number, Parts.Texts));
    Http = Ports.MakeHttp(cloud.CaFile);
    Parts.ApiClient.UseService(*Http, {cloud.ApiHost, cloud.ApiPort});
    Parts.ApiClient.MayCall = [this] { return Parts.Main.IsOpen(); };
    Parts.ApiClient.OnNoToken = [this, &eventLog] { eventLog.Add(Parts.Texts.NoToken); };
    Parts.ApiClient.OnNoConnection = [this, &eventLog](const std::string& reason) {
        const std::string line = FillText(Parts.Texts.NoConnection, {reason});
        if (eventLog.Lines().empty() || eventLog.Lines().back() != line) // keep-alive fails again and again
            eventLog.Add(line);
    };
    Parts.LogOn.OnNotLoaded = [this, &eventLog](const TLoadedLibrary& loaded) {
        eventLog.Add(FillText(Parts.Texts.LibraryNotLoaded, {loaded.File, loaded.Failure}));
    };
}

bool TSignIn::Run() {
    const TAtExit forget([this] { ForgetPasswords(); });
    if (EvalSystemParameters(Parts.Options.Arguments, Parts.Parameters, *this, Ports.Dialogs) != 0) {
        Ports.Dialogs.ShowMessage("Some parameters were not parsed correctly. Closing the program.");
        return false;
    }
    if (Parts.ApiClient._isLoggedIn)
        return true;
    TLogonLoop logon(
        Ports.Dialogs, Parts.LogOn, Parts.Device.lblConnectedUser,
        [this] {
            Parts.Main.StatusBar.Repaint();
            Ports.Wait.Sleep(0); // painted before the server's answer is waited for
        });
    return logon.Run(Parts.ApiClient, Parts.Parameters.UserNamePW, [this] { return !Parts.Main.IsOpen(); }) ==
           0;
}

void TSignIn::ForgetPasswords() {
    ForgetPassword(Parts.Options.Arguments);
    Parts.Parameters.UserNamePW.clear();
    Parts.Device.LastPW.clear();
}

void TSignIn::KeepAliveTimerTimer() {
    KeepAliveTimer->SetEnabled(false);
    Parts.ApiClient.KeepAlive();
    KeepAliveTimer->SetEnabled(Parts.Main.IsOpen());
}

void TSignIn::InitDevice(const std::string& devid) {
    Parts.Device.Link(devid, Parts.ApiClient); // a failure shows at the first ping
}

void TSignIn::SetAccessToken(const std::string& jwt) {
    Parts.ApiClient.SetAccessToken(jwt);
}

void TSignIn::ShowEEpromPanel() {
    Parts.Device.ServiceTools.PanelReadEEprom.SetVisible(true);
}

void TSignIn::ShowFlashPanel() {
    Parts.Device.ServiceTools.PanelReadFlash.SetVisible(true);
}

void TSignIn::EnableContineousUpdate() {
    Parts.Device.EnableContineousUpdate = true;
}

void TSignIn::EnableExtendedVersionInfo() {
    Parts.Device.Enable_debugShowExtendedVersionInfo = true;
}

// On standard error as well, for who started the program.
void TSignIn::TellUnknownOption(const std::string& name) {
    const std::string line = FillText(Texts.UnknownOption, {name});
    Parts.Main.MemoEventLog.Add(line);
    Ports.Application.WriteError(line);
}

} // namespace tidewell
