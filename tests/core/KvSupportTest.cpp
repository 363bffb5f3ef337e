#include "core/KvSupport.h"

#include "core/Errors.h"
#include "core/IniFile.h"
#include "core/Paths.h"
#include "core/controls/StringGrid.h"
#include "support/MemoryFiles.h"
#include "support/ScriptedDialogs.h"
#include "support/VirtualTime.h"

#include <gmock/gmock.h>

#include <tuple>

namespace tidewell {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(KvSupport, SplitsRows) {
    std::vector<std::string> target{"old"};
    for (const char* text : {"", "no end"}) {
        SplitRow(text, target, false);
        EXPECT_THAT(target, IsEmpty());
    }
    SplitRow(";a b;\"c;d\";rest", target, false);
    EXPECT_THAT(target, ElementsAre("", "a b", "\"c", "d\""));
    SplitRow("1;2;", target, true);
    EXPECT_THAT(target, IsEmpty());
    EXPECT_THAT(SplitStrictly("a;;"), ElementsAre("a", "", ""));
}

TEST(KvSupport, ReadsFields) {
    const std::tuple<const char*, std::size_t, const char*> table[] = {
        {"", 0, ""},       {"\"\";c", 0, ""},       {"a; b c ;", 1, " b c "},
        {"\"", 0, ""},     {"\"a\"b;c", 1, "c"},    {"\"never closed;c", 1, ""},
        {";;x", 2, "x"},   {"\"a;b\";c", 1, "c"},   {"5\" pipe;c", 0, "5\" pipe"},
        {"a;b;c", 3, ""},  {"\"a\"b;c", 0, "ab"},   {"a;b;c", std::string::npos, ""},
        {"a;b;c", 0, "a"}, {"\"a;b\";c", 0, "a;b"}, {"\"say \"\"hi\"\"\";c", 0, "say \"hi\""},
        {"a;b;c", 2, "c"}, {"\"\"\"\";c", 0, "\""}, {"\"never closed;c", 0, "never closed;c"},
    };
    for (const auto& [row, index, field] : table)
        EXPECT_EQ(GetRowField(row, index), field) << row << " " << index;
}

TEST(KvSupport, SetsFieldsAndKeepsTheOthersAsTheyAre) {
    EXPECT_EQ(SetRowField("", 2, "x"), ";;x");
    EXPECT_EQ(SetRowField("a;b;", 2, "x"), "a;b;x");
    EXPECT_EQ(SetRowField("a;b", 4, "x"), "a;b;;;x");
    EXPECT_EQ(SetRowField("\"a;b\";5\" pipe;c", 2, "x"), "\"a;b\";5\" pipe;x");
    EXPECT_EQ(SetRowField("a;b", 0, "\"q\";"), "\"\"\"q\"\";\";b");
    for (const char* value : {"", "plain", "a;b", "\"", "\"\"", "a\"b", ";"})
        EXPECT_EQ(GetRowField(SetRowField("p;q;r", 1, value), 1), value);
}

TEST(KvSupport, KeepsCharacters) {
    EXPECT_EQ(KeepCharacters("a\xC3\xA9z\xE2\x82\xAC\xFF", "a\xC3\xA9\xE2\x82\xAC"), "a\xC3\xA9");
    EXPECT_EQ(KeepCharacters("\xA9", "\xC3\xA9"), "");
    test::TVirtualTime time;
    EXPECT_EQ(NowStamp(time), "02-03-20260800");
    EXPECT_EQ(DateTimeStamp(time), "02-03-2026080000");
}

TEST(KvSupport, BinaryTexts) {
    EXPECT_EQ(BinaryString(5, 16), "0000000000000101");
    EXPECT_EQ(BinaryString(-1, 16), "1111111111111111");
    EXPECT_EQ(BinaryString(-65536, 4), "0000");
    for (const std::int32_t value : {65536, -65537})
        EXPECT_THROW(BinaryString(value, 16), ERangeError);
    EXPECT_THROW(BinaryString(1, 0), ERangeError);
    EXPECT_EQ(BinaryToInteger("0001x21"), 9U);
    EXPECT_EQ(BinaryToInteger("1\xC3\xA9"), 2U);
    EXPECT_EQ(BinaryToInteger(std::string(40, '0') + std::string(32, '1')), 0xFFFFFFFFU);
    EXPECT_THROW(BinaryToInteger("1" + std::string(32, '0')), ERangeError);
    EXPECT_EQ(DigitMask("120"), 6U);
}

TEST(KvSupport, ParsesNumbers) {
    const std::tuple<const char*, std::size_t, long double> table[] = {
        {"", 1, 0},         {"abc", 1, 0},      {"1.2.3", 2, 0},   {"-12.5 kPa", 0, -12.5L},
        {"-", 2, 0},        {"1-2", 2, 0},      {"x1e3", 0, 13},   {"\xE2\x82\xAC 7", 0, 7},
        {".", 1, 0},        {"--1", 2, 0},      {"1.000,5", 2, 0}, {"5.", 0, 5},
        {"12", 0, 12},      {"1,25", 0, 1.25L}, {"+3", 0, 3},      {".5", 0, .5L},
        {"1 000", 0, 1000},
    };
    std::size_t position = 99;
    long double result = 99;
    for (const auto& [text, error, value] : table) {
        ParseNumber(text, position, result);
        EXPECT_EQ(position, error) << text;
        EXPECT_EQ(result, value) << text;
    }
    ParseNumber(std::string(6000, '9'), position, result);
    EXPECT_NE(position, 0U);
    EXPECT_EQ(result, 0);
}

TEST(KvSupport, ScalesByTheRow) {
    test::TScriptedDialogs dialogs;
    std::string result = "kept";
    dialogs.ExpectMessage("Error Data not valid Code= 3");
    FormatWithRow("0;name;1;0;9;1;5;", "12-", result, dialogs);
    EXPECT_EQ(result, "kept");
    FormatWithRow("0;name;1;0;9; 1 ; 5 ;", "1,5", result, dialogs);
    EXPECT_EQ(result, "0.7"); // (1.5 + 5) / 10 is half way
    FormatWithRow("0;name;1;0;9;-2;0;", "3", result, dialogs);
    EXPECT_EQ(result, "300");
    EXPECT_THROW(FormatWithRow("0;name;1;0;9;;0;", "3", result, dialogs), EConvertError);
    EXPECT_EQ(ScaledText(1, 2000000000), "0.000000000000000000");
    EXPECT_EQ(ScaledText(1, -2000000000), "1E290");
}

TEST(KvSupport, ShowsUnits) {
    const TIniSection dataUnits({{"3", "kPa"}, {"4", ""}});
    const TIniSection userUnits({{"a", "Off"}, {"b", "Auto"}, {"c", "never reached"}});
    const std::tuple<const char*, const char*, const char*> table[] = {
        {" 5 ", "", "5"},  {"5", "x", "5"},     {"5", " 3 ", "5 kPa"}, {"5", "4", "5 "},  {"5", "9", "5"},
        {"0", "7", "Off"}, {"1", "10", "Auto"}, {"2", "7", "2"},       {"-1", "7", "-1"}, {"x", "3", "x kPa"},
    };
    for (const auto& [value, code, text] : table) {
        std::string result = "old";
        UnitText(value, code, dataUnits, result, userUnits);
        EXPECT_EQ(result, text) << value << " " << code;
    }
    std::string result;
    EXPECT_THROW(UnitText("1.5", "7", dataUnits, result, userUnits), EConvertError);
}

TEST(KvSupport, FindsSystemAndLanguageFile) {
    test::TMemoryFiles files;
    EXPECT_EQ(FindSystemFile(files, "/app"), "");
    files.Put("/app/cfg/System_north.INN", "[system]\r\nLANGUAGEFILE_CURRENT = english.lng\r\n");
    files.Put("/app/cfg/system_north.inn.bak", "");
    const auto system = FindSystemFile(files, "/app");
    EXPECT_EQ(system, "/app/cfg/System_north.INN");
    // The name as the system file spells it, then what else there is of that name, then just that spelling.
    EXPECT_EQ(GetLanguageFile(files, system, "/app"), "/app/cfg/english.lng");
    for (const char* real : {"/app/cfg/English.LNG", "/app/cfg/english.lng"}) {
        files.Put(real, "");
        EXPECT_EQ(GetLanguageFile(files, system, "/app"), real);
    }
    files.Put("/app/cfg/system_south.inn", "[System]\nLanguageFile_Current=/etc/other\n");
    EXPECT_EQ(FindSystemFile(files, "/app"), "");
    EXPECT_EQ(GetLanguageFile(files, "/app/cfg/system_south.inn", "/app"), "/app/cfg/etc/other");
    EXPECT_FALSE(files.FileExists(GetLanguageFile(files, "/app/cfg/none", "/app")));
    EXPECT_EQ(VersionText({1, 2, 3, 4}), "Version : 1.2.3 Build: 4");
    EXPECT_EQ(ShownDirectory("/opt/app/"), "\\opt\\app\\");
}

TEST(KvSupport, FillsClearsAndSavesGrids) {
    TStringTable grid;
    grid.SetColCount(2);
    FillGridFromRows({"b;2;x;", "A;1", "a;0"}, grid);
    test::TMemoryFiles files;
    files.CreateDirectories("/d");
    test::TScriptedDialogs dialogs;
    SaveGridToFile(grid, "/d/grid.csv", files, dialogs);
    EXPECT_EQ(files.Read("/d/grid.csv"), "0;a;0;;\r\n1;A;1;;\r\n2;b;2;x;\r\n");
    EXPECT_THROW(SaveGridToFile(grid, "/none/grid.csv", files, dialogs), EInOutError);
    EXPECT_FALSE(dialogs.WaitCursor);
    ClearGrid(grid, false);
    EXPECT_EQ(grid.RowCount(), 1U);
    FillGridFromRows({"x;1", "y;2"}, grid);
    ClearGrid(grid, true);
    EXPECT_EQ(grid.RowCount(), 2U);
    EXPECT_EQ(grid.Cell(1, 0) + "|" + grid.Cell(1, 1), "x|");
    EXPECT_EQ(MaxTextLength({"ab", "\xC3\xA9\xC3\xA9\xC3\xA9"}), 3U);
}

} // namespace
} // namespace tidewell
