#include "cloud/NabtoLogOn.h"

#include "link/DynamicLibraryLoader.h"
#include "rig/PosixProcess.h"
#include "rig/Test.h"

namespace tidewell::test {
namespace {

// The rest of the dialog is told in tests/journeys.
TEST(InstalledLogOn, ScramblesWithTheLibraryAndToolsOfTheProgram) {
    TFixedDialogs dialogs;
    TDynamicLibraryLoader libraries(PROGRAM_DIRECTORY);
    TPosixProcess process;
    const TCurrentInifilesPath paths{{}, {}, {}, {}, PROGRAM_DIRECTORY};
    const TExtensions extensions;
    std::string lastPW;
    TNabtoLogOn logOn(libraries, process, dialogs, paths, extensions, lastPW);
    for (const char* const typed : {"se \"cret\"", "Palisades"}) { // which stands for the former one
        logOn.Open();
        logOn.EditPW.Enter(typed);
        logOn.ButOk.Click();
        EXPECT_EQ(logOn.ModalResult(), EModalResult::Ok);
        logOn.Close();
        EXPECT_EQ(logOn.LoginPassword, "se \"cret\"");
        lastPW = logOn.CLoginPassword;
        logOn.ForgetPassword();
        EXPECT_EQ(logOn.CLoginPassword + logOn.LoginPassword + logOn.EditPW.Text(), "");
    }
}

} // namespace
} // namespace tidewell::test
