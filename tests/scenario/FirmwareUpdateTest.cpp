#include "core/Guard.h"
#include "core/KvSupport.h"
#include "core/TextFile.h"
#include "scenario/ProgramFixture.h"
#include "sim/controller/Crc32.h"
#include "support/WireText.h"

#include <gmock/gmock.h>

#include <optional>

namespace tidewell::test {
namespace {

using testing::AnyOf;
using testing::StartsWith;

constexpr const char* packageFile = "/t/pkg/config.fwc";
constexpr const char* successText = "Download success Device is online again";
constexpr const char* failureText = "Error during update!";

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
            Dialogs.ExpectMessage(text);
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

    // An update with these faults of the controller, rows of a simulation.
    void Update(const std::string& faults = {}) {
        Nabto.Configure(ParseSimulation("[Simulation]\nControllers=a\nDomain=hv.example\n[Controller a]\n"
                                        "Id=410000000001\nModel=30021\nDevicenumber=7\nVersion HP=214\n"
                                        "[Service a]\nImage 1=0xA10000; room=8192; version=Version HP\n"
                                        "Image 2=0xA20000; room=8192\nImage 3=0xA30000; room=8192\n"
                                        "Image 4=0xA40000; room=8192\nCrcResult=903\n[Faults a]\n" +
                                            faults,
                                        "simulation"));
        for (const std::string& name : Logs())
            Files.Remove("/t/log/userlog/" + name);
        Log.clear();
        Libraries.Calls.clear();
        Boxes.clear();
        Exchanges = 0;
        Started = Time.Milliseconds();
        Driver().Upload.RPCPacketNumber = 0; // as in a new run of the program
        Dialogs.ExpectOpenFile("Open", packageFile);
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
    std::vector<std::string> Boxes;
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
    const std::string main = "1:0";
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

} // namespace
} // namespace tidewell::test
