#include "core/ChosenFile.h"

#include "core/Errors.h"
#include "core/ports/IFiles.h"

namespace tidewell {

namespace fs = std::filesystem;

std::optional<fs::path> WithEnding(const IFiles& files, IDialogs& dialogs, fs::path chosen,
                                   std::string_view ending) {
    chosen += ending;
    const bool replace =
        !files.FileExists(chosen) ||
        dialogs.ShowMessageBox(EMessageKind::Confirmation, chosen.string() + " already exists. Replace it?",
                               EButtons::YesNo) == EModalResult::Yes;
    return replace ? std::optional(std::move(chosen)) : std::nullopt;
}

std::optional<fs::path> ChooseCsvFile(const IFiles& files, IDialogs& dialogs, const TFileDialog& dialog,
                                      EIfKept ifKept) {
    for (;;) {
        const auto chosen = dialogs.SaveFile(dialog);
        if (!chosen || chosen->filename().string().find(".csv") != std::string::npos)
            return chosen;
        if (!dialog.AskOverwrite)
            return fs::path(*chosen) += ".csv";
        auto path = WithEnding(files, dialogs, *chosen, ".csv");
        if (path || ifKept == EIfKept::GiveUp)
            return path;
    }
}

void KeepBackup(IFiles& files, const fs::path& path) {
    if (!files.FileExists(path))
        return;
    fs::path backup = path;
    const auto copy = files.Replace(backup += ".bak");
    copy->Write(files.Read(path));
    copy->Commit();
}

std::unique_ptr<IFileWriter> OpenWriter(IFiles& files, const fs::path& path, EName name) {
    return name == EName::Made ? files.Create(path) : files.Replace(path);
}

std::optional<fs::path> SaveOrElsewhere(IDialogs& dialogs, fs::path path, EName name,
                                        const std::function<fs::path(const fs::path&, EName)>& write,
                                        const std::function<std::optional<fs::path>()>& choose,
                                        const std::function<void(const std::string&)>& failed) {
    for (;;) {
        try {
            return write(path, name);
        } catch (const EInOutError& error) {
            if (failed)
                failed(error.what());
            dialogs.ShowMessageBox(EMessageKind::Error, error.what(), EButtons::Ok);
        }
        auto other = choose();
        if (!other)
            return std::nullopt;
        path = *std::move(other);
        name = EName::Chosen;
    }
}

} // namespace tidewell
