#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Base64 with "-" and "_" and without padding.
namespace tidewell {

std::string ToBase64Url(const std::vector<std::uint8_t>& bytes);
// Nothing when the text is not of that form.
std::optional<std::vector<std::uint8_t>> FromBase64Url(std::string_view text);

} // namespace tidewell
