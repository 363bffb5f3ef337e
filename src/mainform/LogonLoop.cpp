#include "mainform/LogonLoop.h"

#include "core/AtExit.h"
#include "core/KvSupport.h"

#include <utility>

namespace tidewell {

namespace {

constexpr int wrongPassword = -2;
constexpr int notAuthorized = -3;

} // namespace

TLogonLoop::TLogonLoop(IDialogs& dialogs, TNabtoLogOn& logOn, TLabel& lblConnectedUser,
                       std::function<void()> repaint)
    : Dialogs(dialogs), LogOn(logOn), LblConnectedUser(lblConnectedUser), Repaint(std::move(repaint)) {}

int TLogonLoop::Run(TApiClient& client, const std::string& userNamePassword,
                    const std::function<bool()>& closing) {
    const TAtExit forget([this] { LogOn.ForgetPassword(); });
    int result = -1;
    while (result != 0 && !closing()) {
        LogOn.EnterUserName("");
        LogOn.ForgetPassword();
        LblConnectedUser.SetCaption("");
        if (!userNamePassword.empty()) {
            LogOn.EnterUserName(GetRowField(userNamePassword, 0));
            LogOn.EnterPassword(GetRowField(userNamePassword, 1));
        } else if (Dialogs.ShowModal(LogOn) != EModalResult::Ok || closing()) {
            return result;
        }
        result = Login(client, closing);
    }
    return result;
}

int TLogonLoop::Login(TApiClient& client, const std::function<bool()>& closing) {
    const std::string user = LogOn.EditUser.Text();
    const std::string password = LogOn.EditPW.Text();
    const bool offline = LogOn.offLineSessionCheckBox.Checked();
    LblConnectedUser.SetCaption("User: " + user);
    Repaint();
    int result = client.Login(user, password);
    const auto warn = [&](const std::string& text) {
        if (!closing())
            Dialogs.ShowMessageBox(EMessageKind::Warning, text, EButtons::Ok);
    };
    if (result == notAuthorized)
        warn("You are not authorized to use the datalogger.");
    else if (result == wrongPassword)
        warn("Username or password is incorrect.");
    else if (result != 0)
        warn("An error occurred during login.");
    if (offline && !closing()) {
        result = client.BeginOfflineSession();
        if (result != 0)
            warn("An error occurred during prepare offline session.");
    }
    return result;
}

} // namespace tidewell
