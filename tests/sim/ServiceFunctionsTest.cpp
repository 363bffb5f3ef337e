#include "core/Crc16.h"
#include "link/DeviceQueries.h"
#include "sim/controller/Firmware.h"
#include "sim/controller/SimulatedController.h"
#include "sim/nabto/RowText.h"
#include "sim/nabto/SimulatedNabto.h"
#include "support/MemoryFiles.h"
#include "support/VirtualTime.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tidewell {

namespace {

using ::testing::ElementsAre;

constexpr const char* Rows = R"([Values a]
setpoint 0 100..101 = list 7 -8
datapoint 0 5 = counter 0 1 1s
[Service a]
Image 1=0xA10000; room=4096; version=Version HP
Image 2=0xA11000; room=600; version=Version NP; number=44
CrcResult=903
UpdateTime=30s
LogBlock=2545
LogInUse=4
LogValues=setpoint 0 100..101, datapoint 0 5
LogCounters=256
ErrorLog=512
ErrorEvents=3
EepromSize=913
)";

std::string Image(std::size_t size, char version) {
    std::string image = std::string("FWI1\0\0\1", 7) + version;
    for (std::size_t i = image.size(); i < size; ++i) {
        image += static_cast<char>('a' + i % 23);
    }
    return image;
}

// A controller with service functions, at 08:00 of 02-03-2026, where a block of its flash log begins.
class TServiceTest : public ::testing::Test {
  protected:
    TServiceTest() { Load(""); }
    void Load(const std::string& faults) {
        Nabto.Configure(ParseSimulation("[Simulation]\nControllers=a\n[Controller a]\nId=410000000001\n"
                                        "Model=30021\nDevicenumber=7\nVersion HP=214\n" +
                                            std::string(Rows) + "[Faults a]\n" + faults,
                                        "simulation.ini"));
        Now = 0;
    }
    TSimulatedController& Controller() { return *Nabto.FindController("a"); }

    // The status; -1 for an error reply, -2 for none.
    std::int64_t Ask(const std::string& query, const std::string& request) {
        const TControllerReply reply = Controller().Query(query, request, Now);
        const TDeviceReply parsed = ParseReply(reply.Text);
        return !reply.Answered ? -2 : parsed.Status ? std::stoll(parsed.Status->Text) : -1;
    }
    std::int64_t Prepare(std::uint32_t file, const std::string& image, std::uint32_t crcAdded = 0) {
        const auto size = static_cast<std::uint32_t>(image.size());
        return Ask("prepareUpdate.json", prepareUpdateData(file, size, Crc32(image) + crcAdded));
    }
    std::int64_t Command(std::uint32_t state) {
        return Ask("FlashWriteNostream.json", prepareFlashWriteNostream(state, 0, {}));
    }
    std::int64_t Packet(std::uint32_t state, std::uint32_t number, const std::string& bytes,
                        std::uint32_t crcAdded = 0) {
        const std::span payload(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
        const std::uint32_t crc = Crc16(Crc16Start, payload, true) + crcAdded;
        return Ask("FlashWriteNostreamV2.json", V2prepareFlashWriteNostream(state, number, crc, payload));
    }
    // Image and further packets, as the states tell; the answers other than 0 with the right echo.
    std::string Packets(std::uint32_t state, std::uint32_t first, const std::string& image) {
        std::string answers;
        for (std::uint32_t i = 0; i * 256 < image.size(); ++i) {
            const std::uint32_t number = (first + i) & 0xFFFFU;
            const std::int64_t answer = Packet(state, number, image.substr(std::size_t{i} * 256, 256));
            if (answer != std::int64_t{number} << 16U) {
                answers += std::to_string(answer) + " ";
            }
        }
        return answers;
    }
    // False when the controller does not take it.
    bool Stream(std::int64_t address, std::size_t announced, const std::string& image) {
        const auto length = static_cast<std::uint32_t>(announced);
        if (Ask("flashWrite.json", FormatRWData(static_cast<std::uint32_t>(address), length)) != 0 ||
            !Controller().OpenStream(Now)) {
            return false;
        }
        for (std::size_t at = 0; at < image.size(); at += 512) {
            Controller().WriteStream(std::string_view(image).substr(at, 512), Now);
        }
        return true;
    }
    // Restart into the update mode; then the word of bad images.
    std::string Update(std::uint32_t mask) {
        EXPECT_EQ(Ask("admincmd.json", GetCMD(static_cast<std::int32_t>(mask << 16U | 42U))), 0);
        Now += 30000;
        return Values("903");
    }
    std::string Values(const std::string& address) {
        const auto reply = Controller().Query("setpointReadValue.json", ValueToJson(address, "1", "0"), Now);
        return reply.Answered ? ParseReply(reply.Text).Values.value_or("none") : "silent";
    }
    std::string Versions() {
        const auto reply = ParseReply(Controller().Query("ping.json", PingRequest(), Now).Text);
        return (reply.VersionHP ? reply.VersionHP->Text : "-") + " " +
               (reply.VersionNP ? reply.VersionNP->Text : "-");
    }
    // What a read gives, as words; nothing when it was refused.
    std::vector<std::uint32_t> Read(const std::string& query, std::uint32_t address, std::uint32_t length) {
        std::string bytes;
        if (Ask(query, FormatRWData(address, length)) != 0 || !Controller().OpenStream(Now)) {
            return {};
        }
        for (TStreamPiece piece; piece.Outcome == EStreamOutcome::Done; bytes += piece.Bytes) {
            piece = Controller().ReadStream(length, Now);
        }
        EXPECT_EQ(bytes.size() % 2, 0U);
        std::vector<std::uint32_t> words;
        for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
            words.push_back(static_cast<unsigned char>(bytes[i]) * 256U +
                            static_cast<unsigned char>(bytes[i + 1]));
        }
        return words;
    }
    // The records from that address on: "02-03 07:58 7 65528 100", or "erased".
    std::vector<std::string> Records(std::uint32_t address, std::uint32_t count) {
        std::vector<std::string> records;
        const std::vector<std::uint32_t> words = Read("flashRead.json", address, count * 256);
        for (std::size_t at = 0; at < words.size(); at += 128) {
            const auto two = [](std::uint32_t number) {
                return std::string(number < 10 ? "0" : "") + std::to_string(number);
            };
            EXPECT_EQ(words[at + 127], words[at] == 0xFFFF ? 0xFFFFU : 0U);
            EXPECT_TRUE(words[at] == 0xFFFF || words[at] >> 9U == 26);
            records.push_back(words[at] == 0xFFFF
                                  ? "erased"
                                  : two(words[at] & 31U) + "-" + two(words[at] >> 5U & 15U) + " " +
                                        two(words[at + 1] >> 8U) + ":" + two(words[at + 1] & 255U) + " " +
                                        std::to_string(words[at + 2]) + " " + std::to_string(words[at + 3]) +
                                        " " + std::to_string(words[at + 4]));
        }
        return records;
    }

    std::int64_t Now = 0;
    test::TMemoryFiles Files;
    test::TVirtualTime Clock;
    TPortTime Time{Clock, Clock};
    TSimulatedNabto Nabto{Files, Time};
};

TEST(Crc32, IsThatOfArchives) {
    EXPECT_EQ(Crc32("123456789"), 0xCBF43926U);
    EXPECT_EQ(Crc32(""), 0U);
}

// Whole images count, and no others; a good one brings its version.
TEST_F(TServiceTest, TakesImagesByEveryRoadAndTestsThem) {
    const std::string one = Image(1000, 9);
    const std::string two = Image(600, 1);
    struct TCase {
        const char* What;
        std::function<void()> Send;
        const char *Result, *Versions;
    };
    const TCase cases[] = {
        {"nothing", [] {}, "3; ", "214 -"},
        {"streams",
         [&] {
             EXPECT_EQ(Prepare(1, one), 0xA10000);
             EXPECT_TRUE(Stream(0xA10000, 1000, one));
             EXPECT_EQ(Prepare(2, two), 0xA11000);
             EXPECT_TRUE(Stream(0xA11000, 600, two + "beyond the end"));
         },
         "0; ", "265 44"},
        {"a stream that ends too early, then a wrong checksum",
         [&] {
             Prepare(1, one);
             Stream(0xA10000, 1000, one.substr(1));
             Prepare(2, two, 1);
             Stream(0xA11000, 600, two);
         },
         "3; ", "214 -"},
        {"a stream for another size, one without flashWrite, one to the test area",
         [&] {
             Prepare(1, one);
             EXPECT_FALSE(Stream(0xA10000, 999, one));
             EXPECT_TRUE(Controller().OpenStream(Now));
             Controller().WriteStream(one, Now);
             EXPECT_TRUE(Stream(0, 1000, one));
         },
         "3; ", "214 -"},
        {"packets to the main processor, the second twice and one beyond the end",
         [&] {
             Prepare(1, one);
             EXPECT_EQ(Command(1), 0);
             EXPECT_EQ(Packets(2, 65534, one.substr(0, 512)), "");
             EXPECT_EQ(Packets(2, 65535, one.substr(256)), "");
             EXPECT_EQ(Packets(2, 65538, "more"), "");
         },
         "2; ", "265 -"},
        {"packets to another target",
         [&] {
             Prepare(2, two);
             for (const std::uint32_t state : {15U, 5U, 7U}) {
                 EXPECT_EQ(Command(state), 0) << state;
             }
             Now += 2000;
             EXPECT_EQ(Packets(8, 1, two), "");
             EXPECT_EQ(Command(11), 0);
         },
         "1; ", "214 44"},
        {"an upload that is aborted when all has come",
         [&] {
             Prepare(1, one);
             Command(1);
             Packets(2, 0, one);
             EXPECT_EQ(Command(13), 0);
         },
         "3; ", "214 -"},
        {"another announcement behind a whole image",
         [&] {
             Prepare(1, one);
             Stream(0xA10000, 1000, one);
             Prepare(1, one);
         },
         "3; ", "214 -"},
    };
    for (const TCase& test : cases) {
        SCOPED_TRACE(test.What);
        Load("");
        test.Send();
        EXPECT_EQ(Update(3), test.Result);
        EXPECT_EQ(Versions(), test.Versions);
    }
    for (const auto& [file, size] : {std::pair{3U, 10U}, {0U, 10U}, {2U, 601U}, {1U, 0U}}) {
        EXPECT_EQ(Prepare(file, std::string(size, 'x')), 0) << file << " of " << size;
    }
}

TEST_F(TServiceTest, LeadsTheDialogueOfAnUploadInPackets) {
    // "command <state>" or "packet <state> <number> [crc added]", at a time in ms, with the status.
    struct TStep {
        std::int64_t At;
        const char* Request;
        std::int64_t Answer;
    };
    constexpr std::int64_t Fifth = 5 << 16;
    const TStep steps[] = {
        {0, "command 1", 1}, // nothing is announced
        {0, "command 5", 6},
        {0, "command 6", 6},
        {0, "command 14", 6},
        {0, "command 11", 6},
        {0, "command 2", 6}, // data is no command
        {0, "command 99", 6},
        {0, "packet 8 5", Fifth | 6},
        {0, "prepare", 0xA11000},
        {100, "command 15", 0},
        {1099, "command 16", 1},
        {1100, "command 16", 0},
        {1100, "command 6", 6}, // before init
        {1100, "command 5", 0},
        {1100, "command 6", 0},
        {1100, "packet 8 5", Fifth | 6}, // before the pre-erase
        {2000, "command 7", 0},
        {2000, "command 7", 7},
        {2999, "command 14", 7},
        {2999, "packet 8 5", Fifth | 7},
        {3000, "command 14", 0},
        {3000, "packet 2 5", Fifth | 6}, // of another target
        {3000, "packet 8 5 1", Fifth | 2},
        {3000, "packet 8 5", Fifth},
        {3000, "packet 8 5", Fifth},
        {3000, "packet 8 7", 7 << 16 | 3},
        {3000, "packet 8 6", 6 << 16},
        {3000, "command 12", 0},
        {3000, "command 13", 0},
        {3000, "packet 8 7", 7 << 16 | 6},
        // The reset may still run when the rest is asked for.
        {4000, "command 15", 0},
        {4000, "command 5", 0},
        {4000, "command 6", 1},
        {4500, "command 7", 0},
        {5999, "command 14", 7},
        {6000, "command 14", 0},
    };
    for (const TStep& step : steps) {
        SCOPED_TRACE(std::to_string(step.At) + " " + step.Request);
        Now = step.At;
        const std::vector<std::string> words = SplitWords(step.Request);
        const auto number = [&words](std::size_t i) {
            return static_cast<std::uint32_t>(i < words.size() ? std::stoul(words[i]) : 0);
        };
        EXPECT_EQ(words[0] == "prepare"   ? Prepare(2, Image(600, 1))
                  : words[0] == "command" ? Command(number(1))
                                          : Packet(number(1), number(2), "abc", number(3)),
                  step.Answer);
    }
    EXPECT_EQ(Packet(8, 70000, ""), -1);
    EXPECT_EQ(Packet(8, 1, std::string(257, 'x')), -1);
    EXPECT_EQ(Ask("FlashWriteNostreamV2.json",
                  R"({"request":{"nostreamstate":8,"blocknumber":1,"blockCRC":0,"list":[{"payload":256}]}})"),
              -1);
}

TEST_F(TServiceTest, RestartsTakeTimeAndMayHaveNoEnd) {
    const std::string image = Image(600, 1);
    struct TCase {
        const char* Faults;
        std::int64_t BackAt; // ms behind a restart into the update mode
        const char* Result;
    };
    const TCase cases[] = {
        {"", 30000, "0; "},
        {"LateReturn=1m", 90000, "0; "},
        {"NoReturn=on; to=5m", 300000, "0; "},
        {"BadImage=2; times=1", 30000, "2; "},
        {"BadImage=2; skip=1", 30000, "0; "},
        {"BadImage=9\nBadImage=1", 30000, "257; "},
    };
    for (const TCase& test : cases) {
        SCOPED_TRACE(test.Faults);
        Load(test.Faults);
        Prepare(2, image);
        Stream(0xA11000, 600, image);
        // An empty mask tests nothing and keeps what came.
        EXPECT_EQ(Ask("admincmd.json", GetCMD(42)), 0);
        EXPECT_EQ(Controller().WriteStream("x", Now).Outcome, EStreamOutcome::Closed);
        EXPECT_EQ(Controller().ReadStream(1, Now).Outcome, EStreamOutcome::Closed);
        Now = 400000;
        EXPECT_EQ(Versions(), "214 -");
        EXPECT_EQ(Command(1), 1); // announced before the restart only

        Load(test.Faults);
        Prepare(2, image);
        Stream(0xA11000, 600, image);
        EXPECT_EQ(Ask("admincmd.json", GetCMD(2 << 16 | 42)), 0);
        Now = test.BackAt - 1;
        EXPECT_FALSE(Controller().OpenStream(Now));
        EXPECT_EQ(Values("903"), "silent");
        Now = test.BackAt;
        EXPECT_EQ(Values("903"), test.Result);
        EXPECT_EQ(Versions(), std::string(test.Result) == "2; " ? "214 -" : "214 44");
        EXPECT_EQ(Ask("admincmd.json", GetCMD(43)), 1);
    }
    for (const auto& [fault, result] :
         {std::pair("OldResult=on; query=prepareUpdate.json", "0; "), std::pair("", "2; ")}) {
        Load(fault);
        Prepare(2, image);
        EXPECT_EQ(Values("903"), result); // on its way
    }
    Load("BadImage=2; times=2");
    Prepare(2, image);
    Stream(0xA11000, 600, image);
    for (const char* result : {"2; ", "2; ", "0; "}) {
        EXPECT_EQ(Update(2), result);
    }
}

TEST_F(TServiceTest, TellsEachImageAsBadUntilItIsTested) {
    auto setup = ParseSimulation("[Simulation]\nControllers=a\n[Controller a]\nId=410000000001\nModel=1\n"
                                 "Devicenumber=7\n[Service a]\nImage 1=0xA10000; room=9\nCrcResult=8/5\n"
                                 "CheckTime=7s\nUpdateTime=0\n",
                                 "");
    Nabto.Configure(setup);
    Prepare(1, "123456789");
    Stream(0xA10000, 9, "123456789");
    EXPECT_EQ(Ask("admincmd.json", GetCMD(1 << 16 | 42)), 0);
    for (const char* result : {"1; ", "1; ", "0; "}) {
        const auto reply = Controller().Query("setpointReadValue.json", ValueToJson("5", "1", "8"), Now);
        EXPECT_EQ(ParseReply(reply.Text).Values, result);
        Now += 5000;
    }
    Prepare(1, "123456789"); // a new one, which nothing tests
    const auto reply = Controller().Query("setpointReadValue.json", ValueToJson("5", "1", "8"), Now);
    EXPECT_EQ(ParseReply(reply.Text).Values, "1; ");
}

TEST_F(TServiceTest, KeepsItsLogInARingOfTwoAreas) {
    // The block being written, before anything is: 4 blocks in use behind it, over the border of the areas.
    constexpr std::uint32_t Border = 0xD30000; // block 2544
    constexpr std::uint32_t Block = 4096;
    EXPECT_THAT(Read("eepReadRaw.json", 256, 4), ElementsAre(2545, 4));
    EXPECT_THAT(Records(Border + 14 * 256, 4),
                ElementsAre("02-03 07:56 7 65528 65534", "02-03 07:58 7 65528 65535", "erased", "erased"));
    const std::uint32_t last = 0xA10000 - Block; // block 2543
    EXPECT_THAT(Records(last, 1), ElementsAre("02-03 06:56 7 65528 65516"));
    EXPECT_THAT(Records(last - 2 * Block, 1), ElementsAre("02-03 05:52 7 65528 65497"));
    EXPECT_THAT(Records(last - 2 * Block - 256, 1), ElementsAre("erased"));

    // Time goes on: a record each second minute, a block each 32.
    Now = 32 * 60000;
    EXPECT_THAT(Read("eepReadRaw.json", 256, 4), ElementsAre(2546, 5));
    Now += 4 * 60000;
    EXPECT_THAT(Records(Border + 2 * Block, 3),
                ElementsAre("02-03 08:32 7 65528 9", "02-03 08:34 7 65528 10", "erased"));
    Now += std::int64_t{6608} * 32 * 60000;
    EXPECT_THAT(Read("eepReadRaw.json", 256, 4), ElementsAre(2546, 6607));
    Records(Border + 3 * Block, 1); // the oldest, 146 days back
    EXPECT_EQ(Read("flashRead.json", 0x20000, 6608 * Block - 2544 * Block).size(), 4064U * Block / 2);

    // What lies beside the ring: images, erased flash, and the end.
    const std::string image = Image(600, 1);
    Prepare(2, image);
    Stream(0xA11000, 600, image);
    EXPECT_THAT(Read("flashRead.json", 0xA11000 - 2, 6), ElementsAre(0xFFFF, 0x4657, 0x4931));
    EXPECT_THAT(Read("flashRead.json", 0xD30000 - 2, 2), ElementsAre(0xFFFF));
    EXPECT_THAT(Read("flashRead.json", 0x1D10000, 2), ElementsAre(0xFFFF));
    EXPECT_EQ(Read("flashRead.json", 0xD30000, 6608 * Block).size(), 0U);
    EXPECT_EQ(Ask("flashRead.json", FormatRWData(0x1FFFFFF, 2)), 1);
    EXPECT_EQ(Ask("flashRead.json", R"({"request":{"address":"-1","length":"1"}})"), 1);
}

TEST_F(TServiceTest, HoldsIdentityAndErrorEventsInItsEeprom) {
    EXPECT_THAT(Read("eepReadRaw.json", 0, 10), ElementsAre(30021, 7, 214, 0xFFFF, 0xFFFF));
    const std::vector<std::uint32_t> words = Read("eepReadRaw.json", 512, 400);
    ASSERT_EQ(words.size(), 200U);
    std::uint64_t before = UINT64_MAX;
    for (std::size_t i = 0; i < 3; ++i) {
        const std::uint32_t date = words[i];
        const std::uint32_t time = words[100 + i];
        EXPECT_TRUE(date >> 12U >= 2 && date >> 12U <= 3 && (date & 127U) == 26) << date;
        EXPECT_LT(time >> 7U, 288U);
        EXPECT_EQ(time & 1U, i % 2) << "events come and go in turns";
        const std::uint64_t order = std::uint64_t{date >> 7U} << 16U | time >> 7U; // month, day, time
        EXPECT_LT(order, before) << "the newest first";
        before = order;
    }
    EXPECT_EQ(words[100] >> 1U & 63U, 7U);
    EXPECT_EQ(words[101] >> 1U & 63U, 7U);
    EXPECT_TRUE(words[3] == 0 && words[99] == 0 && words[103] == 0 && words[199] == 0);
    EXPECT_EQ(Ask("eepReadRaw.json", FormatRWData(912, 1)), 0);
    EXPECT_EQ(Ask("eepReadRaw.json", FormatRWData(912, 2)), 1);
}

TEST_F(TServiceTest, FaultsStrikeServiceFunctions) {
    const std::string image = Image(600, 1);
    const auto packets = [&] {
        Prepare(1, image);
        EXPECT_EQ(Command(1), 0);
        return Packets(2, 1, image);
    };
    Load("Refuse=6; query=FlashWriteNostreamV2.json; skip=1; times=1");
    EXPECT_EQ(packets(), "131078 196611 "); // the third is not due before the second came
    Load("Refuse=7; state=14; times=2");
    EXPECT_EQ(packets(), "");
    Command(7);
    Now = 5000;
    EXPECT_EQ(Command(14), 7);
    EXPECT_EQ(Command(14), 7);
    EXPECT_EQ(Command(14), 0);
    Load("WrongEcho=-1; times=1");
    EXPECT_EQ(packets(), "0 ");
    EXPECT_EQ(Update(1), "0; "); // stored all the same
    Load("LostAnswer=on; query=FlashWriteNostreamV2.json; times=1");
    EXPECT_EQ(packets(), "-2 ");
    EXPECT_EQ(Update(1), "0; ");

    Load("Refuse=1; query=prepareUpdate.json\nRefuse=3; query=flashWrite.json\nRefuse=4; "
         "query=flashRead.json\n"
         "Refuse=5; query=eepReadRaw.json\nRefuse=9; query=SystemIdentify.json");
    EXPECT_EQ(Prepare(1, image), 1);
    EXPECT_EQ(Ask("flashWrite.json", FormatRWData(0, 10)), 3);
    EXPECT_EQ(Ask("flashRead.json", FormatRWData(0, 10)), 4);
    EXPECT_EQ(Ask("eepReadRaw.json", FormatRWData(0, 10)), 5);
    EXPECT_EQ(Ask("SystemIdentify.json", prepareSystemIdentify(24)), 9);
    Load("ShortRead=4; query=eepReadRaw.json");
    EXPECT_EQ(Read("eepReadRaw.json", 0, 10).size(), 3U);
    EXPECT_EQ(Read("eepReadRaw.json", 0, 2).size(), 0U);
    EXPECT_EQ(Read("flashRead.json", 0, 10).size(), 5U);
    // A block is touched by a read that begins, or ends, within it; the second area's first one lies behind a
    // gap.
    Load("Refuse=3; query=flashRead.json; block=1\nRefuse=4; query=flashRead.json; block=2544");
    const std::vector<std::pair<std::pair<std::uint32_t, std::uint32_t>, int>> reads{
        {{0x20000, 4096}, 0}, {{0x20000, 4097}, 3},  {{0x21FFF, 1}, 3},
        {{0x22000, 9}, 0},    {{0xA10000, 4096}, 0}, {{0xD2FFFF, 2}, 4}};
    for (const auto& [read, status] : reads)
        EXPECT_EQ(Ask("flashRead.json", FormatRWData(read.first, read.second)), status) << read.first;
    Load("StalledStream=600");
    Ask("flashRead.json", FormatRWData(0x20000, 1000));
    ASSERT_TRUE(Controller().OpenStream(Now));
    EXPECT_EQ(Controller().ReadStream(1000, Now).Bytes.size(), 600U);
    const TStreamPiece stalled = Controller().ReadStream(1000, Now);
    EXPECT_EQ(stalled.Outcome, EStreamOutcome::Done);
    EXPECT_TRUE(stalled.Bytes.empty() && stalled.DelayMs > 0);
    Load("NoAnswer=on; skip=4; times=1"); // the second piece of the stream
    Prepare(1, image);
    Stream(0xA10000, 600, image);
    EXPECT_EQ(Controller().Service.Firmware().Bytes(1).size(), 512U);
    Load("BrokenStream=300; times=2");
    Prepare(1, image);
    Stream(0xA10000, 600, image);
    EXPECT_EQ(Controller().Service.Firmware().Bytes(1).size(), 300U);
}

} // namespace

} // namespace tidewell
