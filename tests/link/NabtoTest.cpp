#include "link/Nabto.h"

#include "FakeNabto.h"
#include "core/Errors.h"
#include "support/IdleProgram.h"
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
        Nabto = std::make_unique<TUNabto>(Program, Library, Dialogs, Time, Time, Files, "/app");
        return *Nabto;
    }
    // The calls so far, which are then forgotten.
    std::vector<std::string> Calls() { return std::exchange(Library.Calls, {}); }

    TIdleProgram Program;
    TMemoryFiles Files;
    TVirtualTime Time;
    TScriptedDialogs Dialogs;
    TFakeNabto Library;
    std::unique_ptr<TUNabto> Nabto;
};

const std::string standaloneCall = "nabtoRpcSetDefaultInterface session <a>  <b/></a>";
const std::string gatewayCall = "nabtoRpcSetDefaultInterface session <gateway/>";

TEST_F(TNabtoTest, InitTellsWhatStoodInTheWay) {
    const std::vector<std::string> open{"nabtoStartup nabto_config", "nabtoOpenSession u p"};
    const std::vector<std::string> create{"nabtoStartup nabto_config", "nabtoOpenSession u p",
                                          "nabtoCreateProfile u p"};
    struct TCase {
        std::map<std::string, std::deque<std::uint8_t>> Results;
        int Result;
        std::string Message; // empty: none
        std::vector<std::string> Calls, MoreCalls;
    };
    const TCase cases[] = {
        {{{"nabtoStartup", {NABTO_FAILED}}}, NABTO_FAILED, "", {open[0]}, {}},
        {{}, 0, "", open, {standaloneCall}},
        {{{"nabtoOpenSession", {1}}}, 0, "", create, {open[1], standaloneCall}},
        {{{"nabtoOpenSession", {1, 3}}}, 3, "status 3", create, {open[1]}},
        {{{"nabtoOpenSession", {1}}, {"nabtoCreateProfile", {2}}}, 2, "status 2", create, {}},
    };
    for (TCase test : cases) {
        Make().queriesFile = "gateway.xml";
        Library.Results = test.Results;
        if (!test.Message.empty())
            Dialogs.ExpectMessage(test.Message);
        EXPECT_EQ(Nabto->Init("u", "p"), test.Result);
        EXPECT_TRUE(Dialogs.AllAnswered());
        test.Calls.insert(test.Calls.end(), test.MoreCalls.begin(), test.MoreCalls.end());
        EXPECT_EQ(Calls(), test.Calls);
        Nabto.reset();
        Calls();
    }
}

TEST_F(TNabtoTest, EveryEntryPointMayBeMissing) {
    const std::string noStart = "NabtoStartUp/NabtoOpenSession";
    struct TCase {
        std::string Symbol;
        std::function<void(TUNabto&)> Use;
        std::string Told; // in "No ... Function Loaded"; empty: no message
    };
    const std::array<std::uint8_t, 1> data{1};
    const std::vector<TCase> cases{
        {"nabtoStartup", [](TUNabto& n) { EXPECT_EQ(n.Init("u", "p"), -1); }, noStart},
        {"nabtoOpenSession", [](TUNabto& n) { EXPECT_EQ(n.Init("u", "p"), -1); }, noStart},
        {"nabtoCreateProfile", [](TUNabto& n) { EXPECT_EQ(n.Init("u", "p"), 1); }, "NabtoCreateProfile"},
        {"nabtoRpcSetDefaultInterface", [](TUNabto& n) { EXPECT_FALSE(n.setQueriesFile("standalone.xml")); },
         ""},
        {"nabtoRpcInvoke", [](TUNabto& n) { EXPECT_EQ(n.SendQuery("d", "q", "{}"), ""); }, ""},
        {"nabtoStartup", [](TUNabto& n) { EXPECT_THAT(n.GetLocal(), IsEmpty()); }, ""},
        {"nabtoGetLocalDevices", [](TUNabto& n) { EXPECT_THAT(n.GetLocal(), IsEmpty()); }, ""},
        {"nabtoStreamOpen", [](TUNabto& n) { EXPECT_FALSE(n.StartStream("d")); }, "NabtoStreamOpen"},
        {"nabtoStreamClose", [](TUNabto& n) { EXPECT_TRUE(n.StopStream()); }, "NabtoStreamClose"},
        {"nabtoStreamReadIntoBuf", [](TUNabto& n) { EXPECT_EQ(n.ReadStream(5).AtLength(5), std::nullopt); },
         "NabtoStreamReadData"},
        {"nabtoStreamWrite", [&](TUNabto& n) { EXPECT_EQ(n.WriteStream(data, 0), NABTO_FAILED); },
         "NabtoStreamWrite"},
        {"nabtoStatusStr", [](TUNabto& n) { n.ShowError(NABTO_FAILED); }, "NabtoStatusStr"},
        {"nabtoStatusStr", [](TUNabto& n) { EXPECT_EQ(n.GetNabtoStatusStr(NABTO_FAILED), ""); },
         "NabtoStatusStr"},
        {"nabtoCloseSession", [](TUNabto& n) { n.Close(); }, "NabtoCloseSession"},
        {"nabtoShutdown", [](TUNabto& n) { n.Close(); }, "NabtoShutdown"},
    };
    for (const auto& [symbol, use, told] : cases) {
        Nabto.reset();
        Library.Missing = {symbol};
        Library.Results["nabtoOpenSession"] = {NABTO_NO_PROFILE};
        const std::string message = "No " + told + " Function Loaded";
        if (!told.empty())
            Dialogs.ExpectMessage(message);
        use(Make());
        EXPECT_TRUE(Dialogs.AllAnswered()) << symbol;
        if (told == "NabtoCloseSession" || told == "NabtoShutdown")
            Dialogs.ExpectMessage(message); // the destructor closes again
    }
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
    for (const char* error : {"bad line", ""}) {
        Library.InterfaceError = error;
        Dialogs.ExpectMessage(*error != '\0' ? error : "status 2");
        EXPECT_FALSE(Nabto->setQueriesFile("gateway.xml"));
    }
    EXPECT_TRUE(Nabto->setQueriesFile("gateway.xml"));
}

TEST_F(TNabtoTest, ListsLocalDevicesInTheLibrarysOrder) {
    Library.LocalDevices = {"200000000002", "100000000001"};
    EXPECT_THAT(Make().GetLocal(), ElementsAre("200000000002", "100000000001"));
    for (const char* failing : {"nabtoGetLocalDevices", "nabtoStartup"}) {
        Library.Results[failing] = {NABTO_FAILED};
        EXPECT_THAT(Nabto->GetLocal(), IsEmpty()) << failing;
    }
}

TEST_F(TNabtoTest, SendsAQueryBetweenTwoTurnsOfTheEventLoop) {
    Make().Init("u", "p");
    Calls();
    std::vector<std::string> order;
    const auto turn = [&](const char* name) { Time.After(0, [&order, name] { order.push_back(name); }); };
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
    struct TCase {
        const char *Json, *Values;
        int Status;
        std::uint32_t Pong;
        const char* Error; // "-": the one before
    };
    const TCase cases[] = {
        {"", "No JS\r\n", 1, 1, "-"},
        {"[1]", "No JS\r\n[1]", 1, 1, "-"},
        {"{}", "", -1, 0, "-"},
        {R"({"error":{"body":"busy"},"response":{"Pong":1886350951,"status":0}})", "error", 1, 1, "busy"},
        {R"({"response":{"status":0}})", R"({"response":{"status":0}})", 0, 0, "-"},
        {R"({"response":{"status":"0"}})", R"({"response":{"status":"0"}})", -1, 0, "-"},
        {R"({"response":{"status":4294901762,"data":[{"value":12},{"value":-3}]}})", "12; -3; ", -65534, 0,
         "-"},
        {R"({"response":{"Pong":"1886350951","data":[]}})", "", -1, 0, "-"},
    };
    Make();
    for (const auto& test : cases) {
        Nabto->SlaveDeviceNum = Nabto->SlaveModel = Nabto->GatewayVersion = "old";
        const auto told = [&] {
            EXPECT_EQ(std::exchange(Nabto->errormessage, "-"), test.Error) << test.Json;
        };
        Nabto->errormessage = "-";
        EXPECT_EQ(Nabto->JsonToValue(test.Json), test.Values);
        told();
        EXPECT_EQ(Nabto->getResponseStatus(test.Json), test.Status) << test.Json;
        told();
        EXPECT_EQ(Nabto->getpingResponse(test.Json), test.Pong) << test.Json;
        told();
        EXPECT_EQ(Nabto->SlaveDeviceNum + Nabto->SlaveModel + Nabto->GatewayVersion, "");
    }
    Nabto->versionNP = "kept";
    EXPECT_EQ(Nabto->getpingResponse(R"({"response":{"Pong":1886350951,"Devicenumber":1001,"Model":30015,
        "Version HP":2.10,"Version NP":"3","Version HBDE":4,"SlaveDevicenumber":5,"SlaveModel":6,"Version":7}})"),
              PongWord);
    EXPECT_THAT(
        (std::vector{Nabto->varenummer, Nabto->model, Nabto->versionHP, Nabto->versionNP, Nabto->versionBT,
                     Nabto->SlaveDeviceNum, Nabto->SlaveModel, Nabto->GatewayVersion}),
        ElementsAre("1001", "30015", "2.10", "kept", "4", "5", "6", "7"));
    EXPECT_TRUE(Nabto->isZelt4());
}

TEST_F(TNabtoTest, PingInstallsTheInterfaceThatFits) {
    Make().Init("u", "p");
    Calls();
    const std::string url = "nabtoRpcInvoke session nabto://d/ping.json?json=" + PingRequest();
    const std::string pong = R"({"response":{"Pong":1886350951,"Model":)";
    const auto ping = [&](const std::string& reply) {
        Library.Reply = [&reply](const std::string&) { return reply; };
        return Nabto->ping("d");
    };
    EXPECT_TRUE(ping(pong + "30012}}"));
    EXPECT_THAT(Calls(), ElementsAre(url, gatewayCall, url));
    EXPECT_TRUE(ping(pong + "30012}}"));
    EXPECT_THAT(Calls(), ElementsAre(url));
    EXPECT_TRUE(ping(pong + "30015}}"));
    EXPECT_EQ(Nabto->queriesFile, "standalone.xml");
    EXPECT_THAT(Calls(), ElementsAre(url, standaloneCall, url));
    EXPECT_FALSE(ping(R"({"response":{"Pong":1,"Model":30012}})"));
    EXPECT_THAT(Calls(), ElementsAre(url));
}

class TNabtoStreamTest : public TNabtoTest {
  protected:
    TNabtoStreamTest() {
        Make().Init("u", "p");
        EXPECT_TRUE(Nabto->StartStream("d"));
        Nabto->FOnUpdateProgress = [this](TStreamProgress& progress) {
            Progress.push_back(progress.currentstreamprogress);
            Progress.push_back(progress.currentstreamlength);
        };
        Calls();
    }
    const std::string Read = "nabtoStreamReadIntoBuf stream 4";
    const std::string Write = "nabtoStreamWrite stream 512";
    const std::string Close = "nabtoStreamClose stream";
    std::vector<std::uint32_t> Progress; // each time how far, of how much
};

TEST_F(TNabtoStreamTest, OpenAndCloseHaveOppositeSenses) {
    EXPECT_FALSE(Nabto->StopStream());
    Library.Results["nabtoStreamClose"] = {2};
    Dialogs.ExpectMessage("status 2");
    EXPECT_TRUE(Nabto->StopStream());
    Library.Results["nabtoStreamOpen"] = {3};
    Dialogs.ExpectMessage("status 3");
    EXPECT_FALSE(Nabto->StartStream("d"));
    EXPECT_THAT(Calls(), ElementsAre(Close, Close, "nabtoStreamOpen session d"));
}

TEST_F(TNabtoStreamTest, ReadsChunksWithTheFullLengthAsCapacity) {
    Library.Chunks = {{1}, {2, 3}, {4, 5, 6, 7}}; // the last one runs on behind the length
    EXPECT_EQ(Nabto->ReadStream(4).AtLength(4), (std::vector<std::uint8_t>{1, 2, 3, 4}));
    EXPECT_THAT(Calls(), ElementsAre(Read, Read, Read));
    EXPECT_THAT(Progress, ElementsAre(1, 4, 3, 4, 4, 4));
    EXPECT_EQ(Nabto->ReadStream(0).AtLength(0), std::vector<std::uint8_t>());
    EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(TNabtoStreamTest, AReadThatTakesTooLongOrThrowsKeepsWhatCame) {
    Library.Chunks = {{1}, {2}, {3}};
    Library.OnCall = [this] {
        if (Library.Chunks.size() == 2)
            Time.Advance(2000);
    };
    Dialogs.ExpectMessage("Stream Read, Timeout :(");
    EXPECT_EQ(Nabto->ReadStream(4).AtLength(4), (std::vector<std::uint8_t>{1, 2, 0, 0}));
    // A library that gives nothing and does not wait either.
    Library.OnCall = nullptr;
    Library.Chunks.clear();
    Dialogs.ExpectMessage("Stream Read, Timeout :(");
    EXPECT_EQ(Nabto->ReadStream(4).AtLength(4), std::vector<std::uint8_t>(4));
    Library.Chunks = {{9}};
    Nabto->FOnUpdateProgress = [](TStreamProgress&) { throw EListError("no row"); };
    Dialogs.ExpectMessage("EListError error raised, with message : no row");
    EXPECT_EQ(Nabto->ReadStream(2).AtLength(2), (std::vector<std::uint8_t>{9, 0}));
}

TEST_F(TNabtoStreamTest, ABrokenReadClosesUntilTheLibraryRefuses) {
    Library.Results["nabtoStreamReadIntoBuf"] = {NABTO_STREAM_CLOSED, 2};
    Dialogs.ExpectMessage("stream closed");
    EXPECT_EQ(Nabto->ReadStream(4).AtLength(4), std::nullopt);
    EXPECT_THAT(Calls(), ElementsAre(Read, Close, Close, Close, Close, Close, Close));
    EXPECT_EQ(Time.Sleeps, std::vector<int>(6, 1000));
    Library.Results["nabtoStreamClose"] = {NABTO_OK, 3};
    Dialogs.ExpectMessage("status 3");
    Dialogs.ExpectMessage("status 2");
    EXPECT_EQ(Nabto->ReadStream(4).AtLength(4), std::nullopt);
    EXPECT_EQ(Time.Sleeps.size(), 7U);
}

TEST_F(TNabtoStreamTest, WritesChunksOf512AndRepeatsAFullBuffer) {
    std::vector<std::uint8_t> data(1025);
    std::iota(data.begin(), data.end(), std::uint8_t{0});
    Library.Results["nabtoStreamWrite"] = {NABTO_OK, NABTO_BUFFER_FULL, NABTO_BUFFER_FULL, NABTO_OK};
    EXPECT_EQ(Nabto->WriteStream(data, 10), NABTO_OK);
    EXPECT_THAT(Calls(), ElementsAre(Write, Write, Write, Write, "nabtoStreamWrite stream 1"));
    EXPECT_EQ(Library.Written, data);
    EXPECT_THAT(Progress, ElementsAre(512, 1025, 1024, 1025, 1025, 1025));
    EXPECT_EQ(Time.Sleeps, std::vector<int>(5, 10));
}

TEST_F(TNabtoStreamTest, WritesEndAtTheFirstOtherStatus) {
    const std::vector<std::uint8_t> data(600);
    EXPECT_EQ(Nabto->WriteStream({}, 10), NABTO_FAILED);
    EXPECT_THAT(Calls(), IsEmpty());
    Library.Results["nabtoStreamWrite"] = {NABTO_ABORTED, NABTO_STREAM_CLOSED};
    EXPECT_EQ(Nabto->WriteStream(data, 0), NABTO_ABORTED);
    EXPECT_THAT(Calls(), ElementsAre(Write));
    Library.Results["nabtoStreamClose"] = {2};
    Dialogs.ExpectMessage("status 2");
    EXPECT_EQ(Nabto->WriteStream(data, 0), NABTO_STREAM_CLOSED);
    EXPECT_THAT(Calls(), ElementsAre(Write, Close));
    // The event loop runs while a chunk is written, and its time is over.
    Library.OnCall = [this] { Time.Advance(1); };
    EXPECT_EQ(Nabto->WriteStream(data, 0), NABTO_OK);
    EXPECT_THAT(Calls(), ElementsAre(Write));
}

} // namespace

} // namespace tidewell::test
