#include "core/Guard.h"
#include "core/KvSupport.h"
#include "core/TextFile.h"
#include "scenario/ProgramFixture.h"
#include "sim/controller/Firmware.h"
#include "support/WireText.h"

#include <gmock/gmock.h>

#include <optional>

namespace tidewell::test {
namespace {

constexpr const char* packageFile = "/t/pkg/config.fwc";
constexpr const char* successText = "Download success Device is online again";
constexpr const char* failureText = "Error during update!";
constexpr const char* stopQuestion = "Stopping the update can leave the controller half updated. Stop it?";

// One image of a package that a test makes.
struct TImage {
    const char* Route; // TransferType:RPCModel
    std::size_t Size;
};

// "a; [b; c] (3 times)" for a, b, c, b, c, b, c.
std::string Collapsed(const std::vector<std::string>& texts, const std::string& separator) {
    std::vector<std::string> shorter;
    for (std::size_t i = 0; i < texts.size();) {
        std::size_t length = 1;
        std::size_t times = 1;
        for (std::size_t tried = 1; i + 2 * tried <= texts.size(); ++tried) {
            const auto at = [&](std::size_t repeat) {
                return texts.begin() + static_cast<std::ptrdiff_t>(i + repeat * tried);
            };
            std::size_t count = 1;
            while (i + (count + 1) * tried <= texts.size() && std::equal(at(0), at(1), at(count)))
                ++count;
            if (count > 1 && count * tried > length * times) {
                length = tried;
                times = count;
            }
        }
        const std::vector<std::string> block(texts.begin() + static_cast<std::ptrdiff_t>(i),
                                             texts.begin() + static_cast<std::ptrdiff_t>(i + length));
        shorter.push_back((length > 1 ? "[" : "") + Join(block, separator) + (length > 1 ? "]" : "") +
                          (times > 1 ? " (" + std::to_string(times) + " times)" : ""));
        i += length * times;
    }
    return Join(shorter, separator);
}

void ReplaceAll(std::string& text, const std::string& from, const std::string& to) {
    for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
}

// Firmware updates through the whole program. Every message box is noted and answered. Each update meets a
// controller that is new.
class TFirmwareUpdateScenario : public TProgramFixture {
  protected:
    void SetUp() override {
        Begin();
        Nabto.OnCall = [this, before = Nabto.OnCall](const std::string& call) {
            before(call);
            if (call.starts_with("nabtoRpcInvoke") || call.starts_with("nabtoStream"))
                ++Exchanges;
            if (OnExchange)
                OnExchange();
        };
    }
    void TearDown() override { Close(); }
    void Begin() {
        Start();
        Dialogs.OnMessage = [this](const std::string& text) {
            Boxes.push_back(text);
            Dialogs.ExpectMessage(text, text == stopQuestion ? StopAnswer : EModalResult::Ok);
        };
    }

    static std::string Image(std::size_t number, std::size_t size) {
        std::string image("FWI1\0\0\0\xD7", 8); // version 215
        while (image.size() < size)
            image += static_cast<char>('a' + (image.size() + number) % 26);
        image.resize(size);
        return image;
    }
    void Package(const std::string& mask, const std::vector<TImage>& images) {
        Images.clear();
        std::string config = "Number of files: " + mask + "\n";
        std::string transfer;
        for (std::size_t i = 0; i < images.size(); ++i) {
            const std::string number = std::to_string(i + 1);
            const std::string name = "30021_" + number + ".bin";
            Images.push_back(Image(i + 1, images[i].Size));
            Files.Put("/t/pkg/" + name, Images.back());
            config += "Filename: " + name + "\nCRC32: " + std::to_string(Crc32(Images.back())) +
                      "\nSize: " + std::to_string(images[i].Size) + "\n";
            transfer +=
                "VersionFName1:" + number + ":215\nFile_Transfer:" + number + ":" + images[i].Route + "\n";
        }
        Files.Put(packageFile, config);
        Files.Put("/t/pkg/pc_cfg.fwc", transfer);
    }

    TNabtoDevice& Driver() { return Program->NabtoDevice; }
    TSimulatedController& Controller() { return *Nabto.FindController(Device); }
    bool Holds(std::size_t image) {
        const auto bytes = Controller().Service.Firmware().Bytes(static_cast<std::int32_t>(image + 1));
        return bytes.size() == Images[image].size() && Crc32(bytes) == Crc32(Images[image]);
    }
    std::vector<std::string> Logs() const { return Files.List("/t/log/userlog", "FW-Update_*"); }

    // A controller as from the factory, with these faults, rows of a simulation.
    void NewController(const std::string& faults = {}) {
        const std::string controller =
            "Id=410000000001\nModel=30021\nDevicenumber=20450\nVersion HP=214\nVersion NP=107\n";
        Nabto.Configure(ParseSimulation("[Simulation]\nControllers=a\nDomain=hv.example\n[Controller a]\n" +
                                            controller + (WithoutBT ? "" : "Version HBDE=31\n") +
                                            "[Service a]\nImage 1=0xA10000; room=8192; version=Version HP\n"
                                            "Image 2=0xA20000; room=8192\nImage 3=0xA30000; room=8192\n"
                                            "Image 4=0xA40000; room=8192\nCrcResult=903\n[Faults a]\n" +
                                            faults,
                                        "simulation"));
    }
    void Update(const std::string& faults = {}) {
        NewController(faults);
        for (const std::string& name : Logs())
            Files.Remove("/t/log/userlog/" + name);
        Log.clear();
        Libraries.Calls.clear();
        Boxes.clear();
        Exchanges = 0;
        Started = Time.Milliseconds();
        Driver().Upload.RPCPacketNumber = 0; // as in a new run of the program
        Dialogs.ExpectOpenFile("Open", Choice);
        RunGuarded(Dialogs, [this] { Driver().BtnUpdateClick(); });
    }
    // What the last update did, with the lines behind those that tell of device and package. What a stream
    // and a restart leave there when all goes well has a short form.
    std::string Outcome() {
        const auto& lines = Driver().memoDebug.Lines();
        const auto last = std::find_if(lines.rbegin(), lines.rend(), [](const std::string& line) {
            return line.starts_with("Filename: ");
        });
        std::vector<std::string> memo(last.base(), lines.end());
        for (std::string& line : memo) {
            if (line.find(" ERROR-> ") == 8)
                line.replace(0, 8, "hh:mm:ss");
            ReplaceAll(line, "\r\n", "<CR><LF>");
        }
        std::string text = "wire: " + Collapsed(WireText(Libraries.Calls), "; ") + "\n";
        if (!memo.empty())
            text += "  " + Collapsed(memo, "\n  ") + "\n";
        ReplaceAll(
            text,
            "  Starting stream...\n  Writing file1 to stream...\n  Write Success\n  closing stream...\n"
            "  Stream Closed\n",
            "  (streamed)\n");
        ReplaceAll(
            text,
            "Everything OK\n  Restarting Device in Update mode\n  Update mode started, please wait...\n",
            "(restarted)\n");
        if (!Boxes.empty())
            text += "box: " + Collapsed(Boxes, "\nbox: ") + "\n";
        for (const std::string& name : Logs()) {
            text += "log: " + name.substr(0, name.rfind('_', name.rfind('_') - 1)) + "\n";
            EXPECT_EQ(ReadLines(Files, "/t/log/userlog/" + name), SplitLines(Join(lines, "\n")));
        }
        text += "took: " + std::to_string(Time.Milliseconds() - Started) + " ms\nwhole:";
        for (std::size_t i = 0; i < Images.size(); ++i)
            text += Holds(i) ? " " + std::to_string(i + 1) : "";
        return text + "\n\n";
    }

    std::vector<std::string> Images;
    std::optional<std::filesystem::path> Choice = packageFile; // in the file dialog
    bool WithoutBT = false;                                    // a controller that does not tell that version
    std::vector<std::string> Boxes;
    EModalResult StopAnswer = EModalResult::Yes;
    std::int64_t Started = 0;         // the last update, in virtual ms
    std::function<void()> OnExchange; // before each call of the library
    int Exchanges = 0;
};

TEST_F(TFirmwareUpdateScenario, EveryRouteAndItsRepeat) {
    std::string text;
    for (const char* route : {"0:0", "0:2", "1:0", "1:1", "1:2", "1:3", "2:0", "2:1", "2:2", "2:3", "3:0"}) {
        Package("1", {{route, 300}});
        Update("BadImage=1; times=1");
        text += "== " + std::string(route) + "\n" + Outcome();
    }
    ExpectGolden("firmware_update/routes.txt", text);
}

TEST_F(TFirmwareUpdateScenario, FaultsAtEveryStep) {
    struct TCase {
        const char* Name;
        const char* Route;
        const char* Faults;
    };
    std::string text;
    for (const auto& test : std::vector<TCase>{
             {"the first ping", "0:0", "NoAnswer=on; query=ping.json; times=1"},
             {"the first ping refused", "0:0", "Error=busy; query=ping.json; times=1"},
             // preparation
             {"preparation refused once", "1:0", "Refuse=1; query=prepareUpdate.json; times=1"},
             {"preparation lost", "1:1", "NoAnswer=on; query=prepareUpdate.json"},
             {"preparation refused five times", "0:0", "Error=no room; query=prepareUpdate.json; times=5"},
             {"preparation carried out, its answer lost", "0:0",
              "LostAnswer=on; query=prepareUpdate.json; times=1"},
             // the stream road
             {"flash refused once", "0:0", "Refuse=3; query=flashWrite.json; times=1"},
             {"flash refused five times", "0:0", "Refuse=3; query=flashWrite.json; times=5"},
             {"stream not opened", "0:0", "NoAnswer=on; query=stream; times=1"},
             {"stream full", "0:0", "BufferFull=on; times=3"},
             {"stream closed in the middle", "0:0", "BrokenStream=700; times=2"},
             {"stream silent from the second piece on", "0:0", "NoAnswer=on; query=stream; skip=2; times=1"},
             {"no stream at all", "0:0", "NoAnswer=on; query=stream"},
             {"restart between two tries refused", "0:0",
              "NoAnswer=on; query=stream; times=1\nRefuse=1; query=admincmd.json; times=2"},
             {"pre-erase refused", "0:2", "Refuse=6; state=7"},
             {"pre-erase lost twice", "0:2", "NoAnswer=on; state=7; times=2"},
             {"pre-erase busy for ever", "0:2", "Refuse=7; state=14"},
             {"no stream behind the pre-erase", "0:2", "NoAnswer=on; query=stream; times=5"},
             // the main processor
             {"main: not possible", "1:0", "Refuse=1; state=1"},
             {"main: asked twice", "1:0", "NoAnswer=on; state=1; times=1"},
             {"main: packet refused", "1:0", "Refuse=3; state=2; skip=1; times=1"},
             {"main: wrong echo", "1:0", "WrongEcho=1; state=2; skip=1; times=1"},
             {"main: packet lost", "1:0", "NoAnswer=on; state=2; skip=1; times=1"},
             {"main: answer of a packet lost", "1:0", "LostAnswer=on; state=2; skip=1; times=1"},
             {"main: packet of the last part refused", "1:0", "Refuse=3; state=2; skip=17; times=1"},
             {"main: link lost for all packets", "1:0", "NoAnswer=on; state=2"},
             // the display
             {"display: reset refused", "1:1", "Refuse=6; state=15"},
             {"display: reset lost, then done", "1:1", "NoAnswer=on; state=15; times=2"},
             {"display: reset never through", "1:1", "Refuse=3; state=16"},
             {"display: init lost", "1:1", "NoAnswer=on; state=5"},
             {"display: check refused", "1:1", "Refuse=6; state=6"},
             {"display: check lost twice", "1:1", "NoAnswer=on; state=6; times=2"},
             {"display: pre-erase busy", "1:1", "Refuse=7; state=7"},
             {"display: pre-erase refused", "1:1", "Refuse=6; state=14"},
             {"display: packet refused", "1:1", "Refuse=3; state=8; skip=1; times=1"},
             {"display: packets refused for good", "1:1", "Refuse=3; state=8; times=11"},
             {"display: wrong echo", "1:1", "WrongEcho=1; state=8; skip=1; times=1"},
             {"display: wrong echoes for good", "1:1", "WrongEcho=1; state=8; skip=1; times=11"},
             {"display: packet lost", "1:1", "NoAnswer=on; state=8; times=1"},
             {"display: packet of the last part lost", "1:1", "NoAnswer=on; state=8; skip=16; times=1"},
             {"display: program not started", "1:1", "NoAnswer=on; state=11; times=1"},
             // other targets
             {"target: reset refused", "1:2", "Refuse=6; state=15"},
             {"target: init lost", "1:2", "NoAnswer=on; state=5; times=1"},
             {"target: pre-erase refused", "1:2", "Refuse=6; state=7"},
             {"target: pre-erase not through", "1:2", "Refuse=7; state=14"},
             {"target: packet refused", "1:2", "Refuse=3; state=8; skip=1; times=1"},
             {"target: packet lost", "1:2", "NoAnswer=on; state=8; skip=1; times=1"},
             {"target: all packets lost", "1:2", "NoAnswer=on; state=8"},
             // restart and test
             {"restart lost", "0:0", "NoAnswer=on; query=admincmd.json; times=1"},
             {"restart refused five times", "0:0", "Refuse=1; query=admincmd.json"},
             {"answer of the restart lost", "0:0", "LostAnswer=on; query=admincmd.json"},
             {"a restart of two minutes", "0:0", "LateReturn=2m"},
             {"image bad twice", "0:0", "BadImage=1; times=2"},
             {"image bad for good", "1:0", "BadImage=1"},
             {"result lost once", "0:0", "NoAnswer=on; query=setpointReadValue.json; times=1"},
             {"result lost four times", "0:0", "NoAnswer=on; query=setpointReadValue.json; times=4"},
             {"result refused", "0:0", "Error=no; query=setpointReadValue.json"},
             {"two results", "0:0", "WrongCount=1; query=setpointReadValue.json; times=1"},
             {"no result", "0:0", "WrongCount=-1; query=setpointReadValue.json; times=1"},
             {"nonsense for a result", "0:0", "Garbage=0; query=setpointReadValue.json; times=1"},
         }) {
        Package("1", {{test.Route, 900}});
        Update(test.Faults);
        text += "== " + std::string(test.Name) + " (" + test.Route + ")\n" + Outcome();
    }
    ExpectGolden("firmware_update/faults.txt", text);
}

TEST_F(TFirmwareUpdateScenario, PackagesThatAreBad) {
    Driver().CurrentUpdateSWFile.clear();
    const std::string a = "Filename: 30021_1.bin\n";
    std::string text;
    std::string strictText;
    struct TCase {
        const char* Name;
        std::function<void()> Change; // of a good package of two files
    };
    const auto config = [this](const std::string& lines) {
        return [this, lines] { Files.Put(packageFile, lines); };
    };
    const auto transfer = [this](const std::string& lines) {
        return [this, lines] { Files.Put("/t/pkg/pc_cfg.fwc", lines); };
    };
    const std::vector<TCase> cases{
        {"no file name", config("Number of files: 1\nCRC32: 1\nSize: 300\n")},
        {"an empty one", config("")},
        {"no configuration file", [this] { Files.Remove(packageFile); }},
        {"a checksum that is no number", config(a + "CRC32: 12 34\nSize: 300\n")},
        {"ends behind the checksum", config("Number of files: 1\n" + a + "CRC32: 1\n")},
        {"a mask that is too long", config("Number of files: 1" + std::string(40, '0') + "\n")},
        {"for another model", config("Number of files: 1\nFilename: AB30021_1.bin\n1\n1\n")},
        {"mask shorter than the list", [this] { Edit(packageFile, "files: 11", "files: 1"); }},
        {"mask of other digits", [this] { Edit(packageFile, "files: 11", "files: 30"); }},
        {"size above that of the file", [this] { Edit(packageFile, "Size: 300", "Size: 301"); }},
        {"size below it", [this] { Edit(packageFile, "Size: 200", "Size: 150"); }},
        {"another checksum", [this] { Edit(packageFile, "CRC32: ", "CRC32: 1"); }},
        {"first image missing", [this] { Files.Remove("/t/pkg/30021_1.bin"); }},
        {"second image missing", [this] { Files.Remove("/t/pkg/30021_2.bin"); }},
        {"wrong fields and numbers beside the package",
         transfer("VersionFName1:1\nVersionFName1:3:215\nVersionFName1:one:215\nA_Transfer:0:1:0\n"
                  "A_Transfer:2:1\nA_Transfer:1:1:0:\nA_Transfer:9999:1:0\n")},
        {"numbers that are none beside it", transfer("VersionFName1:1:x\nA_Transfer:1:one:two\n")},
        {"a version that the controller does not tell",
         transfer("VersionFName9:1:215\nVersionFName1:2:215\n")},
        {"nothing beside it", [this] { Files.Remove("/t/pkg/pc_cfg.fwc"); }},
        {"no choice", [this] { Choice.reset(); }},
        {"no update status", [this] { Edit(Profile, "DF_HPM_SETPKTNUM=900", "DF_HPM_SETPKTNUM=0"); }},
        {"full disk", [this] { Files.Room = 0; }},
        {"other letters",
         [this] {
             Files.Put("/t/pkg/PC_Cfg.FWC", "; remarks: none\nHeading\nX_Transfer:2:1:1\n");
             Files.Remove("/t/pkg/pc_cfg.fwc");
         }},
        {"all at once",
         [this] {
             Files.Put(packageFile, "Number of files: 111\nFilename: AB30021_1.bin\n1\nx\n"
                                    "Filename: 30021_2.bin\nCRC32: 1\nSize: 1\n");
             Files.Put("/t/pkg/pc_cfg.fwc", "VersionFName1:1:2x\nX_Transfr:1:1:0\nVersionFName1 1\n");
         }},
    };
    for (const bool strict : {false, true})
        for (const TCase& test : cases) {
            Program->Extensions.ServiceStrict = strict;
            const TMemoryFiles good = Files;
            Package("11", {{"0:0", 300}, {"1:0", 200}});
            test.Change();
            Update();
            (strict ? strictText : text) += "== " + std::string(test.Name) + "\n" + Outcome();
            Files = good;
            Choice = packageFile;
        }
    ExpectGolden("firmware_update/packages.txt", text);
    ExpectGolden("firmware_update/packages_strict.txt", strictText);
}

TEST_F(TFirmwareUpdateScenario, StrictlyItClaimsOnlyWhatTheControllerSaid) {
    const std::string notSeen = "The restart of the controller was not seen";
    const std::string unknown = Language("FirmwareUpdate", "ResultUnknown");
    const std::string notTaken = "The controller did not take the whole of file 1";
    const std::string otherVersion = "Automatick Software verification failed, please verify manually";
    const std::string lost = "NoAnswer=on; query=setpointReadValue.json";
    const std::string old = "OldResult=on\n";
    std::string noStream;
    for (int i = 0; i < 5; ++i)
        noStream += "No connection to the device|";
    struct TCase {
        const char* Name;
        const char* Mask;
        const char* Route;
        std::string Faults;
        std::string Boxes; // but the last
        bool Success = false;
        int Rounds = 1;
        int Prepared = 1;
        const char* Version = "VersionFName1:1:215";
    };
    for (const auto& test : std::vector<TCase>{
             {"restart refused", "1", "0:0", old + "Refuse=1; query=admincmd.json", notSeen, false, 5},
             {"restart lost once", "1", "0:0", old + "NoAnswer=on; query=admincmd.json; times=1", "", true,
              2},
             {"its answer lost", "1", "0:0", old + "LostAnswer=on; query=admincmd.json", "", true},
             {"1, 1, 1, lost", "1", "0:0", "BadImage=1; times=1\n" + lost + "; skip=3; times=1", otherVersion,
              true, 2, 2},
             {"no number in one round", "1", "0:0", lost + "; times=4", "", true, 2},
             {"no number in any", "1", "0:0", lost, unknown, false, 5},
             {"another version", "1", "0:0", "", otherVersion, false, 1, 1, "VersionFName1:1:216"},
             {"a version of no name", "1", "0:0", "", otherVersion, false, 1, 1, "VersionFName9:1:215"},
             {"one that is not told any more", "1", "0:0", "", otherVersion, false, 1, 1,
              "VersionFName3:1:31"},
             // What is not tested must have been taken.
             {"stream", "2", "0:2", "NoAnswer=on; query=stream; times=5", noStream + notTaken, false, 1, 9},
             {"main", "2", "1:0", "Refuse=3; state=2; skip=17; times=1", notTaken},
             {"display", "2", "1:1", "NoAnswer=on; state=8; skip=16; times=1", notTaken},
             {"display not started", "2", "1:1", "NoAnswer=on; state=11; times=1", notTaken},
             {"echoes", "2", "1:1", "WrongEcho=1; state=8; skip=1; times=11", notTaken},
             {"target", "2", "1:2", "NoAnswer=on; state=8; skip=16; times=1", notTaken},
             {"no road", "2", "3:0", "", notTaken, false, 1, 0},
             {"taken", "2", "1:2", lost, "", true},
             // A refusal explains no other query.
             {"unreachable", "1", "0:0", "NoAnswer=on; query=ping.json", "Device is not available", false, 0,
              0},
         }) {
        SCOPED_TRACE(test.Name);
        Program->Extensions.ServiceStrict = true;
        Program->Nabto.errormessage = "busy";
        Program->Nabto.versionBT = "31";
        Package(test.Mask, {{test.Route, 300}});
        Files.Put("/t/pkg/pc_cfg.fwc", std::string(test.Version) + "\nFile_Transfer:1:" + test.Route + "\n");
        WithoutBT = test.Version[12] == '3';
        Update(test.Faults);
        EXPECT_EQ(Boxes.back(), test.Success ? successText : failureText);
        Boxes.pop_back();
        EXPECT_EQ(Join(Boxes, "|"), test.Boxes);
        const auto wire = WireText(Libraries.Calls);
        const auto sent = [&wire](const char* kind) {
            return std::ranges::count_if(wire, [kind](auto& line) { return line.starts_with(kind); });
        };
        EXPECT_EQ(sent("admin 65578"), test.Rounds);
        EXPECT_EQ(sent("prepare"), test.Prepared);
        EXPECT_EQ(Logs().at(0).starts_with("FW-Update_OK_"), test.Success);
    }
}

TEST_F(TFirmwareUpdateScenario, EachWaitWithoutLimitCanBeLeft) {
    const auto calls = [this](const char* name) {
        return std::ranges::count_if(Libraries.Calls, [name](auto& call) { return call.starts_with(name); });
    };
    TButton& stop = Driver().UpdateStatus.ButUpdateStop;
    for (const auto& [route, faults] : std::vector<std::pair<const char*, const char*>>{
             {"0:0", "NoReturn=on"},
             {"0:0", "Refuse=1; query=prepareUpdate.json"},
             {"0:0", "BufferFull=on"},
             {"0:2", "NoAnswer=on; state=7"},
             {"0:2", "Refuse=3; state=14"},
             {"1:1", "NoAnswer=on; state=6"},
             {"1:1", "Refuse=3; state=7"},
             {"1:1", "Refuse=3; state=14"},
             {"1:2", "Refuse=3; state=14"},
         }) {
        SCOPED_TRACE(std::string(route) + " " + faults);
        for (const int minutes : {5, 10})
            Time.After(minutes * 60000, [&, minutes] {
                EXPECT_TRUE(Driver().UpdateStatus.Running() && stop.Visible());
                StopAnswer = minutes == 5 ? EModalResult::No : EModalResult::Yes;
                stop.Click();
                EXPECT_EQ(Boxes.back(), stopQuestion);
            });
        Package("1", {{route, 900}});
        EXPECT_FALSE(stop.Visible());
        Update(faults);
        EXPECT_LE(Time.Milliseconds() - Started, 602000);
        EXPECT_EQ(Boxes.back(), failureText);
        EXPECT_EQ(calls("nabtoStreamOpen"), calls("nabtoStreamClose"));
        EXPECT_FALSE(stop.Visible());
        EXPECT_EQ(Driver().UpdateStatus.LabUpdatePhase.Caption(), "Update stopped");
        ASSERT_EQ(Logs().size(), 1U);
        EXPECT_TRUE(Logs()[0].starts_with("FW-Update_Error_"));
        EXPECT_EQ(ReadLines(Files, "/t/log/userlog/" + Logs()[0]).back(),
                  "The update was stopped by the user");
        // The next one is not concerned.
        Update();
        EXPECT_EQ(Boxes.back(), successText);
    }
}

TEST_F(TFirmwareUpdateScenario, TheMaskTellsWhatIsSentAndTested) {
    for (const auto& [mask, sent, command, result] :
         std::vector<std::tuple<const char*, const char*, const char*, bool>>{
             {"0101", "13", "admin 327722", true},
             {"0201", "13", "admin 327722", true},
             {"1111", "1234", "admin 983082", true},
             {"0", "", "admin 42", true},
         }) {
        Package(mask, {{"0:0", 9}, {"0:0", 10}, {"0:0", 11}, {"0:0", 12}});
        Update("BadImage=3; times=1");
        std::string prepared;
        for (const std::string& sending : WireText(Libraries.Calls))
            if (sending.starts_with("prepare "))
                prepared += sending[8];
        const bool again = mask[1] == '1'; // the third file is tested and found bad
        EXPECT_EQ(prepared, std::string(sent) + (again ? "3" : ""));
        EXPECT_THAT(WireText(Libraries.Calls), testing::Contains(command));
        EXPECT_EQ(Boxes.back() == successText, result);
    }
}

// Cuts the link after each n-th exchange of an update.
class TCutUpdate : public TFirmwareUpdateScenario {
  protected:
    struct TCut {
        EFault Fault = EFault::NoAnswer; // or LostAnswer: what is asked is done all the same
        std::optional<std::size_t> Lost; // exchanges; nothing: from then on
        bool Again = false;              // every time that n exchanges have passed
    };
    // False when the update has not so many exchanges.
    bool UpdateCutAfter(int n, const TCut& cut, const std::string& faults) {
        bool struck = false;
        OnExchange = [&] {
            if (cut.Again ? Exchanges % (n + 1) != 0 : Exchanges != n + 1 || struck)
                return;
            struck = true;
            Controller().Faults.Add({.Kind = cut.Fault,
                                     .Number = 0,
                                     .Text = {},
                                     .When = {.ToMs = {},
                                              .Query = {},
                                              .Obj = {},
                                              .Address = {},
                                              .State = {},
                                              .Skip = 0,
                                              .Times = cut.Lost}});
            if (!cut.Lost) // nothing but the end of the program ends some waits
                Time.After(300000, [this, run = Runs] {
                    if (run == Runs && Driver().UpdateStatus.Running()) {
                        Program->CloseDown.AskBeforeClose = false;
                        Main().Close();
                    }
                });
        };
        Program->Extensions.ServiceStrict = Strict;
        Update(faults);
        OnExchange = nullptr;
        ++Runs;
        return struck;
    }
    // What the user is told, the log and the screen say the same, and no more than is true.
    void CheckClaim() {
        ASSERT_EQ(Logs().size(), 1U);
        const bool success = Logs()[0].starts_with("FW-Update_OK_");
        ++(success ? Successes : Failures);
        EXPECT_EQ(Driver().UpdateStatus.LabUpdatePhase.Caption(),
                  success ? "Update succeeded" : "Update failed");
        if (Application.IsTerminated) {
            ++Ended;
            EXPECT_FALSE(success);
            Program->Finish();
            Program.reset();
            NewController();
            Begin();
            return;
        }
        EXPECT_EQ(Boxes.back(), success ? successText : failureText);
        for (std::size_t i = 0; success && i < Images.size(); ++i)
            EXPECT_TRUE(Holds(i)) << "image " << i + 1;
    }

    bool Strict = false;
    int Runs = 0;
    int Successes = 0;
    int Failures = 0;
    int Ended = 0; // by closing the program
};

TEST_F(TCutUpdate, ClaimsSuccessOnlyForImagesThatAreWhole) {
    const auto unanswered = [](std::optional<std::size_t> lost, bool again = false) {
        return TCut{EFault::NoAnswer, lost, again};
    };
    const std::vector<TCut> cuts{unanswered(1),
                                 unanswered(3),
                                 unanswered(40),
                                 unanswered({}),
                                 unanswered(1, true),
                                 TCut{EFault::LostAnswer, 1, false},
                                 TCut{EFault::LostAnswer, 1, true}};
    struct TPackage {
        const char* Mask;
        std::vector<TImage> Images;
        const char* Faults;
    };
    for (const auto& [mask, images, faults] :
         {TPackage{"111", {{"1:0", 300}, {"0:2", 600}, {"1:1", 4100}}, ""},
          TPackage{
              "111", {{"1:2", 4100}, {"2:1", 90}, {"2:0", 600}}, "BadImage=2; times=1\nBadImage=3; times=1"},
          // Of images that are not tested, with the key, and a result that stands from before.
          TPackage{"222", {{"0:2", 600}, {"1:2", 4100}, {"1:1", 300}}, "OldResult=on"}}) {
        Strict = mask[0] == '2';
        Package(mask, images);
        for (std::size_t i = 0; i < cuts.size(); ++i)
            for (int n = 0; UpdateCutAfter(n, cuts[i], faults); ++n) {
                SCOPED_TRACE("cut " + std::to_string(i) + " after exchange " + std::to_string(n));
                CheckClaim();
                if (HasFailure())
                    return;
            }
    }
    EXPECT_GT(Successes, 100);
    EXPECT_GT(Failures, 100);
    EXPECT_GT(Ended, 30);
}

} // namespace
} // namespace tidewell::test
