#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tidewell {

// The parts of "nabto://<device>/<query>?json=<text>"; they point into the URL.
struct TNabtoUrl {
    std::string_view Device;
    std::string_view Query;
    std::string_view Json;
};
// Nothing if the text has another form. The JSON text is taken as it stands, with no decoding.
std::optional<TNabtoUrl> SplitUrl(std::string_view url);

// Whether the text can name a file inside a directory.
bool IsFileName(std::string_view text);

} // namespace tidewell
