#pragma once

#include "link/NabtoClientApi.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace tidewell {

// Readable text of a status; it lives as long as the program.
const char* StatusText(std::uint8_t status);
// The status of that name, such as "NABTO_FAILED".
std::optional<TNabtoStatus> StatusByName(std::string_view name);

} // namespace tidewell
