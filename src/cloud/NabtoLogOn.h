#pragma once

#include "core/Extensions.h"
#include "core/Paths.h"
#include "core/controls/Form.h"
#include "core/controls/Simple.h"
#include "core/ports/IDialogs.h"
#include "core/ports/ILibraryLoader.h"
#include "core/ports/IProcess.h"

#include <memory>
#include <string>

namespace tidewell {

// Asks for the person's name and password. What the login uses is the text of EditPW; beside it OK prepares
// the password for being stored on this machine, unless it is to stay private.
class TNabtoLogOn : public TForm {
  public:
    // lastPW: the stored password in scrambled form.
    TNabtoLogOn(ILibraryLoader& libraries, IProcess& process, IDialogs& dialogs,
                const TCurrentInifilesPath& paths, const TExtensions& extensions, const std::string& lastPW);

    TLabel LAbUser{*this, "LAbUser", "User"};
    TEdit EditUser{*this, "EditUser"};
    TLabel LabPW{*this, "LabPW", "Password"};
    TEdit EditPW{*this, "EditPW"};
    TCheckBox offLineSessionCheckBox{*this, "offLineSessionCheckBox", "Prepare offline session"};
    TButton ButOk{*this, "ButOk", "Ok"};
    TButton ButCancel{*this, "ButCancel", "Cancel"};
    TButton ButSave{*this, "ButSave", "Save password"};

    std::unique_ptr<ILibrary> dllHandle;         // KHelper, from FormActivate to FormClose
    const char* (*GetCPUIDasString)() = nullptr; // of KHelper; none while it is not loaded
    std::string LoginPassword;                   // in clear, as it came back through the tools
    std::string CLoginPassword;                  // scrambled

    // What came of loading the helper library, when it was not loaded.
    TEvent<const TLoadedLibrary&> OnNotLoaded;

    void EnterUserName(const std::string& s) { EditUser.SetText(s); }
    void EnterPassword(const std::string& s) { EditPW.SetText(s); }
    void EnableSaveButton();
    void ForceLoadDll();
    void ForceFreeDll();
    void FormActivate();
    void FormClose();
    void EditPWKeyDown(EKey key);
    // The dialog ends with OK in any case. Throws TError, with the result already set, when there is no
    // machine key.
    void ButOkClick();
    // Empties the field and what was prepared from it.
    void ForgetPassword();

  private:
    std::string CurrentMachineKey() const;

    ILibraryLoader& Libraries;
    IProcess& Process;
    IDialogs& Dialogs;
    const TCurrentInifilesPath& Paths;
    const TExtensions& Extensions;
    const std::string& LastPW;
};

} // namespace tidewell
