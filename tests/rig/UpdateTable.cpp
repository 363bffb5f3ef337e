#include "rig/Journey.h"
#include "rig/UpdateClaim.h"
#include "rig/Wire.h"
#include "sim/controller/Firmware.h"

// Firmware updates with one thing wrong, in packages made for it. What a good one says stands in update.txt.
namespace tidewell::test {
namespace {

constexpr const char* choose = "click but_swupdate\nanswer pkg/config.fwc\n";
constexpr const char* leave = "run 5min click ButUpdateStop\nrun 10min click ButUpdateStop\n"
                              "click but_swupdate\nanswer pkg/config.fwc\nanswer No\nanswer Yes\n";
constexpr const char* strictly = "edit cfg/system_hushvane.inn + [Service]\n"
                                 "edit cfg/system_hushvane.inn + Strict=true\n";

std::string Image(std::size_t number, std::size_t size) {
    std::string image("FWI1\0\0\0\xD7", 8); // version 215
    while (image.size() < size)
        image += static_cast<char>('a' + (image.size() + number) % 26);
    image.resize(size);
    return image;
}

// The mask, then route and size of each image.
void PutPackage(TMemoryFiles& files, const std::string& text) {
    std::istringstream words(text);
    std::string mask, route, transfer;
    words >> mask;
    std::string config = "Number of files: " + mask + "\n";
    std::size_t size = 0;
    for (std::size_t i = 1; words >> route >> size; ++i) {
        const std::string number = std::to_string(i);
        const std::string name = "30021_" + number + ".bin";
        const std::string image = Image(i, size);
        files.Put("/t/pkg/" + name, image);
        config += "Filename: " + name + "\nCRC32: " + std::to_string(Crc32(image)) +
                  "\nSize: " + std::to_string(size) + "\n";
        transfer +=
            "VersionFName" + number + ":" + number + ":215\nX_Transfer:" + number + ":" + route + "\n";
    }
    files.Put("/t/pkg/config.fwc", config);
    files.Put("/t/pkg/pc_cfg.fwc", transfer);
}

// What is told often in a word or two.
std::string Shorter(std::string text) {
    for (const auto& [from, to] :
         {std::pair<std::string, std::string>{" 410000000001", ""},
          {"prepareUpdate ", "prepare "},
          {"setpointReadValue 903", "read"},
          {"FlashWriteNostreamV2 ", ""},
          {"FlashWriteNostream ", ""},
          {" #0 x1", ""}, // a command's block, and its payload
          {"StreamOpen, StreamWrite", "stream"},
          {"Stream", ""},
          {"flashWrite 10551296, stream", "stream"},
          {"flashWrite 10551296", "flash"},
          {"prepare 1, stream 300, Close", "streamed"},
          {"1, 2 #0-15 x256, 2 #16", "main"},
          {"15, 16 *3, 5, 6, 7, 14 *2", "ready"},
          {"8 #1-16 x256, 8 #17", "data"},
          {"admincmd 42", "restart"},
          {"admincmd 65578, ping *2, read", "test"},
          {"admincmd 196650, ping *2, read", "test both"},
          {"PacketNumber ", ""},
          {" DeInit and Abort upload status ->", " abort "},
          {"CRC test resultat: ", "result "},
          {"CRC error in file ", "wrong "},
          {"Restarting device and trying again, retrying...", "restarted"},
          {" retrying", ""},
          {"Automatick Software verification failed, please verify manually", "other version"},
          {"Some target software versions were missing, please verify manually after update", "no version"},
          {"Stopping the update can leave the controller half updated. Stop it?", "stop?"},
          {"The firmware package is not in order, so nothing is sent:", "Bad:"},
          {"The controller did not take the whole of", "not taken:"},
          {"\r", ""},
          {"\n", " "}})
        for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
            text.replace(at, from.size(), to);
    return text;
}

struct TOutcome {
    std::vector<std::string> Calls, Lines, Boxes;
    std::string Log;
    std::int64_t Took = 0;
};

TOutcome Run(const std::string& package, const std::string& steps) {
    auto cases = ParseJourney("== " + package + "\n" + steps);
    TJourney journey(cases[0]);
    PutPackage(journey.World.Files, package);
    TOutcome outcome;
    journey.World.OnExchange = [&outcome](const std::string& call) {
        if (call.find(" 410000000001") != call.npos || call.starts_with("Stream"))
            outcome.Calls.push_back(call.substr(0, call.find(',')));
    };
    std::int64_t started = -1;
    journey.OnDialog = [&] { // the first chooses the package
        if (started < 0) {
            started = journey.World.Time.Milliseconds();
            outcome.Calls.clear();
        }
    };
    journey.OnStep = [&] {
        outcome.Took = journey.World.Time.Milliseconds() - started;
        outcome.Lines = journey.World.Program->NabtoDevice.memoDebug.Lines();
        outcome.Boxes = journey.Boxes;
        EXPECT_EQ(FalseUpdateClaim(journey.World), "");
    };
    journey.Lenient = true;
    journey.Play();
    for (const std::string& name : journey.World.Files.List("/t/log/userlog", "FW-Update_*"))
        outcome.Log += name.substr(10, name.find('_', 10) - 10);
    return outcome;
}

// Shorter, and then what is repeated once.
std::string Folded(const std::vector<std::string>& texts) {
    const std::string text = Shorter(JoinCalls(texts));
    std::vector<std::string> parts;
    for (std::size_t at = 0, end = 0; end != text.npos; at = end + 2) {
        end = text.find(", ", at);
        parts.push_back(text.substr(at, end == text.npos ? end : end - at));
    }
    return JoinCalls(parts);
}

std::string Tell(const TOutcome& outcome, const std::vector<std::string>& usual) {
    std::vector<std::string> lines;
    for (std::string line : outcome.Lines) {
        if (line.find(" ERROR-> ") == 8)
            line.erase(0, 9);
        if (std::ranges::find(usual, line) == usual.end() && !line.starts_with("Filename: ") &&
            !line.starts_with("RPC File upload") &&
            std::ranges::none_of(outcome.Boxes, [&](auto& box) { return box.find(line) != box.npos; }))
            lines.push_back(line);
    }
    std::vector<std::string> boxes = outcome.Boxes;
    const bool success = outcome.Log == "OK";
    const char* const last = success ? "Download success Device is online again" : "Error during update!";
    if (!boxes.empty() && boxes.back() == last)
        boxes.pop_back();
    return Folded(outcome.Calls) + (lines.empty() ? "" : "; log: " + Folded(lines)) +
           (boxes.empty() ? "" : "; box: " + Folded(boxes)) + "; " +
           (outcome.Log.empty() ? "no log" : outcome.Log) + " " + std::to_string(outcome.Took);
}

// Package and fault, of the controller or a step of a journey. Told are exchanges; unusual lines of the log;
// boxes but the last; the log's name and how long it took, in ms.
void ExpectUpdates(std::initializer_list<std::string_view> rows, const std::string& before = "",
                   const std::string& answers = choose) {
    ExpectRows(
        [&](std::string_view input) {
            const std::string package = Piece(input, 0);
            const std::string fault = Piece(input, 1);
            const bool isStep = fault.find(' ') < fault.find('=');
            return Tell(Run(package, before + "start linked\n" + (isStep ? "" : "fault aria1 ") + fault +
                                         "\n" + answers),
                        Run(package, std::string("start linked\n") + choose).Lines);
        },
        rows);
}

TEST(TUpdates, EachRoadItsPacketsAndItsRepeat) {
    ExpectUpdates({
        "1 0:2 4096|BadImage=1; times=1 -> ping, 7, 14 *2, prepare 1, stream 512 *8, Close, test *4, prepare "
        "1, stream 512 *8, Close, test; log: result 1 *4, wrong 1; box: other version; OK 155745",
        "1 1:0 4096|BadImage=1; times=1 -> ping, prepare 1, main, test *4, prepare 1, 1, 2 #17-32 x256, 2 "
        "#33, test; log: result 1 *4, wrong 1; box: other version; OK 150580",
        "1 1:1 4096|BadImage=1; times=1 -> ping, prepare 1, ready, data, 11 #1 x1, test *4, prepare 1, "
        "ready, data, 11 #1 x1, test; log: result 1 *4, wrong 1; box: other version; OK 157670",
        "1 2:1 4096|BadImage=1; times=1 -> ping, prepare 1, stream 512 *8, Close, test *4, prepare 1, ready, "
        "data, 11 #1 x1, test; log: result 1 *4, wrong 1, PrepareUpdate return value -> 10551296, ST reset "
        "send , Wait Reset status ->1 *2, Wait Reset status ->0, status :0 retrycount :3, ST init send , "
        "Wait Display Check status ->0, Display Pre Erase status ->0, Wait Display pre erase status ->7, "
        "Wait Display pre erase status ->0, Start write filedata, Write last bit of datafile, Send program "
        "to display; box: other version; OK 155950",
        "1 3:0 4096|BadImage=1; times=1 -> ping, test *4 *5; box: other version *5; Error 412655",
        "1 1:0 300| -> ping, prepare 1, 1, 2 #0 x256, 2 #1 x44, 2 #2-15, 2 #16 x256, 2 #17 x44, test; OK "
        "67800",
        "1 1:0 4352| -> ping, prepare 1, 1, 2 #0-16 x256, 2 #17, test; OK 67800",
        "1 1:1 300| -> ping, prepare 1, ready, 8 #1 x256, 8 #2 x44, 8 #3-16, 8 #17 x256, 8 #18 x44, 11, "
        "test; OK 71345",
        "1 1:1 4097| -> ping, prepare 1, ready, data x1, 11 #1 x1, test; OK 71330",
        "1 1:2 4097| -> ping, prepare 1, 15, 5, 7, 14 *5, data x1, test; OK 70320",
    });
}

TEST(TUpdates, FaultsBeforeTheData) {
    ExpectUpdates({
        "1 0:0 300|Error=no room; query=prepareUpdate.json; times=5 -> ping, prepare 1 *5, restart, prepare "
        "1 *2, stream 300, Close, test; log: restarted; box: no room; OK 72570",
        "1 1:1 4096|Refuse=0; query=prepareUpdate.json -> ping, prepare 1 *5, 15, 16 *3, 5; log: "
        "PrepareUpdate return value -> 0; Error 1555",
        "1 0:2 300|Refuse=6; state=7 -> ping, 7, 12, 13; log: RPC Pre Erase status ->6, RPC Go status ->0, "
        "RPC  abort 0; Error 520",
        "1 0:2 300|Refuse=3; state=7; times=1 -> ping, 7 *2, 14 *2, streamed, test; log: RPC Pre Erase "
        "status ->3; OK 71560",
        "1 0:2 300|Refuse=7; state=14 -> ping, 7, 14 *6, 12, 13; log: RPC Go status ->0, RPC abort 0; Error "
        "3550",
        "1 1:0 4096|Refuse=1; state=1; times=4 -> ping, prepare 1, 1 *5, 2 #0-15 x256, 2 #16, test; OK 67805",
        "1 1:0 4096|Refuse=1; state=1 -> ping, prepare 1, 1 *5; box: Device does not support RPC fileupload; "
        "Error 35",
        "1 1:1 4096|Refuse=6; state=15 -> ping, prepare 1, 15 *4; log: status :6 retrycount :0 *4; Error 30",
        "1 1:1 4096|Refuse=3; state=16 -> ping, prepare 1, (15, 16 *6) *4, 5, 6, 7, 14 *2, data, 11 #1 x1, "
        "test; log: (Wait Reset status ->3 *6, status :3 retrycount :6) *4, retry 5 times on reset wait just "
        "continue; OK 81950",
        "1 1:1 4096|Refuse=1; state=5 -> ping, prepare 1, 15, 16 *3, 5; Error 1535",
        "1 1:1 4096|Refuse=6; state=6 -> ping, prepare 1, 15, 16 *3, 5, 6, 12, 13; log: Wait Display Check "
        "status ->6, Send Go status ->0, Send abort 0; Error 2050",
        "1 1:1 4096|Refuse=6; state=14 -> ping, prepare 1, 15, 16 *3, 5, 6, 7, 14, 12, 13; log: Wait Display "
        "pre erase status ->6, Send Go status ->0, Send abort 0; Error 3060",
        "1 1:2 4096|Refuse=6; state=15 -> ping, prepare 1, 15; Error 15",
        "1 1:2 4096|LostAnswer=on; state=15 && LostAnswer=on; state=5 && LostAnswer=on; state=7 && "
        "LostAnswer=on; state=14; skip=4 -> ping, prepare 1, 15, 5, 7, 14, data, test; log: Pre Erase status "
        "->1; OK 74285",
        "1 1:2 4096|Refuse=6; state=14 -> ping, prepare 1, 15, 5, 7, 14; log: Wait RPC  Pre erase status "
        "->6; Error 530",
    });
}

TEST(TUpdates, FaultsOfTheData) {
    ExpectUpdates({
        "1 0:0 900|Refuse=3; query=flashWrite.json; times=5 -> ping, prepare 1, flash *5, restart, prepare 1 "
        "*2, stream 512, Write 388, Close, test; log: flashWrite.json status-> 3 *5, restarted, Trys: 1; OK "
        "77585",
        "1 0:0 900|BrokenStream=700; times=2 -> ping, prepare 1, stream 512, Write 388, Close *3, restart, "
        "prepare 1 *2, stream 512, Write 388, Close, test; log: restarted, Trys: 1; box: The stream is not "
        "valid *2; OK 75585",
        "1 0:0 900|NoAnswer=on; query=stream -> ping, (prepare 1, flash, Open, restart, prepare 1) *4, "
        "prepare 1, flash, Open, restart; log: restarted, Trys: 1, restarted, Trys: 2, restarted, Trys: 3, "
        "restarted, Trys: 4, restarted; box: No connection to the device *5; Error 33080",
        "1 1:0 4096|Refuse=3; state=2; skip=1; times=1 -> ping, prepare 1, 1, 2 #0-1 x256, 2 #1-31 x256, 2 "
        "#32; log: ERROR->  Status 3 send 1 Received 1 CRC16value DE17; Error 525",
        "1 1:1 4096|Refuse=3; state=8; times=10 -> ping, prepare 1, ready, 8 #1 x256 *10, data, 11 #1 x1, "
        "test; log: ERROR->  Status 3 send 1 Received 1 CRC16value 4E54 *10; OK 71480",
        "1 1:1 4096|Refuse=3; state=8; times=11 -> ping, prepare 1, ready, 8 #1 x256 *11, 13; log: ERROR->  "
        "Status 3 send 1 Received 1 CRC16value 4E54 *11, Send abort 0; Error 3725",
        "1 1:2 4096|Refuse=3; state=8; skip=1; times=1 -> ping, prepare 1, 15, 5, 7, 14 *5, 8 #1-2 x256, 8 "
        "#2-16 x256, 8 #17, test; log: ERROR->  Status 3 send 2 Received 2 CRC16value DE17; OK 70335",
        "1 1:2 4097|NoAnswer=on; state=8 -> ping, prepare 1, 15, 5, 7, 14 *5, 8 #1 x256 *6; log: ERROR->  "
        "Status 1 send 1 Received 1 CRC16value 4E54 *6; Error 14610",
    });
}

TEST(TUpdates, FaultsOfTheTest) {
    ExpectUpdates({
        "1 0:0 300|NoAnswer=on; query=admincmd.json; times=1 -> ping, streamed, admincmd 65578, ping, read "
        "*4, streamed, test; log: result 1 *4, wrong 1; box: other version; OK 103585",
        "1 0:0 300|LateReturn=2m -> ping, streamed, admincmd 65578, ping *4, read; OK 174540",
        "1 0:0 300|BadImage=1 -> ping, (streamed, test *4) *5, streamed; log: result 1 *4, (wrong 1, result "
        "1 *3, result 1) *4, wrong 1; box: other version *5; Error 424775",
        "1 0:0 300|BadImage=1; times=1 && NoAnswer=on; query=setpointReadValue.json; skip=3; times=1 -> "
        "ping, streamed, test *4, test; log: result 1 *3, result No JS , CRC result of file 1 unknown; box: "
        "other version; OK 154065",
        "1 0:0 300|WrongCount=1; query=setpointReadValue.json; times=1 -> ping, streamed, test *2; log: "
        "result 0; 0; OK 74545",
        "1 0:0 300|edit pkg/pc_cfg.fwc VersionFName1:1:215 => VersionFName1:1:216 -> ping, streamed, test; "
        "box: other version; OK 69540",
        "1 0:0 300|edit pkg/pc_cfg.fwc VersionFName1:1:215 => VersionFName9:1:215 -> ping, streamed, test; "
        "box: other version, no version; OK 69540",
        "11 0:0 300 0:0 10|BadImage=1; times=3 && BadImage=2; skip=1; times=1 -> ping, streamed, prepare 2, "
        "flashWrite 10813440, stream 10, Close, test both *4, streamed, test both *4, streamed, prepare 2, "
        "flashWrite 10813440, stream 10, Close, test both *4, streamed, test both; log: result 1 *4, wrong "
        "1, result 3 *4, wrong 1, wrong 2, result 1 *4, wrong 1; box: other version *3; OK 327230",
        "0 0:0 9| -> ping, restart, ping *2, read; OK 67520",
    });
}

TEST(TUpdates, BadPackages) {
    ExpectUpdates({
        "1 0:0 300|edit pkg/config.fwc = Number of files: 1\\n -> ping; box: List index out of bounds (0): "
        "the package /t/pkg/config.fwc names no file; no log 5",
        "1 0:0 300|edit pkg/config.fwc 30021_1.bin => AB30021_1.bin -> ping; box: Firmware filename and "
        "controller model are not equal Firmware download will abort Model : 30021 Filename : AB30021_1.bin; "
        "Error 5",
        "11 0:0 300 0:0 10|edit pkg/config.fwc files: 11 => files: 1 -> ping, streamed, test; log: Number of "
        "files: 1, No digit for file 2, it is left out; OK 69540",
        "11 0:0 300 0:0 10|edit pkg/30021_2.bin - -> ping, streamed, prepare 2, flashWrite 10813440; box: "
        "Cannot read /t/pkg/30021_2.bin: No such file or directory; Error 4035",
        "1 0:0 300|edit profile/Aria450_english.pls DF_HPM_SETPKTNUM=900 => DF_HPM_SETPKTNUM=0 -> ping; no "
        "log 5",
        "1 0:0 300|fault disk 0 -> ping, streamed, test; box: Cannot write "
        "/t/log/userlog/FW-Update_OK_02-03-2026080111_410000000001.log: No space left on device, Download "
        "success Device is online again; no log 69540",
        "1 1:0 4096|type NabtoDevice.streamDelayEdit soon -> ping, prepare 1, 1, 2 #0 x256; box: 'soon' is "
        "not a valid integer value; Error 20",
        "1 0:0 300|fault Library nabtoStreamClose=NABTO_FAILED; times=1 -> ping, streamed, restart, prepare "
        "1 *2, stream 300, Close, test; log: restarted, Trys: 1; box: Failed; OK 74565",
        "1 0:0 300|edit pkg/config.fwc Size: 300 => Size: 301 -> ping, (prepare 1, flash, test *4) *5, "
        "prepare 1, flash; log: (File1 has 300 bytes, not 301: nothing is sent, result 1 *4, wrong 1) *5, "
        "File1 has 300 bytes, not 301: nothing is sent; box: other version *5; Error 424715",
    });
    ExpectUpdates(
        {
            "11 0:0 300 0:0 10|edit pkg/30021_2.bin - -> ping; box: Bad: Cannot read /t/pkg/30021_2.bin: No "
            "such file or directory; Error 5",
            "1 0:0 300|edit profile/Aria450_english.pls DF_HPM_SETPKTNUM=900 => DF_HPM_SETPKTNUM=0 -> ping; "
            "box: The profile tells of no update status (DF_HPM_SETPKTNUM), so no update can run; no log 5",
            "1 0:0 300|edit pkg/config.fwc Size: 300 => Size: 301 -> ping; box: Bad: /t/pkg/30021_1.bin has "
            "300 bytes, not 301; Error 5",
        },
        strictly);
}

TEST(TUpdates, StrictlyOnlyWhatTheControllerSaidIsClaimed) {
    ExpectUpdates(
        {
            "1 0:0 300|OldResult=on && Refuse=1; query=admincmd.json -> ping, streamed, (admincmd 65578, "
            "ping) *5; box: The restart of the controller was not seen; Error 52075",
            "1 0:0 300|OldResult=on && NoAnswer=on; query=admincmd.json; times=1 -> ping, streamed, admincmd "
            "65578, ping, test; log: The restart of the controller was not seen; OK 81545",
            "1 0:0 300|OldResult=on && LostAnswer=on; query=admincmd.json -> ping, streamed, test; OK 71535",
            "1 0:0 300|BadImage=1; times=1 && NoAnswer=on; query=setpointReadValue.json; skip=3; times=1 -> "
            "ping, streamed, test *4, streamed, test; log: result 1 *3, result No JS , wrong 1; box: other "
            "version; OK 156085",
            "1 0:0 300|NoAnswer=on; query=setpointReadValue.json -> ping, streamed, test *4 *5; log: result "
            "No JS  *4, (CRC result of file 1 unknown, result No JS  *3, result No JS ) *4, CRC result of "
            "file 1 unknown; box: The controller did not tell the result of its firmware test, so it is not "
            "known whether the firmware is good; Error 454575",
            "2 0:2 300|NoAnswer=on; query=stream; times=5 -> ping, 7, 14 *2, (prepare 1, flash, Open, "
            "restart, prepare 1) *4, prepare 1, flash, Open, restart, test *4; log: restarted, Trys: 1, "
            "restarted, Trys: 2, restarted, Trys: 3, restarted, Trys: 4, restarted, result 1 *4; box: No "
            "connection to the device *5, not taken: file 1; Error 117125",
            "2 1:0 4096|Refuse=3; state=2; skip=16; times=1 -> ping, prepare 1, main *2, test; log: ERROR->  "
            "Status 3 send 16 Received 16 CRC16value FFFF; box: not taken: file 1; Error 67800",
            "2 1:1 4097|NoAnswer=on; state=8; skip=16; times=1 -> ping, prepare 1, ready, data x1, 13 #1 x1, "
            "test *4; log: ERROR->  Status 1 send 17 Received 17 CRC16value BEA4, Send abort 0, result 1 *4; "
            "box: not taken: file 1; Error 88340",
            "2 1:1 4096|NoAnswer=on; state=11; times=1 -> ping, prepare 1, ready, data, 11 #1 x1, test; box: "
            "not taken: file 1; Error 73325",
            "2 1:2 4096|NoAnswer=on; state=8; skip=16; times=1 -> ping, prepare 1, 15, 5, 7, 14 *5, data, "
            "test; log: ERROR->  Status 1 send 17 Received 17 CRC16value FFFF; box: not taken: file 1; Error "
            "72315",
            "2 3:0 300| -> ping, test *4; box: not taken: file 1; Error 82535",
            // A refusal explains no other exchange.
            "1 0:0 300|Error=busy; query=prepareUpdate.json; times=4 && NoAnswer=on; "
            "query=prepareUpdate.json; skip=4; times=1 -> ping, prepare 1 *5, restart, prepare 1 *2, stream "
            "300, Close, test; log: restarted; box: Device is not available; OK 74565",
            "1 0:0 300|fault aria1 Error=busy; query=eepReadRaw.json && NoAnswer=on; query=ping.json\nclick "
            "but_errorlog -> ping; box: Device is not available; Error 2000",
            "1 0:0 300|edit pkg/pc_cfg.fwc VersionFName1:1:215 => VersionFName9:1:215 -> ping, streamed, "
            "test; box: other version; Error 69540",
        },
        strictly);
}

TEST(TUpdates, EachWaitWithoutLimitCanBeLeft) {
    ExpectUpdates(
        {
            "1 0:0 900|NoReturn=on -> ping, prepare 1, stream 512, Write 388, Close, admincmd 65578, ping "
            "*12; log: The update was stopped by the user; box: stop? *2; Error 600040",
            "1 0:0 900|BufferFull=on -> ping, prepare 1, stream 512 *59799, Close; log: The update was "
            "stopped by the user; box: stop? *2; Error 600005",
            "1 0:2 900|NoAnswer=on; state=7 -> ping, 7 *241; log: RPC Pre Erase status ->1 *240, The update "
            "was stopped by the user; box: stop? *2; Error 602005",
            "1 1:1 900|Refuse=3; state=14 -> ping, prepare 1, 15, 16 *3, 5, 6, 7, 14 *1185; log: Wait "
            "Display pre erase status ->3 *1184, The update was stopped by the user; box: stop? *2; Error "
            "600470",
        },
        "", leave);
}

} // namespace
} // namespace tidewell::test
