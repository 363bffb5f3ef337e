#pragma once

#include "core/controls/Form.h"
#include "core/controls/Simple.h"

#include <string>

namespace tidewell {

// Asks for the person's name and password. What the login uses is the text of EditPW.
class TNabtoLogOn : public TForm {
  public:
    TNabtoLogOn();

    TLabel LAbUser{"LAbUser", "User"};
    TEdit EditUser{"EditUser"};
    TLabel LabPW{"LabPW", "Password"};
    TEdit EditPW{"EditPW"};
    TCheckBox offLineSessionCheckBox{"offLineSessionCheckBox", "Prepare offline session"};
    TButton ButOk{"ButOk", "Ok"};
    TButton ButCancel{"ButCancel", "Cancel"};
    TButton ButSave{"ButSave", "Save password"};

    void EnterUserName(const std::string& s) { EditUser.SetText(s); }
    void EnterPassword(const std::string& s) { EditPW.SetText(s); }
    void EnableSaveButton();
    void ButOkClick();
    void FormClose();
};

} // namespace tidewell
