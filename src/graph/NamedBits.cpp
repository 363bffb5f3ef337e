#include "graph/NamedBits.h"

#include "core/KvSupport.h"
#include "core/Numbers.h"
#include "core/controls/Lists.h"
#include "graph/SLDisplayChannel.h"
#include "model/Profile.h"

#include <algorithm>

namespace tidewell {

namespace {

constexpr std::size_t bitCount = 16;
constexpr std::size_t typeField = 6;
constexpr std::size_t bitNamesField = 7;
constexpr std::string_view binaryType = "100";

} // namespace

bool TNamedBits::ChannelIsBinary(std::string_view name) {
    const std::string base = WithoutValue(name, 20);
    const auto found = std::find(Profile.FindGraphNameList.begin(), Profile.FindGraphNameList.end(), base);
    if (found == Profile.FindGraphNameList.end())
        return false;
    const std::string& row =
        Profile.GraphValues.at(static_cast<std::size_t>(found - Profile.FindGraphNameList.begin()));
    const std::string names = GetRowField(row, bitNamesField);
    if (Trim(GetRowField(row, typeField)) != binaryType || Trim(names).empty())
        return false;
    BinaryCommastring = names;
    return true;
}

void TNamedBits::PrepareBinaryView(std::int32_t value) {
    const std::string bits = BinaryString(value & 0xFFFF, bitCount);
    BinaryGraphList.clear();
    for (const std::string_view name : SplitStrictly(BinaryCommastring, ',')) {
        std::string row(name);
        if (BinaryGraphList.size() < bitCount)
            row.insert(0, bits[BinaryGraphList.size()] + std::string("   "));
        BinaryGraphList.push_back(std::move(row));
    }
    MemoEventLog.Add("Binary value " + bits);
}

int TNamedBits::Width() const {
    return CharacterWidth * static_cast<int>(MaxTextLength(BinaryGraphList));
}

} // namespace tidewell
