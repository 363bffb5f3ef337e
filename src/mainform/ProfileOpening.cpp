#include "mainform/ProfileOpening.h"

#include "core/Errors.h"
#include "core/KvSupport.h"
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
    const TExclusiveUse::THold hold(Parts.Opening);
    if (!hold)
        return;
    if (Ports.Dialogs.ShowMessageBox(EMessageKind::Confirmation, MessageStopLog, EButtons::OkCancel) !=
            EModalResult::Ok ||
        !Parts.Main.IsOpen()) // closed while it was asked
        return;
    Parts.Log.StopLog();
    OpenFileProfile();
    Parts.GraphPage.GraphInit(true);
    Parts.GraphPage.ClearGraphPage();
}

void TProfileOpening::OpenProfile(const std::filesystem::path& path) {
    if (path != Parts.Profile.currentprofilefile)
        OnOtherProfile();
    Parts.Profile.Open(path);
    Parts.Main.MemoEventLog.Add(path.string() + " opened");
    Parts.Main.SetCaption(path.string());
    Parts.Panel.SetMpanelPLSpath(path);
    TellFault();
}

void TProfileOpening::TellFault() {
    const TProfile& profile = Parts.Profile;
    const std::string file = profile.currentprofilefile.string();
    NoticeProfile.Clear();
    if (profile.ReadFailure.empty() && !profile.HoldsNoProfile)
        return;
    const std::string fault = profile.HoldsNoProfile
                                  ? FillText(Texts.NoProfile, {file})
                                  : FillText(Texts.Unreadable, {file, profile.ReadFailure});
    Parts.Main.MemoEventLog.Add(fault);
    NoticeProfile.Show(fault);
}

void TProfileOpening::OpenFileProfile() {
    TFileDialog dialog;
    dialog.Title = DialogOpenProfileCaption;
    dialog.InitialDirectory = Parts.Paths.directorypath / "profile";
    dialog.FileMustExist = true;
    dialog.Filters = OpenDialogFilters();
    if (const auto path = Ports.Dialogs.OpenFile(dialog)) {
        Parts.Paths.plsfile = *path;
        OpenProfile(*path);
        ReloadDeviceData();
    } else {
        Parts.Profile.ProfileLoaded = false;
        Parts.Paths.plsfile.clear();
        NoticeProfile.Clear();
    }
}

void TProfileOpening::ReloadDeviceData() {
    // A fault in the devices must not leave the questions and channels of the profile before.
    std::exception_ptr fault;
    try {
        Parts.Panel.InitQuestionStringlistStructures();
    } catch (const TError&) {
        fault = std::current_exception();
    }
    Parts.SetpointPage.BuildSetpointTree();
    // Back from a flash datalog, which is shown without them.
    Parts.Main.TabSetpoint.SetVisible(true);
    Parts.Main.WindowSetpoint1.SetEnabled(true);
    Parts.Main.TheTab.SetActivePage(Parts.Main.TabGraph);
    Parts.Device.SetNabtoQuestion(Parts.Paths.plsfile);
    Parts.Profile.ReadNabtoSection(Parts.Paths.plsfile);
    Parts.Main.FlasDatalog1.SetVisible(Parts.Profile.FlashPage.doFlashPage);
    Parts.GraphPage.GraphInit(true);
    if (fault)
        std::rethrow_exception(fault);
}

bool TProfileOpening::DeviceAnswers() {
    if (!Parts.Nabto.ping(Parts.Device.device))
        Parts.Nabto.ping(Parts.Device.device);
    return Parts.Nabto.ping(Parts.Device.device);
}

std::filesystem::path TProfileOpening::ProfileOfDevice() const {
    const TUNabto& nabto = Parts.Nabto;
    const auto profile = [this](const std::string& name) {
        return TProfile::PadCurrentProfileExtension(Parts.Paths.directorypath / "profile" /
                                                        std::filesystem::path(name).relative_path(),
                                                    Parts.Paths.Languagefile);
    };
    if (nabto.SlaveDeviceNum.empty() || nabto.SlaveModel.empty()) {
        const auto name = Parts.AutoLoad.Model.Find(nabto.model);
        if (name && Parts.AutoLoad.ItemNumber.Find(nabto.varenummer))
            return profile(*name);
        return {};
    }
    return profile(Parts.AutoLoad.Model.Value(nabto.SlaveDeviceNum + "_" + nabto.SlaveModel));
}

void TProfileOpening::AskForProfile(const std::string& message) {
    Ports.Dialogs.ShowMessage(message);
    if (!Parts.Main.IsOpen())
        return;
    Parts.Paths.plsfile.clear();
    Parts.Main.FileProgressBar.SetVisible(false);
    OpenFileProfile();
    ReloadDeviceData();
}

void TProfileOpening::TestProfileNabto() {
    Parts.Main.FileProgressBar.SetVisible(false);
    if (!Parts.Device.initialized && Parts.Device.init(Parts.devid, Parts.ApiClient) != 0)
        return;
    const bool answers = DeviceAnswers();
    if (!Parts.Main.IsOpen())
        return; // closed while the pings ran the event loop
    if (!answers) {
        // What another device has chosen goes on serving files, but not this one.
        Parts.Profile.DeviceSilent = Parts.Profile.OfDevice;
        Ports.Dialogs.ShowMessage(TestfileComport.Value("Erroritemnumberdoesnotmatch"));
        return;
    }
    if (!Parts.AutoLoad.doAutoloadProfile) {
        if (!Parts.Profile.ProfileLoaded)
            AskForProfile(TestfileComport.ValueAt(rowModelUnknown) + " " + Parts.Nabto.model);
        return;
    }
    Parts.Paths.plsfile = ProfileOfDevice();
    if (Ports.Files.FileExists(Parts.Paths.plsfile)) {
        Parts.Main.FileProgressBar.SetVisible(false);
        OpenProfile(Parts.Paths.plsfile);
        Parts.Profile.OfDevice = true;
        ReloadDeviceData();
        return;
    }
    AskForProfile(TestfileComport.ValueAt(rowProfileMissing) + " " +
                  ShownDirectory(Parts.Paths.directorypath) + "profile\\" +
                  Parts.AutoLoad.Model.Value(Parts.Nabto.model));
}

} // namespace tidewell
