#include "core/Paths.h"

#include "core/ports/IFiles.h"

#include <algorithm>

namespace tidewell {

std::filesystem::path UnusedPath(const IFiles& files, const std::filesystem::path& wanted) {
    auto path = wanted;
    for (int number = 2; files.FileExists(path); ++number)
        path = wanted.parent_path() /
               (wanted.stem().string() + "-" + std::to_string(number) + wanted.extension().string());
    return path;
}

std::string ShownDirectory(const std::filesystem::path& directory) {
    std::string text = directory.string();
    std::replace(text.begin(), text.end(), '/', '\\');
    if (!text.ends_with('\\'))
        text += '\\';
    return text;
}

} // namespace tidewell
