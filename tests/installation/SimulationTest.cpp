#include "Installation.h"
#include "core/Configuration.h"
#include "core/Numbers.h"
#include "link/Nabto.h"
#include "sim/nabto/InProcessLibrary.h"
#include "sim/nabto/SimulatedNabto.h"
#include "support/ScriptedDialogs.h"

#include <gmock/gmock.h>

#include <array>

namespace tidewell::test {

namespace {

const std::string directId = "410000000001";
const std::string gatewayId = "410000000002";

// The program's link to the simulated controllers of the installation.
class SimulatedInstallation : public testing::Test {
  protected:
    SimulatedInstallation() {
        Simulation.SimulationFile = Installation.Directory / "nabto_config/simulation.ini";
        Simulation.OnReport = [](const std::string& line) {
            ADD_FAILURE() << line;
        };
        EXPECT_EQ(Nabto.Init("somebody@example.com", "secret"), 0);
    }

    std::string Address(const std::string& deviceId) const {
        return deviceId + "." + ReadNabtoConfiguration(System).Domain;
    }

    // The profile that belongs to the identity in the last ping's answer, without language and extension.
    std::string ChosenProfile() const {
        const TAutoLoadProfile known = ReadConfiguration(System).AutoLoadProfile;
        if (!Nabto.SlaveDeviceNum.empty() && !Nabto.SlaveModel.empty())
            return known.Model.Value(Nabto.SlaveDeviceNum + "_" + Nabto.SlaveModel);
        return known.ItemNumber.Find(Nabto.varenummer) ? known.Model.Value(Nabto.model) : "";
    }

    std::vector<std::string> Ask(const std::string& device, const TPollQuestion& question) {
        const std::string request =
            question.Command == 4 ? "datapointReadValue.json" : "setpointReadValue.json";
        const std::string json = TUNabto::ValueToJson(
            std::to_string(question.Address), std::to_string(question.Length), std::to_string(question.Obj));
        const std::string values = Nabto.JsonToValue(Nabto.SendQuery(device, request, json));
        std::vector<std::string> result = Fields(values);
        EXPECT_EQ(result.size(), static_cast<std::size_t>(question.Length) + 1)
            << "address " << question.Address << ": " << values;
        result.resize(static_cast<std::size_t>(question.Length));
        for (std::string& value : result)
            value = Trim(value);
        return result;
    }

    std::vector<std::string> AskAll(const std::string& device, const TInstalledProfile& profile) {
        std::vector<std::string> cycle;
        for (const TPollQuestion& question : profile.Questions) {
            const std::vector<std::string> values = Ask(device, question);
            cycle.insert(cycle.end(), values.begin(), values.end());
        }
        return cycle;
    }

    TDeviceReply Write(const std::string& device, const TListRow& row, std::int32_t value) {
        return ParseReply(
            Nabto.SendQuery(device, "setpointWriteValue.json",
                            TUNabto::FormatSaveSetpoint(row.Integer(14), row.Integer(2), value)));
    }

    TInstallation Installation;
    const TIniFile System{Installation.Files, Installation.SystemFile()};
    TVirtualTime Time;
    TScriptedDialogs Dialogs;
    TPortTime SimulationTime{Time, Time};
    TSimulatedNabto Simulation{Installation.Files, SimulationTime};
    TInProcessLibrary Library{Simulation};
    TUNabto Nabto{Library, Dialogs, Time, Time, Installation.Files, Installation.Directory};
};

} // namespace

TEST_F(SimulatedInstallation, ReportedIdentityLeadsToAProfileInEveryLanguage) {
    struct TCase {
        std::string Id;
        std::string Interface;
        std::string Profile;
    };
    for (const TCase& expected :
         {TCase{directId, "standalone.xml", "Aria450"}, TCase{gatewayId, "gateway.xml", "Loft120"},
          TCase{directId, "standalone.xml", "Aria450"}}) {
        ASSERT_TRUE(Nabto.ping(Address(expected.Id))) << expected.Id;
        EXPECT_EQ(Nabto.queriesFile, expected.Interface);
        EXPECT_EQ(ChosenProfile(), expected.Profile);
        for (const std::string& language : Installation.Files.List(Installation.Directory / "cfg", "*.lng"))
            EXPECT_TRUE(Installation.Files.FileExists(TProfile::PadCurrentProfileExtension(
                Installation.Directory / "profile" / ChosenProfile(), language)))
                << ChosenProfile() << " for " << language;
    }
}

TEST_F(SimulatedInstallation, EveryQueryIsDeclaredInBothInterfaces) {
    const std::array<std::uint8_t, 2> payload = {1, 2};
    const std::vector<std::pair<std::string, std::string>> requests = {
        {"ping.json", PingRequest()},
        {"ping.json", UserAccountRequest("1", "user@example.com")},
        {"setpointReadValue.json", ValueToJson("100", "1", "0")},
        {"datapointReadValue.json", ValueToJson("0", "1", "0")},
        {"setpointWriteValue.json", FormatSaveSetpoint(0, 100, 5)},
        {"admincmd.json", GetCMD(42)},
        {"flashRead.json", FormatRWData(131072, 4096)},
        {"flashWrite.json", FormatRWData(131072, 4096)},
        {"eepReadRaw.json", FormatRWData(512, 400)},
        {"prepareUpdate.json", prepareUpdateData(1, 100, 0)},
        {"FlashWriteNostream.json", prepareFlashWriteNostream(1, 0, payload)},
        {"FlashWriteNostreamV2.json", V2prepareFlashWriteNostream(1, 0, 0, payload)},
        {"SystemIdentify.json", prepareSystemIdentify(1)},
    };
    for (const std::string& device : {Address(directId), Address(gatewayId)}) {
        ASSERT_TRUE(Nabto.ping(device));
        for (const auto& [query, request] : requests) {
            const std::string reply = Nabto.SendQuery(device, query, request);
            EXPECT_TRUE(ParseReply(reply).HasResponse) << Nabto.queriesFile << " " << query << ": " << reply;
        }
    }
}

// Values stay within their limits while they move, and keep their number of digits, by which a snapshot of
// the setpoints is told to be whole.
TEST_F(SimulatedInstallation, PolledValuesMoveWithinTheirLimits) {
    for (const auto& [deviceId, name] : {std::pair{directId, "Aria450"}, std::pair{gatewayId, "Loft120"}}) {
        const TInstalledProfile profile(Installation, std::string(name) + "_english.pls");
        const std::string device = Address(deviceId);
        ASSERT_TRUE(Nabto.ping(device));
        const std::vector<std::string> first = AskAll(device, profile);
        std::vector<bool> moved(first.size());
        std::size_t lengthChanges = 0;
        std::string before;
        for (int cycle = 0; cycle < 300; ++cycle) {
            Time.Advance(2000);
            const std::vector<std::string> values = AskAll(device, profile);
            ASSERT_EQ(values.size(), static_cast<std::size_t>(profile.PolledValues));
            std::string joined;
            for (std::size_t i = 0; i < values.size(); ++i) {
                joined += values[i] + "; ";
                moved[i] = moved[i] || values[i] != first[i];
            }
            lengthChanges += cycle > 0 && joined.size() != before.size() ? 1U : 0U;
            before = joined;
            for (const TListRow& row : profile.Rows) {
                const std::int32_t value = ToInteger(row.ValueIn(values));
                EXPECT_TRUE(value >= row.Integer(3) && value <= row.Integer(4)) << row.Name() << " " << value;
            }
        }
        EXPECT_LE(lengthChanges, 3U) << name;
        for (const std::string& graphRow : profile.Profile.GraphValues) {
            const TGraphPoint point = ParseGraphPoint(graphRow);
            if (point.IsChannel) {
                EXPECT_TRUE(moved.at(static_cast<std::size_t>(point.Structnumber - 3))) << graphRow;
            }
        }
    }
}

TEST_F(SimulatedInstallation, SetpointsKeepWhatIsWritten) {
    for (const auto& [deviceId, name] : {std::pair{directId, "Aria450"}, std::pair{gatewayId, "Loft120"}}) {
        const TInstalledProfile profile(Installation, std::string(name) + "_english.pls");
        const std::string device = Address(deviceId);
        ASSERT_TRUE(Nabto.ping(device));
        for (const std::size_t limit : {3U, 4U}) {
            for (const TListRow& row : profile.Rows) {
                if (row.IsSetpoint()) {
                    EXPECT_TRUE(Write(device, row, row.Integer(limit)).Status) << row.Name();
                }
            }
            const std::vector<std::string> values = AskAll(device, profile);
            for (const TListRow& row : profile.Rows) {
                if (row.IsSetpoint()) {
                    EXPECT_EQ(row.ValueIn(values), row.Fields.at(limit)) << row.Name();
                }
            }
        }
        // A reading is no setpoint, so there is nothing to write.
        for (const TListRow& row : profile.Rows) {
            if (!row.IsSetpoint() && row.Integer(14) == 0) {
                EXPECT_TRUE(Write(device, row, row.Integer(4)).Error) << row.Name();
            }
        }
    }
}

// The faults that the file offers as comments are good ones.
TEST_F(SimulatedInstallation, OfferedFaultsCanBeSwitchedOn) {
    std::string bytes;
    std::size_t faults = 0;
    for (const std::string& line : SplitLines(Installation.Files.Read(Simulation.SimulationFile))) {
        const bool isOffer = line.starts_with("; ") && line.find('=') != std::string::npos;
        faults += isOffer ? 1U : 0U;
        bytes += (isOffer ? line.substr(2) : line) + "\n";
    }
    EXPECT_GT(faults, 5U);
    const TSimulation simulation = ParseSimulation(bytes, "simulation.ini");
    EXPECT_GT(simulation.Controllers.at(0).Faults.size(), faults);
    EXPECT_EQ(simulation.Domain, ReadNabtoConfiguration(System).Domain);
}

// Where a firmware update looks for the result of its checksum test.
TEST_F(SimulatedInstallation, ChecksumResultCanBeRead) {
    for (const auto& [deviceId, profile, obj] :
         {std::tuple{directId, "Aria450_english.pls", 0}, std::tuple{gatewayId, "Loft120_english.pls", 8}}) {
        ASSERT_TRUE(Nabto.ping(Address(deviceId)));
        const std::int32_t address = TInstalledProfile(Installation, profile).Profile.DF_HPM_SETPKTNUM + 3;
        EXPECT_THAT(Ask(Address(deviceId), {.Obj = obj, .Command = 3, .Address = address, .Length = 1}),
                    testing::ElementsAre("0"));
    }
}

} // namespace tidewell::test
