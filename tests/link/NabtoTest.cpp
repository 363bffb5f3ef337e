#include "link/Nabto.h"

#include "core/Errors.h"
#include "core/KvSupport.h"
#include "sim/nabto/InProcessLibrary.h"
#include "support/IdleProgram.h"
#include "support/MemoryFiles.h"
#include "support/ScriptedDialogs.h"
#include "support/VirtualTime.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <new>
#include <numeric>
#include <optional>

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
    void ExpectBoxes(const std::vector<std::string>& boxes) {
        for (const std::string& text : boxes)
            Dialogs.ExpectMessage(text);
    }

    TIdleProgram Program;
    TMemoryFiles Files;
    TVirtualTime Time;
    TScriptedDialogs Dialogs;
    TPortTime SimulationTime{Time, Time};
    TSimulatedNabto Sim{Files, SimulationTime};
    TInProcessLibrary Library{Sim};
    std::optional<TUNabto> Nabto;
    const std::string Device = "100000000001";
};

TEST_F(TNabtoTest, EachCallByItsStatusOrWithoutItsSymbol) {
    using TUse = std::function<std::string(TUNabto&)>;
    const std::array<std::uint8_t, 1> data{1};
    const TUse init = [](TUNabto& nabto) { return std::to_string(nabto.Init("u", "p")); };
    const TUse reopen = [](TUNabto& nabto) { return std::to_string(nabto.Reopen("u", "p")); };
    const TUse close = [](TUNabto& nabto) { return nabto.Close(), ""; };
    const TUse locals = [](TUNabto& nabto) { return Join(nabto.GetLocal(), ","); };
    const TUse gateway = [](TUNabto& nabto) {
        nabto.Init("u", "p");
        return std::to_string(nabto.setQueriesFile("gateway.xml"));
    };
    const TUse sessionless = [](TUNabto& nabto) {
        nabto.GetLocal();
        return std::to_string(nabto.setQueriesFile("gateway.xml"));
    };
    const TUse query = [](TUNabto& nabto) { return nabto.SendQuery("1", "ping.json", "{}"); };
    const TUse start = [](TUNabto& nabto) { return std::to_string(nabto.StartStream("1")); };
    const TUse stop = [](TUNabto& nabto) { return std::to_string(nabto.StopStream()); };
    const TUse read = [](TUNabto& nabto) { return std::to_string(nabto.ReadStream(5).Lost()); };
    const TUse write = [&](TUNabto& nabto) { return std::to_string(nabto.WriteStream(data, 0)); };
    const TUse text = [](TUNabto& nabto) { return nabto.GetNabtoStatusStr(NABTO_ABORTED); };
    const TUse shortText = [](TUNabto& nabto) { return nabto.StatusText(NABTO_ABORTED); };
    const TUse show = [](TUNabto& nabto) { return nabto.ShowError(NABTO_ABORTED), ""; };
    const std::string up = "nabtoStartup nabto_config";
    const std::string open = up + "|nabtoOpenSession u p";
    const std::string created = open + "|nabtoCreateProfile u p";
    const std::string opened = created + "|nabtoOpenSession u p";
    const std::string standalone = "|nabtoRpcSetDefaultInterface <query name=\"ping.json\"/>";
    const std::string toGateway = "|nabtoRpcSetDefaultInterface <query name=\"ping.json\" />";
    const std::string bothClosed = "nabtoCloseSession|nabtoShutdown";
    struct TCase {
        const char* Missing; // symbol
        const char* Fault;   // of the library
        TUse Use;
        const char* Result;
        std::vector<std::string> Boxes;
        std::string Calls;
    };
    const std::vector<TCase> cases{
        {"nabtoStartup", "", init, "-1", {"No NabtoStartUp/NabtoOpenSession Function Loaded"}, ""},
        {"nabtoOpenSession", "", init, "-1", {"No NabtoStartUp/NabtoOpenSession Function Loaded"}, ""},
        {"nabtoCreateProfile", "", init, "1", {"No NabtoCreateProfile Function Loaded"}, open},
        {"", "", init, "0", {}, opened + standalone},
        {"", "nabtoStartup=NABTO_FAILED", init, "18", {}, up},
        {"", "nabtoOpenSession=NABTO_NO_NETWORK; skip=1", init, "12", {"There is no network"}, opened},
        {"", "nabtoCreateProfile=NABTO_ABORTED", init, "24", {"Aborted"}, created},
        {"nabtoStartup", "", reopen, "3", {}, ""},
        {"nabtoOpenSession", "", reopen, "3", {}, ""},
        {"nabtoCreateProfile", "", reopen, "1", {}, open},
        {"", "", reopen, "0", {}, opened + standalone},
        {"", "nabtoStartup=NABTO_FAILED", reopen, "18", {}, up},
        {"", "nabtoCreateProfile=NABTO_ABORTED", reopen, "24", {}, created},
        {"nabtoCloseSession", "", close, "", {"No NabtoCloseSession Function Loaded"}, "nabtoShutdown"},
        {"nabtoShutdown", "", close, "", {"No NabtoShutdown Function Loaded"}, "nabtoCloseSession"},
        {"", "nabtoCloseSession=NABTO_FAILED; times=1", close, "", {"Failed"}, bothClosed},
        {"", "nabtoShutdown=NABTO_ABORTED; skip=1; times=1", close, "", {"Aborted"}, bothClosed},
        {"nabtoStartup", "", locals, "", {}, ""},
        {"nabtoGetLocalDevices", "", locals, "", {}, up},
        {"", "nabtoStartup=NABTO_FAILED", locals, "", {}, up},
        {"", "nabtoGetLocalDevices=NABTO_FAILED", locals, "", {}, up + "|nabtoGetLocalDevices"},
        {"", "", locals, "200000000002,100000000001", {}, up + "|nabtoGetLocalDevices"},
        {"nabtoRpcSetDefaultInterface", "", gateway, "0", {}, opened},
        {"", "", gateway, "1", {}, opened + standalone + toGateway},
        {"", "", sessionless, "0", {"The session is not valid"}, up + "|nabtoGetLocalDevices" + toGateway},
        {"nabtoRpcInvoke", "", query, "", {}, ""},
        {"nabtoStreamOpen", "", start, "0", {"No NabtoStreamOpen Function Loaded"}, ""},
        {"", "nabtoStreamOpen=NABTO_FAILED", start, "0", {"Failed"}, "nabtoStreamOpen 1"},
        {"", "nabtoStreamOpen=NABTO_OK", start, "1", {}, "nabtoStreamOpen 1"},
        {"nabtoStreamClose", "", stop, "1", {"No NabtoStreamClose Function Loaded"}, ""},
        {"", "nabtoStreamClose=NABTO_FAILED", stop, "1", {"Failed"}, "nabtoStreamClose"},
        {"", "nabtoStreamClose=NABTO_OK", stop, "0", {}, "nabtoStreamClose"},
        {"nabtoStreamReadIntoBuf", "", read, "1", {"No NabtoStreamReadData Function Loaded"}, ""},
        {"nabtoStreamWrite", "", write, "18", {"No NabtoStreamWrite Function Loaded"}, ""},
        {"nabtoStatusStr", "", show, "", {"No NabtoStatusStr Function Loaded"}, ""},
        {"nabtoStatusStr", "", text, "", {"No NabtoStatusStr Function Loaded"}, ""},
        {"nabtoStatusStr", "", shortText, "24", {}, ""},
        {"", "", show, "", {"Aborted"}, ""},
        {"", "", text, "Aborted", {}, ""},
        {"", "", shortText, "Aborted", {}, ""},
    };
    for (const TCase& test : cases) {
        SCOPED_TRACE(std::string(test.Missing) + " " + test.Fault);
        Library.Missing = {test.Missing};
        Files.Content.erase("nabto_config/users/u");
        Make(test.Fault[0] == '\0' ? "" : "[Library]\n" + std::string(test.Fault) + "\n");
        ExpectBoxes(test.Boxes);
        EXPECT_EQ(test.Use(*Nabto), test.Result);
        EXPECT_EQ(TakeCalls(), test.Calls);
        EXPECT_TRUE(Dialogs.AllAnswered());
        if (std::string_view(test.Missing).starts_with("nabtoCloseS") ||
            std::string_view(test.Missing).starts_with("nabtoShut"))
            ExpectBoxes(test.Boxes); // the destructor closes again
        Nabto.reset();
        EXPECT_TRUE(Dialogs.AllAnswered());
    }
    Library.Missing.clear();
    Library.Present = false;
    EXPECT_EQ(Make().Loaded().Failure, "there is none");
    ExpectBoxes({"No NabtoCloseSession Function Loaded", "No NabtoShutdown Function Loaded"});
    Nabto.reset();
}

TEST_F(TNabtoTest, AnInterfaceThatIsMissingOrRefused) {
    std::string missing;
    MakeReady().OnInterfaceMissing = [&](const std::filesystem::path& path) { missing = path.string(); };
    EXPECT_FALSE(Nabto->setQueriesFile("other.xml"));
    EXPECT_EQ(missing, "/app/nabto_config/other.xml");
    EXPECT_EQ(TakeCalls(), "");
    Dialogs.ExpectMessage(
        "Interface definition refused: attribute \"name\" of tag \"query\" has no quoted value");
    EXPECT_FALSE(Nabto->setQueriesFile("bad.xml"));
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
    struct TCase {
        const char *Json, *Values;
        bool HasData;
        int Status;
        std::uint32_t Pong;
        const char* Error; // "-": the one before
    };
    Make();
    for (const auto& [json, values, hasData, status, pong, error] : std::vector<TCase>{
             {"", "No JS\r\n", false, 1, 1, "-"},
             {"[1]", "No JS\r\n[1]", false, 1, 1, "-"},
             {"{}", "", false, -1, 0, "-"},
             {R"({"error":{"body":"busy"},"response":{"Pong":1886350951,"status":0}})", "error", false, 1, 1,
              "busy"},
             {R"({"response":{"status":0}})", R"({"response":{"status":0}})", false, 0, 0, "-"},
             {R"({"response":{"status":"0"}})", R"({"response":{"status":"0"}})", false, -1, 0, "-"},
             {R"({"response":{"status":4294901762,"data":[{"value":12},{"value":-3}]}})", "12; -3; ", true,
              -65534, 0, "-"},
             {R"({"response":{"Pong":"1886350951","data":[]}})", "", true, -1, 0, "-"},
             {R"({"response":{"Pong":0.5}})", R"({"response":{"Pong":0.5}})", false, -1, 0, "-"}}) {
        SCOPED_TRACE(json);
        Nabto->SlaveDeviceNum = Nabto->SlaveModel = Nabto->GatewayVersion = "old";
        for (int asked = 0; asked < 3; ++asked) {
            Nabto->errormessage = "-";
            const TValueList list = asked == 0 ? Nabto->ReadValueList(json) : TValueList{values, hasData};
            EXPECT_EQ(std::pair(list.Text, list.HasData), std::pair(std::string(values), hasData));
            EXPECT_EQ(asked == 1 ? Nabto->getResponseStatus(json) : status, status);
            EXPECT_EQ(asked == 2 ? Nabto->getpingResponse(json) : pong, pong);
            EXPECT_EQ(Nabto->errormessage, error);
        }
        EXPECT_EQ(Nabto->SlaveDeviceNum + Nabto->SlaveModel + Nabto->GatewayVersion, "");
    }
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
    MakeReady();
    auto& model = Sim.FindController("a")->Identity[0].second;
    const std::string url = "nabtoRpcInvoke nabto://100000000001/ping.json?json=" + PingRequest();
    Files.Put("/app/nabto_config/standalone.xml",
              R"(<query name="ping.json"><request><parameter name="ping"/></request><response>)"
              R"(<parameter name="Pong"/><parameter name="Model"/></response></query>)");
    EXPECT_TRUE(Nabto->setQueriesFile("standalone.xml"));
    const std::string definition = TakeCalls();
    Files.Put("/app/nabto_config/gateway.xml", Files.Read("/app/nabto_config/standalone.xml"));
    struct TCase {
        int Model;
        bool IsGateway, IsZelt4, Switches;
    };
    for (const auto& [number, isGateway, isZelt4, switches] :
         std::vector<TCase>{{30010, false, false, false},
                            {30011, true, false, true},
                            {30012, true, false, false},
                            {30013, true, false, false},
                            {30014, true, false, false},
                            {30015, false, true, true},
                            {30016, false, false, false}}) {
        model = number;
        EXPECT_TRUE(Nabto->ping(Device));
        EXPECT_EQ(std::pair(Nabto->isGateway(), Nabto->isZelt4()), std::pair(isGateway, isZelt4)) << number;
        EXPECT_EQ(Nabto->queriesFile, isGateway ? "gateway.xml" : "standalone.xml");
        EXPECT_EQ(TakeCalls(), switches ? url + "|" + definition + "|" + url : url) << number;
    }
    // One that answers as another kind each time is given up.
    Sim.OnCall = [&, note = Sim.OnCall](const std::string& call) {
        note(call);
        if (call == url)
            model = model == 30011 ? 30021 : 30011;
    };
    EXPECT_TRUE(Nabto->ping(Device));
    const std::string once = url + "|" + definition;
    EXPECT_EQ(TakeCalls(), once + "|" + once + "|" + once);
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
    const std::string told = "Stream Read, Timeout :(";
    Open("abcdef");
    bool late = true;
    During("nabtoStreamReadIntoBuf", [&] {
        if (std::exchange(late, false))
            Time.Advance(2000);
    });
    Dialogs.ExpectMessage(told);
    EXPECT_EQ(Read(5), std::string("abc\0\0", 5));
    late = true;
    Dialogs.ExpectMessage(told);
    EXPECT_EQ(Nabto->ReadStream(3).End, TStreamRead::EEnd::Complete); // told, but all came
    // A library that gives nothing and does not wait either.
    Open("abc", "[Faults a]\nStalledStream=2\n");
    Dialogs.ExpectMessage(told);
    const std::int64_t before = Time.Milliseconds();
    EXPECT_EQ(Nabto->ReadStream(3).End, TStreamRead::EEnd::TimedOut);
    EXPECT_LE(Time.Milliseconds() - before, 2100);
    Open("abc");
    During("nabtoStreamReadIntoBuf", [&] { Time.Advance(1999); });
    EXPECT_EQ(Read(3), "abc");
}

TEST_F(TNabtoStreamTest, AnErrorBetweenTheChunksIsToldWithItsName) {
    const auto thrown = [this](auto error, const std::string& name) {
        Open("abcdef");
        Nabto->FOnUpdateProgress = [error](TStreamProgress&) { throw error; };
        Dialogs.ExpectMessage(name + " error raised, with message : " + error.what());
        EXPECT_EQ(Read(4), std::string("abc\0", 4));
        EXPECT_EQ(TakeCalls(), "nabtoStreamReadIntoBuf 4");
    };
    thrown(EConvertError("x"), "EConvertError");
    thrown(EListError("x"), "EListError");
    thrown(ERangeError("x"), "ERangeError");
    thrown(EInOutError("x"), "EInOutError");
    thrown(std::bad_alloc(), "EOutOfMemory");
    thrown(TError("x"), "Exception");
}

TEST_F(TNabtoStreamTest, ABrokenReadClosesUntilTheLibraryRefuses) {
    struct TCase {
        const char* Closes; // fault of closing
        std::vector<std::string> Boxes;
        std::size_t Count;
    };
    for (const auto& [closes, boxes, count] :
         std::vector<TCase>{{"", {"The stream is not valid", "The stream was closed"}, 2},
                            {"nabtoStreamClose=NABTO_OK\n", {"The stream was closed"}, 6},
                            {"nabtoStreamClose=NABTO_FAILED\n", {"Failed", "The stream was closed"}, 1}}) {
        Open("abc", "[Library]\n" + std::string(closes) + "[Faults a]\nBrokenStream=3\n");
        ExpectBoxes(boxes);
        EXPECT_EQ(Read(4), "none");
        EXPECT_EQ(std::ranges::count(Library.Calls, "nabtoStreamClose"), count);
        EXPECT_EQ(Time.Sleeps, std::vector<int>(count == 6 ? 6 : count - 1, 1000));
    }
}

TEST_F(TNabtoStreamTest, WritesChunksOf512AndEndsAtABadStatus) {
    struct TCase {
        std::size_t Size;
        const char* Faults;
        TNabtoStatus Status;
        std::string Calls;
        const char* Progress;
    };
    const std::string whole = "nabtoStreamWrite 512";
    const std::string twice = whole + "|" + whole;
    const std::string closed = "|nabtoStreamClose|nabtoStreamClose";
    for (const auto& [size, faults, status, calls, progress] : std::vector<TCase>{
             {0, "", NABTO_FAILED, "", ""},
             {512, "", NABTO_OK, whole, "512/512 "},
             {513, "", NABTO_OK, whole + "|nabtoStreamWrite 1", "512/513 513/513 "},
             {1024, "[Faults a]\nBufferFull=on; skip=1; times=2", NABTO_OK, twice + "|" + twice,
              "512/1024 1024/1024 "},
             {600, "[Library]\nnabtoStreamWrite=NABTO_ABORTED", NABTO_ABORTED, whole, ""},
             {600, "[Library]\nnabtoStreamWrite=NABTO_STREAM_CLOSED", NABTO_STREAM_CLOSED, whole + closed,
              ""},
         }) {
        SCOPED_TRACE(std::to_string(size) + " " + faults);
        Open("", faults);
        std::vector<int> sleeps(
            calls.empty() ? 0U : 1U + static_cast<std::size_t>(std::ranges::count(calls, '|')), 10);
        if (status == NABTO_STREAM_CLOSED) {
            Dialogs.ExpectMessage("The stream is not valid");
            sleeps = {10, 1000};
        }
        std::vector<std::uint8_t> data(size);
        std::iota(data.begin(), data.end(), std::uint8_t{0});
        EXPECT_EQ(Nabto->WriteStream(data, 10), status);
        EXPECT_EQ(TakeCalls(), calls);
        EXPECT_EQ(Progress, progress);
        EXPECT_EQ(Time.Sleeps, sleeps);
        EXPECT_TRUE(status != NABTO_OK ||
                    Sim.FindController("a")->StreamReceived() == std::string(data.begin(), data.end()));
    }
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
