#pragma once

#include "cloud/ApiClient.h"
#include "core/controls/Form.h"
#include "core/controls/Lists.h"
#include "core/controls/Pages.h"
#include "core/controls/Simple.h"
#include "link/Nabto.h"
#include "link/NabtoDevice.h"

#include <string>

namespace tidewell {

// Picks the controller, by its id or from those found on the local network, and links to it. It stays open
// until a link stands or the user gives up.
class TSetupForm : public TForm {
  public:
    struct TNeeds {
        IDialogs& Dialogs;
        TApiClient& ApiClient;
        TUNabto& Nabto;
        TNabtoDevice& Device;
        TStatusBar& StatusBar; // of the main form
    };
    explicit TSetupForm(const TNeeds& needs);

    TEvent<> OnLinked; // a link stands, and the dialog is closed

    TPageControl PageControl1{*this, "PageControl1"};
    TTabSheet TabSheet{*this, "TabSheet", "Communication"};
    TPanel PanelComm{*this, "PanelComm"};
    TEdit txtRemote{*this, "txtRemote"};
    TButton ButDeviceSearch{*this, "ButDeviceSearch"};
    TListBox ListBoxLocalDevices{*this,
                                 "ListBoxLocalDevices"}; // rows of 12 characters; they outlive a showing
    TButton butping{*this, "butping"};
    TButton ButCommOk{*this, "ButCommOk"};
    TButton ButCommCancel{*this, "ButCommCancel"};

    void FormCreate(const TIniFile& language);
    // Readies the dialog for a showing.
    void FormInit();
    void GetLocalDevices();
    // Only what a search has found counts as local.
    bool IsLocalDevice(const std::string& deviceID) const;
    std::string RemoveDoinInfo(const std::string& s) const;

    void ButCommOkClick();
    void ButCommCancelClick();
    void ButDeviceSearchClick();
    void butpingClick();
    void ListBoxLocalDevicesClick();
    void FormKeyDown(EKey key, bool& handled);

  private:
    int OpenLink(const std::string& device); // result of the driver's init
    void ShowInitFailure(int result, const std::string& otherwise);

    const TNeeds Needs;
};

} // namespace tidewell
