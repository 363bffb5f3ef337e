#include "cloud/NabtoLogOn.h"

#include "cloud/Scrambling.h"
#include "core/Guard.h"
#include "link/DynamicLibraryLoader.h"
#include "support/FakeKHelper.h"
#include "support/FakePorts.h"
#include "support/PosixProcess.h"
#include "support/ScriptedDialogs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tidewell::test {
namespace {

const char* const machineKey = "0A12C00000000000"; // of TFakeKHelper

struct TLogOn : testing::Test {
    // Shows the dialog once; what leaves a handler is shown by the general handler.
    EModalResult Show(const std::function<void()>& action) {
        Dialogs.ExpectForm("NabtoLogOn", [this, action](TForm&) { RunGuarded(Dialogs, action); });
        return Dialogs.ShowModal(LogOn);
    }
    EModalResult Enter(const std::string& password) {
        return Show([this, password] {
            LogOn.EditPW.Enter(password);
            LogOn.EditPW.OnReturn();
        });
    }
    TScriptedDialogs Dialogs;
    TFakeKHelper KHelper;
    TPosixProcess Process;
    TCurrentInifilesPath Paths{{}, {}, {}, {}, PROGRAM_DIRECTORY};
    std::string LastPW;
    TExtensions Extensions;
    TNabtoLogOn LogOn{KHelper, Process, Dialogs, Paths, Extensions, LastPW};
};

TEST_F(TLogOn, PreparesThePasswordOnOk) {
    EXPECT_EQ(Enter("se \"cret\""), EModalResult::Ok);
    EXPECT_EQ(LogOn.LoginPassword, "se \"cret\"");
    EXPECT_EQ(Unscramble(Process, Paths.directorypath, LogOn.CLoginPassword, machineKey), "se \"cret\"");

    EXPECT_EQ(Enter("gr\xC3\xBCn"), EModalResult::Ok);
    EXPECT_EQ(LogOn.LoginPassword, ""); // cannot be kept
    EXPECT_NE(LogOn.CLoginPassword, "");
    EXPECT_EQ(LogOn.EditPW.Text(), "gr\xC3\xBCn");
}

TEST_F(TLogOn, TakesThePlaceholderForTheStoredPassword) {
    LastPW = Scramble(Process, Paths.directorypath, "stored", machineKey);
    EXPECT_EQ(Enter("Palisades"), EModalResult::Ok);
    EXPECT_EQ(LogOn.CLoginPassword, LastPW);
    EXPECT_EQ(LogOn.LoginPassword, "stored");
    EXPECT_EQ(LogOn.EditPW.Text(), "Palisades");

    LastPW = Scramble(Process, Paths.directorypath, "stored", "FFFFFFFFFFFFFFFF"); // on another machine
    EXPECT_EQ(Enter("Palisades"), EModalResult::Ok);
    EXPECT_EQ(LogOn.CLoginPassword, LastPW);
    EXPECT_EQ(LogOn.LoginPassword, "");

    EXPECT_EQ(Enter("palisades"), EModalResult::Ok);
    EXPECT_EQ(LogOn.LoginPassword, "palisades");
}

TEST_F(TLogOn, HoldsTheLibraryAndTheSaveButtonOnlyWhileItIsOpen) {
    int focused = 0;
    const auto connection = LogOn.EditUser.FocusRequested.Connect([&focused] { ++focused; });
    for (int round = 1; round <= 2; ++round) {
        EXPECT_EQ(Show([&] {
                      EXPECT_EQ(KHelper.Loaded, 1);
                      EXPECT_EQ(focused, round);
                      EXPECT_TRUE(LogOn.EditPW.Masked());
                      EXPECT_FALSE(LogOn.ButSave.Visible());
                      LogOn.EnableSaveButton();
                      EXPECT_FALSE(LogOn.EditPW.Masked());
                      EXPECT_TRUE(LogOn.ButSave.Visible());
                      LogOn.FormActivate(); // the window comes to the front again
                      EXPECT_EQ(KHelper.Loaded, 1);
                  }),
                  EModalResult::Cancel);
        EXPECT_EQ(KHelper.Loaded, 0);
        EXPECT_EQ(LogOn.GetCPUIDasString, nullptr);
    }
}

TEST_F(TLogOn, IsCancelledByButtonAndEsc) {
    bool handled = false;
    EXPECT_EQ(Show([&] {
                  LogOn.EditPW.Enter("secret");
                  LogOn.OnKeyDown(EKey::Return, handled); // left to the button that has the focus
                  EXPECT_FALSE(handled);
                  EXPECT_EQ(LogOn.ModalResult(), EModalResult::None);
                  LogOn.OnKeyDown(EKey::Escape, handled);
              }),
              EModalResult::Cancel);
    EXPECT_TRUE(handled);
    EXPECT_EQ(Show([&] { LogOn.ButCancel.Click(); }), EModalResult::Cancel);
    EXPECT_EQ(LogOn.CLoginPassword + LogOn.LoginPassword, "");
}

TEST(InstalledLogOn, ScramblesWithTheLibraryAndToolsOfTheProgram) {
    TScriptedDialogs dialogs;
    TDynamicLibraryLoader libraries(PROGRAM_DIRECTORY);
    TPosixProcess process;
    const TCurrentInifilesPath paths{{}, {}, {}, {}, PROGRAM_DIRECTORY};
    const TExtensions extensions;
    const std::string lastPW;
    TNabtoLogOn logOn(libraries, process, dialogs, paths, extensions, lastPW);
    for (int round = 0; round < 2; ++round) {
        dialogs.ExpectForm("NabtoLogOn", [&](TForm&) {
            logOn.EditPW.Enter("secret");
            logOn.ButOk.Click();
        });
        EXPECT_EQ(dialogs.ShowModal(logOn), EModalResult::Ok);
        EXPECT_EQ(logOn.LoginPassword, "secret");
        logOn.LoginPassword.clear();
    }
}

} // namespace
} // namespace tidewell::test
