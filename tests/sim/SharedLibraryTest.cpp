#include "link/NabtoClientApi.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

// The built library, loaded as the program does it, on real files and real time.
class TSharedLibraryTest : public ::testing::Test {
  protected:
    void SetUp() override {
        const auto bin = std::filesystem::read_symlink("/proc/self/exe").parent_path();
        Home = std::filesystem::temp_directory_path() / ("tidewell_sim_" + std::to_string(::getpid()));
        std::filesystem::create_directories(Home);
        ::unsetenv("TIDEWELL_SIMULATION");
        Library = ::dlopen((bin / "libnabto_client_api.so").c_str(), RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(Library, nullptr) << ::dlerror();
    }
    void TearDown() override {
        if (Library != nullptr) {
            ::dlclose(Library);
        }
        std::filesystem::remove_all(Home);
    }
    template <typename TFunction>
    TFunction* Function(const char* name) const {
        return reinterpret_cast<TFunction*>(::dlsym(Library, name));
    }

    std::filesystem::path Home;
    void* Library = nullptr;
};

TEST_F(TSharedLibraryTest, WorksThroughItsCFunctions) {
    const auto startup = Function<decltype(nabtoStartup)>("nabtoStartup");
    ASSERT_NE(startup, nullptr);
    testing::internal::CaptureStderr();
    EXPECT_EQ(startup(Home.c_str()), NABTO_ERROR_READING_CONFIG);
    EXPECT_NE(testing::internal::GetCapturedStderr().find((Home / "simulation.ini").string()),
              std::string::npos);

    std::ofstream(Home / "simulation.ini") << "[Simulation]\nControllers=a\n[Controller a]\nId=410000000001\n"
                                              "Model=1\nDevicenumber=2\n[Faults a]\nLatency=1ms\n";
    ASSERT_EQ(startup(Home.c_str()), NABTO_OK);
    ASSERT_EQ(Function<decltype(nabtoCreateProfile)>("nabtoCreateProfile")("a@example.com", "pw"), NABTO_OK);
    EXPECT_TRUE(std::filesystem::exists(Home / "users" / "a@example.com"));
    void* session = nullptr;
    ASSERT_EQ(Function<decltype(nabtoOpenSession)>("nabtoOpenSession")(&session, "a@example.com", "pw"),
              NABTO_OK);
    char* text = nullptr;
    const char* const definition = R"(<query name="ping.json"><request><parameter name="ping"/></request>)"
                                   R"(<response><parameter name="Pong"/></response></query>)";
    ASSERT_EQ(Function<decltype(nabtoRpcSetDefaultInterface)>("nabtoRpcSetDefaultInterface")(
                  session, definition, &text),
              NABTO_OK);
    ASSERT_EQ(Function<decltype(nabtoRpcInvoke)>("nabtoRpcInvoke")(
                  session, R"(nabto://410000000001/ping.json?json={"request":{"ping":"1885957735"}})", &text),
              NABTO_OK);
    EXPECT_STREQ(text, R"({"response":{"Pong":1886350951}})");
    Function<decltype(nabtoFree)>("nabtoFree")(text);
    EXPECT_STREQ(Function<decltype(nabtoStatusStr)>("nabtoStatusStr")(NABTO_BUFFER_FULL),
                 "The stream takes no more data at present");
    EXPECT_EQ(Function<decltype(nabtoShutdown)>("nabtoShutdown")(), NABTO_OK);
}

TEST_F(TSharedLibraryTest, ShowsNothingButItsCFunctions) {
    EXPECT_EQ(::dlsym(Library, "_ZN8tidewell15BindEntryPointsEPNS_15TSimulatedNabtoE"), nullptr);
    for (const char* name : {"nabtoCloseSession", "nabtoStreamOpen", "nabtoStreamClose",
                             "nabtoStreamReadIntoBuf", "nabtoStreamWrite", "nabtoGetLocalDevices"}) {
        EXPECT_NE(::dlsym(Library, name), nullptr) << name;
    }
}

} // namespace
