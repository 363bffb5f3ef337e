#pragma once

#include "model/ValueCodec.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tidewell {

// Reads the values of all channels out of data lines, one pass over each line. For long lists of lines; gives
// what CalculateDatapointValue gives.
class TGraphRowParser {
  public:
    // The channels among the points, in their order. Throws EConvertError for one with a bad field.
    explicit TGraphRowParser(std::span<const TGraphPoint> points);

    std::size_t Channels() const { return Wanted.size(); }
    // Fields 1 and 2 of the line parsed last; they refer to the line.
    std::string_view Date() const { return DateText; }
    std::string_view Time() const { return TimeText; }

    void Parse(std::string_view line);
    // Of the line parsed last.
    double Value(std::size_t channel) const;

  private:
    struct TWanted {
        std::size_t Field = 0;
        bool IsMissing = false; // no line has such a field: the channel reads 0
        bool Unsigned16 = false;
        std::int32_t Offset = 0;
        long double Power = 1; // of 10
        bool Divide = false;
    };

    void ParseQuoted(std::string_view line);

    std::vector<TWanted> Wanted;
    std::vector<std::int64_t> Raw; // by field of the line
    bool HeadWanted = false;       // a channel reads date or time as a number
    std::string_view DateText;
    std::string_view TimeText;
    std::array<std::string, 2> Unquoted; // what they refer to when quoted
};

} // namespace tidewell
