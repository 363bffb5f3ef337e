#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tidewell {

class TMemo;
class TProfile;

// The bits of a channel that holds a bit field, each with its name.
class TNamedBits {
  public:
    static constexpr int RowHeight = 20;     // pixels
    static constexpr int CharacterWidth = 6; // pixels

    TNamedBits(const TProfile& profile, TMemo& memoEventLog) : Profile(profile), MemoEventLog(memoEventLog) {}

    // Whether the channel of that name, with or without its value behind ":[", is a bit field with named
    // bits; BinaryCommastring then gets the names.
    bool ChannelIsBinary(std::string_view name);
    // BinaryGraphList gets a row per name: its bit, most significant first, three blanks and the name. Names
    // beyond the 16 bits stay as they are.
    void PrepareBinaryView(std::int32_t value);
    // Size of the popup in pixels.
    int Height() const { return RowHeight * static_cast<int>(BinaryGraphList.size()); }
    int Width() const;

    std::string BinaryCommastring;
    std::vector<std::string> BinaryGraphList;

  private:
    const TProfile& Profile;
    TMemo& MemoEventLog;
};

} // namespace tidewell
