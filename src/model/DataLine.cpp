#include "model/DataLine.h"

#include <algorithm>
#include <limits>

namespace tidewell {

namespace {

// Takes a field that begins with a quote off the front of the rest, up to its ';' or the end.
std::string TakeQuoted(std::string_view& rest) {
    std::string field;
    for (;;) {
        rest.remove_prefix(1);
        const std::size_t quote = std::min(rest.find('"'), rest.size());
        field += rest.substr(0, quote);
        rest.remove_prefix(quote);
        if (rest.empty())
            return field;
        rest.remove_prefix(1);
        if (!rest.starts_with('"'))
            break;
        field += '"';
    }
    const std::size_t end = std::min(rest.find(';'), rest.size());
    field += rest.substr(0, end);
    rest.remove_prefix(end);
    return field;
}

} // namespace

TSplitLine::TSplitLine(std::string_view line) : TSplitLine(line, std::numeric_limits<std::size_t>::max()) {}

TSplitLine::TSplitLine(std::string_view line, std::size_t fields) {
    if (line.empty())
        return;
    const auto separators = static_cast<std::size_t>(std::count(line.begin(), line.end(), ';'));
    Fields.reserve(std::min(fields, separators + 1));
    while (Fields.size() < fields) {
        if (line.starts_with('"')) {
            Unquoted.push_front(TakeQuoted(line));
            Fields.push_back(Unquoted.front());
        } else {
            const std::size_t end = std::min(line.find(';'), line.size());
            Fields.push_back(line.substr(0, end));
            line.remove_prefix(end);
        }
        if (line.empty())
            return;
        line.remove_prefix(1);
        // A text that ends in ';' has one further empty field.
        if (line.empty() && Fields.size() < fields) {
            Fields.emplace_back();
            return;
        }
    }
}

} // namespace tidewell
