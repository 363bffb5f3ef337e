#include "mainform/FormMainHosts.h"

#include "mainform/FormMain.h"

namespace tidewell {

bool TFormMainHosts::TLiveLogHost::NabtoEnabled() {
    return Main.Device().isEnabled();
}

int TFormMainHosts::TLiveLogHost::InitLink() {
    const int result = Main.LinkedDevice.Init();
    return result == 0 && !Main.Device().InForce.Identify() ? -1 : result;
}

void TFormMainHosts::TLiveLogHost::StartPolling() {
    Main.Device().startLog();
}

void TFormMainHosts::TLiveLogHost::StopPolling() {
    Main.Device().stopLog();
}

bool TFormMainHosts::TLiveLogHost::Polls() {
    return Main.Device().Cycle.Dologging;
}

void TFormMainHosts::TLiveLogHost::ShowSetpointPage() {
    Main.TabSetpoint.SetVisible(true);
    Main.WindowSetpoint1.SetEnabled(true);
}

void TFormMainHosts::TLiveLogHost::Setup1Click() {
    Main.Setup1Click();
}

void TFormMainHosts::TLiveLogHost::RepaintStatusBar() {
    Main.StatusBar.Repaint();
}

bool TFormMainHosts::TLiveLogHost::FormOpen() {
    return Main.IsOpen();
}

void TFormMainHosts::TLiveLogHost::ApplyDataLine(const std::string& line) {
    Main.SetpointPage.ApplyDataLine(line);
}

void TFormMainHosts::TNabtoDeviceHost::UpdateTimerTimer() {
    Main.UpdateTimerTimer();
}

void TFormMainHosts::TNabtoDeviceHost::StopLog() {
    Main.StopLog();
}

void TFormMainHosts::TNabtoDeviceHost::Setup1Click() {
    Main.Setup1Click();
}

std::string TFormMainHosts::TNabtoDeviceHost::DeviceId() const {
    return Main.LinkedDevice.Id();
}

int TFormMainHosts::TNabtoDeviceHost::InitLink() {
    return Main.LinkedDevice.Init();
}

void TFormMainHosts::TNabtoDeviceHost::AddEventLog(const std::string& line) {
    Main.MemoEventLog.Add(line);
}

bool TFormMainHosts::TNabtoDeviceHost::ShowButtonDevid() const {
    return Main.ShowButtonDevid;
}

bool TFormMainHosts::TNabtoDeviceHost::ErrorLogVisible() const {
    return Main.Profile.NabtoErrorlogEnable;
}

bool TFormMainHosts::TNabtoDeviceHost::FormOpen() const {
    return Main.IsOpen();
}

void TFormMainHosts::TNabtoDeviceHost::StopRunningLog() {
    if (Main.Device().Cycle.Dologging)
        Main.StopLog();
}

std::int32_t TFormMainHosts::TNabtoDeviceHost::FlashCounterAddress() const {
    return Main.Profile.FlashPage.DF_FDCountNum;
}

std::string TFormMainHosts::TNabtoDeviceHost::CreateDatalogHeader() const {
    return Main.LiveLog.CreateDatalogHeader();
}

std::filesystem::path TFormMainHosts::TNabtoDeviceHost::GetFlashLogProfilepath() const {
    return Main.Profile.GetFlashLogProfilepath();
}

void TFormMainHosts::TNabtoDeviceHost::ShowFlashDatalog(const std::filesystem::path& profile,
                                                        const std::filesystem::path& file) {
    const TExclusiveUse::THold hold(Main.Opening);
    if (!hold)
        return;       // it is saved, and can be opened
    StopRunningLog(); // one that was started while the question was open
    Main.FlashView.Show(profile, file);
}

std::int32_t TFormMainHosts::TNabtoDeviceHost::ErrorLogOffset() const {
    return Main.Profile.ErrorLogOffset;
}

void TFormMainHosts::TNabtoDeviceHost::EvalErrorlog(const std::string& wordList, const std::string& remark) {
    Main.ShowInFront();
    Main.ErrorLog.EvalErrorlog(wordList, remark);
}

void TFormMainHosts::TErrorLogHost::StopLog() {
    Main.StopLog();
}

void TFormMainHosts::TErrorLogHost::StartLog(bool questionEnable, bool clearData) {
    Main.StartLog(questionEnable, clearData);
}

TApiClient& TFormMainHosts::TSetupFormHost::ApiClient() {
    return Main.Client();
}

void TFormMainHosts::TSetupFormHost::SetDeviceId(const std::string& device) {
    Main.LinkedDevice.LinkedTo(device);
}

void TFormMainHosts::TSetupFormHost::TestProfileNabto() {
    Main.ProfileOpening.TestProfileNabto(Main._commandLineParameters.devid, Main.Client(),
                                         Main.Configuration.AutoLoadProfile);
}

void TFormMainHosts::TSetupFormHost::RepaintStatusBar() {
    Main.StatusBar.Repaint();
}

bool TFormMainHosts::TSetpointPageHost::DatalogOn() const {
    return Main.LiveLog.DatalogOn;
}

bool TFormMainHosts::TSetpointPageHost::DatalogFileOpen() const {
    return Main.GraphPage.DatalogFileOpen;
}

std::string TFormMainHosts::TSetpointPageHost::LastDatalogLine() const {
    return Main.GraphPage.DatalogLastLineSetpoint;
}

std::string TFormMainHosts::TSetpointPageHost::CurrentDataString() const {
    std::string data;
    for (const std::string_view text : Main.LiveLog.UpdateTimerCallBackEvents.Strings())
        data += text;
    return data;
}

std::size_t TFormMainHosts::TSetpointPageHost::DatalogCount() const {
    return Main.LogBuffers.DatalogCount;
}

void TFormMainHosts::TReadBackHost::StartLog(bool questionEnable, bool clearData) {
    Main.StartLog(questionEnable, clearData);
}

void TFormMainHosts::TReadBackHost::StopLog() {
    Main.StopLog();
}

void TFormMainHosts::TInputDialogHost::RepaintStatusBar() {
    Main.StatusBar.Repaint();
}

bool TFormMainHosts::TReadBackHost::FormOpen() const {
    return Main.IsOpen();
}

void TFormMainHosts::TDatalogHost::StopLog() {
    Main.StopLog();
}

void TFormMainHosts::TDatalogHost::OpenProfile(const std::filesystem::path& path) {
    Main.ProfileOpening.OpenProfile(path);
}

bool TFormMainHosts::TDatalogHost::FormOpen() const {
    return Main.IsOpen();
}

} // namespace tidewell
