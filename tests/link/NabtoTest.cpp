#include "link/Nabto.h"

#include "sim/nabto/InProcessLibrary.h"
#include "support/IdleProgram.h"
#include "support/Test.h"

#include <new>

namespace tidewell::test {

namespace {

// The bridge over the simulated library, which may lack symbols and end any call with any status.
class TNabtoTest : public testing::Test {
  protected:
    TNabtoTest() {
        Files.Put("/app/nabto_config/standalone.xml", "<query\r\n name=\"ping.json\"/>\n");
        Files.Put("/app/nabto_config/gateway.xml", "<query name=\"ping.json\" />");
        Files.Put("/app/nabto_config/bad.xml", "<query name=x/>");
    }
    void TearDown() override { Sim.OnCall = nullptr; } // the bridge still closes

    // A fresh bridge to a controller "a" that does what these rows tell.
    TUNabto& Make(const std::string& rows = {}) {
        Nabto.reset();
        Sim.Configure(ParseSimulation("[Simulation]\nControllers=b,a\n[Controller b]\nId=200000000002\n"
                                      "Model=1\nDevicenumber=2\n[Controller a]\nId=100000000001\n"
                                      "Model=30021\nDevicenumber=2\nStreamPiece=3\n" +
                                          rows,
                                      "simulation"));
        Sim.Shutdown();
        Nabto.emplace(Program, Library, Dialogs, Time, Time, Files, "/app");
        TakeCalls();
        return *Nabto;
    }
    TUNabto& MakeReady(const std::string& rows = {}) {
        EXPECT_EQ(Make(rows).Init("u", "p"), 0);
        TakeCalls();
        return *Nabto;
    }
    std::string TakeCalls() {
        std::erase(Library.Calls, "nabtoFree");
        return Join(std::exchange(Library.Calls, {}), "|");
    }
    // Of all boxes since.
    std::string TakeBoxes() { return Join(std::exchange(Dialogs.Boxes, {}), "|"); }

    TIdleProgram Program;
    TMemoryFiles Files;
    TVirtualTime Time;
    TFixedDialogs Dialogs;
    TPortTime SimulationTime{Time, Time};
    TSimulatedNabto Sim{Files, SimulationTime};
    TInProcessLibrary Library{Sim};
    std::optional<TUNabto> Nabto;
    const std::string Device = "100000000001";
};

TEST_F(TNabtoTest, EachCallByItsStatusOrWithoutItsSymbol) {
    const std::array<std::uint8_t, 1> data{1};
    const std::map<std::string, std::function<std::string()>> uses{
        {"init", [&] { return std::to_string(Nabto->Init("u", "p")); }},
        {"reopen", [&] { return std::to_string(Nabto->Reopen("u", "p")); }},
        {"close", [&] { return Nabto->Close(), ""; }},
        {"locals", [&] { return Join(Nabto->GetLocal(), ","); }},
        {"interface", [&] { return std::to_string(Nabto->setQueriesFile("gateway.xml")); }},
        {"query", [&] { return Nabto->SendQuery("1", "ping.json", "{}"); }},
        {"start", [&] { return std::to_string(Nabto->StartStream("1")); }},
        {"stop", [&] { return std::to_string(Nabto->StopStream()); }},
        {"read", [&] { return std::to_string(Nabto->ReadStream(5).Lost()); }},
        {"write", [&] { return std::to_string(Nabto->WriteStream(data, 0)); }},
        {"text", [&] { return Nabto->GetNabtoStatusStr(NABTO_ABORTED); }},
        {"short text", [&] { return Nabto->StatusText(NABTO_ABORTED); }},
    };
    const std::string up = "nabtoStartup nabto_config";
    const std::string open = up + "|nabtoOpenSession u p";
    const std::string created = open + "|nabtoCreateProfile u p";
    const std::string opened = created + "|nabtoOpenSession u p";
    const std::string bothClosed = "nabtoCloseSession|nabtoShutdown";
    const std::string noSession = "No NabtoStartUp/NabtoOpenSession Function Loaded";
    struct TCase {
        const char *Missing, *Fault, *Use, *Result; // a symbol; of the library
        std::string Box, Calls;
    };
    for (const auto& [missing, fault, use, result, box, calls] : std::vector<TCase>{
             {"nabtoStartup", "", "init", "-1", noSession, ""},
             {"nabtoOpenSession", "", "init", "-1", noSession, ""},
             {"nabtoCreateProfile", "", "init", "1", "No NabtoCreateProfile Function Loaded", open},
             {"", "nabtoStartup=NABTO_FAILED", "init", "18", "", up},
             {"", "nabtoOpenSession=NABTO_NO_NETWORK; skip=1", "init", "12", "There is no network", opened},
             {"", "nabtoCreateProfile=NABTO_ABORTED", "init", "24", "Aborted", created},
             {"nabtoStartup", "", "reopen", "3", "", ""},
             {"nabtoOpenSession", "", "reopen", "3", "", ""},
             {"nabtoCreateProfile", "", "reopen", "1", "", open},
             {"", "nabtoStartup=NABTO_FAILED", "reopen", "18", "", up},
             {"nabtoCloseSession", "", "close", "", "No NabtoCloseSession Function Loaded", "nabtoShutdown"},
             {"nabtoShutdown", "", "close", "", "No NabtoShutdown Function Loaded", "nabtoCloseSession"},
             {"", "nabtoShutdown=NABTO_ABORTED; skip=1; times=1", "close", "", "Aborted", bothClosed},
             {"nabtoStartup", "", "locals", "", "", ""},
             {"nabtoGetLocalDevices", "", "locals", "", "", up},
             {"", "nabtoStartup=NABTO_FAILED", "locals", "", "", up},
             {"nabtoRpcSetDefaultInterface", "", "interface", "0", "", ""},
             {"nabtoRpcInvoke", "", "query", "", "", ""},
             {"nabtoStreamOpen", "", "start", "0", "No NabtoStreamOpen Function Loaded", ""},
             {"nabtoStreamClose", "", "stop", "1", "No NabtoStreamClose Function Loaded", ""},
             {"nabtoStreamReadIntoBuf", "", "read", "1", "No NabtoStreamReadData Function Loaded", ""},
             {"nabtoStreamWrite", "", "write", "18", "No NabtoStreamWrite Function Loaded", ""},
             {"nabtoStatusStr", "", "text", "", "No NabtoStatusStr Function Loaded", ""},
             {"nabtoStatusStr", "", "short text", "24", "", ""},
             {"", "", "text", "Aborted", "", ""},
         }) {
        SCOPED_TRACE(std::string(missing) + " " + fault + " " + use);
        Library.Missing = {missing};
        Files.Content.erase("nabto_config/users/u");
        Make("[Library]\n" + std::string(fault) + "\n");
        EXPECT_EQ(uses.at(use)(), result);
        EXPECT_EQ(TakeCalls(), calls);
        EXPECT_EQ(TakeBoxes(), box);
        Nabto.reset();
        EXPECT_EQ(TakeBoxes(), use == std::string("close") && missing[0] != '\0' ? box : ""); // closes again
    }
}

TEST_F(TNabtoTest, AnInterfaceThatIsMissingOrRefused) {
    std::string missing;
    MakeReady().OnInterfaceMissing = [&](const std::filesystem::path& path) { missing = path.string(); };
    EXPECT_FALSE(Nabto->setQueriesFile("other.xml"));
    EXPECT_EQ(missing, "/app/nabto_config/other.xml");
    EXPECT_EQ(TakeCalls(), "");
    EXPECT_FALSE(Nabto->setQueriesFile("bad.xml"));
    Make().GetLocal();
    EXPECT_FALSE(Nabto->setQueriesFile("gateway.xml")); // without a session
    EXPECT_EQ(TakeBoxes(),
              "Interface definition refused: attribute \"name\" of tag \"query\" has no quoted value|"
              "The session is not valid");
}

TEST_F(TNabtoTest, SendsAQueryBetweenTwoTurnsOfTheEventLoop) {
    MakeReady("[Faults a]\nGarbage={\"x\":\"\xE6\"}\n");
    std::vector<std::string> order;
    const auto turn = [&](const char* name) { Time.After(0, [&order, name] { order.push_back(name); }); };
    turn("before");
    Sim.OnCall = [&, note = Sim.OnCall](const std::string& call) {
        note(call);
        if (call == "nabtoFree")
            return;
        order.push_back("call");
        turn("after");
    };
    EXPECT_EQ(Nabto->SendQuery(Device, "ping.json", "{\"request\":{}}"), "{\"x\":\"æ\"}");
    EXPECT_THAT(order, testing::ElementsAre("before", "call", "after"));
    EXPECT_EQ(TakeCalls(), "nabtoRpcInvoke nabto://100000000001/ping.json?json={\"request\":{}}");
    for (const auto& [device, query, json] :
         {std::tuple{"", "q", "d"}, std::tuple{"d", "", "d"}, std::tuple{"d", "q", ""}})
        EXPECT_EQ(Nabto->SendQuery(device, query, json), "");
    EXPECT_EQ(Nabto->SendQuery(Device, "q", "d", [] { return false; }), "");
    Time.After(0, [this] { Program.Open = false; });
    EXPECT_EQ(Nabto->SendQuery(Device, "q", "d"), "");
    EXPECT_FALSE(Nabto->StartStream(Device));
    EXPECT_EQ(TakeCalls(), "");
}

TEST_F(TNabtoTest, ReadsReplies) {
    Make();
    const std::string busy = R"({"error":{"body":"busy"},"response":{"Pong":1886350951,"status":0}})";
    ExpectRows(
        [this](std::string_view json) { // values, status and word of a ping
            const TValueList list = Nabto->ReadValueList(std::string(json));
            return list.Text + (list.HasData ? "! " : "? ") +
                   std::to_string(Nabto->getResponseStatus(std::string(json))) + " " +
                   std::to_string(Nabto->getpingResponse(std::string(json)));
        },
        {" -> No JS\r\n? 1 1", "[1] -> No JS\r\n[1]? 1 1", "{} -> ? -1 0", busy + " -> error? 1 1",
         R"({"response":{"status":"0"}} -> {"response":{"status":"0"}}? -1 0)",
         R"({"response":{"status":4294901762,"data":[{"value":12},{"value":-3}]}} -> 12; -3; ! -65534 0)",
         R"({"response":{"Pong":0.5,"data":[]}} -> ! -1 0)"});
    const auto told = [&](const auto& ask) { return Nabto->errormessage = "-", ask(), Nabto->errormessage; };
    EXPECT_EQ(told([&] { Nabto->ReadValueList(busy); }), "busy");
    EXPECT_EQ(told([&] { Nabto->getResponseStatus(busy); }), "busy");
    EXPECT_EQ(told([&] { Nabto->getpingResponse(busy); }), "busy");
    Nabto->versionNP = "kept";
    EXPECT_EQ(Nabto->getpingResponse(R"({"response":{"Pong":1886350951,"Devicenumber":1001,"Model":30015,
        "Version HP":2.10,"Version NP":"3","Version HBDE":4,"SlaveDevicenumber":5,"SlaveModel":6,"Version":7}})"),
              PongWord);
    EXPECT_THAT(
        (std::vector{Nabto->varenummer, Nabto->model, Nabto->versionHP, Nabto->versionNP, Nabto->versionBT,
                     Nabto->SlaveDeviceNum, Nabto->SlaveModel, Nabto->GatewayVersion}),
        testing::ElementsAre("1001", "30015", "2.10", "kept", "4", "5", "6", "7"));
    Nabto->ForgetVersions();
    EXPECT_EQ(Nabto->versionHP + Nabto->versionNP + Nabto->versionBT + Nabto->GatewayVersion, "");
}

TEST_F(TNabtoTest, PingInstallsTheInterfaceThatFits) {
    Files.Put("/app/nabto_config/standalone.xml",
              R"(<query name="ping.json"><request><parameter name="ping"/></request><response>)"
              R"(<parameter name="Pong"/><parameter name="Model"/></response></query>)");
    Files.Put("/app/nabto_config/gateway.xml", Files.Read("/app/nabto_config/standalone.xml"));
    MakeReady();
    auto& model = Sim.FindController("a")->Identity[0].second;
    const std::string url = "nabtoRpcInvoke nabto://100000000001/ping.json?json=" + PingRequest();
    ExpectRows(
        [&](std::string_view number) { // kind, interface and calls
            model = ToInteger(number);
            EXPECT_TRUE(Nabto->ping(Device));
            const std::string calls = TakeCalls();
            return std::string(Nabto->isGateway() ? "gateway "
                               : Nabto->isZelt4() ? "zelt4 "
                                                  : "") +
                   Nabto->queriesFile + " " + std::to_string(std::ranges::count(calls, '|') + 1);
        },
        {"30010 -> standalone.xml 1", "30011 -> gateway gateway.xml 3", "30012 -> gateway gateway.xml 1",
         "30014 -> gateway gateway.xml 1", "30015 -> zelt4 standalone.xml 3", "30016 -> standalone.xml 1"});
    // One that answers as another kind each time is given up.
    Sim.OnCall = [&, note = Sim.OnCall](const std::string& call) {
        note(call);
        if (call == url)
            model = model == 30011 ? 30021 : 30011;
    };
    EXPECT_TRUE(Nabto->ping(Device));
    EXPECT_EQ(std::ranges::count(Library.Calls, url), 3);
    EXPECT_FALSE(Nabto->ping(""));
    EXPECT_EQ(Nabto->PingedLast(), Device);
    EXPECT_FALSE(Nabto->ping("100000000009"));
    EXPECT_EQ(Nabto->PingedLast(), "100000000009");
    EXPECT_TRUE(Nabto->MayDescribeAnother(Device) && Nabto->MayDescribeAnother("100000000009"));
}

class TNabtoStreamTest : public TNabtoTest {
  protected:
    // With an open stream that holds these bytes.
    void Open(const std::string& bytes, const std::string& rows = {}) {
        EXPECT_TRUE(MakeReady(rows).StartStream(Device));
        Sim.FindController("a")->PrepareStream(bytes);
        Nabto->FOnUpdateProgress = [this](TStreamProgress& progress) {
            Progress += std::to_string(progress.currentstreamprogress) + "/" +
                        std::to_string(progress.currentstreamlength) + " ";
        };
        TakeCalls();
        Time.Sleeps.clear();
        Progress.clear();
    }
    // Behind each such call of the library.
    void During(const std::string& name, std::function<void()> action) {
        Sim.OnCall = [name, action = std::move(action), note = Sim.OnCall](const std::string& call) {
            note(call);
            if (call.starts_with(name))
                action();
        };
    }
    std::string Read(std::uint32_t length) {
        const auto bytes = Nabto->ReadStream(length).AtLength(length);
        return bytes ? std::string(bytes->begin(), bytes->end()) : "none";
    }
    std::string Progress; // each time how far, of how much
};

TEST_F(TNabtoStreamTest, ReadsChunksWithTheFullLengthAsCapacity) {
    Open("abcdef");
    EXPECT_EQ(Read(4), "abcd"); // the last chunk runs on behind the length
    EXPECT_EQ(TakeCalls(), "nabtoStreamReadIntoBuf 4|nabtoStreamReadIntoBuf 4");
    EXPECT_EQ(Progress, "3/4 4/4 ");
    EXPECT_EQ(Read(0), "");
    EXPECT_EQ(TakeCalls(), "");
    bool goesOn = true;
    Nabto->OnMayGoOn = [&goesOn](bool& mayGoOn) { mayGoOn = goesOn; };
    goesOn = false;
    EXPECT_EQ(Read(4), "none");
    EXPECT_EQ(Nabto->WriteStream(std::vector<std::uint8_t>(9), 0), NABTO_ABORTED);
    EXPECT_EQ(TakeCalls(), "");
}

TEST_F(TNabtoStreamTest, AReadThatTakesTooLongKeepsWhatCame) {
    for (const auto& [delay, length, got] :
         {std::tuple{1999, 6U, "abcdef"}, {2000, 3U, "abc"}, {2000, 4U, "abc"}}) {
        Open("abcdef");
        During("nabtoStreamReadIntoBuf", [this, ms = delay] { Time.Advance(ms); });
        const TStreamRead read = Nabto->ReadStream(length);
        EXPECT_EQ(std::string(read.Bytes.begin(), read.Bytes.end()), got);
        EXPECT_EQ(TakeBoxes(), delay == 2000 ? "Stream Read, Timeout :(" : ""); // even if all came
        EXPECT_EQ(read.End, length == 4 ? TStreamRead::EEnd::TimedOut : TStreamRead::EEnd::Complete);
    }
}

TEST_F(TNabtoStreamTest, AnErrorBetweenTheChunksIsToldWithItsName) {
    const auto thrown = [this](auto error, const std::string& name) {
        Open("abcdef");
        Nabto->FOnUpdateProgress = [error](TStreamProgress&) { throw error; };
        EXPECT_EQ(Read(4), std::string("abc\0", 4));
        EXPECT_EQ(TakeBoxes(), name + " error raised, with message : " + error.what());
    };
    thrown(EConvertError("x"), "EConvertError");
    thrown(std::bad_alloc(), "EOutOfMemory");
    thrown(TError("x"), "Exception");
}

// The first one stands in service.txt.
TEST_F(TNabtoStreamTest, ABrokenReadClosesUntilTheLibraryRefuses) {
    Open("abc", "[Library]\nnabtoStreamClose=NABTO_OK\n[Faults a]\nBrokenStream=3\n");
    EXPECT_EQ(Read(4), "none");
    EXPECT_EQ(TakeBoxes(), "The stream was closed");
    EXPECT_EQ(std::ranges::count(Library.Calls, "nabtoStreamClose"), 6);
    EXPECT_EQ(Time.Sleeps, std::vector<int>(6, 1000));
}

// How much goes in a chunk stands in UpdateTable.cpp.
TEST_F(TNabtoStreamTest, AWriteEndsAtABadStatus) {
    const std::string whole = "nabtoStreamWrite 512";
    Open("");
    EXPECT_EQ(Nabto->WriteStream({}, 10), NABTO_FAILED);
    EXPECT_EQ(TakeCalls(), "");
    Open("", "[Library]\nnabtoStreamWrite=NABTO_ABORTED\n");
    EXPECT_EQ(Nabto->WriteStream(std::vector<std::uint8_t>(600), 10), NABTO_ABORTED);
    EXPECT_EQ(TakeCalls(), whole);
    Open("", "[Library]\nnabtoStreamWrite=NABTO_STREAM_CLOSED\n");
    EXPECT_EQ(Nabto->WriteStream(std::vector<std::uint8_t>(600), 10), NABTO_STREAM_CLOSED);
    EXPECT_EQ(TakeBoxes(), "The stream is not valid");
    EXPECT_EQ(TakeCalls(), whole + "|nabtoStreamClose|nabtoStreamClose");
    EXPECT_EQ(Time.Sleeps, (std::vector{10, 1000}));
    // The event loop runs while a chunk is written, and its time is over.
    Open("");
    During("nabtoStreamWrite", [this] { Time.Advance(1); });
    EXPECT_EQ(Nabto->WriteStream(std::vector<std::uint8_t>(600), -5), NABTO_OK);
    EXPECT_EQ(TakeCalls(), whole);
    EXPECT_EQ(Time.Sleeps, std::vector<int>{0});
    Progress.clear();
    for (const std::uint32_t state : {8U, 15U})
        EXPECT_EQ(Nabto->V2prepareFlashWriteNostream(state, 1, 2, {}),
                  V2prepareFlashWriteNostream(state, 1, 2, {}));
    EXPECT_EQ(Progress, "512/600 "); // not for a reset
}

} // namespace

} // namespace tidewell::test
