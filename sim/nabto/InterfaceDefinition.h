#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>

namespace tidewell {

// The queries that an interface file declares, with the members of their requests and responses; of a list
// only its own name counts.
class TInterfaceDefinition {
  public:
    struct TQuery {
        std::set<std::string, std::less<>> Request;
        std::set<std::string, std::less<>> Response;
    };

    // Throws TError when the text is no well-formed XML or declares no query.
    explicit TInterfaceDefinition(std::string_view xml);

    // nullptr when the query is not declared.
    const TQuery* Find(std::string_view queryName) const;

  private:
    std::map<std::string, TQuery, std::less<>> Queries;
};

} // namespace tidewell
