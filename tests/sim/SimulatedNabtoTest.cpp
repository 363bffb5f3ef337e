#include "sim/nabto/SimulatedNabto.h"

#include "sim/nabto/InProcessLibrary.h"
#include "sim/nabto/Status.h"
#include "support/MemoryFiles.h"
#include "support/VirtualTime.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

namespace tidewell {

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr const char* IniText = R"([Simulation]
Controllers=vent,gate,far,off
Domain=remote.example.com
[Controller vent]
Id=410000000001
Model=30021
Devicenumber=7
StreamPiece=4
[Values vent]
setpoint 0 100..101 = list 11 12
datapoint 0 200 = counter 0 1 1s
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
[Controller off]
Id=410000000004
Local=false
Remote=false
Model=30021
Devicenumber=7
)";

constexpr const char* Standalone =
    R"(<?xml version="1.0"?><interface><!-- a > b --><query name="ping.json"><request><parameter name="ping"/></request>)"
    R"(<response><parameter name="Pong"/><parameter name='Model'/></response></query>)"
    R"(<query name="setpointReadValue.json"><request><parameter name="address"/><parameter name="length"/>)"
    R"(<parameter name="obj"/></request><response><list name="data"><parameter name="value"/></list></response>)"
    R"(</query><query name="datapointReadValue.json"><request><parameter name="address"/><parameter name="length"/>)"
    R"(<parameter name="obj"/></request><response><list name="data"/></response></query></interface>)";

// The library as a program uses it: loaded by name, called through its C functions.
class TSimulatedNabtoTest : public ::testing::Test {
  protected:
    TSimulatedNabtoTest() {
        Files.Put("home/simulation.ini", IniText);
        Nabto.OnReport = [this](const std::string& line) {
            Reports.push_back(line);
        };
    }

    void TearDown() override { EXPECT_THAT(Reports, Not(Contains(HasSubstr("nabtoFree")))); }

    template <typename TFunction>
    TFunction* Function(const char* name) const {
        return reinterpret_cast<TFunction*>(Library->Symbol(name));
    }
    std::uint8_t Startup() { return Function<decltype(nabtoStartup)>("nabtoStartup")("home"); }
    std::uint8_t Open(const char* email = "a@example.com", const char* password = "secret") {
        return Function<decltype(nabtoOpenSession)>("nabtoOpenSession")(&Session, email, password);
    }
    std::uint8_t Create(const char* email = "a@example.com", const char* password = "secret") {
        return Function<decltype(nabtoCreateProfile)>("nabtoCreateProfile")(email, password);
    }
    // The error text, empty when the definition was taken.
    std::string Install(const char* definition) {
        char* error = nullptr;
        const std::uint8_t status = Function<decltype(nabtoRpcSetDefaultInterface)>(
            "nabtoRpcSetDefaultInterface")(Session, definition, &error);
        EXPECT_EQ(status == NABTO_OK, error == nullptr);
        return Take(error);
    }
    std::string Invoke(const std::string& url, TNabtoStatus expected = NABTO_OK) {
        char* response = nullptr;
        EXPECT_EQ(Function<decltype(nabtoRpcInvoke)>("nabtoRpcInvoke")(Session, url.c_str(), &response),
                  expected)
            << url;
        return Take(response);
    }
    std::string Ping(const std::string& device, TNabtoStatus expected = NABTO_OK) {
        return Invoke("nabto://" + device + R"(/ping.json?json={"request":{"ping":"1885957735"}})", expected);
    }
    std::string ReadVent() {
        return Invoke(R"(nabto://410000000001/setpointReadValue.json?json=)"
                      R"({"request":{"address":"100","length":"2","obj":"0"}})");
    }
    std::string Take(char* text) {
        const std::string taken = text != nullptr ? text : "(none)";
        Function<decltype(nabtoFree)>("nabtoFree")(text);
        return taken == "(none)" ? "" : taken;
    }
    void OpenReady() {
        ASSERT_EQ(Startup(), NABTO_OK);
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

TEST_F(TSimulatedNabtoTest, ProfilesAreFilesByEmail) {
    EXPECT_EQ(Open(), NABTO_API_NOT_INITIALIZED);
    ASSERT_EQ(Startup(), NABTO_OK);
    EXPECT_EQ(Startup(), NABTO_OK);
    EXPECT_EQ(Open(), NABTO_NO_PROFILE);
    EXPECT_EQ(Session, nullptr);
    EXPECT_EQ(Create(), NABTO_OK);
    EXPECT_THAT(Files.List("home/users", "*"), ElementsAre("a@example.com"));
    EXPECT_EQ(Open("a@example.com", "other"), NABTO_UNLOCK_PK_FAILED);
    EXPECT_EQ(Open(), NABTO_OK);
    Files.Remove("home/users/a@example.com");
    EXPECT_EQ(Open(), NABTO_NO_PROFILE);
    EXPECT_EQ(Create("../a@example.com"), NABTO_ILLEGAL_PARAMETER);
    Files.Unwritable.insert("home/users");
    EXPECT_EQ(Create(), NABTO_CERT_SAVING_FAILURE);
}

TEST_F(TSimulatedNabtoTest, OnlyKnownUsersGetAProfile) {
    Files.Put("home/simulation.ini", std::string(IniText) + "[Users]\na@example.com=secret\n");
    ASSERT_EQ(Startup(), NABTO_OK);
    EXPECT_EQ(Create("b@example.com"), NABTO_PORTAL_LOGIN_FAILURE);
    EXPECT_EQ(Create("a@example.com", "wrong"), NABTO_PORTAL_LOGIN_FAILURE);
    EXPECT_EQ(Create(), NABTO_OK);
}

TEST_F(TSimulatedNabtoTest, DevicesAreReachedLocallyOrThroughTheDomain) {
    OpenReady();
    EXPECT_EQ(Ping("410000000001"), VentPong);
    EXPECT_EQ(Ping("410000000001.Remote.example.com"), VentPong);
    EXPECT_EQ(Ping("410000000003.remote.example.com"), VentPong);
    EXPECT_TRUE(Clock.Sleeps.empty());
    for (const char* device : {"410000000003", "410000000003.other.example.com",
                               "410000000004.remote.example.com", "410000000009", "41", "410000000001x"}) {
        EXPECT_EQ(Ping(device, NABTO_CONNECT_TO_HOST_FAILED), "") << device;
    }
    EXPECT_EQ(Clock.Sleeps, std::vector<int>(6, 2000));
    EXPECT_EQ(Ping("410000000002", NABTO_FAILED_WITH_JSON_MESSAGE),
              R"({"error":{"body":"access denied for a@example.com"}})");
    EXPECT_EQ(Invoke("http://410000000001/ping.json?json={}", NABTO_INVALID_RESOURCE), "");
    EXPECT_EQ(Invoke("nabto://410000000001?json=/", NABTO_INVALID_RESOURCE), "");
}

TEST_F(TSimulatedNabtoTest, ListsLocalDevices) {
    char** devices = nullptr;
    int count = -1;
    const auto list = Function<decltype(nabtoGetLocalDevices)>("nabtoGetLocalDevices");
    EXPECT_EQ(list(&devices, &count), NABTO_API_NOT_INITIALIZED);
    EXPECT_EQ(count, -1);
    ASSERT_EQ(Startup(), NABTO_OK);
    ASSERT_EQ(list(&devices, &count), NABTO_OK);
    ASSERT_EQ(count, 2);
    EXPECT_STREQ(devices[0], "410000000001");
    EXPECT_STREQ(devices[1], "410000000002");
}

TEST_F(TSimulatedNabtoTest, TheInterfaceInForceDecidesWhatPasses) {
    ASSERT_EQ(Startup(), NABTO_OK);
    ASSERT_EQ(Create("friend@example.com"), NABTO_OK);
    ASSERT_EQ(Open("friend@example.com"), NABTO_OK);
    EXPECT_THAT(Ping("410000000001", NABTO_FAILED_WITH_JSON_MESSAGE), HasSubstr("has no query ping.json"));

    ASSERT_EQ(Install(Standalone), "");
    EXPECT_EQ(Ping("410000000002"), R"({"response":{"Pong":1886350951,"Model":30011}})");
    EXPECT_THAT(Invoke(R"(nabto://410000000001/admincmd.json?json={"request":{"cmd":"42"}})",
                       NABTO_FAILED_WITH_JSON_MESSAGE),
                HasSubstr("has no query admincmd.json"));
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
    EXPECT_EQ(Nabto.Memory.Count(), 0U);
}

TEST_F(TSimulatedNabtoTest, LatencyAndSilenceTakeTime) {
    OpenReady();
    TSimulatedController* vent = Nabto.FindController("vent");
    ASSERT_NE(vent, nullptr);
    vent->Faults.Replace({{EFault::Latency, 300, {}, {}}});
    ReadVent();
    TFault silent{EFault::NoAnswer, 0, {}, {}};
    silent.When.ToMs = 2300; // since the start-up; the latency has taken 300 ms
    vent->Faults.Replace({silent});
    EXPECT_EQ(Ping("410000000001", NABTO_CONNECT_TO_HOST_FAILED), "");
    EXPECT_EQ(Ping("410000000001"), VentPong);
    EXPECT_EQ(Clock.Sleeps, (std::vector<int>{300, 2000}));
    EXPECT_EQ(Invoke(R"(nabto://410000000001/datapointReadValue.json?json=)"
                     R"({"request":{"address":"200","length":"1","obj":"0"}})"),
              R"({"response":{"data":[{"value":2}]}})");
}

TEST_F(TSimulatedNabtoTest, FaultsAreReadAgainWhenTheFileChanges) {
    OpenReady();
    const std::string good = ReadVent();
    Files.Put("home/simulation.ini", std::string(IniText) + "[Faults vent]\nError=Device busy\n");
    EXPECT_EQ(ReadVent(), good); // looks once a second
    Clock.Advance(1000);
    EXPECT_EQ(ReadVent(), R"({"error":{"body":"Device busy"}})");

    Files.Put("home/simulation.ini", std::string(IniText) + "[Faults vent]\nEror=x\n");
    Clock.Advance(5000);
    ReadVent();
    Clock.Advance(5000);
    EXPECT_EQ(ReadVent(), R"({"error":{"body":"Device busy"}})");
    EXPECT_THAT(
        Reports,
        ElementsAre(R"(home/simulation.ini: section "Faults vent", key "Eror": unknown fault "Eror")"));

    Files.Remove("home/simulation.ini");
    Clock.Advance(1000);
    EXPECT_EQ(ReadVent(), R"({"error":{"body":"Device busy"}})");
    Files.Put("home/simulation.ini",
              std::string(IniText) + "[Library]\nnabtoRpcInvoke=NABTO_NO_NETWORK; times=1\n");
    Clock.Advance(1000);
    EXPECT_EQ(Ping("410000000001", NABTO_NO_NETWORK), "");
    EXPECT_EQ(ReadVent(), good);
}

TEST_F(TSimulatedNabtoTest, StartupTellsMistakesInTheFile) {
    Files.Put("home/simulation.ini", std::string(IniText) + "[Values far]\nsetpoint 0 1 = sinus\n");
    EXPECT_EQ(Startup(), NABTO_ERROR_READING_CONFIG);
    Files.Remove("home/simulation.ini");
    EXPECT_EQ(Startup(), NABTO_ERROR_READING_CONFIG);
    EXPECT_THAT(
        Reports,
        ElementsAre(R"(home/simulation.ini: section "Values far", key "setpoint 0 1": unknown kind "sinus")",
                    HasSubstr("home/simulation.ini")));
    EXPECT_EQ(Open(), NABTO_API_NOT_INITIALIZED);
    Files.Put("elsewhere.ini", IniText);
    Nabto.SimulationFile = "elsewhere.ini";
    EXPECT_EQ(Startup(), NABTO_OK);
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
    EXPECT_EQ(open(&stream, Session, "410000000004"), NABTO_CONNECT_TO_HOST_FAILED);
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

    TFault full{EFault::BufferFull, 0, {}, {}};
    full.When.Times = 1;
    vent->Faults.Replace({full, {EFault::SlowStream, 40, {}, {}}, {EFault::BrokenStream, 8, {}, {}}});
    Clock.Sleeps.clear();
    EXPECT_EQ(write(stream, "xy", 2), NABTO_BUFFER_FULL);
    EXPECT_EQ(write(stream, "xy", 2), NABTO_OK);
    EXPECT_EQ(write(stream, "z", 1), NABTO_STREAM_CLOSED);
    EXPECT_EQ(Clock.Sleeps, std::vector<int>(3, 40));
    EXPECT_EQ(vent->StreamReceived(), "xy");

    EXPECT_EQ(close(stream), NABTO_OK);
    EXPECT_EQ(close(stream), NABTO_INVALID_STREAM);
    EXPECT_EQ(write(stream, "z", 1), NABTO_INVALID_STREAM);
    ASSERT_EQ(open(&stream, Session, "410000000001"), NABTO_OK);
    EXPECT_EQ(Function<decltype(nabtoCloseSession)>("nabtoCloseSession")(Session), NABTO_OK);
    EXPECT_EQ(close(stream), NABTO_INVALID_STREAM);
}

TEST_F(TSimulatedNabtoTest, EndsInOrder) {
    OpenReady();
    const auto closeSession = Function<decltype(nabtoCloseSession)>("nabtoCloseSession");
    const auto shutdown = Function<decltype(nabtoShutdown)>("nabtoShutdown");
    TLibraryFault once{"nabtoCloseSession", NABTO_FAILED, {}};
    once.When.Times = 1;
    Nabto.AddLibraryFault(once);
    EXPECT_EQ(closeSession(Session), NABTO_FAILED);
    EXPECT_EQ(closeSession(Session), NABTO_OK);
    EXPECT_EQ(closeSession(Session), NABTO_INVALID_SESSION);
    EXPECT_EQ(Ping("410000000001", NABTO_INVALID_SESSION), "");
    EXPECT_EQ(shutdown(), NABTO_OK);
    EXPECT_EQ(shutdown(), NABTO_OK); // ending what never started is no failure
    // What was written before stays, as the controllers did not go.
    Nabto.FindController("vent")->Values.Write({0, 100}, 5);
    OpenReady();
    EXPECT_EQ(ReadVent(), R"({"response":{"data":[{"value":5},{"value":12}]}})");
    Library.reset();
    EXPECT_EQ(shutdown(), NABTO_API_NOT_INITIALIZED);
}

TEST_F(TSimulatedNabtoTest, TheCallsAreLogged) {
    OpenReady();
    Loader.Calls.clear();
    Open("b@example.com", "pw");
    Ping("410000000001");
    Startup();
    EXPECT_THAT(
        Loader.Calls,
        ElementsAre("nabtoOpenSession b@example.com pw",
                    R"(nabtoRpcInvoke nabto://410000000001/ping.json?json={"request":{"ping":"1885957735"}})",
                    "nabtoFree", "nabtoStartup home"));
}

TEST_F(TSimulatedNabtoTest, SymbolsAndLibraryCanBeMissing) {
    Loader.Missing = {"nabtoStartup"};
    EXPECT_EQ(Library->Symbol("nabtoStartup"), nullptr);
    EXPECT_NE(Library->Symbol("nabtoShutdown"), nullptr);
    EXPECT_EQ(Library->Symbol("nabtoVersionString"), nullptr);
    Loader.Present = false;
    EXPECT_EQ(Loader.Load("nabto_client_api"), nullptr);
}

TEST_F(TSimulatedNabtoTest, WrongFreesAreTold) {
    const auto free = Function<decltype(nabtoFree)>("nabtoFree");
    char own = 'x';
    char* const given = Nabto.Memory.Text("text");
    for (void* memory : {static_cast<void*>(nullptr), static_cast<void*>(given)}) {
        free(memory);
        EXPECT_THAT(Reports, ElementsAre());
    }
    for (void* memory : {static_cast<void*>(given), static_cast<void*>(&own)}) {
        free(memory);
        EXPECT_THAT(Reports, ElementsAre(HasSubstr("nabtoFree")));
        Reports.clear();
    }
}

TEST_F(TSimulatedNabtoTest, NullArgumentsAreRefused) {
    OpenReady();
    EXPECT_EQ(Function<decltype(nabtoStartup)>("nabtoStartup")(nullptr), NABTO_ILLEGAL_PARAMETER);
    EXPECT_EQ(Open(nullptr), NABTO_ILLEGAL_PARAMETER);
    EXPECT_EQ(Function<decltype(nabtoRpcInvoke)>("nabtoRpcInvoke")(Session, nullptr, nullptr),
              NABTO_ILLEGAL_PARAMETER);
    EXPECT_EQ(Function<decltype(nabtoStreamWrite)>("nabtoStreamWrite")(nullptr, nullptr, 3),
              NABTO_ILLEGAL_PARAMETER);
}

TEST(NabtoStatusTexts, NamesAndNumbersGoTogether) {
    EXPECT_EQ(StatusByName("NABTO_BUFFER_FULL"), NABTO_BUFFER_FULL);
    EXPECT_EQ(StatusByName("NABTO_STREAM_CLOSED"), NABTO_STREAM_CLOSED);
    EXPECT_EQ(StatusByName("NABTO_FAILED_WITH_JSON_MESSAGE"), NABTO_FAILED_WITH_JSON_MESSAGE);
    EXPECT_EQ(StatusByName("NABTO_NONE"), std::nullopt);
    EXPECT_STREQ(StatusText(26), "Failed; the reply tells why");
    EXPECT_STREQ(StatusText(27), "Unknown status");
}

} // namespace

} // namespace tidewell
