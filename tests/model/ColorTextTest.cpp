#include "model/ColorText.h"

#include "rig/Test.h"

namespace tidewell::test {

TEST(ColorText, ReadsNamesAndNumbers) {
    for (const char* text :
         {"", " ", "red", "cl", "$", "0x", "$1FFFFFFFF", "$100000000", "$00GG0000", "$-5", "0x-5", "1.5",
          "$FF0000FF", "$FF000019", "$FF00001F", "--1", "-2147483649", "4294967296"})
        EXPECT_EQ(TryColorFromText(text), std::nullopt) << text;
    // Written where there is no other text: by its name if it has one.
    ExpectRows([](std::string_view text) { return ColorToText(ColorFromText(text), ""); },
               {"clRed -> clRed", " CLRED  -> clRed", "$000000FF -> clRed", "255 -> clRed",
                "0x0000FF00 -> clLime", "0X0000FF00 -> clLime", "clMoneyGreen -> clMoneyGreen",
                "$00A1B2C3 -> $00A1B2C3", "$a1b2c3 -> $00A1B2C3", "$02112233 -> $00112233",
                "12  -> $0000000C", "clWindow -> clWhite", "clBtnFace -> $00F0F0F0", "$FF000005 -> clWhite",
                "-16777211 -> clWhite", "$FF00001E -> $00F0F0F0", "clgradientinactivecaption -> $00F2E4D7"});
}

TEST(ColorText, KeepsTheTextOfAnUnchangedColour) {
    const auto written = [](std::string_view input) {
        const auto texts = SplitStrictly(input, '|');
        return ColorToText(ColorFromText(texts.at(0)), texts.at(1));
    };
    ExpectRows(written, {"clRed|$000000FF -> $000000FF", "clRed|CLRED -> CLRED", "clRed|clBlue -> clRed",
                         "clWhite|clWindow -> clWindow", "clWhite|clRed -> clWhite",
                         "clLtGray|clRed -> clSilver", "10|rosso -> $0000000A", "verde|rosso -> rosso"});
}

} // namespace tidewell::test
