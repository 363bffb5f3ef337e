#include "link/FileUpload.h"

#include "UpdateFixture.h"
#include "core/Crc16.h"
#include "core/Errors.h"

namespace tidewell::test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using TLines = std::vector<std::string>;

TEST(Crc16, FiguresOfTheProtocol) {
    const std::vector<std::uint8_t> bytes{1, 2, 3, 4};
    EXPECT_EQ(Crc16(Crc16Start, bytes, false), 0x2BA1);
    EXPECT_EQ(Crc16(Crc16Start, bytes, true), 41259);
    EXPECT_EQ(Crc16(Crc16Start, {}, true), 0xFFFF);
    const auto part = std::span(bytes);
    EXPECT_EQ(Crc16(Crc16(Crc16Start, part.first(1), false), part.subspan(1), false), 0x2BA1);
}

class TFileUploadTest : public TUpdateFixture {
  protected:
    using TUpload = bool (TFileUpload::*)(std::uint32_t, std::uint32_t, const std::filesystem::path&,
                                          std::uint32_t);
    static constexpr TUpload Display = &TFileUpload::RpcUploadDisplay;
    static constexpr TUpload Target = &TFileUpload::RpcUploadTarget;
    static constexpr TUpload Main = &TFileUpload::RpcUploadMain;

    bool Send(TUpload upload, std::size_t size) {
        Files.Put("/pkg/a.bin", std::string(size, 'x'));
        return (Upload.*upload)(2, static_cast<std::uint32_t>(size), "/pkg/a.bin", 77);
    }
    void ResetAnswers() {
        for (const char* kind : {"1", "2", "5", "6", "7", "8", "11", "12", "13", "14", "15", "16",
                                 "prepareUpdate", "flashWrite", "admincmd"})
            Reply(kind, {});
    }
};

TEST_F(TFileUploadTest, ABlockGoesInPacketsThatAreRepeated) {
    constexpr std::int64_t wrongEcho = 1 << 16;
    struct TCase {
        const char* Name;
        ENostreamState State;
        std::uint32_t Packets;
        std::size_t Size;
        std::deque<std::int64_t> Added; // to the right answer
        std::int32_t Result;
        const char* Wire;
        std::size_t Errors;
    };
    const auto main = ENostreamState::MainData;
    const auto data = ENostreamState::Data;
    for (const auto& test : std::vector<TCase>{
             {"clean", data, 2, 300, {0}, 0, "8 #5 x256; 8 #6 x44", 0},
             {"never padded", data, 3, 256, {0}, 0, "8 #5 x256; 8 #6-7 x0", 0},
             {"one packet at least", data, 0, 0, {0}, 0, "8 #5 x0", 0},
             {"link lost", data, 16, 4096, {1}, 1, "8 #5 x256", 1},
             {"link lost, main", main, 16, 4096, {1}, 6, "2 #5 x256", 1},
             {"repaired", data, 1, 9, {wrongEcho, 0}, 0, "8 #5 x9; 8 #5 x9", 1},
             {"repaired, main", main, 1, 9, {3, 0}, 6, "2 #5 x9; 2 #5 x9", 1},
             {"given up",
              data,
              1,
              1,
              {9},
              9,
              "8 #5 x1; 8 #5 x1; 8 #5 x1; 8 #5 x1; 8 #5 x1; 8 #5 x1; 8 #5 x1; 8 #5 x1; 8 #5 x1; 8 #5 x1; 8 "
              "#5 x1",
              11},
         }) {
        SCOPED_TRACE(test.Name);
        Upload.RPCPacketNumber = 5;
        Reply(test.State == main ? "2" : "8", test.Added);
        const std::vector<std::uint8_t> bytes(test.Size, 7);
        EXPECT_EQ(Upload.FlashWriteBlock(3, test.Packets, test.State, bytes), test.Result);
        EXPECT_EQ(TakeWire(), test.Wire);
        EXPECT_EQ(TakeLines().size(), test.Errors);
        EXPECT_EQ(Nabto.currentstreamprogress, 3U * 4096);
        ResetAnswers();
    }
    EXPECT_THAT(Time.Sleeps, testing::Each(10));
}

TEST_F(TFileUploadTest, APacketThatFailsIsTold) {
    Upload.RPCPacketNumber = 0xFFFF;
    Reply("8", {-(1 << 16), 5, 0}); // an echo of the packet before, a refusal
    streamDelayEdit.SetText("3");
    EXPECT_EQ(Upload.FlashWriteBlock(0, 1, ENostreamState::Data, std::vector<std::uint8_t>{1, 2, 3, 4}), 0);
    EXPECT_THAT(TakeLines(),
                ElementsAre("08:00:00 ERROR->  Status 0 PacketNumber send 65535 PacketNumber Received 65535 "
                            "CRC16value A12B",
                            "08:00:00 ERROR->  Status 5 PacketNumber send 65535 PacketNumber Received 65535 "
                            "CRC16value A12B"));
    EXPECT_EQ(Crcs, (std::vector<int>{41259, 41259, 41259}));
    EXPECT_EQ(Upload.RPCPacketNumber, 0);
    EXPECT_EQ(Time.Sleeps, (std::vector<int>{3, 3, 3}));
    streamDelayEdit.SetText("soon");
    EXPECT_THROW(Upload.FlashWriteBlock(0, 1, ENostreamState::Data, {}), EConvertError);
}

TEST_F(TFileUploadTest, RunsOfPackets) {
    struct TCase {
        TUpload Upload;
        std::size_t Size;
        std::string Data;
    };
    for (const auto& [upload, size, data] : std::vector<TCase>{
             {Display, 8192, "8 #1-32 x256; 8 #33 x0"},
             {Display, 4396, "8 #1-17 x256; 8 #18 x44"},
             {Display, 300, "8 #1 x256; 8 #2 x44; 8 #3-16 x0; 8 #17 x256; 8 #18 x44"},
             {Display, 0, "8 #1-17 x0"},
             {Target, 8192, "8 #1-32 x256; 8 #33 x0"},
             {Target, 4396, "8 #1-17 x256; 8 #18 x44"},
             {Main, 8192, "2 #9-40 x256; 2 #41 x0"},
             {Main, 4096 + 256, "2 #9-25 x256; 2 #26 x0"},
         }) {
        Upload.RPCPacketNumber = 9; // only the main processor goes on from there
        EXPECT_TRUE(Send(upload, size));
        const std::string wire = TakeWire();
        const std::string whole = std::to_string(size / 4096);
        const std::string prepare = "prepare 2," + std::to_string(size) + ",77; ";
        EXPECT_EQ(wire, upload == Display ? prepare + "15; 16; 5; 6; 7; 14; " + data + "; 11" +
                                                (whole == "0" ? "" : "@" + whole)
                        : upload == Target ? prepare + "15; 5; 7; 14; " + data
                                           : prepare + "1; " + data);
        EXPECT_EQ(Nabto.currentstreamlength, size);
    }
}

TEST_F(TFileUploadTest, LinesOfAnUpload) {
    Send(Display, 4096);
    EXPECT_THAT(TakeLines(),
                ElementsAre("PrepareUpdate return value -> 131072", "ST reset send ", "Wait Reset status ->0",
                            "status :0 retrycount :1", "ST init send ", "Wait Display Check status ->0",
                            "Display Pre Erase status ->0", "Wait Display pre erase status ->0",
                            "Start write filedata", "Write last bit of datafile", "Send program to display",
                            "RPC File upload done time elapsed ->2 sec"));
    Send(Target, 4096);
    EXPECT_THAT(TakeLines(),
                ElementsAre("PrepareUpdate return value -> 131072", "Reset send ", "Init send ",
                            "Pre Erase status ->0", "Wait RPC  Pre erase status ->0", "Start write filedata",
                            "Write last bit of datafile", "RPC File upload done time elapsed ->0 sec"));
    Send(Main, 4096);
    EXPECT_THAT(TakeLines(),
                ElementsAre("PrepareUpdate return value -> 131072", "RPC Start write filedata",
                            " RPC Write last bit of datafile", "RPC File upload done time elapsed ->0 sec"));
}

// The command dialogues, by the answers to each command.
TEST_F(TFileUploadTest, DialoguesBeforeTheData) {
    struct TCase {
        TUpload Upload;
        std::map<std::string, std::deque<std::int64_t>> Answers;
        bool Result;
        std::string Wire;    // between the preparation and the data, or all of it for a failure
        std::string HasLine; // among the lines
    };
    const std::string resets = "15; 16; 16; 16; 16; 16; 16; ";
    for (const auto& test : std::vector<TCase>{
             {Display,
              {{"prepareUpdate", {0, 1, NoReply, 2}}},
              true,
              "prepare; prepare; prepare; 15; 16; 5; 6; 7; 14",
              "PrepareUpdate return value -> 2"},
             {Display,
              {{"prepareUpdate", {0}}},
              true,
              "prepare; prepare; prepare; prepare; 15; 16; 5; 6; 7; 14",
              "PrepareUpdate return value -> 0"},
             {Display, {{"16", {3, 3, 0}}}, true, "15; 16; 16; 16; 5; 6; 7; 14", "status :0 retrycount :3"},
             {Display,
              {{"16", {3}}},
              true,
              resets + resets + resets + resets + "5; 6; 7; 14",
              "retry 5 times on reset wait just continue"},
             {Display,
              {{"15", {1, 6, 4, 1}}},
              true,
              "15; 15; 15; 15; 5; 6; 7; 14",
              "status :1 retrycount :0"},
             {Display, {{"15", {6}}}, false, "15; 15; 15; 15", "status :6 retrycount :0"},
             {Display, {{"16", {6, 0}}}, true, "15; 16; 15; 16; 5; 6; 7; 14", "status :6 retrycount :1"},
             {Display, {{"5", {1}}}, false, "15; 16; 5", "ST init send "},
             {Display,
              {{"6", {1, 2, NoReply, 0}}},
              true,
              "15; 16; 5; 6; 6; 6; 6; 7; 14",
              "Wait Display Check status ->2"},
             {Display, {{"6", {6}}}, false, "15; 16; 5; 6; 12; 13", "Send Go status ->0"},
             {Display,
              {{"7", {7}}},
              false,
              "15; 16; 5; 6; 7; 12; 13",
              "Send DeInit and Abort upload status ->0"},
             {Display,
              {{"14", {7, 7, 7, 7, 7, 1, 7, 7, 7, 7, 7, 7, 0}}},
              false,
              "15; 16; 5; 6; 7; 14; 14; 14; 14; 14; 14; 14; 14; 14; 14; 14; 14; 12; 13",
              "Wait Display pre erase status ->7"},
             {Target, {{"15", {6}}}, false, "15", "Reset send "},
             {Target, {{"5", {6}}}, false, "15; 5", "Init send "},
             {Target, {{"7", {6}}}, false, "15; 5; 7", "Pre Erase status ->6"},
             {Target,
              {{"15", {1}}, {"5", {3}}, {"7", {7}}, {"14", {3, 1}}},
              true,
              "15; 5; 7; 14; 14",
              "Wait RPC  Pre erase status ->3"},
             {Target,
              {{"14", {7}}},
              true,
              "15; 5; 7; 14; 14; 14; 14; 14; 14",
              "Wait RPC  Pre erase status ->7"},
             {Target, {{"14", {6}}}, false, "15; 5; 7; 14", "Wait RPC  Pre erase status ->6"},
             {Main, {{"1", {1, 6, 3, 2, 0}}}, true, "1; 1; 1; 1; 1", "RPC Start write filedata"},
             {Main, {{"1", {1}}}, false, "1; 1; 1; 1; 1", "PrepareUpdate return value -> 131072"},
         }) {
        SCOPED_TRACE(test.Wire);
        for (const auto& [kind, answers] : test.Answers)
            Reply(kind, answers);
        if (test.Upload == Main && !test.Result)
            Dialogs.ExpectMessage("Device does not support RPC fileupload");
        EXPECT_EQ(Send(test.Upload, 0), test.Result);
        std::string wire = TakeWire();
        for (auto at = wire.find(" 2,0,77"); at != std::string::npos; at = wire.find(" 2,0,77"))
            wire.erase(at, 7);
        wire.erase(0, std::string("prepare; ").size());
        if (test.Result)
            wire.resize(wire.find(test.Upload == Main ? "; 2 #" : "; 8 #"));
        EXPECT_EQ(wire, test.Wire);
        EXPECT_THAT(TakeLines(), testing::Contains(test.HasLine));
        ResetAnswers();
    }
}

TEST_F(TFileUploadTest, BlocksThatFail) {
    struct TCase {
        const char* Name;
        TUpload Upload;
        std::deque<std::int64_t> Added;
        std::size_t Size;
        bool Result;
        std::string Data;
    };
    for (const auto& test : std::vector<TCase>{
             {"display gives up at once", Display, {0, 1, 0}, 8192, false, "8 #1-2 x256; 13"},
             {"behind the first block", Display, std::deque<std::int64_t>(16, 0), 8192, false,
              "8 #1-17 x256; 13@1"},
             {"the last part counts as success", Display, std::deque<std::int64_t>(16, 0), 4097, true,
              "8 #1-16 x256; 8 #17 x1; 13@1"},
             {"six times the same block, and no last part",
              Target,
              {1},
              4097,
              false,
              "8 #1 x256; 8 #1 x256; 8 #1 x256; 8 #1 x256; 8 #1 x256; 8 #1 x256"},
             {"repaired for a target", Target, {3, 0}, 4096, true, "8 #1 x256; 8 #1-16 x256; 8 #17 x0"},
             {"repaired for the main processor: once more, and failed",
              Main,
              {3, 0},
              4096,
              false,
              "2 #1 x256; 2 #1-32 x256; 2 #33 x0"},
             {"the main processor gets the last part anyway",
              Main,
              {1},
              4096 + 256,
              false,
              "2 #1 x256; 2 #1 x256; 2 #1 x256; 2 #1 x256; 2 #1 x256; 2 #1 x256; 2 #1 x256"},
         }) {
        SCOPED_TRACE(test.Name);
        const bool late = test.Added.size() == 16;
        auto added = test.Added;
        if (late)
            added.push_back(1);
        Upload.RPCPacketNumber = 1;
        Reply(test.Upload == Main ? "2" : "8", added);
        EXPECT_EQ(Send(test.Upload, test.Size), test.Result);
        const std::string wire = TakeWire();
        EXPECT_THAT(wire, testing::EndsWith("; " + test.Data));
        EXPECT_EQ(TakeLines().back().substr(0, 35), "RPC File upload done time elapsed -");
        ResetAnswers();
    }
}

TEST_F(TFileUploadTest, PreEraseBeforeAStream) {
    struct TCase {
        std::deque<std::int64_t> PreErase, Wait;
        bool Result;
        std::string Wire;
        TLines Last; // lines
    };
    for (const auto& test : std::vector<TCase>{
             {{3, 0},
              {1, 0},
              true,
              "7; 7; 14; 14",
              {"Wait RPC  Pre erase status ->1", "Wait RPC  Pre erase status ->0"}},
             {{7},
              {},
              false,
              "7; 12; 13",
              {"RPC Pre Erase status ->7", "RPC Go status ->0", "RPC  DeInit and Abort upload status ->0"}},
             {{0},
              {7},
              false,
              "7; 14; 14; 14; 14; 14; 14; 12; 13",
              {"RPC Go status ->0", "RPC DeInit and Abort upload status ->0"}},
         }) {
        Nabto.currentstreamlength = 5;
        Reply("7", test.PreErase);
        Reply("14", test.Wait);
        EXPECT_EQ(Upload.RpcPreErase(), test.Result);
        EXPECT_EQ(TakeWire(), test.Wire);
        auto lines = TakeLines();
        lines.erase(lines.begin(), lines.end() - static_cast<std::ptrdiff_t>(test.Last.size()));
        EXPECT_EQ(lines, test.Last);
        EXPECT_EQ(Nabto.currentstreamlength, 0U);
    }
    EXPECT_THAT(Time.Sleeps, testing::Each(500));
}

TEST_F(TFileUploadTest, AFileByStream) {
    Files.Put("/pkg/sub/a.bin", std::string(1025, 'y'));
    EXPECT_TRUE(Upload.StreamUpload(3, 1025, "sub\\a.bin", 99));
    EXPECT_EQ(TakeWire(), "prepare 3,1025,99; flash 131072,1025");
    EXPECT_THAT(TakeLines(), ElementsAre("File3 Address: 131072", "flashWrite.json status-> 0", "Trys: 0",
                                         "Starting stream...", "Writing file3 to stream...", "Write Success",
                                         "closing stream...", "Stream Closed"));
    EXPECT_EQ(Library.Written, std::vector<std::uint8_t>(1025, 'y'));
    EXPECT_EQ(Time.Sleeps, (std::vector<int>{500, 500, 500, 500, 10, 10, 10}));

    // What the package says and what the file holds.
    EXPECT_TRUE(Upload.StreamWriteFile(3, "/pkg/sub/a.bin", 1026));
    EXPECT_THAT(TakeLines(), ElementsAre("File3 has 1025 bytes, not 1026: nothing is sent"));
    streamDelayEdit.SetText("soon");
    EXPECT_TRUE(Upload.StreamWriteFile(3, "/pkg/sub/a.bin", 1024));
    EXPECT_EQ(Library.Written.size(), 2049U);
    EXPECT_THROW(Upload.StreamUpload(1, 5, "none.bin", 1), EInOutError);
}

TEST_F(TFileUploadTest, AStreamIsTriedAgain) {
    Files.Put("/pkg/a.bin", "abc");
    const std::string restart = "Restarting device and trying again";
    // Refused at each of its steps once, then sent.
    Nabto.errormessage = "no room";
    Dialogs.ExpectMessage("no room");
    Reply("prepareUpdate", {1, 0, 1, 0, 1, 131072});
    Reply("flashWrite", {2, 2, 2, 2, 2, 0});
    Reply("admincmd", {1, 0});
    Library.Results["nabtoStreamOpen"] = {NABTO_FAILED, NABTO_OK, NABTO_OK, NABTO_OK};
    Dialogs.ExpectMessage("failed");
    Library.Results["nabtoStreamWrite"] = {NABTO_FAILED, NABTO_OK, NABTO_OK};
    Library.Results["nabtoStreamClose"] = {NABTO_OK, NABTO_FAILED, NABTO_OK};
    Dialogs.ExpectMessage("failed");
    EXPECT_TRUE(Upload.StreamUpload(1, 3, "a.bin", 9));
    const auto lines = TakeLines();
    EXPECT_EQ(std::ranges::count(lines, restart), 5);
    TLines tries;
    std::ranges::copy_if(lines, std::back_inserter(tries),
                         [](const auto& l) { return l.starts_with("Trys"); });
    EXPECT_THAT(tries, ElementsAre("Trys: 1", "Trys: 2", "Trys: 3", "Trys: 4"));
    EXPECT_EQ(TakeWire(),
              "prepare 1,3,9; prepare 1,3,9; prepare 1,3,9; prepare 1,3,9; prepare 1,3,9; admin 42; "
              "admin 42; prepare 1,3,9; flash 131072,3; flash 131072,3; flash 131072,3; "
              "flash 131072,3; flash 131072,3; admin 42; prepare 1,3,9; flash 131072,3; admin 42; "
              "prepare 1,3,9; flash 131072,3; admin 42; prepare 1,3,9; flash 131072,3; admin 42; "
              "prepare 1,3,9; flash 131072,3");

    // Five tries are enough.
    Reply("flashWrite", {0});
    Library.Results["nabtoStreamOpen"] = {NABTO_FAILED, NABTO_FAILED, NABTO_FAILED, NABTO_FAILED,
                                          NABTO_FAILED};
    Dialogs.AllowMessage("failed");
    EXPECT_FALSE(Upload.StreamUpload(1, 3, "a.bin", 9));
    EXPECT_EQ(TakeLines().back(), "retrying...");
}

// A device that never takes what it is sent must not hold a program that is closed.
TEST_F(TFileUploadTest, AClosedProgramEndsEveryWait) {
    const auto closeAfter = [this](int calls) {
        Exchanges = 0;
        Open = true;
        OnExchange = [this, calls] {
            if (Exchanges >= calls)
                Open = false;
        };
    };
    Reply("6", {3});
    closeAfter(100);
    EXPECT_THROW(Send(Display, 1), EProgramClosed);
    EXPECT_EQ(Exchanges, 100);
    Reply("prepareUpdate", {0});
    Dialogs.AllowMessage("Device is not available");
    closeAfter(50);
    EXPECT_THROW(Upload.StreamUpload(1, 3, "a.bin", 9), EProgramClosed);
    EXPECT_EQ(Exchanges, 50);
    Reply("prepareUpdate", {});
    Files.Put("/pkg/a.bin", "abc");
    Library.Results["nabtoStreamWrite"] = std::deque<std::uint8_t>(1000, NABTO_BUFFER_FULL);
    closeAfter(30);
    EXPECT_THROW(Upload.StreamUpload(1, 3, "a.bin", 9), EProgramClosed);
    EXPECT_EQ(Exchanges, 31); // the stream is still closed
    EXPECT_THAT(Library.Calls.back(), HasSubstr("nabtoStreamClose"));
}

} // namespace

} // namespace tidewell::test
