#pragma once

#include "core/KvSupport.h"
#include "model/GraphRowParser.h"

#include <stdexcept>
#include <string_view>
#include <vector>

namespace tidewell::test {

// Ends the program, or the test, unless the condition holds.
inline void Require(bool condition, const char* what) {
    if (!condition)
        throw std::logic_error(what);
}

// A line is split as its fields read one by one, and the parser of the channels gives what the codec gives.
inline void CheckRow(const std::vector<TGraphPoint>& channels, TGraphRowParser& parser,
                     std::string_view line) {
    const TSplitLine fields(line);
    const TSplitLine two(line, 2);
    Require(two.Count() <= 2 && fields.Count() >= two.Count() && fields.Field(-1).empty(), "another count");
    for (std::size_t i = 0; i < 6; ++i) {
        const std::string field = GetRowField(line, i);
        Require(fields.Field(static_cast<std::int64_t>(i)) == field, "another field");
        Require(two.Field(static_cast<std::int64_t>(i)) == (i < 2 ? field : ""), "another of two fields");
    }
    parser.Parse(line);
    Require(parser.Date() == fields.Field(1) && parser.Time() == fields.Field(2), "another date or time");
    for (std::size_t i = 0; i < channels.size(); ++i)
        Require(parser.Value(i) == CalculateDatapointValue(channels[i], fields).Value, "another value");
}

} // namespace tidewell::test
