#include "model/ColorText.h"

#include "core/Numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>

namespace tidewell {

namespace {

struct TNamedColor {
    std::string_view Name;
    std::uint32_t Value; // 0x00BBGGRR
};

constexpr std::array palette{
    TNamedColor{"clBlack", 0x000000},      TNamedColor{"clMaroon", 0x000080},
    TNamedColor{"clGreen", 0x008000},      TNamedColor{"clOlive", 0x008080},
    TNamedColor{"clNavy", 0x800000},       TNamedColor{"clPurple", 0x800080},
    TNamedColor{"clTeal", 0x808000},       TNamedColor{"clGray", 0x808080},
    TNamedColor{"clSilver", 0xC0C0C0},     TNamedColor{"clRed", 0x0000FF},
    TNamedColor{"clLime", 0x00FF00},       TNamedColor{"clYellow", 0x00FFFF},
    TNamedColor{"clBlue", 0xFF0000},       TNamedColor{"clFuchsia", 0xFF00FF},
    TNamedColor{"clAqua", 0xFFFF00},       TNamedColor{"clLtGray", 0xC0C0C0},
    TNamedColor{"clDkGray", 0x808080},     TNamedColor{"clWhite", 0xFFFFFF},
    TNamedColor{"clMoneyGreen", 0xC0DCC0}, TNamedColor{"clSkyBlue", 0xF0CAA6},
    TNamedColor{"clCream", 0xF0FBFF},      TNamedColor{"clMedGray", 0xA4A0A0},
};

// Colours of the system, by their number; a colour value with top byte 0xFF holds the number in its low byte.
constexpr std::uint32_t systemMark = 0xFF000000U;
constexpr std::array systemColors{
    TNamedColor{"clScrollBar", 0xC8C8C8},
    TNamedColor{"clBackground", 0x000000},
    TNamedColor{"clActiveCaption", 0xD1B499},
    TNamedColor{"clInactiveCaption", 0xDBCDBF},
    TNamedColor{"clMenu", 0xF0F0F0},
    TNamedColor{"clWindow", 0xFFFFFF},
    TNamedColor{"clWindowFrame", 0x646464},
    TNamedColor{"clMenuText", 0x000000},
    TNamedColor{"clWindowText", 0x000000},
    TNamedColor{"clCaptionText", 0x000000},
    TNamedColor{"clActiveBorder", 0xB4B4B4},
    TNamedColor{"clInactiveBorder", 0xFCF7F4},
    TNamedColor{"clAppWorkSpace", 0xABABAB},
    TNamedColor{"clHighlight", 0xD77800},
    TNamedColor{"clHighlightText", 0xFFFFFF},
    TNamedColor{"clBtnFace", 0xF0F0F0},
    TNamedColor{"clBtnShadow", 0xA0A0A0},
    TNamedColor{"clGrayText", 0x6D6D6D},
    TNamedColor{"clBtnText", 0x000000},
    TNamedColor{"clInactiveCaptionText", 0x000000},
    TNamedColor{"clBtnHighlight", 0xFFFFFF},
    TNamedColor{"cl3DDkShadow", 0x696969},
    TNamedColor{"cl3DLight", 0xE3E3E3},
    TNamedColor{"clInfoText", 0x000000},
    TNamedColor{"clInfoBk", 0xE1FFFF},
    TNamedColor{"", 0x000000},
    TNamedColor{"clHotLight", 0xCC6600},
    TNamedColor{"clGradientActiveCaption", 0xEAD1B9},
    TNamedColor{"clGradientInactiveCaption", 0xF2E4D7},
    TNamedColor{"clMenuHighlight", 0xD77800},
    TNamedColor{"clMenuBar", 0xF0F0F0},
};

template <std::size_t size>
std::optional<TColor> FindName(const std::array<TNamedColor, size>& colors, std::string_view name) {
    const auto found =
        std::ranges::find_if(colors, [&](const TNamedColor& color) { return SameText(color.Name, name); });
    if (found == colors.end())
        return std::nullopt;
    return TColor{found->Value};
}

std::optional<std::uint32_t> ParseBits(std::string_view text) {
    int base = 10;
    if (text.starts_with("$")) {
        base = 16;
        text.remove_prefix(1);
    } else if (text.starts_with("0x") || text.starts_with("0X")) {
        base = 16;
        text.remove_prefix(2);
    }
    if (base == 16 && text.starts_with("-"))
        return std::nullopt;
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (error != std::errc() || end != text.data() + text.size() || value < INT32_MIN || value > UINT32_MAX)
        return std::nullopt;
    return static_cast<std::uint32_t>(value);
}

} // namespace

std::optional<TColor> TryColorFromText(std::string_view text) {
    text = Trim(text);
    if (text.empty())
        return std::nullopt;
    if (const auto color = FindName(palette, text))
        return color;
    if (const auto color = FindName(systemColors, text))
        return color;
    const auto bits = ParseBits(text);
    if (!bits)
        return std::nullopt;
    if ((*bits & systemMark) != systemMark)
        return TColor{*bits & ~systemMark};
    const std::size_t number = *bits & ~systemMark;
    if (number >= systemColors.size() || systemColors.at(number).Name.empty())
        return std::nullopt;
    return TColor{systemColors.at(number).Value};
}

TColor ColorFromText(std::string_view text) {
    return TryColorFromText(text).value_or(UnknownColor);
}

std::string ColorToText(TColor color, std::string_view asRead) {
    if (ColorFromText(asRead) == color)
        return std::string(asRead);
    const auto named = std::ranges::find(palette, color.Value, &TNamedColor::Value);
    if (named != palette.end())
        return std::string(named->Name);
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text = "$";
    for (int shift = 28; shift >= 0; shift -= 4)
        text += digits[(color.Value >> static_cast<unsigned>(shift)) & 0xFU];
    return text;
}

} // namespace tidewell
