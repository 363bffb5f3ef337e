#include "sim/nabto/InterfaceDefinition.h"

#include "core/Errors.h"
#include "sim/controller/Requests.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace tidewell {

namespace {

constexpr std::string_view Blanks = " \t\r\n";
constexpr std::string_view NameEnd = " \t\r\n=/>";

struct TTag {
    std::string Name;
    std::map<std::string, std::string> Attributes;
    bool Closing = false;    // </name>
    bool SelfClosed = false; // <name/>
};

// Walks over the tags of an XML text; what stands between them is passed over.
class TXmlReader {
  public:
    explicit TXmlReader(std::string_view xml) : Rest(xml) {}

    std::optional<TTag> Next() {
        while (true) {
            const std::size_t start = Rest.find('<');
            if (start == std::string_view::npos)
                return std::nullopt;
            Rest.remove_prefix(start);
            if (Rest.starts_with("<!--"))
                SkipBehind("-->");
            else if (Rest.starts_with("<?") || Rest.starts_with("<!"))
                SkipBehind(">");
            else
                return ReadTag();
        }
    }

  private:
    [[noreturn]] static void Fail(const std::string& what) {
        throw TError("Interface definition refused: " + what);
    }

    void SkipBehind(std::string_view end) {
        const std::size_t found = Rest.find(end);
        if (found == std::string_view::npos)
            Fail("unclosed \"" + std::string(Rest.substr(0, 20)) + "\"");
        Rest.remove_prefix(found + end.size());
    }

    void SkipBlanks() { Rest.remove_prefix(std::min(Rest.find_first_not_of(Blanks), Rest.size())); }

    bool Take(char character) {
        if (Rest.empty() || Rest.front() != character)
            return false;
        Rest.remove_prefix(1);
        return true;
    }

    std::string TakeName() {
        const std::size_t length = std::min(Rest.find_first_of(NameEnd), Rest.size());
        std::string name(Rest.substr(0, length));
        Rest.remove_prefix(length);
        if (name.empty() || name.find_first_of("<\"'&") != std::string::npos)
            Fail("bad name \"" + name + "\"");
        return name;
    }

    TTag ReadTag() {
        TTag tag;
        Take('<');
        tag.Closing = Take('/');
        tag.Name = TakeName();
        while (true) {
            SkipBlanks();
            if (Take('>'))
                return tag;
            if (Take('/')) {
                tag.SelfClosed = true;
                if (tag.Closing || !Take('>'))
                    Fail("bad tag \"" + tag.Name + "\"");
                return tag;
            }
            if (Rest.empty())
                Fail("unclosed tag \"" + tag.Name + "\"");
            ReadAttribute(tag);
        }
    }

    void ReadAttribute(TTag& tag) {
        const std::string name = TakeName();
        SkipBlanks();
        const bool equals = Take('=');
        SkipBlanks();
        const char quote = Rest.empty() ? '\0' : Rest.front();
        const std::size_t end = quote == '"' || quote == '\'' ? Rest.find(quote, 1) : std::string_view::npos;
        if (!equals || end == std::string_view::npos)
            Fail("attribute \"" + name + "\" of tag \"" + tag.Name + "\" has no quoted value");
        tag.Attributes[name] = std::string(Rest.substr(1, end - 1));
        Rest.remove_prefix(end + 1);
    }

    std::string_view Rest;
};

using TJson = nlohmann::ordered_json;

} // namespace

TInterfaceDefinition::TInterfaceDefinition(std::string_view xml) {
    TXmlReader reader(xml);
    std::vector<std::string> open;
    TQuery* query = nullptr;
    TNames* members = nullptr;
    std::size_t membersDepth = 0;
    while (const std::optional<TTag> tag = reader.Next()) {
        if (tag->Closing) {
            if (open.empty() || open.back() != tag->Name)
                throw TError("Interface definition refused: unexpected end of \"" + tag->Name + "\"");
            open.pop_back();
            members = open.size() < membersDepth ? nullptr : members;
            continue;
        }
        const auto name = tag->Attributes.find("name");
        if (tag->Name == "query") {
            if (name == tag->Attributes.end())
                throw TError("Interface definition refused: a query without a name");
            query = &Queries[name->second];
            members = nullptr;
        } else if (query != nullptr && (tag->Name == "request" || tag->Name == "response")) {
            members = tag->Name == "request" ? &query->Request : &query->Response;
            membersDepth = open.size() + 1;
        } else if (members != nullptr && open.size() == membersDepth && name != tag->Attributes.end()) {
            members->insert(name->second);
        }
        if (!tag->SelfClosed)
            open.push_back(tag->Name);
    }
    if (!open.empty())
        throw TError("Interface definition refused: \"" + open.back() + "\" is not closed");
    if (Queries.empty())
        throw TError("Interface definition refused: it declares no query");
}

const TInterfaceDefinition::TQuery* TInterfaceDefinition::Find(std::string_view queryName) const {
    const auto found = Queries.find(queryName);
    return found == Queries.end() ? nullptr : &found->second;
}

std::optional<std::string> TInterfaceDefinition::TQuery::UndeclaredMember(std::string_view request) const {
    const TJson json = TJson::parse(request, nullptr, false);
    if (json.is_object() && json.contains("request") && json["request"].is_object()) {
        for (const auto& [name, value] : json["request"].items())
            if (!Request.contains(name))
                return name;
    }
    return std::nullopt;
}

std::string TInterfaceDefinition::TQuery::Declared(std::string reply) const {
    TJson json = TJson::parse(reply, nullptr, false);
    if (!json.is_object() || !json.contains("response") || !json["response"].is_object())
        return reply;
    TJson kept = TJson::object();
    for (const auto& [name, value] : json["response"].items())
        if (Response.contains(name))
            kept[name] = value;
    if (kept.size() == json["response"].size())
        return reply;
    json["response"] = std::move(kept);
    return JsonText(json);
}

} // namespace tidewell
