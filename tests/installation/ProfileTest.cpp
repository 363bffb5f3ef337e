#include "Installation.h"
#include "core/KvSupport.h"
#include "core/Numbers.h"
#include "model/ColorText.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <set>

namespace tidewell::test {

namespace {

std::vector<std::string> BitNames(const std::string& text) {
    const std::vector<std::string_view> names = SplitStrictly(text, ',');
    return {names.begin(), names.end()};
}

// The fields that a translation changes are blanked.
std::vector<std::string> Untranslated(std::vector<std::string> fields,
                                      const std::vector<std::size_t>& texts) {
    for (const std::size_t field : texts)
        if (field < fields.size())
            fields[field] = std::to_string(BitNames(fields[field]).size()); // as many bit names
    return fields;
}

class InstalledProfile : public testing::TestWithParam<const char*> {
  protected:
    TInstallation Installation;
    TInstalledProfile Opened{Installation, GetParam()};
};

} // namespace

TEST_P(InstalledProfile, ListRowsAreWholeAndTheirLimitsShown) {
    std::set<std::string> identities;
    std::map<std::string, std::set<std::string>> questions; // by group
    for (const TListRow& row : Opened.Rows) {
        SCOPED_TRACE(row.Name());
        EXPECT_LE(row.Integer(3), row.Integer(4));
        EXPECT_TRUE(identities.insert(row.Fields.at(7)).second) << "ModbusAdr is taken";
        std::vector<std::string> helpNumbers;
        EXPECT_NO_THROW(FormatRowLimits(row.Joined(), helpNumbers));
        EXPECT_EQ(helpNumbers.size(), 1U);
        const std::string& code = row.Fields.at(9);
        const std::vector<std::string> names = BitNames(row.Fields.at(10));
        EXPECT_EQ(code == "100", !row.Fields.at(10).empty());
        EXPECT_TRUE(names.size() <= 16 && MaxTextLength(names) <= 9);
        EXPECT_TRUE(names.size() < 2 || std::find(names.begin(), names.end(), "") == names.end());
        EXPECT_TRUE(!code.starts_with("10") || code.size() < 3 ||
                    (row.Integer(5) == 0 && row.Integer(6) == 0 && row.Integer(3) >= 0));
        if (row.Fields.at(15) != "0")
            questions[row.Fields.at(15)].insert(row.Device + "/" + row.QuestionFields.at(4));
    }
    // A group that two questions of a device used would stand twice in the tree.
    for (const auto& [group, from] : questions)
        EXPECT_EQ(from.size(), 1U) << group;
    const bool isFirstModel = std::string_view(GetParam()).starts_with("Aria450");
    EXPECT_EQ(questions.size(), isFirstModel ? 8U : 4U);
    EXPECT_EQ(Opened.Rows.size(), isFirstModel ? 126U : 40U);
}

TEST_P(InstalledProfile, GraphPointsAreChannelsOfTheListedValues) {
    std::map<std::int32_t, const TListRow*> listed;
    for (const TListRow& row : Opened.Rows)
        listed[row.Integer(8)] = &row;
    std::set<std::string> names;
    for (std::size_t i = 0; i < Opened.Profile.GraphValues.size(); ++i) {
        const std::vector<std::string> fields = Fields(Opened.Profile.GraphValues[i]);
        const TGraphPoint& point = Opened.Profile.GraphPoints[i];
        SCOPED_TRACE(fields[0]);
        ASSERT_EQ(point.Error, "");
        ASSERT_TRUE(listed.contains(point.Structnumber));
        const TListRow& row = *listed[point.Structnumber];
        EXPECT_EQ(point.Offset, row.Integer(6));
        EXPECT_EQ(point.Decimal, row.Integer(5));
        EXPECT_TRUE(names.insert(fields[0]).second && fields[0].find(":[") == std::string::npos);
        EXPECT_THAT(ToInteger(fields[1]), testing::AllOf(testing::Ge(1), testing::Le(3)));
        EXPECT_TRUE(TryColorFromText(fields[2]));
        EXPECT_EQ(fields[7], point.Type == 100 ? row.Fields.at(10) : "");
        // A negative value would be lost without its sign.
        EXPECT_TRUE(point.Type < 200 || row.Integer(3) >= 0);
    }
    EXPECT_EQ(Opened.Profile.VisibleGraph.Count(), Opened.Profile.GraphEnableCount);
    for (const auto& row : Opened.Profile.VisibleGraph.Rows())
        EXPECT_NO_THROW(ToBoolean(row.Value)) << row.Name;
}

INSTANTIATE_TEST_SUITE_P(, InstalledProfile,
                         testing::Values("Aria450_english.pls", "Aria450_deutsch.pls",
                                         "Aria450_english_Flash.pls", "Aria450_deutsch_Flash.pls",
                                         "Loft120_english.pls", "Loft120_deutsch.pls"));

// Each polled value has one list row, which is written where it is read.
TEST_P(InstalledProfile, PollQuestionsCoverTheListRows) {
    if (std::string_view(GetParam()).find("_Flash") != std::string_view::npos) {
        EXPECT_EQ(Opened.PolledValues, 0);
        return;
    }
    std::set<std::int32_t> structnumbers;
    for (const TListRow& row : Opened.Rows) {
        SCOPED_TRACE(row.Name());
        const std::int32_t number = row.Integer(8);
        EXPECT_TRUE(structnumbers.insert(number).second);
        const auto question = std::find_if(Opened.Questions.begin(), Opened.Questions.end(),
                                           [number](const TPollQuestion& candidate) {
                                               return number >= candidate.FirstStructnumber &&
                                                      number < candidate.FirstStructnumber + candidate.Length;
                                           });
        ASSERT_NE(question, Opened.Questions.end());
        EXPECT_EQ(row.Integer(2), question->Address + number - question->FirstStructnumber);
        EXPECT_EQ(row.Integer(14), question->Obj);
        EXPECT_EQ(row.QuestionFields.at(2), std::to_string(question->Address));
        EXPECT_EQ(row.QuestionFields.at(3), std::to_string(question->Length));
        // What a setpoint file holds is written by command with obj 0.
        EXPECT_TRUE(!row.IsSetpoint() || (question->Command == 3 && question->Obj == 0));
    }
    EXPECT_EQ(structnumbers.size(), static_cast<std::size_t>(Opened.PolledValues));
}

TEST(InstalledProfiles, LanguagesDifferInTextsOnly) {
    TInstallation installation;
    for (const std::string model : {"Aria450", "Loft120"}) {
        const TInstalledProfile english(installation, model + "_english.pls");
        const TInstalledProfile german(installation, model + "_deutsch.pls");
        ExpectSameKeys(english.Ini, german.Ini,
                       [](const std::string& section, const std::string& a, const std::string& b) {
                           // In the file a list row has no number in front.
                           const std::vector<std::size_t> texts =
                               section == "GraphPoints"      ? std::vector<std::size_t>{0, 7}
                               : section.starts_with("List") ? std::vector<std::size_t>{0, 9, 14}
                                                             : std::vector<std::size_t>{};
                           EXPECT_EQ(Untranslated(Fields(a), texts), Untranslated(Fields(b), texts))
                               << section;
                       });
        ASSERT_EQ(english.Rows.size(), german.Rows.size());
        for (std::size_t row = 0; row < english.Rows.size(); ++row)
            EXPECT_EQ(english.Rows[row].Fields.at(8), german.Rows[row].Fields.at(8)) << "order of the rows";
    }
}

} // namespace tidewell::test
