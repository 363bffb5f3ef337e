#include "sim/nabto/SimulatedNabto.h"

#include "sim/nabto/InProcessLibrary.h"
#include "support/MemoryFiles.h"
#include "support/VirtualTime.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

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
[Values vent]
setpoint 0 100..101 = list 11 12
[Controller gate]
Id=410000000002
Model=30011
Devicenumber=8
SlaveModel=30022
SlaveDevicenumber=9
Users=friend@example.com
[Controller far]
Id=410000000003
Local=false
Model=30021
Devicenumber=7
)";

constexpr const char* Standalone =
    R"(<?xml version="1.0"?><interface><!-- a > b --><query name="ping.json"><request><parameter name="ping"/></request>)"
    R"(<response><parameter name="Pong"/><parameter name='Model'/></response></query>)"
    R"(<query name="setpointReadValue.json"><request><parameter name="address"/><parameter name="length"/>)"
    R"(<parameter name="obj"/></request><response><list name="data"><parameter name="value"/></list></response>)"
    R"(</query></interface>)";

// The library in virtual time; streams and frees through the C functions, as a program calls them.
class TSimulatedNabtoTest : public ::testing::Test {
  protected:
    TSimulatedNabtoTest() {
        Put("");
        Nabto.OnReport = [this](const std::string& line) {
            Reports.push_back(line);
        };
    }

    void Put(const std::string& rows) { Files.Put("home/simulation.ini", IniText + rows); }
    template <typename TFunction>
    TFunction* Function(const char* name) const {
        return reinterpret_cast<TFunction*>(Library->Symbol(name));
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
    std::string Invoke(const std::string& url, TNabtoStatus expected = NABTO_OK) {
        std::optional<std::string> response;
        EXPECT_EQ(Nabto.RpcInvoke(Session, url, response), expected) << url;
        return response.value_or("");
    }
    std::string Ping(const std::string& device, TNabtoStatus expected = NABTO_OK) {
        return Invoke("nabto://" + device + R"(/ping.json?json={"request":{"ping":"1885957735"}})", expected);
    }
    std::string ReadVent() {
        return Invoke(R"(nabto://410000000001/setpointReadValue.json?json=)"
                      R"({"request":{"address":"100","length":"2","obj":"0"}})");
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
        ASSERT_EQ(Install(Standalone), "");
    }

    test::TMemoryFiles Files;
    test::TVirtualTime Clock;
    TPortTime Time{Clock, Clock};
    TSimulatedNabto Nabto{Files, Time};
    TInProcessLibrary Loader{Nabto};
    std::unique_ptr<ILibrary> Library = Loader.Load("nabto_client_api");
    std::vector<std::string> Reports;
    void* Session = nullptr;
};

constexpr const char* VentPong = R"({"response":{"Pong":1886350951,"Model":30021}})";
constexpr const char* Busy = R"({"error":{"body":"Device busy"}})";

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
    EXPECT_THAT(LocalDevices(), ElementsAre("410000000001", "410000000002"));
    EXPECT_EQ(Ping("410000000001"), VentPong);
    EXPECT_EQ(Ping("410000000001.Remote.example.com"), VentPong);
    EXPECT_EQ(Ping("410000000003.remote.example.com"), VentPong);
    EXPECT_THAT(Clock.Sleeps, IsEmpty());
    for (const char* device :
         {"410000000003", "410000000003.other.example.com", "410000000009", "41", "410000000001x"}) {
        EXPECT_EQ(Ping(device, NABTO_CONNECT_TO_HOST_FAILED), "") << device;
    }
    EXPECT_EQ(Clock.Sleeps, std::vector<int>(5, 2000));
    Put("[Faults vent]\nLatency=300\nNoAnswer=on; times=1\n");
    EXPECT_EQ(Ping("410000000001", NABTO_CONNECT_TO_HOST_FAILED), "");
    EXPECT_EQ(Ping("410000000001"), VentPong);
    EXPECT_EQ(Clock.Sleeps.back(), 300);
    EXPECT_EQ(Ping("410000000002", NABTO_FAILED_WITH_JSON_MESSAGE),
              R"({"error":{"body":"access denied for a@example.com"}})");
    EXPECT_EQ(Invoke("http://410000000001/ping.json?json={}", NABTO_INVALID_RESOURCE), "");
    EXPECT_EQ(Invoke("nabto://410000000001?json=/", NABTO_INVALID_RESOURCE), "");
}

TEST_F(TSimulatedNabtoTest, TheInterfaceInForceDecidesWhatPasses) {
    ASSERT_EQ(Nabto.Startup("home"), NABTO_OK);
    ASSERT_EQ(Create("friend@example.com"), NABTO_OK);
    ASSERT_EQ(Nabto.OpenSession("friend@example.com", "secret", Session), NABTO_OK);
    EXPECT_THAT(Ping("410000000001", NABTO_FAILED_WITH_JSON_MESSAGE), HasSubstr("has no query ping.json"));

    ASSERT_EQ(Install(Standalone), "");
    EXPECT_EQ(Ping("410000000002"), R"({"response":{"Pong":1886350951,"Model":30011}})");
    EXPECT_THAT(Invoke(R"(nabto://410000000001/ping.json?json={"request":{"user":"x"}})",
                       NABTO_FAILED_WITH_JSON_MESSAGE),
                HasSubstr("has no request member user"));
    EXPECT_EQ(Invoke("nabto://410000000001/ping.json?json={"), R"({"error":{"body":"malformed request"}})");

    // A refused definition leaves the one in force.
    for (const char* bad : {"", "<interface></interface>", "<a><query name=\"x\"></a>", "<query name=x/>",
                            "<query", "<query/>", "</a>", "<!-- <query name=\"x\"/>"}) {
        EXPECT_THAT(Install(bad), HasSubstr("Interface definition refused: ")) << bad;
    }
    EXPECT_EQ(Ping("410000000001"), VentPong);
    ASSERT_EQ(Install(R"(<query name="ping.json"><request><parameter name="ping"/></request><response>)"
                      R"(<parameter name="Pong"/><parameter name="SlaveModel"/></response></query>)"),
              "");
    EXPECT_EQ(Ping("410000000002"), R"({"response":{"Pong":1886350951,"SlaveModel":30022}})");
}

TEST_F(TSimulatedNabtoTest, TheFileIsReadAgainWhenItChanges) {
    OpenReady();
    Nabto.FindController("vent")->Values.Write({0, 100}, 5);
    const std::string good = ReadVent();
    Put("[Faults vent]\nError=Device busy\n");
    EXPECT_EQ(ReadVent(), good); // looks once a second
    Clock.Advance(1000);
    EXPECT_EQ(ReadVent(), Busy);

    Put("[Faults vent]\nEror=x\n");
    Clock.Advance(5000);
    ReadVent();
    Clock.Advance(5000);
    EXPECT_EQ(ReadVent(), Busy);
    EXPECT_THAT(
        Reports,
        ElementsAre(R"(home/simulation.ini: section "Faults vent", key "Eror": unknown fault "Eror")"));

    Files.Remove("home/simulation.ini");
    Clock.Advance(1000);
    EXPECT_EQ(ReadVent(), Busy);
    Put("[Library]\nnabtoRpcInvoke=NABTO_NO_NETWORK; times=1\n");
    Clock.Advance(1000);
    EXPECT_EQ(Ping("410000000001", NABTO_NO_NETWORK), "");
    EXPECT_EQ(ReadVent(), good); // what was written stays

    // Controllers come and go.
    Put("[Controller vent]\nLocal=false\nRemote=false\n[Controller far]\nLocal=true\nCopies=200\n");
    Clock.Advance(1000);
    EXPECT_THAT(LocalDevices(), SizeIs(202));
    EXPECT_EQ(LocalDevices().back(), "410000000203");
    Ping("410000000001", NABTO_CONNECT_TO_HOST_FAILED);
    Put("");
    Clock.Advance(1000);
    EXPECT_THAT(LocalDevices(), ElementsAre("410000000001", "410000000002"));
    Ping("410000000203", NABTO_CONNECT_TO_HOST_FAILED);
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
    EXPECT_EQ(Open(), NABTO_API_NOT_INITIALIZED);
    Files.Put("elsewhere.ini", IniText);
    Nabto.SimulationFile = "elsewhere.ini";
    EXPECT_EQ(Nabto.Startup("home"), NABTO_OK);
}

TEST_F(TSimulatedNabtoTest, StreamsReadAndWrite) {
    OpenReady();
    const auto open = Function<decltype(nabtoStreamOpen)>("nabtoStreamOpen");
    const auto close = Function<decltype(nabtoStreamClose)>("nabtoStreamClose");
    const auto read = Function<decltype(nabtoStreamReadIntoBuf)>("nabtoStreamReadIntoBuf");
    const auto write = Function<decltype(nabtoStreamWrite)>("nabtoStreamWrite");
    TSimulatedController* vent = Nabto.FindController("410000000001");
    ASSERT_NE(vent, nullptr);

    void* stream = nullptr;
    EXPECT_EQ(open(&stream, nullptr, "410000000001"), NABTO_INVALID_SESSION);
    EXPECT_EQ(open(&stream, Session, "410000000003"), NABTO_CONNECT_TO_HOST_FAILED);
    ASSERT_EQ(open(&stream, Session, "410000000001"), NABTO_OK);
    vent->PrepareStream("abcdef");
    std::array<unsigned char, 16> buffer{};
    std::size_t got = 99;
    EXPECT_EQ(read(stream, buffer.data(), buffer.size(), &got), NABTO_OK);
    EXPECT_EQ(got, 4U);
    EXPECT_EQ(read(stream, buffer.data() + 4, buffer.size(), &got), NABTO_OK);
    EXPECT_EQ(std::string(buffer.begin(), buffer.begin() + 6), "abcdef");
    EXPECT_EQ(read(stream, buffer.data(), buffer.size(), &got), NABTO_STREAM_CLOSED);
    EXPECT_EQ(got, 0U);

    Put("[Faults vent]\nBufferFull=on; times=1\nSlowStream=40\nBrokenStream=8\n");
    Clock.Advance(1000);
    Clock.Sleeps.clear();
    EXPECT_EQ(write(stream, "xy", 2), NABTO_BUFFER_FULL);
    EXPECT_EQ(write(stream, "xy", 2), NABTO_OK);
    EXPECT_EQ(write(stream, "z", 1), NABTO_STREAM_CLOSED);
    EXPECT_EQ(Clock.Sleeps, std::vector<int>(3, 40));
    EXPECT_EQ(vent->StreamReceived(), "xy");

    EXPECT_EQ(close(stream), NABTO_OK);
    EXPECT_EQ(close(stream), NABTO_INVALID_STREAM);
    EXPECT_EQ(write(stream, "z", 1), NABTO_INVALID_STREAM);
    EXPECT_EQ(write(stream, nullptr, 3), NABTO_ILLEGAL_PARAMETER);
    ASSERT_EQ(open(&stream, Session, "410000000001"), NABTO_OK);
    EXPECT_EQ(Nabto.CloseSession(Session), NABTO_OK);
    EXPECT_EQ(close(stream), NABTO_INVALID_STREAM);
}

TEST_F(TSimulatedNabtoTest, EndsInOrderAndTellsWrongFrees) {
    OpenReady();
    TLibraryFault once{"nabtoCloseSession", NABTO_FAILED, {}};
    once.When.Times = 1;
    Nabto.AddLibraryFault(once);
    for (const TNabtoStatus status : {NABTO_FAILED, NABTO_OK, NABTO_INVALID_SESSION}) {
        EXPECT_EQ(Nabto.CloseSession(Session), status);
    }
    EXPECT_EQ(Ping("410000000001", NABTO_INVALID_SESSION), "");
    const auto shutdown = Function<decltype(nabtoShutdown)>("nabtoShutdown");
    EXPECT_EQ(shutdown(), NABTO_OK);
    EXPECT_EQ(shutdown(), NABTO_OK); // ending what never started is no failure

    const auto free = Function<decltype(nabtoFree)>("nabtoFree");
    char own = 'x';
    char* const given = Nabto.Memory.Text("text");
    free(nullptr);
    free(given);
    EXPECT_THAT(Reports, IsEmpty());
    free(given);
    free(&own);
    EXPECT_THAT(Reports, ElementsAre(HasSubstr("nabtoFree"), HasSubstr("nabtoFree")));
    Library.reset();
    EXPECT_EQ(shutdown(), NABTO_API_NOT_INITIALIZED);
}

} // namespace

} // namespace tidewell
