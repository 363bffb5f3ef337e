#include "cloud/NabtoLogOn.h"

namespace tidewell {

TNabtoLogOn::TNabtoLogOn() : TForm("NabtoLogOn", "Nabto Logon") {
    EditPW.SetMasked(true);
    ButSave.SetVisible(false);
    offLineSessionCheckBox.SetHint("Check this box if you want to be able to work with local device while "
                                   "the PC is not connected to the "
                                   "internet. This will prevent access to any non-local devices.");
    ButOk.OnClick = [this] {
        ButOkClick();
    };
    ButCancel.OnClick = [this] {
        SetModalResult(EModalResult::Cancel);
    };
    EditPW.OnReturn = [this] {
        ButOk.Click();
    };
    OnShow = [this] {
        EditUser.SetFocus();
    };
    OnClose = [this] {
        FormClose();
    };
}

void TNabtoLogOn::EnableSaveButton() {
    EditPW.SetMasked(false);
    ButSave.SetVisible(true);
}

void TNabtoLogOn::ButOkClick() {
    SetModalResult(EModalResult::Ok);
}

void TNabtoLogOn::FormClose() {
    ButSave.SetVisible(false);
    EditPW.SetMasked(true);
}

} // namespace tidewell
