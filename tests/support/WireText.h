#pragma once

#include <span>
#include <string>
#include <vector>

namespace tidewell::test {

// Text of a member of a request, without quotes; empty if there is none.
std::string RequestField(const std::string& request, const std::string& name);

// What went to a device during an update, from the calls of the native library: "ping", "read 903,1,0",
// "prepare 1,300,77" (file, size, CRC), "flash 131072,300", "admin 42", a state of an upload without a
// stream, "15", with its block if that is not 0, "13@2", and "open", "write 512", "close" of the stream.
// Packets are told by state, number and size, and those of one size in a row come as one: "8 #1-16 x256".
std::vector<std::string> WireText(std::span<const std::string> calls);

} // namespace tidewell::test
