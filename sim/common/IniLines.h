#pragma once

#include <string>
#include <string_view>

namespace tidewell {

// An INI reader passes over lines that say nothing; in the files of the stand-ins they are mistakes. Throws
// TError with the path and the number of the first line that is neither blank, comment, section nor
// key=value.
void CheckIniLines(std::string_view bytes, const std::string& shownPath);

} // namespace tidewell
