#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace tidewell {

// The queries that an interface file declares, with the members of their requests and responses; of a list
// only its own name counts.
class TInterfaceDefinition {
  public:
    using TNames = std::set<std::string, std::less<>>;
    struct TQuery {
        TNames Request;
        TNames Response;

        // A member of {"request":{...}} that is not declared, if there is one.
        std::optional<std::string> UndeclaredMember(std::string_view request) const;
        // The reply without the members of {"response":{...}} that are not declared. What is no reply stays
        // as it is.
        std::string Declared(std::string reply) const;
    };

    // Throws TError when the text is no well-formed XML or declares no query.
    explicit TInterfaceDefinition(std::string_view xml);

    // nullptr when the query is not declared.
    const TQuery* Find(std::string_view queryName) const;

  private:
    std::map<std::string, TQuery, std::less<>> Queries;
};

} // namespace tidewell
