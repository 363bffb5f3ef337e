#include "link/FileUpload.h"

#include "UpdateFixture.h"
#include "core/Errors.h"

namespace tidewell::test {

namespace {

// What no run of the whole program tells yet.
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

TEST_F(TFileUploadTest, RunsOfPackets) {
    struct TCase {
        TUpload Upload;
        std::size_t Size;
        std::string Data;
    };
    for (const auto& [upload, size, data] : std::vector<TCase>{
             {Display, 8192, "8 #1-32 x256; 8 #33 x0"},
             {Display, 0, "8 #1-17 x0"},
             {Target, 8192, "8 #1-32 x256; 8 #33 x0"},
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

// The command dialogues, by the answers to each command.
TEST_F(TFileUploadTest, DialoguesBeforeTheData) {
    struct TCase {
        TUpload Upload;
        std::map<std::string, std::deque<std::int64_t>> Answers;
        bool Result;
        std::string Wire;    // between the preparation and the data, or all of it for a failure
        std::string HasLine; // among the lines
    };
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
             {Display,
              {{"15", {1, 6, 4, 1}}},
              true,
              "15; 15; 15; 15; 5; 6; 7; 14",
              "status :1 retrycount :0"},
             {Display, {{"16", {6, 0}}}, true, "15; 16; 15; 16; 5; 6; 7; 14", "status :6 retrycount :1"},
             {Display,
              {{"14", {7, 7, 7, 7, 7, 1, 7, 7, 7, 7, 7, 7, 0}}},
              false,
              "15; 16; 5; 6; 7; 14; 14; 14; 14; 14; 14; 14; 14; 14; 14; 14; 14; 12; 13",
              "Wait Display pre erase status ->7"},
             {Target, {{"5", {6}}}, false, "15; 5", "Init send "},
             {Target,
              {{"15", {1}}, {"5", {3}}, {"7", {7}}, {"14", {3, 1}}},
              true,
              "15; 5; 7; 14; 14",
              "Wait RPC  Pre erase status ->3"},
             {Target, {{"14", {6}}}, false, "15; 5; 7; 14", "Wait RPC  Pre erase status ->6"},
             {Main, {{"1", {1, 6, 3, 2, 0}}}, true, "1; 1; 1; 1; 1", "RPC Start write filedata"},
         }) {
        SCOPED_TRACE(test.Wire);
        for (const auto& [kind, answers] : test.Answers)
            Reply(kind, answers);
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

TEST_F(TFileUploadTest, AFileByStream) {
    Files.Put("/pkg/sub/a.bin", std::string(1025, 'y'));
    streamDelayEdit.SetText("soon");                             // as none
    EXPECT_TRUE(Upload.StreamUpload(3, 1024, "sub\\a.bin", 99)); // what the package says
    EXPECT_EQ(Library.Written.size(), 1024U);
    EXPECT_THROW(Send(Display, 1), EConvertError);
    Library.Results["nabtoStreamClose"] = {NABTO_FAILED, NABTO_OK};
    Dialogs.ExpectMessage("failed");
    TakeWire();
    EXPECT_TRUE(Upload.StreamUpload(3, 1025, "sub\\a.bin", 99));
    EXPECT_EQ(TakeWire(),
              "prepare 3,1025,99; flash 131072,1025; admin 42; prepare 3,1025,99; flash 131072,1025");
}

} // namespace

} // namespace tidewell::test
