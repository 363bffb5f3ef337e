#include "Installation.h"
#include "core/Configuration.h"
#include "link/Nabto.h"
#include "rig/IdleProgram.h"

namespace tidewell::test {

namespace {

// The program's link to the simulated controllers of the installation.
class SimulatedInstallation : public testing::Test {
  protected:
    SimulatedInstallation() { EXPECT_EQ(Nabto.Init("somebody@example.com", "secret"), 0); }

    // The direct controller and the one behind the gateway, each with the profile of its model.
    void ForEachModel(const std::function<void(const TInstalledProfile&)>& check) {
        for (const auto& [id, name] : {std::pair{"410000000001", "Aria450"}, {"410000000002", "Loft120"}}) {
            SCOPED_TRACE(name);
            Device = std::string(id) + "." + ReadNabtoConfiguration(System).Domain;
            ASSERT_TRUE(Nabto.ping(Device));
            check(TInstalledProfile(std::string(name) + "_english.pls"));
        }
    }

    // The values of a whole cycle.
    std::vector<std::string> AskAll(const TInstalledProfile& profile) {
        std::vector<std::string> cycle;
        for (const auto& row : ReadPollQuestions(World.Files, profile.Path).Rows()) {
            const std::vector<std::string> question = Fields(row.Value); // obj, command, address, length
            const std::string json = ValueToJson(question.at(2), question.at(3), question.at(0));
            const char* const query =
                question.at(1) == "4" ? "datapointReadValue.json" : "setpointReadValue.json";
            const auto values = Fields(Nabto.JsonToValue(Nabto.SendQuery(Device, query, json)));
            EXPECT_EQ(values.size(), static_cast<std::size_t>(ToInteger(question.at(3))) + 1) << json;
            for (std::size_t i = 0; i + 1 < values.size(); ++i)
                cycle.emplace_back(Trim(values[i]));
        }
        return cycle;
    }

    std::string Device; // address of the model at hand
    TWorld World;
    const TIniFile System{World.Files, TWorld::SystemFile};
    TFixedDialogs Dialogs;
    TIdleProgram Program;
    TUNabto Nabto{Program, World.Libraries, Dialogs, World.Time, World.Time, World.Files, "/t"};
};

} // namespace

// The journeys ask all queries of the direct controller; the gateway takes the same.
TEST(InstalledInterfaces, DeclareTheSameRequests) {
    const auto requests = [](const std::string& name) {
        const std::string bytes = Installation().Read("/t/nabto_config/" + name);
        std::string text;
        for (std::size_t at = bytes.find("<query"); at != std::string::npos;
             at = bytes.find("<query", at + 1))
            text += bytes.substr(at, bytes.find("</request>", at) - at);
        return text;
    };
    EXPECT_EQ(requests("gateway.xml"), requests("standalone.xml"));
}

TEST_F(SimulatedInstallation, PolledValuesMoveWithinTheirLimits) {
    ForEachModel([this](const TInstalledProfile& profile) {
        const std::vector<std::string> first = AskAll(profile);
        std::vector<bool> moved(first.size());
        for (int cycle = 0; cycle < 300; ++cycle) {
            World.Time.Advance(2000);
            const std::vector<std::string> values = AskAll(profile);
            ASSERT_EQ(values.size(), first.size());
            for (std::size_t i = 0; i < values.size(); ++i)
                moved[i] = moved[i] || values[i] != first[i];
            for (const TListRow& row : profile.Rows) {
                const std::int32_t value = ToInteger(row.ValueIn(values));
                EXPECT_TRUE(value >= row.Integer(3) && value <= row.Integer(4)) << row.Name() << " " << value;
            }
        }
        for (const TGraphPoint& point : profile.Profile.GraphPoints)
            EXPECT_TRUE(!point.IsChannel || moved.at(static_cast<std::size_t>(point.Structnumber - 3)))
                << point.Structnumber;
    });
}

// The faults that the file offers as comments are good ones.
TEST_F(SimulatedInstallation, OfferedFaultsCanBeSwitchedOn) {
    std::string bytes;
    std::size_t faults = 0;
    for (const std::string& line : SplitLines(Installation().Read(TWorld::Simulation))) {
        const bool isOffer = line.starts_with("; ") && line.find('=') != std::string::npos;
        faults += isOffer ? 1U : 0U;
        bytes += (isOffer ? line.substr(2) : line) + "\n";
    }
    EXPECT_GT(faults, 5U);
    const TSimulation simulation = ParseSimulation(bytes, "simulation.ini");
    EXPECT_GT(simulation.Controllers.at(0).Faults.size(), faults);
    EXPECT_EQ(simulation.Domain, ReadNabtoConfiguration(System).Domain);
}

} // namespace tidewell::test
