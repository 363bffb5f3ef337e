#include "scenario/ProgramFixture.h"

#include <gmock/gmock.h>

#include <functional>

namespace tidewell::test {
namespace {

using testing::ElementsAre;

// The setup dialog through its controls, over a linked program unless told otherwise.
class TSetupDialog : public TProgramFixture {
  protected:
    // Opens the dialog from the menu and drives it; the general handler shows what leaves it.
    void Drive(const std::function<void(TSetupForm&)>& action) {
        Dialogs.ExpectForm("SetupForm", [this, action](TForm&) { action(Dialog()); });
        Time.After(0, [this] { Main().Setup1.Click(); });
        Time.Advance(0);
        EXPECT_FALSE(Dialog().Visible());
    }
    void Press(EKey key) {
        bool handled = false;
        Dialog().OnKeyDown(key, handled);
        EXPECT_TRUE(handled);
    }
    TSetupForm& Dialog() { return Program->SetupForm; }
    TNabtoDevice& Driver() { return Program->NabtoDevice; }
};

TEST_F(TSetupDialog, KeepsTheDeviceInForceWithoutText) {
    Start();
    RunUntilRows(2);
    Drive([this](TSetupForm& setup) {
        EXPECT_EQ(setup.Caption(), Language("CommDialog", "Header"));
        EXPECT_EQ(setup.txtRemote.Text(), "");
        EXPECT_TRUE(setup.butping.Visible());
        EXPECT_FALSE(setup.ListBoxLocalDevices.Visible());
        EXPECT_FALSE(Program->LiveLog.DatalogOn);
        Press(EKey::Return);
        EXPECT_FALSE(setup.Visible());
    });
    EXPECT_EQ(Driver().device, "410000000001.hv.example");
    EXPECT_EQ(Program->_commandLineParameters.devid, Device); // which the next start of the log takes
    EXPECT_EQ(Main().Caption(), Profile);
    Dialogs.ExpectMessage(Language("HeadAppl", "MessageClearGraphData"), EModalResult::Yes);
    Main().TrafficButton.Click();
    RunUntilRows(2);
    Close();
}

TEST_F(TSetupDialog, TakesARowOfTheListAndClosesOnEscape) {
    Start();
    Drive([this](TSetupForm& setup) {
        setup.ListBoxLocalDevices.ClickItem(0); // no row yet
        setup.ButDeviceSearch.Click();
        EXPECT_FALSE(Dialogs.WaitCursor);
        EXPECT_TRUE(setup.ListBoxLocalDevices.Visible());
        ASSERT_THAT(setup.ListBoxLocalDevices.Items(), ElementsAre("410000000001", "410000000002"));
        setup.ListBoxLocalDevices.ClickItem(1);
        EXPECT_EQ(setup.txtRemote.Text(), "410000000002");
        EXPECT_FALSE(setup.ListBoxLocalDevices.Visible());
        Press(EKey::Escape);
        EXPECT_FALSE(setup.Visible());
    });
    EXPECT_EQ(Driver().device, "410000000001.hv.example"); // nothing was linked
    Log.clear();
    Drive([this](TSetupForm& setup) {
        EXPECT_EQ(setup.txtRemote.Text(), "");
        EXPECT_FALSE(setup.ListBoxLocalDevices.Visible());
        // The rows of the former showing still tell what is local, with the domain behind it or not.
        EXPECT_TRUE(setup.IsLocalDevice("410000000002.hv.example"));
        EXPECT_FALSE(setup.IsLocalDevice("410000000003"));
        setup.txtRemote.Enter("410000000002");
        setup.ButCommOk.Click();
        EXPECT_TRUE(Driver().IsLocalDevice);
    });
    // The session of the first device goes on.
    Expect({Request("GET /devices/410000000002/0/Nabtouser [token1]", 200)});
    ExpectPings("410000000002", 1);
    Expect({"nabtoRpcSetDefaultInterface gateway.xml"});
    ExpectPings("410000000002", 2);
    CheckLog();
    EXPECT_EQ(Driver().LblNabto.Caption(), "ID : 410000000002.hv.example");
    EXPECT_EQ(Program->_commandLineParameters.devid, "410000000002.hv.example");
    EXPECT_EQ(Main().Caption(), "/t/profile/Loft120_english.pls");
    Close();
}

} // namespace
} // namespace tidewell::test
