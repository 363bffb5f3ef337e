#pragma once

#include "sim/controller/Service.h"

#include <string>

namespace tidewell {

// Takes one row of a section for service functions, such as key "UpdateTime" and value "30s", or key "Image
// 1" and value "0xA10000; room=65536; version=Version HP". Throws TError with the reason alone.
void ParseServiceRow(const std::string& key, const std::string& text, TServiceSetup& setup);

} // namespace tidewell
