#pragma once

#include "core/Errors.h"
#include "sim/controller/RegisterBank.h"

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Reading the members of a request. On the wire some numbers are JSON strings of decimal digits and others
// are JSON numbers, and a controller takes no other form.
namespace tidewell {

// The controller refuses a request; the text is the body of its error reply.
class ERequestRefused : public TError {
  public:
    using TError::TError;
};

std::string JsonText(const nlohmann::ordered_json& json);
// {"error":{"body":"..."}}
std::string ErrorReply(const std::string& body);

// The object "request" of the text. Throws ERequestRefused.
nlohmann::ordered_json ParseRequest(std::string_view requestJson);

// The member as a number, from 0 to most where that is given. They throw ERequestRefused.
std::int64_t TextMember(const nlohmann::ordered_json& request, const std::string& name);
std::int64_t NumberMember(const nlohmann::ordered_json& request, const std::string& name);
std::int64_t NumberMember(const nlohmann::ordered_json& request, const std::string& name, std::int64_t most);
const nlohmann::ordered_json& ListMember(const nlohmann::ordered_json& request, const std::string& name);

// The addresses of a read, in order; at most 65536. Throws ERequestRefused.
std::vector<TRegisterAddress> ReadAddresses(const nlohmann::ordered_json& request);

struct TWriteEntry {
    TRegisterAddress At;
    std::uint16_t Bits = 0;
};
// The list of a write. Throws ERequestRefused.
std::vector<TWriteEntry> WriteEntries(const nlohmann::ordered_json& request);

} // namespace tidewell
