#include "mainform/Program.h"

#include "core/Guard.h"
#include "core/IniFile.h"

#include <utility>

namespace tidewell {

namespace {

// Each splash line stays readable for a while.
constexpr int afterCleanUp = 1000; // ms
constexpr int afterMainForm = 500;
constexpr int afterReady = 700;

} // namespace

TProgram::TProgram(const TPorts& ports, TStartOptions options)
    : Ports(ports), Options(std::move(options)), Splashscreen(Ports, Options),
      Nabto(Ports.Libraries, Ports.Dialogs, Ports.Timers, Ports.Wait, Ports.Files, Options.Directory),
      FormMain(
          Ports, Options, Splashscreen.FCurrentInifilesPath, Extensions, Nabto,
          TFormMain::TForms{NabtoDevice, NabtoLogOn, languagedialog, SetupForm, InputDialog, LoadSetpoints}),
      NabtoDevice(Ports.Dialogs, Ports.Timers, Ports.Wait, Ports.Files, Ports.Clock,
                  Splashscreen.FCurrentInifilesPath, Extensions, Nabto, FormMain.ModbusPanel,
                  FormMain.Hosts.NabtoDevice),
      NabtoLogOn(Ports.Libraries, Ports.Process, Ports.Dialogs, Splashscreen.FCurrentInifilesPath, Extensions,
                 [this] { return NabtoDevice.LastPW; }),
      languagedialog(Ports, Options, Splashscreen.FCurrentInifilesPath),
      SetupForm(Ports.Dialogs, Nabto, NabtoDevice, FormMain.Hosts.SetupForm),
      InputDialog(TInputDialog::TParts{Ports.Dialogs, FormMain.ModbusPanel, NabtoDevice,
                                       FormMain.MemoEventLog, FormMain.Hosts.InputDialog}),
      LoadSetpoints(TLoadSetpoints::TParts{
          Ports.Dialogs, Ports.Files, Ports.Clock, FormMain.ModbusPanel, NabtoDevice, FormMain.ReadBack,
          FormMain.Hosts.ReadBack, FormMain.MemoEventLog, FormMain.SetpointTexts.Files,
          FormMain.SetpointPage.SelectedSetpointParent, Splashscreen.FCurrentInifilesPath.directorypath}) {}

bool TProgram::Start() {
    Splashscreen.FormCreate();
    Ports.Dialogs.Show(Splashscreen);
    const auto& paths = Splashscreen.FCurrentInifilesPath;
    if (!Ports.Files.DirectoryExists(paths.configpath) || paths.Systemfile.empty() ||
        !Ports.Files.FileExists(paths.Systemfile)) {
        Ports.Dialogs.ShowMessage(Splashscreen.Texts.MessageFileStructureMissing);
        Ports.Application.Terminate();
        Splashscreen.Hide();
        return false;
    }
    Extensions = ReadExtensions(TIniFile(Ports.Files, paths.Systemfile));
    Splashscreen.Repaint();
    Splashscreen.CleanUpLogFiles();
    Splashscreen.infostring.SetCaption(Splashscreen.Texts.MessageLogFileDeleted);
    Ports.Wait.Sleep(afterCleanUp);

    // A form that cannot be made would leave a window that does nothing.
    if (!RunGuarded(Ports.Dialogs, [this] { CreateForms(); })) {
        Ports.Application.Terminate();
        Splashscreen.Hide();
        return false;
    }
    Splashscreen.infostring.SetCaption(Splashscreen.Texts.MessageApplicationReady);
    Ports.Wait.Sleep(afterReady);
    Splashscreen.Close();
    if (!Ports.Application.Terminated())
        Ports.Dialogs.Show(FormMain);
    return true;
}

void TProgram::CreateForms() {
    const TIniFile& language = Splashscreen.Language;
    FormMain.FormCreate(language);
    NabtoDevice.FormCreate(language);
    Splashscreen.infostring.SetCaption(Splashscreen.Texts.MessageMainAppDone);
    Ports.Wait.Sleep(afterMainForm);
    languagedialog.FormCreate(language);
    SetupForm.FormCreate(language);
    InputDialog.FormCreate(language);
}

void TProgram::Finish() {
    FormMain.AskBeforeClose = false;
    if (!FormMain.Visible() || RunGuarded(Ports.Dialogs, [this] { FormMain.Close(); }))
        return;
    if (FormMain.LogBuffers.DatalogCount > 0)
        RunGuarded(Ports.Dialogs, [this] { FormMain.LiveLog.SaveUserDatalog1Click(); });
    FormMain.Close(); // saves what it can
}

std::unique_ptr<TProgram> Build(const TPorts& ports, const TStartOptions& options) {
    return std::make_unique<TProgram>(ports, options);
}

} // namespace tidewell
