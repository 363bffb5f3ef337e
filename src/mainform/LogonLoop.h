#pragma once

#include "cloud/ApiClient.h"
#include "cloud/NabtoLogOn.h"
#include "core/controls/Simple.h"
#include "core/ports/IDialogs.h"

#include <functional>
#include <string>

namespace tidewell {

// Signs the user in, by the dialog or by "name;password" from the command line, until it worked or the user
// gave up.
class TLogonLoop {
  public:
    TLogonLoop(IDialogs& dialogs, TNabtoLogOn& logOn, TLabel& lblConnectedUser,
               std::function<void()> repaint);

    // 0 when the login, or with the offline tick the offline session, worked. closing tells that the program
    // is about to end, which ends the loop too. No password is left in the dialog.
    int Run(TApiClient& client, const std::string& userNamePassword, const std::function<bool()>& closing);

  private:
    int Login(TApiClient& client, const std::function<bool()>& closing);

    IDialogs& Dialogs;
    TNabtoLogOn& LogOn;
    TLabel& LblConnectedUser;
    std::function<void()> Repaint;
};

} // namespace tidewell
