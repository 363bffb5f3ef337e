#pragma once

#include <string>

namespace tidewell {

class IDialogs;
class IProgramState;
class IWait;
class TApiClient;
class TLabel;
class TNabtoLogOn;
class TStatusBar;

// Signs the user in, by the dialog or by "name;password" from the command line, until it worked or the user
// gave up.
class TLogonLoop {
  public:
    struct TNeeds {
        IDialogs& Dialogs;
        IWait& Wait;
        const IProgramState& Program;
        TApiClient& ApiClient;
        TNabtoLogOn& LogOn;
        TLabel& lblConnectedUser;
        TStatusBar& StatusBar; // which shows that label
    };
    explicit TLogonLoop(const TNeeds& needs) : Needs(needs) {}

    // 0 when the login, or with the offline tick the offline session, worked. The end of the program ends the
    // loop too. No password is left in the dialog.
    int Run(const std::string& userNamePassword);

  private:
    int Login();

    const TNeeds Needs;
};

} // namespace tidewell
