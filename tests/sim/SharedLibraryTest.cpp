#include "link/NabtoClientApi.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

namespace {

// The built library, loaded as the program does it, on real files and real time.
TEST(SharedLibrary, WorksThroughItsCFunctionsAndShowsNothingElse) {
    const auto bin = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    const auto home = std::filesystem::temp_directory_path() / ("tidewell_sim_" + std::to_string(::getpid()));
    std::filesystem::create_directories(home);
    ::unsetenv("TIDEWELL_SIMULATION");
    const std::unique_ptr<void, int (*)(void*)> library(
        ::dlopen((bin / "libnabto_client_api.so").c_str(), RTLD_NOW | RTLD_LOCAL), ::dlclose);
    ASSERT_NE(library, nullptr) << ::dlerror();
    const auto symbol = [&library](const char* name) {
        return ::dlsym(library.get(), name);
    };
    EXPECT_EQ(symbol("_ZN8tidewell15BindEntryPointsEPNS_15TSimulatedNabtoE"), nullptr);
    for (const char* name :
         {"nabtoCreateProfile", "nabtoOpenSession", "nabtoRpcSetDefaultInterface", "nabtoRpcInvoke",
          "nabtoFree", "nabtoCloseSession", "nabtoShutdown", "nabtoStreamOpen", "nabtoStreamClose",
          "nabtoStreamReadIntoBuf", "nabtoStreamWrite", "nabtoGetLocalDevices"}) {
        EXPECT_NE(symbol(name), nullptr) << name;
    }

    const auto startup = reinterpret_cast<decltype(&nabtoStartup)>(symbol("nabtoStartup"));
    testing::internal::CaptureStderr();
    EXPECT_EQ(startup(home.c_str()), NABTO_ERROR_READING_CONFIG);
    EXPECT_NE(testing::internal::GetCapturedStderr().find((home / "simulation.ini").string()),
              std::string::npos);
    std::ofstream(home / "simulation.ini") << "[Simulation]\nControllers=a\n[Controller a]\nId=410000000001\n"
                                              "Model=1\nDevicenumber=2\n";
    EXPECT_EQ(startup(home.c_str()), NABTO_OK);
    EXPECT_EQ(reinterpret_cast<decltype(&nabtoCreateProfile)>(symbol("nabtoCreateProfile"))("a@x", "pw"),
              NABTO_OK);
    EXPECT_TRUE(std::filesystem::exists(home / "users" / "a@x"));
    EXPECT_STREQ(reinterpret_cast<decltype(&nabtoStatusStr)>(symbol("nabtoStatusStr"))(NABTO_BUFFER_FULL),
                 "The stream takes no more data at present");
    std::filesystem::remove_all(home);
}

} // namespace
