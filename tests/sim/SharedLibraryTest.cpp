#include "link/DynamicLibraryLoader.h"
#include "link/NabtoLibrary.h"
#include "rig/Test.h"

#include <unistd.h>

namespace tidewell {

namespace {

// The built library, loaded as the program does it, on real files and real time.
TEST(SharedLibrary, WorksThroughItsCFunctionsAndShowsNothingElse) {
    const auto bin = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    const auto home = std::filesystem::temp_directory_path() / ("tidewell_sim_" + std::to_string(::getpid()));
    ::unsetenv("TIDEWELL_SIMULATION");
    TDynamicLibraryLoader loader(bin);
    const TNabtoLibrary library(loader);
    EXPECT_EQ(library.Module.Library->Symbol("_ZN8tidewell15BindEntryPointsEPNS_15TSimulatedNabtoE"),
              nullptr);
    EXPECT_EQ(library.Module.File, (bin / "libnabto_client_api.so").string());
    EXPECT_EQ(library.Module.Failure, "");

    testing::internal::CaptureStderr();
    EXPECT_EQ(library.NabtoStartUp(home.c_str()), NABTO_ERROR_READING_CONFIG);
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                testing::HasSubstr((home / "simulation.ini").string()));
    TDiskFiles files;
    files.CreateDirectories(home);
    const auto file = files.Replace(home / "simulation.ini");
    file->Write("[Simulation]\nControllers=a\n[Controller a]\nId=410000000001\nModel=1\nDevicenumber=2\n");
    file->Commit();
    EXPECT_EQ(library.NabtoStartUp(home.c_str()), NABTO_OK);
    EXPECT_EQ(library.NabtoCreateProfile("a@x", "pw"), NABTO_OK);
    EXPECT_TRUE(files.FileExists(home / "users" / "a@x"));
    char own = 'x';
    testing::internal::CaptureStderr();
    library.NabtoFree(&own);
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr("nabtoFree"));
    std::filesystem::remove_all(home);
}

} // namespace

} // namespace tidewell
