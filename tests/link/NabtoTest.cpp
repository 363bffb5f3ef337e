#include "link/Nabto.h"

#include "rig/IdleProgram.h"
#include "rig/Test.h"
#include "sim/nabto/InProcessLibrary.h"

#include <new>

namespace tidewell::test {

namespace {

// The bridge over the simulated library, which may lack symbols and end any call with any status.
class TNabtoTest : public testing::Test {
  protected:
    TNabtoTest() {
        for (const char* name : {"standalone", "gateway"})
            Files.Put("/app/nabto_config/" + std::string(name) + ".xml",
                      "<query\r\n name=\"ping.json\"><request><parameter name=\"ping\"/></request><response>"
                      "<parameter name=\"Pong\"/><parameter name=\"Model\"/></response></query>");
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
        Library.Calls.clear();
        return *Nabto;
    }
    TUNabto& MakeReady(const std::string& rows = {}) {
        EXPECT_EQ(Make(rows).Init("u", "p"), 0);
        return *Nabto;
    }
    std::string TakeCalls() { return Join(std::exchange(Library.Calls, {}), "|"); }
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

// A symbol that the library lacks, its fault, and the call; its result, the box and the calls. All of them
// without any library stand in refusals.txt.
TEST_F(TNabtoTest, EachCallByItsStatusOrWithoutItsSymbol) {
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
        {"write", [&] { return std::to_string(Nabto->WriteStream(std::array<std::uint8_t, 1>{}, 0)); }},
        {"text", [&] { return Nabto->GetNabtoStatusStr(NABTO_ABORTED); }},
        {"short text", [&] { return Nabto->StatusText(NABTO_ABORTED); }},
    };
    const std::string open = "|nabtoStartup nabto_config|nabtoOpenSession u p";
    const std::string created = open + "|nabtoCreateProfile u p";
    const auto called = [&](std::string_view input) {
        Library.Missing = {Piece(input, 0)};
        Files.Content.erase("nabto_config/users/u");
        Make("[Library]\n" + Piece(input, 1) + "\n");
        std::string result = uses.at(Piece(input, 2))();
        result += "|" + TakeBoxes() + "|" + TakeCalls();
        Nabto.reset();
        EXPECT_EQ(TakeBoxes(), "") << input;
        return result;
    };
    ExpectRows(
        called,
        {"nabtoOpenSession||init -> -1|No NabtoStartUp/NabtoOpenSession Function Loaded|",
         "nabtoCreateProfile||init -> 1|No NabtoCreateProfile Function Loaded" + open,
         "|nabtoStartup=NABTO_FAILED|init -> 18||nabtoStartup nabto_config",
         "|nabtoOpenSession=NABTO_NO_NETWORK; skip=1|init -> 12|There is no network" + created +
             "|nabtoOpenSession u p",
         "|nabtoCreateProfile=NABTO_ABORTED|init -> 24|Aborted" + created,
         "nabtoOpenSession||reopen -> 3||",
         "nabtoCreateProfile||reopen -> 1|" + open,
         "|nabtoStartup=NABTO_FAILED|reopen -> 18||nabtoStartup nabto_config",
         "|nabtoShutdown=NABTO_ABORTED; skip=1; times=1|close -> |Aborted|nabtoCloseSession|nabtoShutdown",
         "nabtoGetLocalDevices||locals -> ||nabtoStartup nabto_config",
         "|nabtoStartup=NABTO_FAILED|locals -> ||nabtoStartup nabto_config",
         "nabtoRpcSetDefaultInterface||interface -> 0||",
         "nabtoRpcInvoke||query -> ||",
         "nabtoStreamOpen||start -> 0|No NabtoStreamOpen Function Loaded|",
         "nabtoStreamClose||stop -> 1|No NabtoStreamClose Function Loaded|",
         "nabtoStreamReadIntoBuf||read -> 1|No NabtoStreamReadData Function Loaded|",
         "nabtoStreamWrite||write -> 18|No NabtoStreamWrite Function Loaded|",
         "nabtoStatusStr||text -> |No NabtoStatusStr Function Loaded|",
         "nabtoStatusStr||short text -> 24||",
         "||text -> Aborted||"});
}

TEST_F(TNabtoTest, AnInterfaceThatIsMissingOrRefused) {
    std::string missing;
    MakeReady().OnInterfaceMissing = [&](const std::filesystem::path& path) { missing = path.string(); };
    EXPECT_FALSE(Nabto->setQueriesFile("other.xml"));
    EXPECT_EQ(missing, "/app/nabto_config/other.xml");
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
    Sim.OnCall = [&](const std::string& call) {
        order.push_back(call);
        turn("after");
    };
    EXPECT_EQ(Nabto->SendQuery(Device, "ping.json", "{\"request\":{}}"), "{\"x\":\"æ\"}");
    EXPECT_EQ(Join(order, "|"), "before|nabtoRpcInvoke nabto://100000000001/ping.json?json={\"request\":{}}|"
                                "nabtoFree|after|after");
    order.clear();
    for (const auto& [device, query, json] :
         {std::tuple{"", "q", "d"}, std::tuple{"d", "", "d"}, std::tuple{"d", "q", ""}})
        EXPECT_EQ(Nabto->SendQuery(device, query, json), "");
    EXPECT_EQ(Nabto->SendQuery(Device, "q", "d", [] { return false; }), "");
    Time.After(0, [this] { Program.Open = false; });
    EXPECT_EQ(Nabto->SendQuery(Device, "q", "d"), "");
    EXPECT_FALSE(Nabto->StartStream(Device));
    EXPECT_TRUE(order.empty());
}

// The values, whether there are data, the status, the pong, and the error that each of the three leaves.
TEST_F(TNabtoTest, ReadsReplies) {
    Make();
    const auto read = [&](std::string_view input) {
        const std::string json(input);
        Nabto->SlaveDeviceNum = Nabto->SlaveModel = Nabto->GatewayVersion = "old";
        const auto errorOf = [&] { return std::exchange(Nabto->errormessage, "") + "|"; };
        const TValueList list = Nabto->ReadValueList(json);
        std::string told = list.Text + (list.HasData ? "|data|" : "||") + errorOf();
        told += std::to_string(Nabto->getResponseStatus(json));
        told += "|" + errorOf();
        told += std::to_string(Nabto->getpingResponse(json));
        told += "|" + errorOf();
        EXPECT_EQ(Nabto->SlaveDeviceNum + Nabto->SlaveModel + Nabto->GatewayVersion, "");
        return told;
    };
    ExpectRows(
        read, {" -> No JS\r\n|||1||1||", "[1] -> No JS\r\n[1]|||1||1||", "{} -> |||-1||0||",
               R"({"error":{"body":"no"},"response":{"Pong":1886350951,"status":0}} -> error||no|1|no|1|no|)",
               R"({"response":{"status":0}} -> {"response":{"status":0}}|||0||0||)",
               R"({"response":{"status":"0"}} -> {"response":{"status":"0"}}|||-1||0||)",
               R"({"response":{"status":4294901762,"data":[{"value":12}]}} -> 12; |data||-65534||0||)",
               R"({"response":{"Pong":0.5,"data":[]}} -> |data||-1||0||)"});
    Nabto->versionNP = "kept";
    EXPECT_EQ(Nabto->getpingResponse(R"({"response":{"Pong":1886350951,"Devicenumber":1001,"Model":30015,
        "Version HP":2.10,"Version NP":"3","Version HBDE":4,"SlaveDevicenumber":5,"SlaveModel":6,"Version":7}})"),
              PongWord);
    const auto identity = [&] {
        return Join(std::vector{Nabto->varenummer, Nabto->model, Nabto->SlaveDeviceNum, Nabto->SlaveModel,
                                Nabto->versionHP, Nabto->versionNP, Nabto->versionBT, Nabto->GatewayVersion},
                    "|");
    };
    EXPECT_EQ(identity(), "1001|30015|5|6|2.10|kept|4|7");
    Nabto->ForgetVersions();
    EXPECT_EQ(identity(), "1001|30015|5|6||||");
}

// That it installs the interface of another kind of device stands in setup.txt.
TEST_F(TNabtoTest, PingGivesUpOneThatIsAnotherKindEachTime) {
    MakeReady();
    std::string gateways;
    for (int number = 30010; number <= 30016; ++number) {
        Nabto->model = std::to_string(number);
        gateways += Nabto->isGateway() ? "g" : Nabto->isZelt4() ? "z" : "-";
    }
    EXPECT_EQ(gateways, "-ggggz-");
    auto& model = Sim.FindController("a")->Identity[0].second;
    int pings = 0;
    Sim.OnCall = [&](const std::string& call) {
        if (call.starts_with("nabtoRpcInvoke")) {
            model = model == 30011 ? 30021 : 30011;
            ++pings;
        }
    };
    EXPECT_TRUE(Nabto->ping(Device));
    EXPECT_EQ(pings, 3);
    EXPECT_FALSE(Nabto->ping(""));
    EXPECT_EQ(Nabto->PingedLast(), Device);
}

class TNabtoStreamTest : public TNabtoTest {
  protected:
    // With an open stream of "abcdef", and each such call of the library takes so long.
    void Open(const std::string& name, int ms, const std::string& rows = {}) {
        EXPECT_TRUE(MakeReady(rows).StartStream(Device));
        Sim.FindController("a")->PrepareStream("abcdef");
        Nabto->FOnUpdateProgress = [this](TStreamProgress& progress) {
            Progress += " " + std::to_string(progress.currentstreamprogress) + "/" +
                        std::to_string(progress.currentstreamlength);
        };
        Sim.OnCall = [this, name, ms](const std::string& call) {
            Library.Calls.push_back(call);
            if (call.starts_with(name))
                Time.Advance(ms);
        };
        Library.Calls.clear();
        Time.Sleeps.clear();
        Progress.clear();
    }
    std::string Progress; // each time how far, of how much
};

// How long the library takes for a chunk, the length, and its faults; bytes, progress, boxes and calls.
TEST_F(TNabtoStreamTest, ReadsChunksWithTheFullLengthAsCapacity) {
    const auto read = [this](std::string_view input) {
        const std::string length = Piece(input, 1);
        Open("nabtoStreamRead", ToInteger(Piece(input, 0)), Piece(input, 2));
        const TStreamRead got = Nabto->ReadStream(static_cast<std::uint32_t>(ToInteger(length)));
        EXPECT_EQ(got.End == TStreamRead::EEnd::TimedOut, input == "2000|4|");
        return std::string(got.Bytes.begin(), got.Bytes.end()) + Progress + "|" + TakeBoxes() + "|" +
               std::to_string(std::ranges::count(Library.Calls, "nabtoStreamReadIntoBuf " + length)) + " " +
               std::to_string(std::ranges::count(Library.Calls, "nabtoStreamClose"));
    };
    ExpectRows(read,
               {"0|4| -> abcd 3/4 4/4||2 0", // the last chunk runs on behind the length
                "1999|6| -> abcdef 3/6 6/6||2 0",
                "2000|3| -> abc 3/3|Stream Read, Timeout :(|1 0", // even if all came
                "2000|4| -> abc 3/4|Stream Read, Timeout :(|1 0",
                "0|7|[Library]\nnabtoStreamClose=NABTO_OK\n[Faults a]\nBrokenStream=3\n -> "
                "abc 3/7|The stream was closed|2 6"});
    EXPECT_EQ(Time.Sleeps, std::vector<int>(6, 1000)); // between the closes
}

TEST_F(TNabtoStreamTest, AnErrorBetweenTheChunksIsToldWithItsName) {
    const auto thrown = [this](auto error, const std::string& name) {
        Open("", 0);
        Nabto->FOnUpdateProgress = [error](TStreamProgress&) { throw error; };
        EXPECT_EQ(Nabto->ReadStream(4).AtLength(4), (std::vector<std::uint8_t>{'a', 'b', 'c', 0}));
        EXPECT_EQ(TakeBoxes(), name + " error raised, with message : " + error.what());
    };
    thrown(EConvertError("x"), "EConvertError");
    thrown(EInOutError("x"), "EInOutError");
    thrown(std::bad_alloc(), "EOutOfMemory");
    thrown(TError("x"), "Exception");
}

// The event loop runs while a chunk is written. How it ends otherwise stands in UpdateTable.cpp.
TEST_F(TNabtoStreamTest, AWriteEndsWhenItsTimeIsOver) {
    Open("nabtoStreamWrite", 1);
    EXPECT_EQ(Nabto->WriteStream(std::vector<std::uint8_t>(600), -5), NABTO_OK);
    EXPECT_EQ(TakeCalls(), "nabtoStreamWrite 512");
    EXPECT_EQ(Time.Sleeps, std::vector<int>{0});
    Progress.clear();
    for (const std::uint32_t state : {8U, 15U})
        EXPECT_EQ(Nabto->V2prepareFlashWriteNostream(state, 1, 2, {}),
                  V2prepareFlashWriteNostream(state, 1, 2, {}));
    EXPECT_EQ(Progress, " 512/600"); // not for a reset
}

} // namespace

} // namespace tidewell::test
