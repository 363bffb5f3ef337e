#include "link/SetupForm.h"

#include "core/DeviceId.h"
#include "core/Guard.h"
#include "core/LanguageTexts.h"
#include "core/Numbers.h"

#include <cstddef>
#include <utility>

namespace tidewell {

TSetupForm::TSetupForm(const TNeeds& needs) : TForm("SetupForm"), Needs(needs) {
    PageControl1.Pages = {TabSheet};
    ListBoxLocalDevices.SetVisible(false);
    butping.SetVisible(false);
    ButCommCancel.SetVisible(false);
    OnKeyDown = [this](EKey key, bool& handled) { FormKeyDown(key, handled); };
    ButCommOk.OnClick = [this] { ButCommOkClick(); };
    ButCommCancel.OnClick = [this] { ButCommCancelClick(); };
    ButDeviceSearch.OnClick = [this] { ButDeviceSearchClick(); };
    butping.OnClick = [this] { butpingClick(); };
    ListBoxLocalDevices.OnClick = [this] { ListBoxLocalDevicesClick(); };
    Needs.Device.Use.AddControls(
        {&ButCommOk, &butping}); // an update of the continuous test can begin below the dialog
}

void TSetupForm::FormCreate(const TIniFile& language) {
    ReadTexts(language, "CommDialog",
              {{*this, "Header"},
               {ButCommOk, "ButCommOk"},
               {ButCommCancel, "ButCommCancel"},
               {ButDeviceSearch, "LabNabtoDeviceSearch"},
               {butping, "LabNabtoDeviceping"},
               {TabSheet, "TabsheetHeader"}});
}

void TSetupForm::FormInit() {
    txtRemote.SetText("");
    ListBoxLocalDevices.SetVisible(false);
    butping.SetVisible(true);
    ButDeviceSearch.SetVisible(true);
    txtRemote.SetFocus();
}

void TSetupForm::GetLocalDevices() {
    const TWaitCursor busy(Needs.Dialogs);
    ListBoxLocalDevices.Clear();
    std::vector<std::string> rows;
    for (const std::string& device : Needs.Nabto.GetLocal())
        rows.push_back(DeviceIdOf(device));
    ListBoxLocalDevices.SetItems(std::move(rows));
    ListBoxLocalDevices.SetVisible(true);
}

bool TSetupForm::IsLocalDevice(const std::string& deviceID) const {
    for (const std::string& row : ListBoxLocalDevices.Items())
        if (SameText(row, DeviceIdOf(deviceID)))
            return true;
    return false;
}

std::string TSetupForm::RemoveDoinInfo(const std::string& s) const {
    return Needs.Device.Domain.empty() ? std::string() : DeviceIdOf(s);
}

void TSetupForm::ShowInitFailure(int result, const std::string& otherwise) {
    Needs.Dialogs.ShowMessageBox(EMessageKind::Warning, InitFailureText(result, txtRemote.Text(), otherwise),
                                 EButtons::Ok);
}

int TSetupForm::OpenLink(const std::string& device) {
    const TWaitCursor busy(Needs.Dialogs);
    Needs.Device.IsLocalDevice =
        IsLocalDevice(device.empty() ? Needs.Device.device : device); // which init keeps
    return Needs.Device.init(device, Needs.ApiClient);
}

void TSetupForm::ButCommOkClick() {
    const std::string typed = txtRemote.Text();
    const std::string domain = Needs.Device.Domain;
    if (!typed.empty() && !domain.empty() && LowerCase(typed).find(LowerCase(domain)) == std::string::npos)
        txtRemote.SetText(typed + "." + domain);
    const std::string device = txtRemote.Text();
    const int result = OpenLink(device);
    if (result != 0) {
        ShowInitFailure(result, "An error occurred when initializing communication to the device.");
        return;
    }
    Needs.Device.InForce.LinkedTo(device);
    SetModalResult(EModalResult::Ok);
    Close();
    OnLinked();
    Needs.Device.LblNabto.SetCaption("ID : " + device); // the text may be another by now
    Needs.StatusBar.Repaint();
}

void TSetupForm::ButCommCancelClick() {
    Close();
}

void TSetupForm::ButDeviceSearchClick() {
    GetLocalDevices();
}

void TSetupForm::butpingClick() {
    const std::string device = txtRemote.Text();
    const int result = OpenLink(device);
    if (result == 0) {
        const TWaitCursor busy(Needs.Dialogs); // a message box lifts it
        Needs.Device.btnPing.OnClick();
    } else {
        ShowInitFailure(result, "An error occurred when trying to initialize the nabto connection.");
    }
}

void TSetupForm::ListBoxLocalDevicesClick() {
    const int index = ListBoxLocalDevices.ItemIndex();
    if (index < 0 || static_cast<std::size_t>(index) >= ListBoxLocalDevices.Items().size())
        return;
    txtRemote.SetText(ListBoxLocalDevices.Items()[static_cast<std::size_t>(index)]);
    ListBoxLocalDevices.SetVisible(false);
}

void TSetupForm::FormKeyDown(EKey key, bool& handled) {
    if (key == EKey::Return) {
        handled = true;
        ButCommOk.Click();
    } else if (key == EKey::Escape) {
        handled = true;
        Close();
    }
}

} // namespace tidewell
