#include "link/DynamicLibraryLoader.h"

#include <gtest/gtest.h>

namespace tidewell::test {

namespace {

TEST(DynamicLibraryLoader, FindsLibrariesOfTheProgramFolder) {
    TDynamicLibraryLoader loader(TEST_LIBRARY_FOLDER);
    const auto library = loader.Load("link_test_library");
    ASSERT_TRUE(library);
    const auto answer = reinterpret_cast<int (*)()>(library->Symbol("Answer"));
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer(), 42);
    EXPECT_EQ(library->Symbol("Question"), nullptr);
    EXPECT_EQ(loader.Load("link_test_library_that_is_not_there"), nullptr);
    EXPECT_EQ(TDynamicLibraryLoader("/nowhere").Load("link_test_library"), nullptr);
}

} // namespace

} // namespace tidewell::test
