#include "link/FirmwareUpdate.h"

#include "UpdateFixture.h"
#include "core/Errors.h"
#include "core/controls/Form.h"

#include <tuple>

namespace tidewell::test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

const std::string mismatchText = "Automatick Software verification failed, please verify manually";
const std::string missingText =
    "Some target software versions were missing, please verify manually after update";

// What no run of the whole program tells yet.
class TFirmwareUpdateTest : public TUpdateFixture {
  protected:
    TFirmwareUpdateTest() {
        Files.Put(Paths.plsfile, "[NabtoSection]\nDF_HPM_SETPKTNUM=1000\n");
        Files.Put("/pkg/1234_a.bin", "abc");
        Files.Put("/pkg/b.bin", "hello");
        Pong("1234", 11, 12, 13);
        Package("11", "VersionFName1:1:11\nVersionFName3:2:13\n");
    }
    void Pong(const std::string& model, int hp, int np, int bt, const std::string& more = {}) {
        Ping = R"({"response":{"Pong":1886350951,"Devicenumber":55,"Model":)" + model + R"(,"Version HP":)" +
               std::to_string(hp) + R"(,"Version NP":)" + std::to_string(np) + R"(,"Version HBDE":)" +
               std::to_string(bt) + more + "}}";
    }
    void Package(const std::string& mask, const std::string& transfer) {
        Files.Put("/pkg/config.fwc", "Number of files: " + mask +
                                         "\nFilename: 1234_a.bin\nCRC32: $A\nSize: 3\n"
                                         "Filename: b.bin\nCRC32: 11\nSize: 5\n");
        Files.Put("/pkg/pc_cfg.fwc", transfer);
    }
    // The CRC results of the reads, in order; later ones get the last of them.
    void CrcResults(std::deque<std::string> results) {
        OnExchange = [this, results = std::move(results)]() mutable {
            if (Library.Calls.back().find("setpointReadValue") == std::string::npos)
                return;
            CrcReply = R"({"response":{"data":[{"value":)" + results.front() + "}]}}";
            if (results.size() > 1)
                results.pop_front();
        };
    }
    bool Run() {
        TakeWire();
        Time.Sleeps.clear();
        return Update.UpdateSW(CurrentUpdateSWFile);
    }
};

TEST_F(TFirmwareUpdateTest, PackagesThatAreOdd) {
    // A first file without a name passes for any model.
    Files.Put("/pkg/config.fwc", "Filename:\n1\n1\nFilename: b.bin\n1\n4\nNumber of files: 0\n");
    EXPECT_TRUE(Run());
    // A mask beyond the list goes to the device as it is.
    Package("1110", "X_Transfer:2:1:2\n");
    Dialogs.ExpectMessage(missingText);
    EXPECT_TRUE(Run());
    EXPECT_THAT(TakeWire(), HasSubstr("admin 917546; "));
    // Once the device has got something there is a log, whatever ended the run.
    streamDelayEdit.SetText("soon");
    EXPECT_THROW(Run(), EConvertError);
    const auto names = Files.List("/app/log/userlog", "FW-Update_Error_*");
    ASSERT_EQ(names.size(), 1U);
    EXPECT_THAT(Files.Read("/app/log/userlog/" + names[0]),
                EndsWith("Start write filedata\r\n'soon' is not a valid integer value\r\n"));
    EXPECT_FALSE(UpdateStatus.Running() || Use.Taken());
}

TEST_F(TFirmwareUpdateTest, WhereTheResultStands) {
    const std::string gateway = R"(,"Version":11)";
    for (const auto& [model, more, read] : {std::tuple{"1234", "", "read 1003,1,0"},
                                            {"30015", "", "read 39,1,1"},
                                            {"30011", gateway.c_str(), "read 1003,1,8"},
                                            {"30014", gateway.c_str(), "read 1003,1,8"}}) {
        Pong(model, 11, 12, 13, more);
        Files.Put("/pkg/config.fwc", "Number of files: 1\nFilename:\n1\n0\n"); // nothing to send
        Files.Put("/pkg/pc_cfg.fwc", "VersionFName1:1:11\nX_Transfer:1:9:9\n");
        EXPECT_TRUE(Run());
        EXPECT_THAT(TakeWire(), EndsWith(read));
    }
}

TEST_F(TFirmwareUpdateTest, VersionsAreComparedAndTold) {
    struct TCase {
        const char* Name;
        const char* Model;
        const char* Mask;
        std::string Transfer;
        int Mismatches;
        bool Missing;
    };
    const std::string second = "VersionFName3:2:13\n";
    for (const auto& test : std::vector<TCase>{
             {"first wrong, second right", "1234", "11", "VersionFName1:1:12\n" + second, 1, false},
             {"first wrong, second not compared", "1234", "11", "VersionFName1:1:12\n", 2, true},
             {"second wrong", "1234", "11", "VersionFName2:1:12\nVersionFName2:2:13\n", 1, false},
             {"not to be verified", "1234", "22", "VersionFName1:1:12\n", 0, false},
             {"gateway, only the first", "30012", "11", "any:1:1\n", 0, true},
             {"gateway, Version:1", "30012", "11", "Version:1:99\nVersion:2:77\n", 0, false},
             {"gateway, first wrong", "30012", "11", "Version:1:98\nVersion:2:77\n", 2, false},
         }) {
        for (const bool continuous : {false, true}) {
            SCOPED_TRACE(test.Name);
            EnableContineousUpdate = continuous;
            Pong(test.Model, 11, 12, 13, R"(,"Version":99)");
            Package(test.Mask, test.Transfer);
            if (std::string(test.Model) != "1234")
                Files.Put("/pkg/config.fwc", "Number of files: 11\nFilename:\n1\n0\nFilename:\n1\n0\n");
            if (std::string(test.Model) != "1234")
                Files.Put("/pkg/pc_cfg.fwc", test.Transfer + "X_Transfer:1:9:9\nX_Transfer:2:9:9\n");
            if (!continuous) {
                for (int i = 0; i < test.Mismatches; ++i)
                    Dialogs.ExpectMessage(mismatchText);
                if (test.Missing)
                    Dialogs.ExpectMessage(missingText);
            }
            EXPECT_TRUE(Run());
            EXPECT_TRUE(Dialogs.AllAnswered());
            EXPECT_EQ(std::ranges::count(memoDebug.Lines(), mismatchText), continuous ? test.Mismatches : 0);
            EXPECT_EQ(std::ranges::count(memoDebug.Lines(), missingText), continuous && test.Missing ? 1 : 0);
        }
    }
}

// The note of a mismatch outlives the round, and the device's versions are those of the last ping.
TEST_F(TFirmwareUpdateTest, AMismatchStandsInTheNextRound) {
    EnableContineousUpdate = true;
    Package("11", "VersionFName1:2:12\n");
    CrcResults({"1", "1", "1", "1", "0"});
    int pings = 0;
    const auto crc = OnExchange;
    OnExchange = [&, crc] {
        crc();
        if (Library.Calls.back().find("ping.json") != std::string::npos && ++pings == 3)
            Pong("1234", 12, 0, 0);
    };
    EXPECT_TRUE(Run());
    EXPECT_EQ(std::ranges::count(memoDebug.Lines(), mismatchText), 2); // file 2, then file 1 of round 2
}

TEST_F(TFirmwareUpdateTest, ShowsHowFarItIs) {
    std::vector<std::string> shown;
    const auto note = UpdateStatus.LabUpdatePhase.Changed.Connect(
        [&] { shown.push_back(UpdateStatus.LabUpdatePhase.Caption()); });
    const auto file = UpdateStatus.LabUpdateFile.Changed.Connect([&] {
        if (UpdateStatus.LabUpdateFile.Visible())
            shown.push_back(UpdateStatus.LabUpdateFile.Caption());
    });
    Nabto.FOnUpdateProgress = [&](TStreamProgress& progress) {
        UpdateStatus.SetProgress(progress.currentstreamprogress, progress.currentstreamlength);
        shown.push_back(std::to_string(UpdateStatus.UpdateProgress.Position()));
    };
    EXPECT_FALSE(UpdateStatus.PanelUpdate.Visible());
    Package("101", "VersionFName1:1:11\n");
    Files.Content["/pkg/config.fwc"] += "Filename: c.bin\n1\n1024\n";
    Files.Put("/pkg/c.bin", std::string(1024, 'c'));
    Dialogs.ExpectMessage(missingText);
    EXPECT_TRUE(Run());
    EXPECT_THAT(shown,
                ElementsAre("Asking the device", "Sending the firmware", "File 1 of 2: 1234_a.bin", "100",
                            "File 2 of 2: c.bin", "50", "100", "Restarting the device in update mode",
                            "Waiting for the device", "Checking the firmware", "Update succeeded"));
    EXPECT_TRUE(UpdateStatus.PanelUpdate.Visible());
    EXPECT_FALSE(UpdateStatus.UpdateProgress.Visible());
}

TEST_F(TFirmwareUpdateTest, IsNotEnteredTwice) {
    int tries = 0;
    OnExchange = [&] {
        ++tries;
        EXPECT_FALSE(Update.UpdateSW(CurrentUpdateSWFile));
        Continuous.ButContUpdateClick();
        Continuous.TimerContUpdateTimer();
        EXPECT_FALSE(ButContUpdate.Enabled());
    };
    EXPECT_TRUE(Run());
    EXPECT_GT(tries, 5);
    EXPECT_EQ(TakeWire().find("ping; prepare 1"), 0U);
    EXPECT_FALSE(Continuous.RPCEnableMultibleUpdate);
    EXPECT_TRUE(ButContUpdate.Enabled());
}

class TContinuousUpdateTest : public TFirmwareUpdateTest {
  protected:
    TContinuousUpdateTest() {
        EnableContineousUpdate = true;
        Files.Put("/pkg2/config.fwc", "Number of files: 0\nFilename:\n1\n1\n");
        Files.Put("/pkg/filecontdnltest.fwc",
                  "1=/pkg/config.fwc\r\n2=\\pkg2\\config.fwc\r\n3=/pkg3/config.fwc\r\n");
    }
    void Start(const std::filesystem::path& path) {
        Dialogs.ExpectOpenFile("Open", path);
        Continuous.ButContUpdateClick();
        EXPECT_EQ(Dialogs.LastFileDialog.Filters.front().Mask, "*.fwc");
        EXPECT_EQ(ButContUpdate.Caption(), "Continuous RPC-Update started");
    }
    std::string Panel() { return StatusBar.Panels()[0].Text; }
};

TEST_F(TContinuousUpdateTest, OnePackageAgainAndAgain) {
    Start("/pkg/config.fwc");
    EXPECT_EQ(Panel(), "Ctest result Ok->: 1Bad->: 0");
    Time.Advance(59999);
    EXPECT_EQ(Continuous.ContUpdateACK, 1);
    Time.Advance(1);
    EXPECT_EQ(Panel(), "Ctest result Ok->: 2Bad->: 0");
    Ping.reset();
    Dialogs.ExpectMessage("Device is not available");
    Time.Advance(60000);
    EXPECT_EQ(Panel(), "Ctest result Ok->: 2Bad->: 1");

    // It has no report.
    Dialogs.ExpectMessage("Continious test Stop result saved in userlog folder");
    EXPECT_THROW(Continuous.ButContUpdateClick(), EListError);
    EXPECT_EQ(ButContUpdate.Caption(), "Continuous RPC-Update stopped");
    EXPECT_EQ(Panel(), "");
    // The timer was armed.
    Dialogs.ExpectMessage("Device is not available");
    Time.Advance(600000);
    EXPECT_EQ(Panel(), "");

    Dialogs.ExpectOpenFile("Open", std::nullopt);
    Dialogs.ExpectMessage("Device is not available");
    Continuous.ButContUpdateClick();
    EXPECT_EQ(Panel(), "Ctest result Ok->: 0Bad->: 1");
}

TEST_F(TContinuousUpdateTest, PackagesInTurnWithAReport) {
    Start("/pkg/filecontdnltest.fwc");
    EXPECT_EQ(CurrentUpdateSWFile, "/pkg/config.fwc");
    Time.Advance(60000);
    EXPECT_EQ(CurrentUpdateSWFile, "/pkg2/config.fwc");
    EXPECT_THAT(memoDebug.Lines(), Contains("Config File: /pkg2/config.fwc"));
    Time.Advance(60000);
    EXPECT_EQ(CurrentUpdateSWFile, "/pkg3/config.fwc"); // is not there
    EXPECT_THAT(memoDebug.Lines().back(), HasSubstr("/pkg3/config.fwc: No such file"));
    Time.Advance(60000);
    EXPECT_EQ(CurrentUpdateSWFile, "/pkg/config.fwc");
    EXPECT_EQ(Panel(), "Ctest result Ok->: 3Bad->: 1");

    // Stopped in the middle of an update.
    OnExchange = [this] {
        OnExchange = nullptr;
        EXPECT_TRUE(ButContUpdate.Enabled());
        Dialogs.ExpectMessage("Continious test Stop result saved in userlog folder");
        Continuous.ButContUpdateClick();
    };
    Time.Advance(60000);
    EXPECT_FALSE(Continuous.RPCEnableMultibleUpdate || Continuous.TimerContUpdate->Enabled());
    const auto names = Files.List("/app/log/userlog", "Continious_test_log_*_410000000001.txt");
    ASSERT_EQ(names.size(), 1U);
    const std::string report = Files.Read("/app/log/userlog/" + names[0]);
    EXPECT_THAT(report, EndsWith("Update done!\r\nContinuous test report\r\n"
                                 "Test results -> TestOk: 3 TestBad: 1\r\n"));
    EXPECT_EQ(report.find("410000000001\r\nPing..\r\n"), 0U);
    EXPECT_THAT(report, HasSubstr("Config File: /pkg3/config.fwc\r\n"));
}

TEST_F(TContinuousUpdateTest, StrictlyARunThatCannotStartEndsTheTest) {
    Extensions.ServiceStrict = true;
    ButContUpdate.SetCaption("Cont. Update");
    const TMemoryFiles good = Files;
    const std::string saved = "\r\nContinious test Stop result saved in userlog folder";
    struct TCase {
        std::filesystem::path Choice;
        std::function<void()> Change;
        std::string Reason;
        std::string Box; // before the one that tells the end
    };
    for (const auto& test : std::vector<TCase>{
             {"/pkg/config.fwc", [this] { Files.Put(Paths.plsfile, ""); }, UpdateStatus.Texts.NoUpdateStatus,
              ""},
             {"/pkg/config.fwc", [this] { Files.Remove("/pkg/b.bin"); },
              UpdateStatus.Texts.BadPackage + "\r\nCannot read /pkg/b.bin: No such file or directory", ""},
             {"", [] {}, "Unable to open file", "Unable to open file"},
             {"/pkg/filecontdnltest.fwc", [this] { Files.Remove("/pkg/filecontdnltest.fwc"); },
              "Cannot read /pkg/filecontdnltest.fwc: No such file or directory", ""},
             {"/pkg/filecontdnltest.fwc", [this] { Files.Remove("/pkg/config.fwc"); },
              "Cannot read /pkg/config.fwc: No such file or directory" + saved, ""},
             {"/pkg/config.fwc",
              [this] {
                  Package("1", "X_Transfer:1:1:2\n");
                  streamDelayEdit.SetText("soon");
              },
              "", "'soon' is not a valid integer value"},
         }) {
        SCOPED_TRACE(test.Reason);
        test.Change();
        Dialogs.ExpectOpenFile("Open", test.Choice.empty() ? std::nullopt : std::optional(test.Choice));
        if (!test.Reason.empty() && !test.Box.empty())
            Dialogs.ExpectMessage(test.Box);
        Dialogs.ExpectMessage("The continuous test has ended: " +
                              (test.Reason.empty() ? test.Box : test.Reason));
        if (test.Reason.empty())
            EXPECT_THROW(Continuous.ButContUpdateClick(), EConvertError);
        else
            Continuous.ButContUpdateClick();
        EXPECT_EQ(ButContUpdate.Caption(), "Cont. Update");
        EXPECT_FALSE(Continuous.RPCEnableMultibleUpdate || Continuous.TimerContUpdate->Enabled());
        Files = good;
    }
}

TEST_F(TContinuousUpdateTest, StrictlyNothingRunsBehindTheStop) {
    Extensions.ServiceStrict = true;
    Start("/pkg/config.fwc");
    // A tick below a dialog waits.
    Time.After(59000, [this] {
        TForm form("Setup", "");
        Dialogs.ExpectForm("Setup", [this](TForm&) { Time.Advance(30000); });
        Dialogs.ShowModal(form);
        EXPECT_EQ(Continuous.ContUpdateACK, 1);
    });
    Time.Advance(119000);
    EXPECT_EQ(Continuous.ContUpdateACK, 1);
    Time.Advance(1000 + 19000);
    EXPECT_EQ(Continuous.ContUpdateACK, 2);
    TakeWire();
    Dialogs.ExpectMessage("Continuous test stopped. Good: 2, bad: 0. There is no report to save");
    Continuous.ButContUpdateClick();
    EXPECT_EQ(ButContUpdate.Caption(), "Continuous RPC-Update stopped");
    Time.Advance(600000);
    EXPECT_EQ(TakeWire(), "");

    // On another device it does not go on, and the report is of the tested one.
    Start("/pkg/filecontdnltest.fwc");
    TakeWire();
    device = "410000000002.remote.example";
    Dialogs.ExpectMessage("The continuous test has ended: another controller is in force\r\n"
                          "Continious test Stop result saved in userlog folder");
    Time.Advance(600000);
    EXPECT_EQ(TakeWire(), "");
    EXPECT_EQ(Files.List("/app/log/userlog", "Continious_test_log_*_410000000001.txt").size(), 1U);

    // What could not be saved is not said to be.
    Start("/pkg/filecontdnltest.fwc");
    Files.Room = 0;
    Dialogs.ExpectMessage("Cannot write /app/log/userlog/Continious_test_log_" + DateTimeStamp(Time) +
                          "_410000000002.txt: No space left on device");
    Continuous.ButContUpdateClick();
    EXPECT_EQ(memoDebug.Lines().back(), "Test results -> TestOk: 1 TestBad: 0");
}

} // namespace

} // namespace tidewell::test
