#include "mainform/ProfileOpening.h"

#include "core/Errors.h"
#include "core/OpenDialogFilters.h"

#include <exception>
#include <optional>

namespace tidewell {

namespace {

// Messages that the language file holds by position, whatever their keys.
constexpr std::size_t rowProfileMissing = 4;
constexpr std::size_t rowModelUnknown = 5;

} // namespace

void TProfileOpening::TakeTexts(const TIniFile& language) {
    Texts.Read(language);
    ReadTexts(language, "HeadAppl",
              {{MessageStopLog, "MessageStopLog"}, {DialogOpenProfileCaption, "DialogOpenProfileCaption"}});
    TestfileComport = language.ReadSection("TestfileComport");
}

void TProfileOpening::OpenProfile2Click() {
    const TExclusiveUse::THold hold(Needs.Opening);
    if (!hold)
        return;
    if (Ports.Dialogs.ShowMessageBox(EMessageKind::Confirmation, MessageStopLog, EButtons::OkCancel) !=
            EModalResult::Ok ||
        !Needs.Main.IsOpen()) // closed while it was asked
        return;
    Needs.Log.StopLog();
    OpenFileProfile();
    Needs.GraphPage.GraphInit(true);
    Needs.GraphPage.ClearGraphPage();
}

void TProfileOpening::OpenProfile(const std::filesystem::path& path) {
    if (path != Needs.Profile.currentprofilefile)
        OnOtherProfile();
    Needs.Profile.Open(path);
    Needs.Main.MemoEventLog.Add(path.string() + " opened");
    Needs.Main.SetCaption(path.string());
    Needs.Panel.SetMpanelPLSpath(path);
    TellFault();
}

void TProfileOpening::TellFault() {
    const TProfile& profile = Needs.Profile;
    const std::string file = profile.currentprofilefile.string();
    NoticeProfile.Clear();
    if (profile.ReadFailure.empty() && !profile.HoldsNoProfile)
        return;
    const std::string fault = profile.HoldsNoProfile
                                  ? FillText(Texts.NoProfile, {file})
                                  : FillText(Texts.Unreadable, {file, profile.ReadFailure});
    Needs.Main.MemoEventLog.Add(fault);
    NoticeProfile.Show(fault);
}

void TProfileOpening::OpenFileProfile() {
    TFileDialog dialog;
    dialog.Title = DialogOpenProfileCaption;
    dialog.InitialDirectory = Needs.Paths.directorypath / "profile";
    dialog.FileMustExist = true;
    dialog.Filters = OpenDialogFilters();
    if (const auto path = Ports.Dialogs.OpenFile(dialog)) {
        OpenAndReload(*path);
    } else {
        Needs.Profile.ProfileLoaded = false;
        Needs.Paths.plsfile.clear();
        NoticeProfile.Clear();
    }
}

void TProfileOpening::OpenAndReload(const std::filesystem::path& path) {
    Needs.Paths.plsfile = path;
    OpenProfile(path);
    ReloadDeviceData();
}

void TProfileOpening::ReloadDeviceData() {
    // A fault in the devices must not leave the questions and channels of the profile before.
    std::exception_ptr fault;
    try {
        Needs.Panel.InitQuestionStringlistStructures();
    } catch (const TError&) {
        fault = std::current_exception();
    }
    Needs.SetpointPage.BuildSetpointTree();
    // Back from a flash datalog, which is shown without them.
    Needs.Main.TabSetpoint.SetVisible(true);
    Needs.Main.WindowSetpoint1.SetEnabled(true);
    Needs.Main.TheTab.SetActivePage(Needs.Main.TabGraph);
    Needs.Device.SetNabtoQuestion(Needs.Paths.plsfile);
    Needs.Profile.ReadNabtoSection(Needs.Paths.plsfile);
    Needs.Main.FlasDatalog1.SetVisible(Needs.Profile.FlashPage.doFlashPage);
    Needs.GraphPage.GraphInit(true);
    if (fault)
        std::rethrow_exception(fault);
}

bool TProfileOpening::DeviceAnswers() {
    if (!Needs.Nabto.ping(Needs.Device.device))
        Needs.Nabto.ping(Needs.Device.device);
    return Needs.Nabto.ping(Needs.Device.device);
}

std::filesystem::path TProfileOpening::ProfileOfDevice() const {
    const TUNabto& nabto = Needs.Nabto;
    const auto profile = [this](const std::string& name) {
        return TProfile::PadCurrentProfileExtension(Needs.Paths.directorypath / "profile" /
                                                        std::filesystem::path(name).relative_path(),
                                                    Needs.Paths.Languagefile);
    };
    if (nabto.SlaveDeviceNum.empty() || nabto.SlaveModel.empty()) {
        const auto name = Needs.AutoLoad.Model.Find(nabto.model);
        if (name && Needs.AutoLoad.ItemNumber.Find(nabto.varenummer))
            return profile(*name);
        return {};
    }
    return profile(Needs.AutoLoad.Model.Value(nabto.SlaveDeviceNum + "_" + nabto.SlaveModel));
}

void TProfileOpening::AskForProfile(const std::string& message) {
    Ports.Dialogs.ShowMessage(message);
    if (!Needs.Main.IsOpen())
        return;
    Needs.Paths.plsfile.clear();
    Needs.Main.FileProgressBar.SetVisible(false);
    OpenFileProfile();
    ReloadDeviceData();
}

void TProfileOpening::TestProfileNabto() {
    Needs.Main.FileProgressBar.SetVisible(false);
    if (!Needs.Device.initialized && Needs.Device.init(Needs.Device.InForce.Linked(), Needs.ApiClient) != 0)
        return;
    const bool answers = DeviceAnswers();
    if (!Needs.Main.IsOpen())
        return; // closed while the pings ran the event loop
    if (!answers) {
        // What another device has chosen goes on serving files, but not this one.
        Needs.Profile.DeviceSilent = Needs.Profile.OfDevice;
        Ports.Dialogs.ShowMessage(TestfileComport.Value("Erroritemnumberdoesnotmatch"));
        return;
    }
    if (!Needs.AutoLoad.doAutoloadProfile) {
        if (!Needs.Profile.ProfileLoaded)
            AskForProfile(TestfileComport.ValueAt(rowModelUnknown) + " " + Needs.Nabto.model);
        return;
    }
    Needs.Paths.plsfile = ProfileOfDevice();
    if (Ports.Files.FileExists(Needs.Paths.plsfile)) {
        Needs.Main.FileProgressBar.SetVisible(false);
        OpenProfile(Needs.Paths.plsfile);
        Needs.Profile.OfDevice = true;
        ReloadDeviceData();
        return;
    }
    AskForProfile(TestfileComport.ValueAt(rowProfileMissing) + " " +
                  ShownDirectory(Needs.Paths.directorypath) + "profile\\" +
                  Needs.AutoLoad.Model.Value(Needs.Nabto.model));
}

} // namespace tidewell
