#include "cloud/NabtoLogOn.h"

#include "cloud/Scrambling.h"
#include "core/Errors.h"

#include <utility>

namespace tidewell {

namespace {

// Typed in place of a password, it stands for the stored one.
const char* const storedPassword = "Palisades";

} // namespace

TNabtoLogOn::TNabtoLogOn(ILibraryLoader& libraries, IProcess& process, IDialogs& dialogs,
                         const TCurrentInifilesPath& paths, const TExtensions& extensions,
                         const std::string& lastPW)
    : TForm("NabtoLogOn", "Nabto Logon"), Libraries(libraries), Process(process), Dialogs(dialogs),
      Paths(paths), Extensions(extensions), LastPW(lastPW) {
    EditPW.SetMasked(true);
    ButSave.SetVisible(false);
    offLineSessionCheckBox.SetHint("Check this box if you want to be able to work with local device while "
                                   "the PC is not connected to the "
                                   "internet. This will prevent access to any non-local devices.");
    ButOk.OnClick = [this] { ButOkClick(); };
    ButCancel.OnClick = [this] { SetModalResult(EModalResult::Cancel); };
    EditPW.OnReturn = [this] { EditPWKeyDown(EKey::Return); };
    OnKeyDown = [this](EKey key, bool& handled) {
        if (key == EKey::Escape) {
            handled = true;
            ButCancel.Click();
        }
    };
    OnShow = [this] {
        FormActivate();
        EditUser.SetFocus();
    };
    OnClose = [this] { FormClose(); };
}

void TNabtoLogOn::EnableSaveButton() {
    EditPW.SetMasked(false);
    ButSave.SetVisible(true);
}

void TNabtoLogOn::ForceLoadDll() {
    TLoadedLibrary loaded = Libraries.Load("KHelper");
    if (!loaded.Library) {
        OnNotLoaded(loaded);
        Dialogs.ShowMessage("Error Dll not loaded");
        return;
    }
    GetCPUIDasString = reinterpret_cast<const char* (*)()>(loaded.Library->Symbol("GetCPUIDasString"));
    dllHandle = std::move(loaded.Library);
}

void TNabtoLogOn::ForceFreeDll() {
    GetCPUIDasString = nullptr;
    dllHandle.reset();
}

void TNabtoLogOn::FormActivate() {
    ForceLoadDll();
}

void TNabtoLogOn::FormClose() {
    ForceFreeDll();
    ButSave.SetVisible(false);
    EditPW.SetMasked(true);
}

void TNabtoLogOn::EditPWKeyDown(EKey key) {
    if (key == EKey::Return)
        ButOk.Click();
}

void TNabtoLogOn::ButOkClick() {
    SetModalResult(EModalResult::Ok);
    if (Extensions.LogonPrivatePassword)
        return; // the tools would take it from a command line
    const std::string password = EditPW.Text();
    const std::string key = CurrentMachineKey();
    CLoginPassword =
        password == storedPassword ? LastPW : Scramble(Process, Paths.directorypath, password, key);
    LoginPassword = Unscramble(Process, Paths.directorypath, CLoginPassword, key);
}

void TNabtoLogOn::ForgetPassword() {
    EnterPassword("");
    LoginPassword.clear();
    CLoginPassword.clear();
}

std::string TNabtoLogOn::CurrentMachineKey() const {
    if (GetCPUIDasString == nullptr)
        throw TError("The password cannot be scrambled: the function GetCPUIDasString of the library KHelper "
                     "is not loaded");
    const char* const text = GetCPUIDasString();
    return MachineKey(text == nullptr ? "" : text);
}

} // namespace tidewell
