#include "scenario/ProgramFixture.h"

#include <gmock/gmock.h>

namespace tidewell::test {
namespace {

using testing::Contains;
using testing::Not;

// The main form's keys, sizes and timers.
class TMainForm : public TProgramFixture {
  protected:
    bool Press(EKey key) {
        bool handled = false;
        Main().OnKeyDown(key, handled);
        return handled;
    }
};

TEST_F(TMainForm, ActsOnItsKeys) {
    Start();
    Dialogs.ExpectMessage(Language("HeadAppl", "MessageStopLog"), EModalResult::Cancel);
    EXPECT_TRUE(Press(EKey::F2));
    Dialogs.ExpectSaveFile(Language("HeadAppl", "DialogSaveDatalogFile"), std::nullopt);
    Press(EKey::F4);
    Dialogs.ExpectMessage(Language("HeadAppl", "MessageClearGraphData"), EModalResult::Yes);
    Press(EKey::F5);
    EXPECT_TRUE(Program->LiveLog.DatalogOn);
    Press(EKey::F5);
    EXPECT_FALSE(Program->LiveLog.DatalogOn);

    Press(EKey::F6);
    EXPECT_TRUE(Main().TheTab.IsActive(Main().TabSetpoint));
    EXPECT_FALSE(Main().GraphControlsPanel.Visible());
    Press(EKey::F1); // there is no help file
    Press(EKey::F7);
    EXPECT_TRUE(Main().TheTab.IsActive(Main().TabGraph));
    EXPECT_TRUE(Main().GraphControlsPanel.Visible());

    Dialogs.ExpectForm("SetupForm", {});
    Press(EKey::F8);
    Dialogs.ExpectMessage(Language("HeadAppl", "MessageClearGraphData"), EModalResult::No);
    Press(EKey::F5);
    Press(EKey::F11);
    EXPECT_FALSE(Program->LiveLog.DatalogOn);
    EXPECT_TRUE(Program->NabtoDevice.Visible());
    Dialogs.ExpectForm("languagedialog", {});
    Press(EKey::F12);

    EXPECT_FALSE(Press(EKey::Other));
    const std::size_t shown = Dialogs.Shown.size();
    for (TMenuItem* entry : {&Main().OpenProfile2, &Main().SaveUserDatalog1, &Main().StartLog1,
                             &Main().Setup1, &Main().Changelanguage1, &Main().OpenDatalogfile1})
        entry->SetVisible(false);
    for (const EKey key : {EKey::F2, EKey::F3, EKey::F4, EKey::F5, EKey::F8, EKey::F12})
        Press(key);
    EXPECT_EQ(Dialogs.Shown.size(), shown);
    EXPECT_FALSE(Program->LiveLog.DatalogOn);

    Press(EKey::Escape);
    EXPECT_TRUE(Application.IsTerminated);
    Program->Finish();
}

TEST_F(TMainForm, GivesTheUserPanelTheWidthThatIsLeft) {
    Dialogs.WorkArea = 700;
    Start();
    EXPECT_EQ(Main().ClientHeight(), 700);
    const auto widths = [this](int clientWidth) {
        Main().SetClientSize(clientWidth, 500);
        std::vector<int> result;
        for (const auto& panel : Main().StatusBar.Panels())
            result.push_back(panel.Width);
        return result;
    };
    EXPECT_EQ(widths(1000), (std::vector<int>{300, 280, 250, 170}));
    EXPECT_EQ(widths(500), (std::vector<int>{300, 0, 250, 170}));
    Close();
}

} // namespace
} // namespace tidewell::test
