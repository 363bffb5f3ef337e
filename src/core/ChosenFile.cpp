#include "core/ChosenFile.h"

#include "core/ports/IDialogs.h"
#include "core/ports/IFiles.h"

namespace tidewell {

std::filesystem::path WithEnding(std::filesystem::path path, std::string_view ending) {
    path += ending;
    return path;
}

bool MayReplace(const IFiles& files, IDialogs& dialogs, const std::filesystem::path& path) {
    return !files.FileExists(path) ||
           dialogs.ShowMessageBox(EMessageKind::Confirmation, path.string() + " already exists. Replace it?",
                                  EButtons::YesNo) == EModalResult::Yes;
}

} // namespace tidewell
