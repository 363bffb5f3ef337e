#pragma once

#include <filesystem>
#include <istream>
#include <string>

namespace tidewell {

// 64 upper-case hexadecimal digits that stay the same for as long as this machine has its processor and its
// system is not set up anew. Two machines with processors of the same kind differ too. What the machine does
// not tell counts as empty.
std::string ProcessorText();

// What stays of /proc/cpuinfo when the machine starts again or its kernel is renewed: for each of the fields
// that name the kind of processor, its first value.
std::string ProcessorFields(std::istream& cpuinfo);

} // namespace tidewell
