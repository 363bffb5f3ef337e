#include "setpoints/SetpointRecords.h"

#include "core/Errors.h"
#include "setpoints/SetpointTexts.h"
#include "support/ScriptedDialogs.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace tidewell::test {
namespace {

// What a record needs for its line.
struct TSetpoint {
    std::string Name, Structnumber, Decimal, Offset, Code;
};

// The two texts of the record's line, or what is wrong with it; values follow each other from field 3 on.
std::string Line(const TSetpoint& setpoint, const std::string& cycle, std::size_t told = 0) {
    TSetpointTexts texts;
    texts.TakeTexts(TIniFile("[DataUnits]\n1=°C\n18=days\n[UserUnits]\na=Off\nb=On\nc=Auto\n"));
    TScriptedDialogs dialogs;
    dialogs.AllowMessage("Error Data not valid Code= 1");
    TSetpointRecord record;
    record.Columns = {setpoint.Name,   "",      "",           "0", "9", setpoint.Decimal,
                      setpoint.Offset, "40100", setpoint.Code};
    record.Structnumber = setpoint.Structnumber;
    std::vector records{record};
    try {
        FillRawValues(records, cycle);
        const auto lines = SetpointLines(records, texts, dialogs);
        EXPECT_EQ(dialogs.Shown.size(), told);
        if (lines.empty())
            return "none";
        const std::string rest =
            ";0;9;" + setpoint.Decimal + ";" + setpoint.Offset + ";40100;" + setpoint.Code + ";;;;;;";
        EXPECT_TRUE(lines[0].ends_with(rest)) << lines[0];
        return lines[0].substr(0, lines[0].size() - rest.size());
    } catch (const EConvertError& error) {
        return error.what();
    }
}

std::string Formatted(const std::string& text) {
    return "Mode;          " + text + "          ;";
}

TEST(SetpointRecords, TellTheValueOrWhatIsMissing) {
    const std::string cycle = "-15; 6; ;;x7y;54321;";
    struct {
        TSetpoint Setpoint;
        std::size_t Told;
        std::string Line;
    } const cases[] = {
        {{"Mode", "--3", "0", "0", "1"}, 0, "Setpoint Mode: structnumber '--3' is not a valid integer value"},
        {{"Mode", "3", "a", "0", "1"}, 0, "Setpoint Mode: 'a' is not a valid integer value"},
        {{"Mode", "3", "0", "", "1"}, 0, "Setpoint Mode: '' is not a valid integer value"},
        {{"Mode", "4", "1", "0", "7"}, 0, "Setpoint Mode: '0.6' is not a valid integer value"},
        {{"Mode", "4", "0", "-5", "7"}, 0, Formatted("On") + "6"},
        {{"", "3", "0", "0", "1"}, 0, "none"},
        {{"M", "3", "0", "0", "1"}, 0, "none"},
        {{"Ø", "3", "0", "0", "1"}, 0, "none"},
        {{"Mode", "", "0", "0", "1"}, 1, Formatted(" °C") + "Error strucnumber"},
        {{"Mode", "x", "0", "0", "1"}, 1, Formatted(" °C") + "Error strucnumber"},
        {{"Mode", "2", "0", "0", "1"}, 1, Formatted(" °C") + "Error structnumber"},
        {{"Mode", "5", "0", "0", "0"}, 1, Formatted("")},
        {{"Mode", "6", "0", "0", "0"}, 1, Formatted("") + "Error no value"},
        {{"Mode", "10", "0", "0", "18"}, 1, Formatted(" days") + "Error no value"},
        {{"Mode", "9", "0", "0", "18"}, 1, Formatted(" days") + "Error no value"},
        {{"Mode", "3", "1", "5", "1"}, 0, Formatted("-1.0 °C") + "-15"},
        {{"Mode", "s3", "2", "0", "zz"}, 0, Formatted("-0.15") + "-15"},
        {{"Mode", "7", "0", "0", "1"}, 0, Formatted("7 °C") + "7"},
        {{"Mode", "8", "-4", "0", "0"}, 0, Formatted("5.4321E8") + "54321"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Line(c.Setpoint, cycle, c.Told), c.Line) << c.Setpoint.Structnumber;
}

TEST(SetpointRecords, KeepTheTextBeforeABadValueAndTellTenOfThem) {
    for (const std::size_t bad : {0U, 1U, 9U, 10U, 11U, 12U}) {
        TScriptedDialogs dialogs;
        for (std::size_t i = 0; i < std::min<std::size_t>(bad, 10); ++i)
            dialogs.ExpectMessage("Error Data not valid Code= 2");
        if (bad > 10)
            dialogs.ExpectMessage("Error Data not valid in " + std::to_string(bad - 10) +
                                  " further setpoints");
        TScaledTexts scaled(dialogs);
        EXPECT_EQ(scaled.Next(";;;;;1;5;", "215"), "22.0");
        for (std::size_t i = 0; i < bad; ++i)
            EXPECT_EQ(scaled.Next(";;;;;0;0;", "5--3"), "22.0");
        EXPECT_EQ(scaled.Next(";;;;;0;0;", "12"), "12");
        scaled.TellRest();
    }
}

} // namespace
} // namespace tidewell::test
