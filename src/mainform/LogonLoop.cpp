#include "mainform/LogonLoop.h"

#include "cloud/ApiClient.h"
#include "cloud/NabtoLogOn.h"
#include "core/AtExit.h"
#include "core/KvSupport.h"
#include "core/ProgramState.h"
#include "core/controls/StatusBar.h"
#include "core/ports/IWait.h"

namespace tidewell {

namespace {

constexpr int wrongPassword = -2;
constexpr int notAuthorized = -3;

} // namespace

int TLogonLoop::Run(const std::string& userNamePassword) {
    const TAtExit forget([this] { Needs.LogOn.ForgetPassword(); });
    int result = -1;
    while (result != 0 && Needs.Program.IsOpen()) {
        Needs.LogOn.EnterUserName("");
        Needs.LogOn.ForgetPassword();
        Needs.lblConnectedUser.SetCaption("");
        if (!userNamePassword.empty()) {
            Needs.LogOn.EnterUserName(GetRowField(userNamePassword, 0));
            Needs.LogOn.EnterPassword(GetRowField(userNamePassword, 1));
        } else if (Needs.Dialogs.ShowModal(Needs.LogOn) != EModalResult::Ok || !Needs.Program.IsOpen()) {
            return result;
        }
        result = Login();
    }
    return result;
}

int TLogonLoop::Login() {
    const std::string user = Needs.LogOn.EditUser.Text();
    const std::string password = Needs.LogOn.EditPW.Text();
    const bool offline = Needs.LogOn.offLineSessionCheckBox.Checked();
    Needs.lblConnectedUser.SetCaption("User: " + user);
    Needs.StatusBar.Repaint();
    Needs.Wait.Sleep(0); // painted before the server's answer is waited for
    int result = Needs.ApiClient.Login(user, password);
    const auto warn = [&](const std::string& text) {
        if (Needs.Program.IsOpen())
            Needs.Dialogs.ShowMessageBox(EMessageKind::Warning, text, EButtons::Ok);
    };
    if (result == notAuthorized)
        warn("You are not authorized to use the datalogger.");
    else if (result == wrongPassword)
        warn("Username or password is incorrect.");
    else if (result != 0)
        warn("An error occurred during login.");
    if (offline && Needs.Program.IsOpen()) {
        result = Needs.ApiClient.BeginOfflineSession();
        if (result != 0)
            warn("An error occurred during prepare offline session.");
    }
    return result;
}

} // namespace tidewell
