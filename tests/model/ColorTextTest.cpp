#include "model/ColorText.h"

#include <gtest/gtest.h>

namespace tidewell::test {

TEST(ColorText, ReadsNamesAndNumbers) {
    struct {
        std::string Text;
        std::uint32_t Value;
    } const cases[] = {
        {"clRed", 0x0000FF},        {" CLRED ", 0x0000FF},
        {"clMoneyGreen", 0xC0DCC0}, {"$000000FF", 0x0000FF},
        {"$00A1B2C3", 0xA1B2C3},    {"$a1b2c3", 0xA1B2C3},
        {"0x0000FF00", 0x00FF00},   {"255", 0x0000FF},
        {"$02112233", 0x112233},    {"clWindow", 0xFFFFFF},
        {"clBtnFace", 0xF0F0F0},    {"$FF000005", 0xFFFFFF},
        {"-16777211", 0xFFFFFF},    {"clgradientinactivecaption", 0xF2E4D7},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ColorFromText(c.Text).Value, c.Value) << c.Text;
    for (const std::string text : {"", " ", "red", "cl", "$", "0x", "$1FFFFFFFF", "$00GG0000", "$-5", "0x-5",
                                   "12 ", "1.5", "$FF0000FF", "$FF000019", "--1"})
        EXPECT_EQ(TryColorFromText(text).has_value(), text == "12 ") << text;
}

TEST(ColorText, KeepsTheTextOfAnUnchangedColour) {
    struct {
        std::uint32_t Value;
        std::string AsRead, Written;
    } const cases[] = {
        {0x0000FF, "$000000FF", "$000000FF"}, {0x0000FF, "CLRED", "CLRED"},
        {0x0000FF, "clBlue", "clRed"},        {0x0000FF, "", "clRed"},
        {0xFFFFFF, "clWindow", "clWindow"},   {0xFFFFFF, "clRed", "clWhite"},
        {0xC0C0C0, "clRed", "clSilver"},      {0xA1B2C3, "clRed", "$00A1B2C3"},
        {0x00000A, "rosso", "$0000000A"},     {UnknownColor.Value, "rosso", "rosso"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ColorToText(TColor{c.Value}, c.AsRead), c.Written) << c.AsRead;
}

} // namespace tidewell::test
