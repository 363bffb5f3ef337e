#pragma once

#include "sim/nabto/InterfaceDefinition.h"

#include <optional>
#include <string>
#include <string_view>

namespace tidewell {

// {"error":{"body":"..."}}
std::string ErrorReply(const std::string& body);

// A member of {"request":{...}} that the definition does not declare, if there is one.
std::optional<std::string> UndeclaredMember(const TInterfaceDefinition::TQuery& query,
                                            std::string_view request);

// The reply without the members of {"response":{...}} that the definition does not declare. What is no reply
// stays as it is.
std::string Declared(const TInterfaceDefinition::TQuery& query, std::string reply);

} // namespace tidewell
