#include "mainform/Languagedialog.h"

#include "core/Errors.h"
#include "core/IniFile.h"
#include "core/LanguageTexts.h"
#include "core/Numbers.h"
#include "mainform/CommandLine.h"

#include <cstddef>

namespace tidewell {

Tlanguagedialog::Tlanguagedialog(const TPorts& ports, const TStartOptions& options,
                                 const TExtensions& extensions, const TCurrentInifilesPath& paths)
    : TForm("languagedialog"), Ports(ports), Options(options), Extensions(extensions), Paths(paths) {
    SetClientSize(InitialWidth, InitialHeight);
    OnShow = [this] { FormShow(); };
    OnKeyDown = [this](EKey key, bool& handled) {
        if (key == EKey::Escape) {
            handled = true;
            Close();
        }
    };
    Button.OnClick = [this] { ButtonClick(); };
}

void Tlanguagedialog::FormCreate(const TIniFile& language) {
    ReadTexts(language, "Language",
              {{Button, "butsave"}, {*this, "header"}, {langgroup, "bulletheader"}, {Restart, "restart"}});
}

void Tlanguagedialog::FormShow() {
    langgroup.SetItems(Ports.Files.List(Paths.configpath, "*.lng"));
    const std::string current =
        TIniFile(Ports.Files, Paths.Systemfile).ReadText("System", "LanguageFile_Current");
    const auto& names = langgroup.Items();
    for (std::size_t i = 0; i < names.size(); ++i)
        if (names[i] == current || (langgroup.ItemIndex() < 0 && SameText(names[i], current)))
            langgroup.SetItemIndex(static_cast<int>(i));
}

void Tlanguagedialog::ButtonClick() {
    const int index = langgroup.ItemIndex();
    if (index < 0 || static_cast<std::size_t>(index) >= langgroup.Items().size())
        throw EListError("List index out of bounds (" + std::to_string(index) + ")");
    TIniFile system(Ports.Files, Paths.Systemfile);
    system.WriteText("System", "LanguageFile_Current", langgroup.Items()[static_cast<std::size_t>(index)]);
    system.Save(Ports.Files);
    Ports.Dialogs.ShowMessage(Restart);
    SetModalResult(EModalResult::Ok);
    Ports.Application.Terminate();
    const auto arguments =
        Extensions.LanguageKeepArguments ? WithoutLogon(Options.Arguments) : std::vector<std::string>();
    if (!Ports.Process.Start(Options.Executable, arguments))
        throw TError("Cannot start " + Options.Executable.string());
}

} // namespace tidewell
