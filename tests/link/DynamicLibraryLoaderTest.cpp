#include "link/DynamicLibraryLoader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>

namespace tidewell::test {

namespace {

TEST(DynamicLibraryLoader, FindsLibrariesOfTheProgramFolder) {
    TDynamicLibraryLoader loader(TEST_LIBRARY_FOLDER);
    const auto library = loader.Load("link_test_library").Library;
    ASSERT_TRUE(library);
    const auto answer = reinterpret_cast<int (*)()>(library->Symbol("Answer"));
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer(), 42);
    EXPECT_EQ(library->Symbol("Question"), nullptr);
    EXPECT_EQ(TDynamicLibraryLoader("/nowhere").Load("link_test_library").Library, nullptr);
    const TLoadedLibrary missing = loader.Load("link_test_library_that_is_not_there");
    EXPECT_EQ(missing.Library, nullptr);
    EXPECT_EQ(missing.File, "liblink_test_library_that_is_not_there.so");
    EXPECT_THAT(missing.Failure, testing::HasSubstr(missing.File)); // in the language of the machine
}

// A broken file of the program's own is not replaced in silence by one that the system has.
TEST(DynamicLibraryLoader, TakesTheSystemsCopyOnlyWhereThereIsNoOwn) {
    const auto folder =
        std::filesystem::temp_directory_path() / ("tidewell_loader_" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    TDynamicLibraryLoader loader(folder);
    EXPECT_NE(loader.Load("crypto").Library, nullptr);
    const auto own = folder / "libcrypto.so";
    std::ofstream(own) << "no library";
    const TLoadedLibrary broken = loader.Load("crypto");
    EXPECT_EQ(broken.Library, nullptr);
    EXPECT_EQ(broken.File, own.string());
    EXPECT_THAT(broken.Failure, testing::HasSubstr(own.string()));
    std::filesystem::remove_all(folder);
}

} // namespace

} // namespace tidewell::test
