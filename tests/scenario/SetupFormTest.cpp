#include "scenario/ProgramFixture.h"

#include <gmock/gmock.h>

#include <functional>

namespace tidewell::test {
namespace {

using testing::Contains;
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
    void ExpectWarning(const std::string& text) { Dialogs.ExpectMessage(text); }
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
        EXPECT_FALSE(Main().LiveLog.DatalogOn);
        Press(EKey::Return);
        EXPECT_FALSE(setup.Visible());
    });
    EXPECT_EQ(Driver().device, "410000000001.hv.example");
    EXPECT_EQ(Main()._commandLineParameters.devid, Device); // which the next start of the log takes
    EXPECT_EQ(Main().Caption(), Profile);
    Dialogs.ExpectMessage(Main().Texts.MessageClearGraphData, EModalResult::Yes);
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
    EXPECT_EQ(Driver().LblNabto.Caption(), "ID : 410000000002.hv.example");
    EXPECT_EQ(Main()._commandLineParameters.devid, "410000000002.hv.example");
    EXPECT_EQ(Main().Caption(), "/t/profile/Loft120_english.pls");
    Close();
}

TEST_F(TSetupDialog, PutsTheDomainBehindTheIdOnce) {
    struct TCase {
        std::string Domain, Typed, Address;
    };
    const TCase cases[] = {
        {"hv.example", "410000000003", "410000000003.hv.example"},
        {"hv.example", "410000000003.HV.Example", "410000000003.HV.Example"},
        {"HV.example", "410000000003.hv.example", "410000000003.hv.example"},
        {"", "410000000003", "410000000003"},
    };
    Start();
    for (const auto& test : cases) {
        Driver().Domain = test.Domain;
        Drive([&](TSetupForm& setup) {
            setup.txtRemote.Enter(test.Typed);
            ExpectWarning("You do not have permission to access this device \"" + test.Address + "\"");
            setup.ButCommOk.Click();
            EXPECT_TRUE(setup.Visible());
            EXPECT_EQ(setup.txtRemote.Text(), test.Address);
            EXPECT_EQ(Driver().device, test.Address);
        });
        EXPECT_EQ(Dialogs.Shown.back().Kind, EMessageKind::Warning);
    }
    Close();
}

TEST_F(TSetupDialog, ReachesOnlyFoundDevicesInAnOfflineSession) {
    Arguments = {};
    Dialogs.ExpectForm("NabtoLogOn", [this](TForm&) {
        Program->NabtoLogOn.EditUser.Enter("service");
        Program->NabtoLogOn.EditPW.Enter("tidewell");
        Program->NabtoLogOn.offLineSessionCheckBox.SetChecked(true);
        Program->NabtoLogOn.ButOk.Click();
    });
    Dialogs.ExpectForm("SetupForm", [this](TForm&) {
        EXPECT_TRUE(Dialog().ListBoxLocalDevices.Visible()); // with no search asked for
        ASSERT_THAT(Dialog().ListBoxLocalDevices.Items(), ElementsAre("410000000001", "410000000002"));
        Dialog().txtRemote.Enter("410000000003");
        ExpectWarning("You cannot connect to the remote device \"410000000003\" during an offline session.");
        Dialog().butping.Click();
        ExpectWarning("You cannot connect to the remote device \"410000000003.hv.example\" during an offline "
                      "session.");
        Dialog().ButCommOk.Click();
        EXPECT_TRUE(Dialog().Visible());
        EXPECT_EQ(QueryCount("ping.json"), 0);
        Dialog().ListBoxLocalDevices.ClickItem(0);
        Dialog().ButCommOk.Click();
    });
    Start();
    EXPECT_THAT(Requests, ElementsAre("POST /api/v1.2/login", "GET /api/v1.2/Nabtouser"));
    EXPECT_EQ(Main().Caption(), Profile);
    RunUntilRows(2);
    Close();
}

TEST_F(TSetupDialog, ShowsWhatThePingFinds) {
    Start();
    Drive([this](TSetupForm& setup) {
        const auto ping = [&setup](const std::string& id) {
            setup.txtRemote.Enter(id);
            setup.butping.Click();
            EXPECT_TRUE(setup.Visible());
        };
        Dialogs.ExpectMessage("DeviceID: 410000000001.hv.example\rModel: 30021\rVarenummer: 20450\r"
                              "HP SW version: 214\rNP SW version: 107\rBT SW version: 31");
        ping("410000000001");
        Dialogs.ExpectMessage("Gateway DeviceID: 410000000002.hv.example\rGateway Model: 30011\r"
                              "Gateway Number: 20110\rGateway Version: 305\rSlave Number: 20120\r"
                              "SlaveModel: 30022");
        ping("410000000002");
        EXPECT_THAT(Driver().memoDebug.Lines(), Contains("DeviceID: 410000000002.hv.example"));
        ExpectWarning("You do not have permission to access this device \"410000000003\"");
        ping("410000000003");
        Files.Content[Simulation] += "\n[Faults aria1]\nNoAnswer=on\n";
        Time.Advance(1000);
        Dialogs.ExpectMessage("Device is not available");
        ping("410000000001");
        Main().Client().Logout();
        ExpectWarning("An error occurred when trying to initialize the nabto connection.");
        ping("410000000001");
        ExpectWarning("An error occurred when initializing communication to the device.");
        setup.ButCommOk.Click();
        EXPECT_TRUE(setup.Visible());
    });
    EXPECT_EQ(Main()._commandLineParameters.devid, Device); // a ping chooses no device for the log
    Close();
}

} // namespace
} // namespace tidewell::test
