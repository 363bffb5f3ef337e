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
    // What the dialog needs of the main form.
    class IHost {
      public:
        virtual ~IHost() = default;
        virtual TApiClient& ApiClient() = 0;
        // The id or address that the link was made with, for the next start of the log; empty for the
        // driver's own device.
        virtual void SetDeviceId(const std::string& device) = 0;
        virtual void TestProfileNabto() = 0;
        virtual void RepaintStatusBar() = 0;
    };

    TSetupForm(IDialogs& dialogs, TUNabto& nabto, TNabtoDevice& device, IHost& host);

    TPageControl PageControl1{"PageControl1"};
    TTabSheet TabSheet{"TabSheet", "Communication"};
    TPanel PanelComm{"PanelComm"};
    TEdit txtRemote{"txtRemote"};
    TButton ButDeviceSearch{"ButDeviceSearch"};
    TListBox ListBoxLocalDevices{"ListBoxLocalDevices"}; // rows of 12 characters; they outlive a showing
    TButton butping{"butping"};
    TButton ButCommOk{"ButCommOk"};
    TButton ButCommCancel{"ButCommCancel"};

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

    IDialogs& Dialogs;
    TUNabto& Nabto;
    TNabtoDevice& Device;
    IHost& Host;
};

} // namespace tidewell
