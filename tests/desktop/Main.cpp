#include "LanguageTour.h"
#include "desktop/QtApplication.h"

#include <gtest/gtest.h>

// The tests, or the program on a tour: it starts its own executable anew, without arguments.
int main(int argc, char** argv) {
    if (qEnvironmentVariableIsSet(tidewell::test::tourVariable))
        return tidewell::test::RunLanguageTour(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    const tidewell::TQtApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
