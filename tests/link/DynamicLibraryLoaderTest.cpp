#include "link/DynamicLibraryLoader.h"

#include "rig/Test.h"

#include <unistd.h>

#include <fstream>

namespace tidewell::test {

namespace {

// That a library of the program's folder is found is told by that of the simulation. A broken file of the
// program's own is not replaced in silence by one that the system has.
TEST(DynamicLibraryLoader, TakesTheSystemsCopyOnlyWhereThereIsNoOwn) {
    const auto folder =
        std::filesystem::temp_directory_path() / ("tidewell_loader_" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "libcrypto.so") << "no library";
    struct TCase {
        std::filesystem::path Folder;
        const char* Name;
        std::string File;
        bool Loads;
    };
    for (const auto& [from, name, file, loads] :
         std::vector<TCase>{{"", "none-such", "libnone-such.so", false},
                            {folder, "none-such", "libnone-such.so", false},
                            {folder, "crypto", folder / "libcrypto.so", false},
                            {"", "crypto", "libcrypto.so", true},
                            {folder / "elsewhere", "crypto", "libcrypto.so", true}}) {
        const TLoadedLibrary loaded = TDynamicLibraryLoader(from).Load(name);
        EXPECT_EQ(loaded.Library != nullptr, loads) << from << name;
        EXPECT_EQ(loaded.File, file);
        EXPECT_THAT(loaded.Failure, testing::HasSubstr(loads ? "" : file)); // in the machine's language
        EXPECT_EQ(loaded.Failure.empty(), loads);
    }
    std::filesystem::remove_all(folder);
}

} // namespace

} // namespace tidewell::test
