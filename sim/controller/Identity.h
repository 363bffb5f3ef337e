#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace tidewell {

// Members of the answer to "ping.json" beside "Pong", in order, such as {"Model", 30021}.
using TIdentity = std::vector<std::pair<std::string, std::int64_t>>;

} // namespace tidewell
