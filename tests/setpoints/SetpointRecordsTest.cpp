#include "setpoints/SetpointRecords.h"

#include "rig/Test.h"
#include "setpoints/SetpointTexts.h"

namespace tidewell::test {
namespace {

// Name, structnumber, decimals, offset and code of a setpoint; its line without the last fields, and how
// often a value was told to be none. Values follow each other from field 3 on.
std::string Line(std::string_view input) {
    TSetpointTexts texts;
    texts.TakeTexts(TIniFile("[DataUnits]\n1=°C\n18=days\n[UserUnits]\na=Off\nb=On\nc=Auto\n"));
    TFixedDialogs dialogs;
    TSetpointRecord record;
    record.Columns = {Piece(input, 0), "", "", "0", "9", Piece(input, 2), Piece(input, 3), "40100",
                      Piece(input, 4)};
    record.Structnumber = Piece(input, 1);
    std::vector records{record};
    FillRawValues(records, "-15; 6; ;;x7y;54321;");
    const auto lines = SetpointLines(records, texts, dialogs);
    EXPECT_EQ(std::ranges::count(dialogs.Boxes, "Error Data not valid Code= 1"),
              static_cast<std::ptrdiff_t>(dialogs.Boxes.size()));
    const std::string rest =
        ";0;9;" + Piece(input, 2) + ";" + Piece(input, 3) + ";40100;" + Piece(input, 4) + ";;;;;;";
    if (lines.empty() || !lines[0].ends_with(rest))
        return Join(lines, "|");
    return lines[0].substr(0, lines[0].size() - rest.size()) + std::string(dialogs.Boxes.size(), '!');
}

TEST(SetpointRecords, TellTheValueOrWhatIsMissing) {
    ExpectRows(Line, {"Mode|--3|0|0|1 -> Setpoint Mode: structnumber '--3' is not a valid integer value",
                      "Mode|3|a|0|1 -> Setpoint Mode: 'a' is not a valid integer value",
                      "Mode|3|0||1 -> Setpoint Mode: '' is not a valid integer value",
                      "Mode|4|1|0|7 -> Setpoint Mode: '0.6' is not a valid integer value", "|3|0|0|1 -> ",
                      "M|3|0|0|1 -> ", "Ø|3|0|0|1 -> "});
    ExpectRows(Line, {"Mode||0|0|1 -> Mode;           °C          ;Error strucnumber!",
                      "Mode|x|0|0|1 -> Mode;           °C          ;Error strucnumber!",
                      "Mode|2|0|0|1 -> Mode;           °C          ;Error structnumber!",
                      "Mode|5|0|0|0 -> Mode;                    ;!",
                      "Mode|6|0|0|0 -> Mode;                    ;Error no value!",
                      "Mode|10|0|0|18 -> Mode;           days          ;Error no value!",
                      "Mode|9|0|0|18 -> Mode;           days          ;Error no value!"});
    ExpectRows(Line, {"Mode|4|0|-5|7 -> Mode;          On          ;6",
                      "Mode|3|1|5|1 -> Mode;          -1.0 °C          ;-15",
                      "Mode|s3|2|0|zz -> Mode;          -0.15          ;-15",
                      "Mode|7|0|0|1 -> Mode;          7 °C          ;7",
                      "Mode|8|-4|0|0 -> Mode;          5.4321E8          ;54321"});
}

TEST(SetpointRecords, KeepTheTextBeforeABadValueAndTellTenOfThem) {
    for (const std::size_t bad : {0U, 1U, 9U, 10U, 11U, 12U}) {
        TFixedDialogs dialogs;
        TScaledTexts scaled(dialogs);
        EXPECT_EQ(scaled.Next(";;;;;1;5;", "215"), "22.0");
        for (std::size_t i = 0; i < bad; ++i)
            EXPECT_EQ(scaled.Next(";;;;;0;0;", "5--3"), "22.0");
        EXPECT_EQ(scaled.Next(";;;;;0;0;", "12"), "12");
        scaled.TellRest();
        std::vector<std::string> told(std::min<std::size_t>(bad, 10), "Error Data not valid Code= 2");
        if (bad > 10)
            told.push_back("Error Data not valid in " + std::to_string(bad - 10) + " further setpoints");
        EXPECT_EQ(dialogs.Boxes, told);
    }
}

} // namespace
} // namespace tidewell::test
