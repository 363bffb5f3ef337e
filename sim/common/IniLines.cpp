#include "sim/common/IniLines.h"

#include "core/Errors.h"
#include "core/Numbers.h"
#include "core/TextFile.h"

#include <cstddef>
#include <vector>

namespace tidewell {

void CheckIniLines(std::string_view bytes, const std::string& shownPath) {
    EEncoding encoding{};
    const std::vector<std::string> lines = SplitLines(DecodeText(bytes, encoding));
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::string_view line = Trim(lines[i]);
        const bool section = line.starts_with("[") && line.ends_with("]");
        if (!line.empty() && !line.starts_with(";") && !section && line.find('=') == std::string_view::npos) {
            throw TError(shownPath + ": line " + std::to_string(i + 1) + ": \"" + std::string(line) +
                         "\" is neither a section nor key=value");
        }
    }
}

} // namespace tidewell
