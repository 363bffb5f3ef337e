#include "link/Nabto.h"

#include "FakeNabto.h"
#include "core/Errors.h"
#include "support/MemoryFiles.h"
#include "support/ScriptedDialogs.h"
#include "support/VirtualTime.h"

#include <gmock/gmock.h>

#include <memory>
#include <numeric>

namespace tidewell::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TNabtoTest : public testing::Test {
  public:
    TNabtoTest() {
        Files.Put("/app/nabto_config/standalone.xml", "<a>\r\n  <b/>\n</a>");
        Files.Put("/app/nabto_config/gateway.xml", "<gateway/>");
    }
    ~TNabtoTest() override {
        // Close has its own test.
        if (Nabto) {
            for (const char* closing : {"NabtoCloseSession", "NabtoShutdown"})
                Dialogs.AllowMessage(std::string("No ") + closing + " Function Loaded");
            Nabto.reset();
        }
    }

  protected:
    TUNabto& Make() {
        Nabto = std::make_unique<TUNabto>(Library, Dialogs, Time, Time, Files, "/app");
        return *Nabto;
    }
    // The calls so far, which are then forgotten.
    std::vector<std::string> Calls() { return std::exchange(Library.Calls, {}); }
    void AnswerAll(const std::string& reply) {
        Library.Reply = [reply](const std::string&) {
            return reply;
        };
    }

    TMemoryFiles Files;
    TVirtualTime Time;
    TScriptedDialogs Dialogs;
    TFakeNabto Library;
    std::unique_ptr<TUNabto> Nabto;
};

const std::string standaloneCall = "nabtoRpcSetDefaultInterface session <a>  <b/></a>";
const std::string gatewayCall = "nabtoRpcSetDefaultInterface session <gateway/>";

TEST_F(TNabtoTest, InitOpensTheSessionAndInstallsTheInterface) {
    Make().queriesFile = "gateway.xml";
    EXPECT_EQ(Nabto->Init("u", "p"), 0);
    EXPECT_EQ(Nabto->queriesFile, "standalone.xml");
    EXPECT_THAT(Calls(), ElementsAre("nabtoStartup nabto_config", "nabtoOpenSession u p", standaloneCall));
}

TEST_F(TNabtoTest, InitCreatesAMissingProfileWithoutAWord) {
    Library.Results["nabtoOpenSession"] = {NABTO_NO_PROFILE};
    EXPECT_EQ(Make().Init("u", "p"), 0);
    EXPECT_THAT(Calls(), ElementsAre("nabtoStartup nabto_config", "nabtoOpenSession u p",
                                     "nabtoCreateProfile u p", "nabtoOpenSession u p", standaloneCall));
}

TEST_F(TNabtoTest, InitTellsWhatStoodInTheWay) {
    struct TCase {
        std::string Symbol;
        std::deque<std::uint8_t> Results;
        int Result;
        std::string Message; // empty: none
    };
    const std::vector<TCase> cases{
        {"nabtoStartup", {NABTO_FAILED}, NABTO_FAILED, ""},
        {"nabtoCreateProfile", {2}, 2, "status 2"},
        {"nabtoOpenSession", {1, 3}, 3, "status 3"},
    };
    for (const auto& [symbol, results, result, message] : cases) {
        Make();
        Library.Results["nabtoOpenSession"] = {NABTO_NO_PROFILE};
        Library.Results[symbol] = results;
        if (!message.empty())
            Dialogs.ExpectMessage(message);
        EXPECT_EQ(Nabto->Init("u", "p"), result) << symbol;
        EXPECT_TRUE(Dialogs.AllAnswered());
        Library.Results.clear();
        for (const auto& call : Calls())
            EXPECT_FALSE(call.starts_with("nabtoRpcSetDefaultInterface")) << symbol;
    }
}

TEST_F(TNabtoTest, EveryEntryPointMayBeMissing) {
    const std::string noStart = "No NabtoStartUp/NabtoOpenSession Function Loaded";
    struct TCase {
        std::string Symbol;
        std::function<void(TUNabto&)> Use;
        std::string Message; // empty: none
    };
    const std::array<std::uint8_t, 1> data{1};
    const std::vector<TCase> cases{
        {"nabtoStartup", [](TUNabto& n) { EXPECT_EQ(n.Init("u", "p"), -1); }, noStart},
        {"nabtoOpenSession", [](TUNabto& n) { EXPECT_EQ(n.Init("u", "p"), -1); }, noStart},
        {"nabtoCreateProfile", [](TUNabto& n) { EXPECT_EQ(n.Init("u", "p"), 1); },
         "No NabtoCreateProfile Function Loaded"},
        {"nabtoRpcSetDefaultInterface", [](TUNabto& n) { EXPECT_FALSE(n.setQueriesFile("standalone.xml")); },
         ""},
        {"nabtoRpcInvoke", [](TUNabto& n) { EXPECT_EQ(n.SendQuery("d", "q", "{}"), ""); }, ""},
        {"nabtoStartup", [](TUNabto& n) { EXPECT_THAT(n.GetLocal(), IsEmpty()); }, ""},
        {"nabtoGetLocalDevices", [](TUNabto& n) { EXPECT_THAT(n.GetLocal(), IsEmpty()); }, ""},
        {"nabtoStreamOpen", [](TUNabto& n) { EXPECT_FALSE(n.StartStream("d")); },
         "No NabtoStreamOpen Function Loaded"},
        {"nabtoStreamClose", [](TUNabto& n) { EXPECT_TRUE(n.StopStream()); },
         "No NabtoStreamClose Function Loaded"},
        {"nabtoStreamReadIntoBuf", [](TUNabto& n) { EXPECT_EQ(n.ReadStream(5), std::nullopt); },
         "No NabtoStreamReadData Function Loaded"},
        {"nabtoStreamWrite", [&](TUNabto& n) { EXPECT_EQ(n.WriteStream(data, 0), NABTO_FAILED); },
         "No NabtoStreamWrite Function Loaded"},
        {"nabtoStatusStr", [](TUNabto& n) { n.ShowError(NABTO_FAILED); },
         "No NabtoStatusStr Function Loaded"},
        {"nabtoStatusStr", [](TUNabto& n) { EXPECT_EQ(n.GetNabtoStatusStr(NABTO_FAILED), ""); },
         "No NabtoStatusStr Function Loaded"},
        {"nabtoCloseSession", [](TUNabto& n) { n.Close(); }, "No NabtoCloseSession Function Loaded"},
        {"nabtoShutdown", [](TUNabto& n) { n.Close(); }, "No NabtoShutdown Function Loaded"},
    };
    for (const auto& [symbol, use, message] : cases) {
        Nabto.reset();
        Library.Missing = {symbol};
        Library.Results["nabtoOpenSession"] = {NABTO_NO_PROFILE};
        if (!message.empty())
            Dialogs.ExpectMessage(message);
        use(Make());
        EXPECT_TRUE(Dialogs.AllAnswered()) << symbol;
        if (message == "No NabtoCloseSession Function Loaded" ||
            message == "No NabtoShutdown Function Loaded")
            Dialogs.ExpectMessage(message); // the destructor closes again
    }
    Nabto.reset();
    Library.Missing.clear();
    Library.Present = false;
    Dialogs.ExpectMessage(noStart);
    EXPECT_EQ(Make().Init("u", "p"), -1);
}

TEST_F(TNabtoTest, ClosesSessionAndLibraryAtItsEnd) {
    Make().Init("u", "p");
    Calls();
    Library.Results["nabtoCloseSession"] = {2};
    Library.Results["nabtoShutdown"] = {3};
    Dialogs.ExpectMessage("status 2");
    Dialogs.ExpectMessage("status 3");
    Nabto.reset();
    EXPECT_THAT(Calls(), ElementsAre("nabtoCloseSession session", "nabtoShutdown"));
}

TEST_F(TNabtoTest, InterfaceDefinitions) {
    Make();
    EXPECT_FALSE(Nabto->setQueriesFile("other.xml"));
    EXPECT_THAT(Calls(), IsEmpty());
    Library.Results["nabtoRpcSetDefaultInterface"] = {NABTO_FAILED, 2};
    Library.InterfaceError = "bad line";
    Dialogs.ExpectMessage("bad line");
    EXPECT_FALSE(Nabto->setQueriesFile("gateway.xml"));
    Library.InterfaceError.clear();
    Dialogs.ExpectMessage("status 2");
    EXPECT_FALSE(Nabto->setQueriesFile("gateway.xml"));
    EXPECT_TRUE(Nabto->setQueriesFile("gateway.xml"));
}

TEST_F(TNabtoTest, ListsLocalDevicesInTheLibrarysOrder) {
    Library.LocalDevices = {"200000000002", "100000000001"};
    EXPECT_THAT(Make().GetLocal(), ElementsAre("200000000002", "100000000001"));
    EXPECT_THAT(Calls(), ElementsAre("nabtoStartup nabto_config", "nabtoGetLocalDevices"));
    Library.Results["nabtoGetLocalDevices"] = {NABTO_FAILED};
    EXPECT_THAT(Nabto->GetLocal(), IsEmpty());
    Library.Results["nabtoStartup"] = {NABTO_FAILED};
    EXPECT_THAT(Nabto->GetLocal(), IsEmpty());
}

TEST_F(TNabtoTest, SendsAQueryBetweenTwoTurnsOfTheEventLoop) {
    Make().Init("u", "p");
    Calls();
    std::vector<std::string> order;
    const auto turn = [&](const char* name) {
        Time.After(0, [&order, name] { order.push_back(name); });
    };
    turn("before");
    Library.Reply = [&](const std::string&) -> std::optional<std::string> {
        order.push_back("call");
        turn("after");
        return "{\"x\":\"\xE6\"}";
    };
    EXPECT_EQ(Nabto->SendQuery("1.remote", "ping.json", "{\"a\":\"b c\"}"), "{\"x\":\"æ\"}");
    EXPECT_THAT(order, ElementsAre("before", "call", "after"));
    EXPECT_THAT(Calls(),
                ElementsAre("nabtoRpcInvoke session nabto://1.remote/ping.json?json={\"a\":\"b c\"}"));
    EXPECT_EQ(
        Nabto->SendQuery("", "q", "d") + Nabto->SendQuery("d", "", "d") + Nabto->SendQuery("d", "q", ""), "");
    EXPECT_THAT(Calls(), IsEmpty());
    Library.Reply = nullptr;
    EXPECT_EQ(Nabto->SendQuery("d", "q", "x"), "");
}

TEST_F(TNabtoTest, ReadsReplies) {
    Make();
    EXPECT_EQ(Nabto->JsonToValue(""), "No JS\r\n");
    EXPECT_EQ(Nabto->JsonToValue("[1]"), "No JS\r\n[1]");
    EXPECT_EQ(Nabto->JsonToValue("{}"), "");
    EXPECT_EQ(Nabto->JsonToValue(R"({"response":{"status":0}})"), R"({"response":{"status":0}})");
    EXPECT_EQ(Nabto->JsonToValue(R"({"response":{"data":[{"value":12},{"value":0},{"value":345}]}})"),
              "12; 0; 345; ");
    EXPECT_EQ(Nabto->JsonToValue(R"({"error":{"body":"first"}})"), "error");
    EXPECT_EQ(Nabto->errormessage, "first");
    EXPECT_EQ(Nabto->getResponseStatus(R"({"error":{"body":"x"}})"), 1);
    EXPECT_EQ(Nabto->errormessage, "x");
    for (const auto& [json, status] :
         std::map<std::string, int>{{"", 1},
                                    {"{}", 1},
                                    {R"({"response":{}})", 1},
                                    {R"({"response":{"status":"0"}})", 1},
                                    {R"({"response":{"status":0.5}})", 1},
                                    {R"({"response":{"status":0}})", 0},
                                    {R"({"response":{"status":-7}})", -7},
                                    {R"({"response":{"status":4294901762}})", -65534}})
        EXPECT_EQ(Nabto->getResponseStatus(json), status) << json;
    EXPECT_EQ(Nabto->errormessage, "x");
}

TEST_F(TNabtoTest, PingRepliesFillTheIdentity) {
    Make().SlaveModel = "old";
    Nabto->versionNP = "kept";
    EXPECT_EQ(Nabto->getpingResponse("garbage"), 1U);
    EXPECT_EQ(Nabto->SlaveModel, "");
    EXPECT_EQ(Nabto->getpingResponse(R"({"error":{"body":"busy"},"response":{"Pong":1886350951}})"), 1U);
    EXPECT_EQ(Nabto->errormessage, "busy");
    EXPECT_EQ(Nabto->getpingResponse(R"({"response":{"Pong":"1886350951"}})"), 0U);
    EXPECT_EQ(Nabto->getpingResponse(R"({"response":{"Pong":1886350951,"Devicenumber":1001,"Model":30015,
        "Version HP":2.10,"Version NP":"3","Version HBDE":4,"SlaveDevicenumber":5,"SlaveModel":6,"Version":7}})"),
              PongWord);
    EXPECT_THAT(
        (std::vector{Nabto->varenummer, Nabto->model, Nabto->versionHP, Nabto->versionNP, Nabto->versionBT,
                     Nabto->SlaveDeviceNum, Nabto->SlaveModel, Nabto->GatewayVersion}),
        ElementsAre("1001", "30015", "2.10", "kept", "4", "5", "6", "7"));
    EXPECT_TRUE(Nabto->isZelt4());
    EXPECT_FALSE(Nabto->isGateway());
}

TEST_F(TNabtoTest, PingInstallsTheInterfaceThatFits) {
    Make().Init("u", "p");
    Calls();
    const std::string url = "nabtoRpcInvoke session nabto://d/ping.json?json=" + PingRequest();
    AnswerAll(R"({"response":{"Pong":1886350951,"Model":30012}})");
    EXPECT_TRUE(Nabto->ping("d"));
    EXPECT_THAT(Calls(), ElementsAre(url, gatewayCall, url));
    EXPECT_TRUE(Nabto->ping("d"));
    EXPECT_THAT(Calls(), ElementsAre(url));
    AnswerAll(R"({"response":{"Pong":1886350951,"Model":30015}})");
    EXPECT_TRUE(Nabto->ping("d"));
    EXPECT_EQ(Nabto->queriesFile, "standalone.xml");
    EXPECT_THAT(Calls(), ElementsAre(url, standaloneCall, url));
    AnswerAll(R"({"response":{"Pong":1,"Model":30012}})");
    EXPECT_FALSE(Nabto->ping("d"));
    EXPECT_THAT(Calls(), ElementsAre(url));
}

class TNabtoStreamTest : public TNabtoTest {
  protected:
    TNabtoStreamTest() {
        Make().Init("u", "p");
        EXPECT_TRUE(Nabto->StartStream("d"));
        Nabto->FOnUpdateProgress = [this](TStreamProgress& progress) {
            EXPECT_EQ(progress.currentstreamlength, Length);
            Progress.push_back(progress.currentstreamprogress);
        };
        Calls();
    }
    std::uint32_t Length = 0;
    std::vector<std::uint32_t> Progress;
};

TEST_F(TNabtoStreamTest, OpenAndCloseHaveOppositeSenses) {
    EXPECT_FALSE(Nabto->StopStream());
    Library.Results["nabtoStreamClose"] = {2};
    Dialogs.ExpectMessage("status 2");
    EXPECT_TRUE(Nabto->StopStream());
    Library.Results["nabtoStreamOpen"] = {3};
    Dialogs.ExpectMessage("status 3");
    EXPECT_FALSE(Nabto->StartStream("d"));
    EXPECT_THAT(Calls(), ElementsAre("nabtoStreamClose stream", "nabtoStreamClose stream",
                                     "nabtoStreamOpen session d"));
}

TEST_F(TNabtoStreamTest, ReadsChunksWithTheFullLengthAsCapacity) {
    Length = 4;
    Library.Chunks = {{1}, {2, 3}, {4, 5, 6, 7}}; // the last one runs on behind the length
    EXPECT_EQ(Nabto->ReadStream(4), (std::vector<std::uint8_t>{1, 2, 3, 4}));
    const std::string read = "nabtoStreamReadIntoBuf stream 4";
    EXPECT_THAT(Calls(), ElementsAre(read, read, read));
    EXPECT_THAT(Progress, ElementsAre(1, 3, 4));
    EXPECT_EQ(Nabto->ReadStream(0), std::vector<std::uint8_t>());
    EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(TNabtoStreamTest, AReadThatTakesTooLongKeepsWhatCame) {
    Length = 4;
    Library.Chunks = {{1}, {2}, {3}};
    int reads = 0;
    Library.OnCall = [&] {
        if (++reads == 2)
            Time.Advance(2000);
    };
    Dialogs.ExpectMessage("Stream Read, Timeout :(");
    EXPECT_EQ(Nabto->ReadStream(4), (std::vector<std::uint8_t>{1, 2, 0, 0}));
    // A library that gives nothing and does not wait either.
    Library.OnCall = nullptr;
    Library.Chunks.clear();
    Dialogs.ExpectMessage("Stream Read, Timeout :(");
    EXPECT_EQ(Nabto->ReadStream(4), std::vector<std::uint8_t>(4));
}

TEST_F(TNabtoStreamTest, ABrokenReadClosesUntilTheLibraryRefuses) {
    Library.Results["nabtoStreamReadIntoBuf"] = {NABTO_STREAM_CLOSED};
    Dialogs.ExpectMessage("stream closed");
    EXPECT_EQ(Nabto->ReadStream(4), std::nullopt);
    EXPECT_EQ(Calls(), (std::vector<std::string>{"nabtoStreamReadIntoBuf stream 4", "nabtoStreamClose stream",
                                                 "nabtoStreamClose stream", "nabtoStreamClose stream",
                                                 "nabtoStreamClose stream", "nabtoStreamClose stream",
                                                 "nabtoStreamClose stream"}));
    EXPECT_THAT(Time.Sleeps, ElementsAre(1000, 1000, 1000, 1000, 1000, 1000));
    Library.Results["nabtoStreamReadIntoBuf"] = {2};
    Library.Results["nabtoStreamClose"] = {NABTO_OK, 3};
    Dialogs.ExpectMessage("status 3");
    Dialogs.ExpectMessage("status 2");
    EXPECT_EQ(Nabto->ReadStream(4), std::nullopt);
    EXPECT_EQ(Time.Sleeps.size(), 7U);
}

TEST_F(TNabtoStreamTest, AnExceptionEndsTheReadWithItsText) {
    Library.Chunks = {{9}};
    Nabto->FOnUpdateProgress = [](TStreamProgress&) {
        throw EListError("no row");
    };
    Dialogs.ExpectMessage("EListError error raised, with message : no row");
    EXPECT_EQ(Nabto->ReadStream(2), (std::vector<std::uint8_t>{9, 0}));
}

TEST_F(TNabtoStreamTest, WritesChunksOf512AndRepeatsAFullBuffer) {
    std::vector<std::uint8_t> data(1025);
    std::iota(data.begin(), data.end(), std::uint8_t{0});
    Length = 1025;
    Library.Results["nabtoStreamWrite"] = {NABTO_OK, NABTO_BUFFER_FULL, NABTO_BUFFER_FULL, NABTO_OK};
    EXPECT_EQ(Nabto->WriteStream(data, 10), NABTO_OK);
    EXPECT_THAT(Calls(), ElementsAre("nabtoStreamWrite stream 512", "nabtoStreamWrite stream 512",
                                     "nabtoStreamWrite stream 512", "nabtoStreamWrite stream 512",
                                     "nabtoStreamWrite stream 1"));
    EXPECT_EQ(Library.Written, data);
    EXPECT_THAT(Progress, ElementsAre(512, 1024, 1025));
    EXPECT_THAT(Time.Sleeps, ElementsAre(10, 10, 10, 10, 10));
}

TEST_F(TNabtoStreamTest, WritesEndAtTheFirstOtherStatus) {
    const std::vector<std::uint8_t> data(600);
    EXPECT_EQ(Nabto->WriteStream({}, 10), NABTO_FAILED);
    EXPECT_THAT(Calls(), IsEmpty());
    Library.Results["nabtoStreamWrite"] = {NABTO_ABORTED};
    EXPECT_EQ(Nabto->WriteStream(data, 0), NABTO_ABORTED);
    EXPECT_THAT(Calls(), ElementsAre("nabtoStreamWrite stream 512"));
    Library.Results["nabtoStreamWrite"] = {NABTO_STREAM_CLOSED};
    Library.Results["nabtoStreamClose"] = {2};
    Dialogs.ExpectMessage("status 2");
    EXPECT_EQ(Nabto->WriteStream(data, 0), NABTO_STREAM_CLOSED);
    EXPECT_THAT(Calls(), ElementsAre("nabtoStreamWrite stream 512", "nabtoStreamClose stream"));
    // The event loop runs while a chunk is written, and its time is over.
    Library.OnCall = [&] {
        Time.Advance(1);
    };
    Length = 600;
    EXPECT_EQ(Nabto->WriteStream(data, 0), NABTO_OK);
    EXPECT_THAT(Calls(), ElementsAre("nabtoStreamWrite stream 512"));
    EXPECT_THAT(Progress, ElementsAre(512));
}

} // namespace

} // namespace tidewell::test
