#include "core/Paths.h"

#include "core/ports/IFiles.h"

#include <algorithm>

namespace tidewell {

std::filesystem::path NumberedPath(const std::filesystem::path& wanted, int number) {
    if (number == 1)
        return wanted;
    return wanted.parent_path() /
           (wanted.stem().string() + "-" + std::to_string(number) + wanted.extension().string());
}

std::filesystem::path UnusedPath(const IFiles& files, const std::filesystem::path& wanted) {
    int number = 1;
    while (files.FileExists(NumberedPath(wanted, number)))
        ++number;
    return NumberedPath(wanted, number);
}

std::string ShownDirectory(const std::filesystem::path& directory) {
    std::string text = directory.string();
    std::replace(text.begin(), text.end(), '/', '\\');
    if (!text.ends_with('\\'))
        text += '\\';
    return text;
}

} // namespace tidewell
