#include "sim/nabto/NabtoUrl.h"

#include <algorithm>
#include <cstddef>

namespace tidewell {

std::optional<TNabtoUrl> SplitUrl(std::string_view url) {
    constexpr std::string_view Scheme = "nabto://";
    constexpr std::string_view Argument = "?json=";
    if (!url.starts_with(Scheme))
        return std::nullopt;
    url.remove_prefix(Scheme.size());
    const std::size_t slash = url.find('/');
    const std::size_t argument = url.find(Argument);
    if (slash == std::string_view::npos || argument == std::string_view::npos || argument < slash)
        return std::nullopt;
    return TNabtoUrl{url.substr(0, slash), url.substr(slash + 1, argument - slash - 1),
                     url.substr(argument + Argument.size())};
}

bool IsFileName(std::string_view text) {
    const bool plain = std::all_of(text.begin(), text.end(), [](char character) {
        return static_cast<unsigned char>(character) >= ' ' && character != '/' && character != '\\';
    });
    return plain && !text.empty() && text.size() < 200 && text != "." && text != "..";
}

} // namespace tidewell
