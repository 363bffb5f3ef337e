#include "mainform/Splashscreen.h"

#include "core/Errors.h"
#include "core/Housekeeping.h"
#include "core/KvSupport.h"
#include "core/LanguageTexts.h"

#include <exception>
#include <utility>

namespace tidewell {

TSplashscreen::TSplashscreen(const TPorts& ports, const TStartOptions& options)
    : TForm("Splashscreen"), Ports(ports), Options(options) {
    SetClientSize(InitialWidth, InitialHeight);
}

void TSplashscreen::FormCreate() {
    FormStringInit();
    ver_lab.SetCaption(Texts.VersionString + " " + Options.Version.Text());
    try {
        std::string picture = Ports.Files.Read(FCurrentInifilesPath.configpath / "logo.png");
        Ports.Pictures.Check(picture);
        logo.SetBytes(std::move(picture));
    } catch (const std::exception& error) {
        Ports.Dialogs.ShowMessage(std::string("Error: ") + error.what());
        Ports.Application.Terminate();
    }
}

void TSplashscreen::FormStringInit() {
    auto& paths = FCurrentInifilesPath;
    paths.directorypath = Options.Directory;
    paths.configpath = Options.Directory / "cfg";
    paths.Systemfile = FindSystemFile(Ports.Files, Options.Directory);
    paths.Languagefile = GetLanguageFile(Ports.Files, paths.Systemfile, Options.Directory);
    if (!Ports.Files.FileExists(paths.Systemfile) || !Ports.Files.FileExists(paths.Languagefile)) {
        Ports.Dialogs.ShowMessage("Error incorrect systemfile or languagefile application will close");
        Ports.Application.Terminate();
    }
    Language = TIniFile(Ports.Files, paths.Languagefile);
    ReadTexts(Language, "Splashscreen",
              {{Texts.MessageLogFileDeleted, "MessageLogFileDeleted"},
               {Texts.MessageMainAppDone, "MessageMainAppDone"},
               {Texts.MessageApplicationReady, "MessageApplicationReady"},
               {Texts.MessageFileStructureMissing, "MessageFileStructureMissing"},
               {Texts.VersionString, "VersionString"}});
}

void TSplashscreen::CleanUpLogFiles() {
    tidewell::CleanUpLogFiles(Ports.Files, Ports.Clock, Ports.Dialogs, FCurrentInifilesPath.directorypath);
}

} // namespace tidewell
