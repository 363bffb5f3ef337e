#pragma once

#include "core/ports/IDialogs.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

// A file that is saved where the user says: the name is completed, then asked about, and what cannot be
// written there may go elsewhere.
namespace tidewell {

class IFiles;
class IFileWriter;

// The chosen name with its ending. The save dialog has asked about the name as it was typed, so one that is
// there when completed is asked about again; nothing: it is not to be replaced.
std::optional<std::filesystem::path> WithEnding(const IFiles& files, IDialogs& dialogs,
                                                std::filesystem::path chosen, std::string_view ending);

enum class EIfKept { GiveUp, ChooseAgain };

// What the user chose, with ".csv" behind a name that holds it nowhere. A file that is not to be replaced
// ends the choice, or begins it anew. A dialog that does not ask leaves nothing to ask about.
std::optional<std::filesystem::path> ChooseCsvFile(const IFiles& files, IDialogs& dialogs,
                                                   const TFileDialog& dialog,
                                                   EIfKept ifKept = EIfKept::GiveUp);

// What a file that is about to be replaced holds goes to "<name>.bak". Throws EInOutError.
void KeepBackup(IFiles& files, const std::filesystem::path& path);

enum class EName { Made, Chosen }; // by the program, or by the user
std::unique_ptr<IFileWriter> OpenWriter(IFiles& files, const std::filesystem::path& path, EName name);

// Writes a file and gives its place. A failure is told and another place chosen, until one will do or the
// user gives up: then nothing is returned. Each reason is told to the caller as well.
std::optional<std::filesystem::path>
SaveOrElsewhere(IDialogs& dialogs, std::filesystem::path path, EName name,
                const std::function<std::filesystem::path(const std::filesystem::path&, EName)>& write,
                const std::function<std::optional<std::filesystem::path>()>& choose,
                const std::function<void(const std::string&)>& failed = {});

} // namespace tidewell
