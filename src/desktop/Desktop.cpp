#include "desktop/Desktop.h"

#include "cloud/CurlHttp.h"
#include "core/Guard.h"
#include "core/KvSupport.h"
#include "desktop/ProcessSignals.h"
#include "desktop/QtText.h"
#include "desktop/binders/FormBinder.h"
#include "desktop/views/Views.h"
#include "mainform/CommandLine.h"
#include "mainform/Program.h"
#include "widgets/Icons.h"

#include <QPixmap>
#include <QSessionManager>
#include <QStandardPaths>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace tidewell {

namespace {

std::filesystem::path FromEnvironment(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? std::filesystem::path(value) : std::filesystem::path();
}

std::filesystem::path FolderOf(const std::filesystem::path& executable) {
    const auto home = FromEnvironment("TIDEWELL_HOME");
    return std::filesystem::absolute(home.empty() ? executable.parent_path() : home);
}

std::vector<std::string> ArgumentsOf(int argc, char** argv) {
    return {argv + std::min(argc, 1), argv + argc};
}

// The list of processes shows the arguments as they stand in memory.
void HidePassword(int argc, char** argv) {
    auto arguments = ArgumentsOf(argc, argv);
    ForgetPassword(arguments);
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view shown(argv[i + 1]);
        std::fill(argv[i + 1] + arguments[i].size(), argv[i + 1] + shown.size(), '\0');
    }
}

TStartOptions OptionsOf(int argc, char** argv, const Tsysteminfo& version) {
    TStartOptions options;
    options.Executable = PathFromQt(QCoreApplication::applicationFilePath());
    options.Directory = FolderOf(options.Executable);
    options.Arguments = ArgumentsOf(argc, argv);
    options.Version = version;
    options.SpareFolders = {PathFromQt(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)),
                            PathFromQt(QStandardPaths::writableLocation(QStandardPaths::TempLocation))};
    return options;
}

// In the language of the installation, if there is one.
std::optional<std::string> TextAskedFor(int argc, char** argv, const Tsysteminfo& version) {
    return TextAskedFor(
        ArgumentsOf(argc, argv), version,
        [] {
            std::error_code unknown;
            const auto folder = FolderOf(std::filesystem::read_symlink("/proc/self/exe", unknown));
            const TDiskFiles files;
            return TIniFile(files, GetLanguageFile(files, FindSystemFile(files, folder), folder));
        });
}

// The query runs after the form's own: only a form that is about to close is painted.
void PaintBeforeClose(TDesktop& desktop, TProgram& program, const std::filesystem::path& file) {
    const TEvent<bool&> before = program.FormMain.OnCloseQuery;
    program.FormMain.OnCloseQuery = [&desktop, &program, file, before](bool& mayClose) {
        before(mayClose);
        if (mayClose)
            desktop.SaveScreenshot(program, file);
    };
}

} // namespace

TDesktop::TDesktop(TQtApplication& application, const std::filesystem::path& folder)
    : Application(application), Dialogs(application), Libraries(folder) {
    Application.OnException = [this](const std::exception& error) {
        Dialogs.ShowMessageBox(EMessageKind::Error, error.what(), EButtons::Ok);
    };
}

TPorts TDesktop::Ports() {
    return {Dialogs,
            Timers,
            Wait,
            Clock,
            Files,
            Libraries,
            Process,
            Application,
            Pictures,
            [](const std::filesystem::path& caFile) {
                return std::make_unique<TCurlHttp>(TCurlSettings{.CaFile = caFile});
            }};
}

void TDesktop::RegisterViews(TProgram& program) {
    const TViewContext context{Application, Dialogs, Hold, Files};
    const auto show = [this, &context](auto& form) {
        Dialogs.RegisterView(form, [&form, context] { return ViewOf(form, context); });
    };
    show(program.Splashscreen);
    show(program.NabtoDevice);
    show(program.NabtoLogOn);
    show(program.languagedialog);
    show(program.SetupForm);
    show(program.InputDialog);
    show(program.LoadSetpoints);
    Dialogs.RegisterView(
        program.FormMain, [&program, context] { return ViewOf(program, context); });
    Dialogs.RegisterPopup(program.GraphPage.GraphBinaryPopup,
                          [&program](QMenu& menu) { FillBinaryPopup(menu, program.GraphPage); });
}

void TDesktop::Close(TProgram& program) {
    Dialogs.CancelAll();
    program.CloseDown.AskBeforeClose = false;
    TForm& form = program.FormMain;
    if (!form.Visible()) {
        Application.Terminate();
        return;
    }
    // A failure to save keeps the form open once; nobody is asked, so it is told and the form closes after
    // all.
    for (int attempt = 0; attempt < 2 && form.Visible(); ++attempt)
        RunGuarded(Dialogs, [&form] { form.Close(); });
    if (form.Visible()) {
        Dialogs.EndCancelAll();
        program.CloseDown.AskBeforeClose = true;
    }
}

void TDesktop::SaveScreenshot(const TProgram& program, const std::filesystem::path& file) const {
    QWidget* const view = Dialogs.FindView(program.FormMain);
    if (view != nullptr && !view->grab().save(PathToQt(file)))
        std::cerr << "Cannot write the screenshot " << file << '\n';
}

int RunDesktop(int argc, char** argv, const Tsysteminfo& version) {
    if (const auto text = TextAskedFor(argc, argv, version)) {
        std::cout << *text;
        return EXIT_SUCCESS;
    }
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    TQtApplication application(argc, argv);
    // No display name: the toolkit would add it to the titles of the forms.
    QCoreApplication::setApplicationName(QStringLiteral("Tidewell"));
    QApplication::setWindowIcon(AppIcon());

    const TStartOptions options = OptionsOf(argc, argv, version);
    HidePassword(argc, argv);
    if (!FromEnvironment("TIDEWELL_HOME").empty()) // for a start anew, which has another current folder
        qputenv("TIDEWELL_HOME", QByteArray::fromStdString(options.Directory.string()));
    TDesktop desktop(application, options.Directory);
    std::error_code error;
    std::filesystem::current_path(options.Directory, error);
    if (error) {
        desktop.Dialogs.ShowMessage("Cannot work in the folder " + options.Directory.string() + ": " +
                                    error.message());
        return EXIT_FAILURE;
    }
    const auto program = Build(desktop.Ports(), options);
    desktop.RegisterViews(*program);
    const std::filesystem::path screenshot = FromEnvironment("TIDEWELL_SCREENSHOT");
    if (!screenshot.empty())
        PaintBeforeClose(desktop, *program, std::filesystem::absolute(screenshot));
    TProcessSignals signalsToLoop;
    signalsToLoop.OnEnd = [&] { desktop.Close(*program); };
    signalsToLoop.OnReport = [&] {
        if (!screenshot.empty())
            desktop.SaveScreenshot(*program, std::filesystem::absolute(screenshot));
    };
    // The end of the desktop's session, which nobody is left to be asked about.
    QObject::connect(
        &application, &QGuiApplication::commitDataRequest, &application,
        [&](QSessionManager&) { desktop.Close(*program); });
    if (!RunGuarded(desktop.Dialogs, [&program] { program->Start(); }))
        application.Terminate(); // a start that broke off leaves nothing to work with
    application.Run();
    program->Finish();
    desktop.Dialogs.DestroyViews();
    return EXIT_SUCCESS;
}

} // namespace tidewell
