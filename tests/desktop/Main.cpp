#include "desktop/QtApplication.h"
#include "rig/Test.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const tidewell::TQtApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
