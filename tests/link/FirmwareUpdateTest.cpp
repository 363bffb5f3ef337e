#include "link/FirmwareUpdate.h"

#include "UpdateFixture.h"
#include "core/Errors.h"
#include "core/controls/Form.h"
#include "link/UpdateEvidence.h"

#include <numeric>
#include <tuple>

namespace tidewell::test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

const std::string okLog = "/app/log/userlog/FW-Update_OK_";
const std::string errorLog = "/app/log/userlog/FW-Update_Error_";
const std::string mismatchText = "Automatick Software verification failed, please verify manually";
const std::string missingText =
    "Some target software versions were missing, please verify manually after update";

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
    std::string OnlyLog() {
        const auto names = Files.List("/app/log/userlog", "*");
        EXPECT_EQ(names.size(), 1U);
        return names.empty() ? "" : "/app/log/userlog/" + names.front();
    }
    std::int64_t Slept() { return std::accumulate(Time.Sleeps.begin(), Time.Sleeps.end(), std::int64_t{0}); }
};

TEST_F(TFirmwareUpdateTest, AWholeUpdate) {
    EXPECT_TRUE(Run());
    EXPECT_EQ(TakeWire(), "ping; prepare 1,3,10; flash 131072,3; prepare 2,5,11; flash 131072,5; "
                          "admin 196650; ping; read 1003,1,0");
    const auto lines = TakeLines();
    EXPECT_THAT(lines, ElementsAre("410000000001", "Ping..", "Ping Response: OK", "DeviceID: 410000000001",
                                   "Ping Response: OK", "Model: 1234", "Varenummer: 55", "HP SW version: 11",
                                   "NP SW version: 12", "BT SW version: 13", "Config File: /pkg/config.fwc",
                                   "Number of files: 11", "Filename: 1234_a.bin, CRC32: 10, Filesize: 3",
                                   "Filename: b.bin, CRC32: 11, Filesize: 5", "File1 Address: 131072",
                                   "flashWrite.json status-> 0", "Trys: 0", "Starting stream...",
                                   "Writing file1 to stream...", "Write Success", "closing stream...",
                                   "Stream Closed", "File2 Address: 131072", "flashWrite.json status-> 0",
                                   "Trys: 0", "Starting stream...", "Writing file2 to stream...",
                                   "Write Success", "closing stream...", "Stream Closed", "Everything OK",
                                   "Restarting Device in Update mode", "Update mode started, please wait...",
                                   "CRC test resultat: 0", "Update done!"));
    const std::string log = okLog + "02-03-2026080019_410000000001.log";
    EXPECT_EQ(OnlyLog(), log);
    std::string text;
    for (const auto& line : lines)
        text += line + "\r\n";
    EXPECT_EQ(Files.Read(log), text);
    EXPECT_EQ(Slept(), 2 * 2010 + 10000 + 5000);
    EXPECT_EQ(std::string(Library.Written.begin(), Library.Written.end()), "abchello");
    EXPECT_EQ(UpdateStatus.LabUpdatePhase.Caption(), "Update succeeded");
    EXPECT_EQ(UpdateStatus.LabUpdateElapsed.Caption(), "Elapsed 0:00:19");
}

TEST_F(TFirmwareUpdateTest, WhatIsSentOverEachRoute) {
    const std::string stream = "prepare 1,3,10; flash 131072,3";
    const std::string prepared = "prepare 1,3,10; ";
    const std::string display = prepared + "15; 16; 5; 6; 7; 14; 8 #1 x3; 8 #2-16 x0; 8 #17 x3; 11";
    const std::string target = prepared + "15; 5; 7; 14; 8 #1 x3; 8 #2-16 x0; 8 #17 x3";
    struct TCase {
        const char* Route;
        std::string First, Repeat;
    };
    for (const auto& test : std::vector<TCase>{{"0:0", stream, stream},
                                               {"0:2", "7; 14; " + stream, stream},
                                               {"1:0", "main", "main"},
                                               {"1:1", display, display},
                                               {"1:2", target, ""},
                                               {"1:3", "", ""},
                                               {"2:2", "7; 14; " + stream, ""},
                                               {"2:0", stream, "main"},
                                               {"2:1", stream, display},
                                               {"2:3", "", ""},
                                               {"3:0", "", ""}}) {
        SCOPED_TRACE(test.Route);
        Package("1", "VersionFName1:1:11\nX_Transfer:1:" + std::string(test.Route) + "\n");
        CrcResults({"1", "1", "1", "1", "0"}); // once
        Upload.RPCPacketNumber = 0;
        EXPECT_TRUE(Run());
        int number = 0;
        const auto expected = [&](const std::string& sent) {
            if (sent != "main")
                return sent;
            // The main processor's packets go on counting.
            const std::string first = std::to_string(number);
            number += 17;
            return prepared + "1; 2 #" + first + " x3; 2 #" + std::to_string(number - 16) + "-" +
                   std::to_string(number - 2) + " x0; 2 #" + std::to_string(number - 1) + " x3";
        };
        const std::string check = "; admin 65578; ping; read 1003,1,0";
        const std::string reads = "; read 1003,1,0; read 1003,1,0; read 1003,1,0";
        const std::string first = expected(test.First);
        const std::string repeat = expected(test.Repeat);
        EXPECT_EQ(TakeWire(), "ping" + (first.empty() ? "" : "; " + first) + check + reads +
                                  (repeat.empty() ? "" : "; " + repeat) + check);
        EXPECT_THAT(memoDebug.Lines(), Contains("CRC error in file 1 retrying"));
    }
}

TEST_F(TFirmwareUpdateTest, WhatEndsItEarly) {
    struct TCase {
        const char* Name;
        std::function<void()> Change;
        std::string Message; // empty: none
        bool Log = true;
        std::string Wire = "ping";
    };
    const std::string config = Files.Read("/pkg/config.fwc");
    const auto ping = Ping;
    for (const auto& test : std::vector<TCase>{
             {"no answer", [this] { Ping.reset(); }, "Device is not available"},
             {"refused", [this] { Ping = R"({"error":{"body":"not now"}})"; }, "not now"},
             {"no update status",
              [this] { Files.Put(Paths.plsfile, "[NabtoSection]\nDF_HPM_SETPKTNUM=x\n"); }, "", false},
             {"no package", [this] { CurrentUpdateSWFile.clear(); }, "Unable to open file"},
             {"package gone", [this] { Files.Remove("/pkg/config.fwc"); },
              "Cannot read /pkg/config.fwc: No such file or directory"},
             {"other model", [this] { Pong("34", 11, 12, 13); },
              "Firmware filename and controller model are not equal Firmware download will abort\n\rModel : "
              "34 "
              "Filename : 1234_a.bin"},
             {"image gone", [this] { Files.Remove("/pkg/b.bin"); },
              "Cannot read /pkg/b.bin: No such file or directory", true,
              "ping; prepare 1,3,10; flash 131072,3; prepare 2,5,11; flash 131072,5"},
             {"refused by the target",
              [this] {
                  Package("11", "X_Transfer:1:1:2\n");
                  Reply("15", {6});
              },
              "", true, "ping; prepare 1,3,10; 15"},
             {"pre-erase refused",
              [this] {
                  Package("1", "X_Transfer:1:2:2\n");
                  Reply("7", {6});
              },
              "", true, "ping; 7; 12; 13"},
         }) {
        SCOPED_TRACE(test.Name);
        Nabto.errormessage.clear();
        test.Change();
        if (!test.Message.empty())
            Dialogs.ExpectMessage(test.Message);
        EXPECT_FALSE(Run());
        EXPECT_EQ(TakeWire(), test.Wire);
        EXPECT_EQ(Files.List("/app/log/userlog", "FW-Update_Error_*").size(), test.Log ? 1U : 0U);
        EXPECT_FALSE(UpdateStatus.Running() || Use.Taken());
        EXPECT_EQ(UpdateStatus.LabUpdatePhase.Caption(), "Update failed");
        for (const auto& name : Files.List("/app/log/userlog", "*"))
            Files.Remove("/app/log/userlog/" + name);
        Ping = ping;
        Files.Put(Paths.plsfile, "[NabtoSection]\nDF_HPM_SETPKTNUM=1000\n");
        Files.Put("/pkg/config.fwc", config);
        Files.Put("/pkg/b.bin", "hello");
        CurrentUpdateSWFile = "/pkg/config.fwc";
    }
}

TEST_F(TFirmwareUpdateTest, PackagesThatAreOdd) {
    Files.Put("/pkg/config.fwc", "Number of files: 1\n");
    EXPECT_THROW(Run(), EListError);
    Files.Put("/pkg/config.fwc", "Filename: a\nx\n");
    EXPECT_THROW(Run(), EConvertError);
    EXPECT_THAT(Files.List("/app/log/userlog", "*"), IsEmpty());

    // A first file without a name passes for any model; a mask too short leaves files out, and says so.
    Files.Put("/pkg/config.fwc", "Filename:\n1\n1\nFilename: b.bin\n1\n4\nNumber of files: 0\n");
    EXPECT_TRUE(Run());
    EXPECT_EQ(TakeWire(), "ping; admin 42; ping; read 1003,1,0");
    EXPECT_THAT(memoDebug.Lines(), Contains("No digit for file 2, it is left out"));

    // A size that does not fit: nothing goes, the device is left to find out.
    Package("11", "VersionFName1:1:11\nVersionFName1:2:11\n");
    Files.Put("/pkg/b.bin", "hell");
    EXPECT_TRUE(Run());
    EXPECT_THAT(memoDebug.Lines(), Contains("File2 has 4 bytes, not 5: nothing is sent"));
    EXPECT_EQ(std::string(Library.Written.begin(), Library.Written.end()), "abc");

    // Once the device has got something there is a log, whatever ended the run.
    Package("11", "X_Transfer:2:1:2\n");
    streamDelayEdit.SetText("soon");
    EXPECT_THROW(Run(), EConvertError);
    const auto names = Files.List("/app/log/userlog", "FW-Update_Error_*");
    ASSERT_EQ(names.size(), 1U);
    EXPECT_THAT(Files.Read("/app/log/userlog/" + names[0]),
                EndsWith("Start write filedata\r\n'soon' is not a valid integer value\r\n"));
    EXPECT_FALSE(UpdateStatus.Running() || Use.Taken());
}

TEST_F(TFirmwareUpdateTest, RoundsUntilTheImagesAreGood) {
    struct TCase {
        std::deque<std::string> Results;
        const char* Mask;
        bool Success;
        int Rounds, Reads;
        std::string Again; // files sent again
    };
    for (const auto& test : std::vector<TCase>{
             {{"0"}, "11", true, 1, 1, ""},
             {{"256"}, "11", true, 1, 1, ""},
             {{"2", "2", "0"}, "11", true, 1, 3, ""},
             {{"2", "2", "2", "3", "0"}, "11", true, 2, 5, "12"},
             {{"2", "2", "2", "2", "1", "1", "1", "1", "0"}, "11", true, 3, 9, "21"},
             {{"2"}, "21", true, 1, 4, ""}, // the second file is not verified
             {{"1"}, "11", false, 5, 20, "11111"},
             {{"-1"}, "1", false, 5, 20, "11111"},
             {{"4"}, "11", true, 1, 4, ""},       // of no file
             {{"\"x\""}, "11", false, 5, 20, ""}, // unknown is not good
             {{"\"x\"", "", "0"}, "11", true, 1, 3, ""},
             {{"\"x\""}, "22", true, 1, 4, ""},
         }) {
        SCOPED_TRACE(test.Results.front());
        Package(test.Mask, "VersionFName1:1:11\nVersionFName2:2:12\n");
        CrcResults(test.Results);
        EXPECT_EQ(Run(), test.Success);
        const auto lines = TakeLines();
        EXPECT_EQ(std::ranges::count(lines, "Everything OK"), test.Rounds);
        EXPECT_EQ(std::ranges::count_if(lines, [](auto& l) { return l.starts_with("CRC test resultat: "); }),
                  test.Reads);
        std::string again;
        for (const auto& line : lines)
            if (line.starts_with("CRC error in file "))
                again += line[18];
        EXPECT_EQ(again, test.Again);
        EXPECT_EQ(std::ranges::count(Time.Sleeps, 500),
                  (test.Rounds * 10000 + test.Reads * 5000) / 500 +
                      4 * std::ranges::count_if(lines, [](auto& l) { return l.starts_with("Trys"); }));
        EXPECT_EQ(lines.back(), "Update done!");
        EXPECT_THAT(OnlyLog(), testing::StartsWith(test.Success ? okLog : errorLog));
        Files.Remove(OnlyLog());
    }
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
             {"all right", "1234", "11", "VersionFName1:1:11\n" + second, 0, false},
             {"first wrong, second right", "1234", "11", "VersionFName1:1:12\n" + second, 1, false},
             {"first wrong, second not compared", "1234", "11", "VersionFName1:1:12\n", 2, true},
             {"second wrong", "1234", "11", "VersionFName2:1:12\nVersionFName2:2:13\n", 1, false},
             {"unknown name", "1234", "11", "VersionFName4:1:11\n" + second, 1, true},
             {"none at all", "1234", "11", "X", 0, true},
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

TEST_F(TFirmwareUpdateTest, ADeviceIsAwaited) {
    const auto back = Ping;
    std::int64_t restarted = 0;
    OnExchange = [&] {
        if (Library.Calls.back().find("admincmd") != std::string::npos) {
            Ping.reset();
            restarted = Time.Milliseconds();
            Time.After(40000, [&] { Ping = back; });
        }
    };
    bool ticked = false;
    Time.After(20000, [&] { ticked = Use.Taken(); }); // timers go on
    EXPECT_TRUE(Run());
    EXPECT_TRUE(ticked);
    EXPECT_EQ(Time.Milliseconds() - restarted, 101 * 500 + 5000);
    EXPECT_EQ(UpdateStatus.LabUpdateElapsed.Caption(), "Elapsed 0:01:09");
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

TEST_F(TFirmwareUpdateTest, ALogThatCannotBeSaved) {
    Files.Room = 0;
    Dialogs.ExpectMessage("Cannot write " + okLog +
                          "02-03-2026080019_410000000001.log: No space left on device");
    EXPECT_TRUE(Run());
    EXPECT_THAT(Files.List("/app/log/userlog", "*"), IsEmpty());
}

// Closed at any moment, an update ends at once, as a failure, and keeps its log.
TEST_F(TFirmwareUpdateTest, TheProgramIsClosedInTheMiddle) {
    Package("11", "VersionFName1:1:11\nA_Transfer:1:1:1\nVersionFName3:2:13\n");
    CrcResults({"2", "2", "2", "2", "0"});
    const auto crc = OnExchange;
    EXPECT_TRUE(Run());
    const int all = Exchanges;
    Files.Remove(OnlyLog());
    for (int n = 1; n <= all; ++n) {
        SCOPED_TRACE(n);
        Open = true;
        Exchanges = 0;
        CrcResults({"2", "2", "2", "2", "0"});
        OnExchange = [this, n, counted = OnExchange] {
            counted();
            Open = Exchanges < n;
        };
        EXPECT_FALSE(Run());
        EXPECT_LE(Exchanges, n + 1); // an open stream is closed
        EXPECT_EQ(memoDebug.Lines().back(), "The program was closed during the update");
        EXPECT_THAT(OnlyLog(), testing::StartsWith(errorLog));
        Files.Remove(OnlyLog());
    }
    EXPECT_FALSE(Run()); // closed before
    EXPECT_THAT(Files.List("/app/log/userlog", "*"), IsEmpty());
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

// Its test is the former image's where no road has led.
TEST(UpdateEvidence, WantsARoadForAVerifiedImage) {
    TFirmwarePackage package{"1", 1, {TUpdateFile{}}};
    TUpdateEvidence evidence(package);
    evidence.NoteRestart(true, true);
    evidence.NoteResult(0);
    EXPECT_EQ(evidence.Judge(true), EUpdateVerdict::ImageNotTaken);
    EXPECT_EQ(evidence.Judge(false), EUpdateVerdict::Good);
    evidence.NoteTaken(0, false);
    EXPECT_EQ(evidence.Judge(true), EUpdateVerdict::Good);
}

} // namespace

} // namespace tidewell::test
