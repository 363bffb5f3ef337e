#include "sim/nabto/SimulatedNabto.h"

#include "link/DeviceQueries.h"
#include "link/NabtoLibrary.h"
#include "sim/nabto/InProcessLibrary.h"
#include "support/MemoryFiles.h"
#include "support/VirtualTime.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

namespace tidewell {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr const char* IniText = R"([Simulation]
Controllers=vent,gate,far
Domain=remote.example.com
[Controller vent]
Id=410000000001
Model=30021
Devicenumber=7
StreamPiece=4
[Controller gate]
Id=410000000002
Model=30011
Devicenumber=8
Users=friend@example.com
[Controller far]
Id=410000000003
Local=false
Model=30021
Devicenumber=7
)";

constexpr const char* Ping =
    R"(<?xml version="1.0"?><interface><!-- a > b --><query name="ping.json"><request><parameter name="ping"/>)"
    R"(</request><response><parameter name="Pong"/><parameter name='Model'/></response></query></interface>)";

// The library in virtual time; streams and frees through the C functions, as a program calls them.
class TSimulatedNabtoTest : public ::testing::Test {
  protected:
    TSimulatedNabtoTest() {
        Put("");
        Nabto.OnReport = [this](const std::string& line) { Reports.push_back(line); };
    }

    void Put(const std::string& rows) {
        Files.Put("home/simulation.ini", IniText + rows);
        Clock.Advance(1000); // the library looks at most once a second
    }
    TNabtoStatus Open(const char* password = "secret") {
        return Nabto.OpenSession("a@example.com", password, Session);
    }
    TNabtoStatus Create(const char* email = "a@example.com", const char* password = "secret") {
        return Nabto.CreateProfile(email, password);
    }
    // The error text, empty when the definition was taken.
    std::string Install(const char* definition) {
        std::string error;
        const TNabtoStatus status = Nabto.RpcSetDefaultInterface(Session, definition, error);
        EXPECT_EQ(status == NABTO_OK, error.empty());
        return error;
    }
    // The model that answers, "error: <text>", what else came as it is, or "status <number>" for no answer.
    std::string Ask(const std::string& device, const std::string& request = PingRequest(),
                    const std::string& query = "ping.json") {
        std::optional<std::string> response;
        const TNabtoStatus status = Nabto.RpcInvoke(Session, QueryUrl(device, query, request), response);
        if (!response) {
            return "status " + std::to_string(status);
        }
        const TDeviceReply reply = ParseReply(*response);
        return reply.Error ? "error: " + *reply.Error : reply.Model ? reply.Model->Text : *response;
    }
    std::vector<std::string> LocalDevices() {
        std::vector<std::string> ids;
        EXPECT_EQ(Nabto.GetLocalDevices(ids), NABTO_OK);
        return ids;
    }
    void OpenReady() {
        ASSERT_EQ(Nabto.Startup("home"), NABTO_OK);
        ASSERT_EQ(Create(), NABTO_OK);
        ASSERT_EQ(Open(), NABTO_OK);
        ASSERT_EQ(Install(Ping), "");
    }

    const std::string Vent = "410000000001", Gate = "410000000002";
    test::TMemoryFiles Files;
    test::TVirtualTime Clock;
    TPortTime Time{Clock, Clock};
    TSimulatedNabto Nabto{Files, Time};
    TInProcessLibrary Loader{Nabto};
    std::optional<TNabtoLibrary> Library{std::in_place, Loader};
    std::vector<std::string> Reports;
    void* Session = nullptr;
};

TEST_F(TSimulatedNabtoTest, ProfilesAreFilesByEmail) {
    Put("[Users]\na@example.com=secret\n[Library]\nnabtoOpenSession=NABTO_NO_NETWORK; from=1s\n");
    EXPECT_EQ(Open(), NABTO_API_NOT_INITIALIZED);
    ASSERT_EQ(Nabto.Startup("home"), NABTO_OK);
    EXPECT_EQ(Open(), NABTO_NO_PROFILE);
    EXPECT_EQ(Session, nullptr);
    EXPECT_EQ(Create("b@example.com"), NABTO_PORTAL_LOGIN_FAILURE);
    EXPECT_EQ(Create("a@example.com", "wrong"), NABTO_PORTAL_LOGIN_FAILURE);
    EXPECT_EQ(Create(), NABTO_OK);
    EXPECT_THAT(Files.List("home/users", "*"), ElementsAre("a@example.com"));
    EXPECT_EQ(Open("other"), NABTO_UNLOCK_PK_FAILED);
    EXPECT_EQ(Open(), NABTO_OK);
    Files.Remove("home/users/a@example.com");
    EXPECT_EQ(Open(), NABTO_NO_PROFILE);
    EXPECT_EQ(Create("../a@example.com"), NABTO_ILLEGAL_PARAMETER);
    Files.Unwritable.insert("home/users");
    EXPECT_EQ(Create(), NABTO_CERT_SAVING_FAILURE);
    Clock.Advance(1000);
    EXPECT_EQ(Open(), NABTO_NO_NETWORK);
}

TEST_F(TSimulatedNabtoTest, DevicesAreReachedLocallyOrThroughTheDomain) {
    OpenReady();
    EXPECT_THAT(LocalDevices(), ElementsAre(Vent, Gate));
    for (const char* device :
         {"410000000001", "410000000001.Remote.example.com", "410000000003.remote.example.com"}) {
        EXPECT_EQ(Ask(device), "30021") << device;
    }
    EXPECT_THAT(Clock.Sleeps, IsEmpty());
    for (const char* device :
         {"410000000003", "410000000003.other.example.com", "410000000009", "41", "410000000001x"}) {
        EXPECT_EQ(Ask(device), "status 13") << device;
    }
    EXPECT_EQ(Clock.Sleeps, std::vector<int>(5, 2000));
    EXPECT_EQ(Ask(Gate), "error: access denied for a@example.com");
    std::optional<std::string> response;
    for (const char* url : {"http://410000000001/ping.json?json={}", "nabto://410000000001?json=/"}) {
        EXPECT_EQ(Nabto.RpcInvoke(Session, url, response), NABTO_INVALID_RESOURCE) << url;
    }
    Put("[Faults vent]\nLatency=300\nNoAnswer=on; times=1\n");
    EXPECT_EQ(Ask(Vent), "status 13");
    EXPECT_EQ(Ask(Vent), "30021");
    EXPECT_EQ(Clock.Sleeps.back(), 300);
}

TEST_F(TSimulatedNabtoTest, TheInterfaceInForceDecidesWhatPasses) {
    OpenReady();
    Session = nullptr;
    ASSERT_EQ(Open(), NABTO_OK); // a session without an interface of its own
    EXPECT_THAT(Ask(Vent), HasSubstr("has no query ping.json"));
    ASSERT_EQ(Install(Ping), "");
    EXPECT_THAT(Ask(Vent, R"({"request":{"user":"x"}})"), HasSubstr("has no request member user"));
    EXPECT_EQ(Ask(Vent, "{"), "error: malformed request");
    // A refused definition leaves the one in force.
    for (const char* bad : {"", "<interface></interface>", "<a><query name=\"x\"></a>", "<query name=x/>",
                            "<query", "<query/>", "</a>", "<!-- <query name=\"x\"/>"}) {
        EXPECT_THAT(Install(bad), HasSubstr("Interface definition refused: ")) << bad;
    }
    EXPECT_EQ(Ask(Vent), "30021");
    ASSERT_EQ(Install(R"(<query name="ping.json"><request><parameter name="ping"/></request><response>)"
                      R"(<parameter name="Devicenumber"/></response></query>)"),
              "");
    EXPECT_EQ(Ask(Vent), R"({"response":{"Devicenumber":7}})");
}

TEST_F(TSimulatedNabtoTest, TheFileIsReadAgainWhenItChanges) {
    OpenReady();
    Nabto.FindController("vent")->Identity[0].second = 5;
    Files.Put("home/simulation.ini", std::string(IniText) + "[Faults vent]\nError=Device busy\n");
    EXPECT_EQ(Ask(Vent), "5"); // looks once a second
    Clock.Advance(1000);
    EXPECT_EQ(Ask(Vent), "error: Device busy");
    Put("[Faults vent]\nEror=x\n");
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(Ask(Vent), "error: Device busy");
        Clock.Advance(5000);
    }
    EXPECT_THAT(
        Reports,
        ElementsAre(R"(home/simulation.ini: section "Faults vent", key "Eror": unknown fault "Eror")"));
    Files.Remove("home/simulation.ini");
    EXPECT_EQ(Ask(Vent), "error: Device busy");
    Put("[Library]\nnabtoRpcInvoke=NABTO_NO_NETWORK; times=1\n");
    EXPECT_EQ(Ask(Vent), "status 12");
    EXPECT_EQ(Ask(Vent), "5"); // the identity stays

    // Controllers come and go.
    Put("[Controller vent]\nLocal=false\nRemote=false\n[Controller far]\nLocal=true\nCopies=200\n");
    EXPECT_THAT(LocalDevices(), SizeIs(202));
    EXPECT_EQ(LocalDevices().back(), "410000000203");
    EXPECT_EQ(Ask(Vent + ".remote.example.com"), "status 13");
    Put("");
    EXPECT_THAT(LocalDevices(), ElementsAre(Vent, Gate));
    EXPECT_EQ(Ask("410000000203"), "status 13");
}

TEST_F(TSimulatedNabtoTest, StartupTellsMistakesInTheFile) {
    Put("[Values far]\nsetpoint 0 1 = sinus\n");
    EXPECT_EQ(Nabto.Startup("home"), NABTO_ERROR_READING_CONFIG);
    Files.Remove("home/simulation.ini");
    EXPECT_EQ(Nabto.Startup("home"), NABTO_ERROR_READING_CONFIG);
    EXPECT_THAT(
        Reports,
        ElementsAre(R"(home/simulation.ini: section "Values far", key "setpoint 0 1": unknown kind "sinus")",
                    HasSubstr("home/simulation.ini")));
    Files.Put("elsewhere.ini", IniText);
    Nabto.SimulationFile = "elsewhere.ini";
    EXPECT_EQ(Nabto.Startup("home"), NABTO_OK);
}

TEST_F(TSimulatedNabtoTest, StreamsReadAndWrite) {
    OpenReady();
    void* stream = nullptr;
    EXPECT_EQ(Library->NabtoStreamOpen(&stream, nullptr, Vent.c_str()), NABTO_INVALID_SESSION);
    EXPECT_EQ(Library->NabtoStreamOpen(&stream, Session, "410000000003"), NABTO_CONNECT_TO_HOST_FAILED);
    ASSERT_EQ(Library->NabtoStreamOpen(&stream, Session, Vent.c_str()), NABTO_OK);
    Nabto.FindController(Vent)->PrepareStream("abcdef");
    std::string buffer(16, ' ');
    const auto read = [&](std::size_t at, TNabtoStatus status) {
        std::size_t got = 99;
        auto* const into = reinterpret_cast<unsigned char*>(buffer.data() + at);
        EXPECT_EQ(Library->NabtoStreamReadIntoBuf(stream, into, 10, &got), status);
        return got;
    };
    EXPECT_EQ(read(0, NABTO_OK), 4U);
    EXPECT_EQ(read(4, NABTO_OK), 2U);
    EXPECT_EQ(buffer.substr(0, 7), "abcdef ");
    EXPECT_EQ(read(0, NABTO_STREAM_CLOSED), 0U);

    Put("[Faults vent]\nBufferFull=on; times=1\nSlowStream=40\nBrokenStream=8\n");
    Clock.Sleeps.clear();
    for (const TNabtoStatus status : {NABTO_BUFFER_FULL, NABTO_OK, NABTO_STREAM_CLOSED}) {
        EXPECT_EQ(Library->NabtoStreamWrite(stream, "xy", 2), status);
    }
    EXPECT_EQ(Clock.Sleeps, std::vector<int>(3, 40));
    EXPECT_EQ(Nabto.FindController(Vent)->StreamReceived(), "xy");

    EXPECT_EQ(Library->NabtoStreamClose(stream), NABTO_OK);
    EXPECT_EQ(Library->NabtoStreamClose(stream), NABTO_INVALID_STREAM);
    EXPECT_EQ(Library->NabtoStreamWrite(stream, "z", 1), NABTO_INVALID_STREAM);
    EXPECT_EQ(Library->NabtoStreamWrite(stream, nullptr, 3), NABTO_ILLEGAL_PARAMETER);
    ASSERT_EQ(Library->NabtoStreamOpen(&stream, Session, Vent.c_str()), NABTO_OK);
    EXPECT_EQ(Nabto.CloseSession(Session), NABTO_OK);
    EXPECT_EQ(Library->NabtoStreamClose(stream), NABTO_INVALID_STREAM);
}

TEST_F(TSimulatedNabtoTest, EndsInOrderAndTellsWrongFrees) {
    Put("[Library]\nnabtoCloseSession=NABTO_FAILED; times=1\n");
    OpenReady();
    for (const TNabtoStatus status : {NABTO_FAILED, NABTO_OK, NABTO_INVALID_SESSION}) {
        EXPECT_EQ(Nabto.CloseSession(Session), status);
    }
    EXPECT_EQ(Ask(Vent), "status 4");
    EXPECT_EQ(Library->NabtoShutdown(), NABTO_OK);
    EXPECT_EQ(Library->NabtoShutdown(), NABTO_OK); // ending what never started is no failure

    char own = 'x';
    char* const given = Nabto.Memory.Text("text");
    Library->NabtoFree(nullptr);
    Library->NabtoFree(given);
    EXPECT_THAT(Reports, IsEmpty());
    Library->NabtoFree(given);
    Library->NabtoFree(&own);
    EXPECT_THAT(Reports, ElementsAre(HasSubstr("nabtoFree"), HasSubstr("nabtoFree")));
    const auto shutdown = Library->NabtoShutdown;
    Library.reset();
    EXPECT_EQ(shutdown(), NABTO_API_NOT_INITIALIZED);
}

} // namespace

} // namespace tidewell
