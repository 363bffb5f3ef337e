#include "Installation.h"

namespace tidewell::test {

namespace {

// The profiles are made from tables, so that poll questions, rows and languages agree; here is what a row of
// a table can get wrong.
class InstalledProfile : public testing::TestWithParam<const char*> {
  protected:
    TInstalledProfile Opened{GetParam()};
};

} // namespace

TEST_P(InstalledProfile, ListRowsAreWholeAndTheirLimitsShown) {
    std::set<std::string> identities;
    std::set<std::int32_t> structnumbers;
    for (const TListRow& row : Opened.Rows) {
        SCOPED_TRACE(row.Name());
        EXPECT_LE(row.Integer(3), row.Integer(4));
        EXPECT_TRUE(identities.insert(row.Fields.at(7)).second) << "ModbusAdr is taken";
        EXPECT_TRUE(structnumbers.insert(row.Integer(8)).second);
        std::vector<std::string> helpNumbers;
        EXPECT_NO_THROW(FormatRowLimits(Join(row.Fields, ";") + ";", helpNumbers));
        EXPECT_EQ(helpNumbers.size(), 1U);
        const std::string& code = row.Fields.at(9);
        const std::vector<std::string_view> pieces = SplitStrictly(row.Fields.at(10), ',');
        const std::vector<std::string> names(pieces.begin(), pieces.end());
        EXPECT_EQ(code == "100", !row.Fields.at(10).empty());
        EXPECT_TRUE(names.size() <= 16 && MaxTextLength(names) <= 9);
        EXPECT_TRUE(names.size() < 2 || std::ranges::find(names, "") == names.end());
        EXPECT_TRUE(!code.starts_with("10") || code.size() < 3 ||
                    (row.Integer(5) == 0 && row.Integer(6) == 0 && row.Integer(3) >= 0));
        // What a setpoint file holds is written by command with obj 0.
        EXPECT_TRUE(!row.IsSetpoint || row.Integer(14) == 0);
    }
    for (const TGraphPoint& point : Opened.Profile.GraphPoints)
        EXPECT_TRUE(point.Error.empty() && structnumbers.contains(point.Structnumber)) << point.Error;
    EXPECT_EQ(Opened.Rows.size(), std::string_view(GetParam()).starts_with("Aria450") ? 126U : 40U);
}

INSTANTIATE_TEST_SUITE_P(, InstalledProfile,
                         testing::Values("Aria450_english.pls", "Aria450_deutsch.pls",
                                         "Aria450_english_Flash.pls", "Loft120_english.pls",
                                         "Loft120_deutsch.pls"));

} // namespace tidewell::test
