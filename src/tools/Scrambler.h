#pragma once

#include <string>
#include <string_view>

// Texts hidden with a key. The key is stretched with a salt of its own for each text, so the same text never
// looks the same twice; a text that was changed, or is read with another key, is refused.
namespace tidewell {

// Letters, digits, "-" and "_" only. Throws std::runtime_error.
std::string ScrambleText(std::string_view clear, std::string_view key);
// The very bytes that were scrambled. Throws std::runtime_error when the text did not come from ScrambleText
// with this key.
std::string UnscrambleText(std::string_view scrambled, std::string_view key);

} // namespace tidewell
