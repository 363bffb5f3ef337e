#include "core/Numbers.h"
#include "scenario/SetpointProgram.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <map>
#include <set>

namespace tidewell::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* Hub = "410000000002"; // a gateway, with another interface definition
constexpr const char* Remote = "410000000003";
const std::string Address = "410000000001.hv.example";
const std::string List = "1;\r\n2;\r\n3;\r\nSetpointName;F;RawValue;\r\nN;F;3;0;9;0;0;40101;0;\r\n";

// A linked program whose driver was left with another device by the ping of the setup dialog.
class TDeviceInForce : public TSetpointProgram {
  protected:
    struct TUserAction {
        std::string Name;
        std::function<void(const TSteps& boxes)> Run; // boxes: from the taking on
        TSteps Boxes = {};                            // of an action that goes on
    };
    void ExpectBoxes(const TSteps& boxes) {
        for (const TStep& box : boxes)
            Dialogs.ExpectMessage(box.Line.substr(4), box.Answer);
    }

    void SetupBy(const std::function<void(TSetupForm&)>& action) {
        Dialogs.ExpectForm("SetupForm", [this, action](TForm& form) {
            action(Program->SetupForm);
            bool handled = false;
            if (form.Visible())
                form.OnKeyDown(EKey::Escape, handled);
        });
        Main().Setup1.Click();
    }
    void Ping(const std::string& text, const std::string& box) {
        SetupBy([&](TSetupForm& setup) {
            setup.txtRemote.Enter(text);
            Dialogs.ExpectMessage(box);
            setup.butping.Click();
        });
    }
    void PingHub() {
        Ping(Hub, "Gateway DeviceID: 410000000002.hv.example\rGateway Model: 30011\rGateway Number: 20110\r"
                  "Gateway Version: 305\rSlave Number: 20120\rSlaveModel: 30022");
        EXPECT_EQ(Driver().device, "410000000002.hv.example");
        EXPECT_EQ(Program->Nabto.queriesFile, "gateway.xml");
        Log.clear();
    }
    void StartIdle() {
        Start();
        Program->LiveLog.TimerLogAutostart->SetEnabled(false);
        Log.clear();
    }
    void Silence(const std::string& query) {
        Controller().Faults.Replace({TFault{EFault::NoAnswer, 0, {}, When(query)}});
    }

    // Requests and streams, "<query> <id>".
    std::vector<std::string> Exchanges() const {
        std::vector<std::string> exchanges;
        for (const std::string& line : Log) {
            if (const auto at = line.find("nabto://"); at != std::string::npos) {
                const auto name = line.find('/', at + 8) + 1;
                exchanges.push_back(line.substr(name, line.find('.', name) - name) + " " +
                                    line.substr(at + 8, 12));
            } else if (line.starts_with("nabtoStreamOpen")) {
                exchanges.push_back("stream " + line.substr(line.find("41"), 12));
            } else if (line.starts_with("nabtoRpcSetDefaultInterface")) {
                exchanges.push_back(line.substr(line.find(' ') + 1));
            } else if (line.starts_with("GET ")) {
                exchanges.push_back("user " + line.substr(line.find("41"), 12));
            }
        }
        return exchanges;
    }
    const std::vector<std::string> Taking{"user 410000000001", "ping 410000000001", "standalone.xml",
                                          "ping 410000000001"};

    std::vector<TUserAction> Actions() {
        TNabtoDevice& driver = Driver();
        const TStep showIt = Box(Language("Nabtodriver", "questiondatalog"), EModalResult::No);
        const auto click = [this](TButton& button) {
            return [this, &button](const TSteps& boxes) {
                ExpectBoxes(boxes);
                button.OnClick(); // some are shown by options
            };
        };
        const auto update = [this](TButton& button) {
            return [this, &button](const TSteps& boxes) {
                if (boxes.front().Line == "box Unable to open file")
                    Dialogs.ExpectOpenFile("Open", {});
                ExpectBoxes(boxes);
                button.OnClick();
            };
        };
        const TStep noFile = Box("Unable to open file");
        return {{"bulk write",
                 [this](const TSteps& boxes) {
                     Load(List, [&](TLoadSetpoints& form) {
                         ExpectBoxes(boxes);
                         form.ButWriteSetpoints.Click();
                     });
                 },
                 {Box(Result(0, 0))}},
                {"save",
                 [this](const TSteps& boxes) {
                     ExpectEntry(Page().Savesetpoints1);
                     ExpectBoxes(boxes);
                     if (boxes.empty())
                         Dialogs.ExpectSaveFile(Language("HeadAppl", "DialogSaveDatalogFile"), {});
                     RightClick();
                 }},
                {"error log", click(Main().but_errorlog)},
                {"error log of the service form", click(driver.ButErorlog)},
                {"flash counters",
                 [this](const TSteps& boxes) {
                     Driver().FlashDatalog.PanelFDDatalog.SetVisible(false);
                     ExpectBoxes(boxes);
                     Main().FlasDatalog1.Click();
                 }},
                {"flash download", click(driver.FlashDatalog.DT_GetData), {showIt}},
                {"flash dump", click(driver.ServiceTools.BtnReadFlash), {showIt}},
                {"EEPROM dump", click(driver.ServiceTools.butGetEepromValues), {Box("done... download")}},
                {"reset", click(driver.ServiceTools.Button1)},
                {"update", update(Main().but_swupdate), {noFile, Box("Error during update!")}},
                {"continuous update", update(driver.ButContUpdate), {noFile}}};
    }
};

// The first step of most of them is to stop the log.
TEST_F(TDeviceInForce, IsTakenByEveryActionBeforeItsFirstStep) {
    const std::string noAnswer = "The device " + Address + " does not answer. Nothing was sent to it.";
    const TSteps refused{Box(noAnswer)};
    Start();
    const std::size_t count = Actions().size();
    Close();
    for (std::size_t i = 0; i < count; ++i) {
        for (const auto& path : FilesBelow("/t/log"))
            Files.Content.erase(path);
        StartIdle();
        const TUserAction action = Actions()[i];
        SCOPED_TRACE(action.Name);
        Driver().ServiceTools.editReadLength.SetText("300");
        Driver().ServiceTools.RErrorlogLength.SetText("2");
        Driver().FlashDatalog.DayTracker.SetUpperPosition(1);
        PingHub();

        // A device that cannot be had ends the action: nothing is stopped, sent, written or asked.
        Silence("ping.json");
        const std::size_t lines = EventLog().size();
        action.Run(refused);
        EXPECT_THAT(Exchanges(), ElementsAre("user 410000000001", "ping 410000000001"));
        EXPECT_EQ(EventLog().back(), "Nothing was sent: " + noAnswer);
        // The file of a bulk write has been opened before.
        EXPECT_TRUE(action.Name == "bulk write" || EventLog().size() == lines + 1);
        EXPECT_THAT(FilesBelow("/t/log"), IsEmpty());
        EXPECT_TRUE(Dialogs.AllAnswered());

        Controller().Faults.Replace({});
        Log.clear();
        action.Run(action.Boxes);
        auto exchanges = Exchanges();
        ASSERT_GT(exchanges.size(), Taking.size());
        EXPECT_TRUE(std::equal(Taking.begin(), Taking.end(), exchanges.begin()))
            << testing::PrintToString(exchanges);
        EXPECT_THAT(exchanges, testing::Not(Contains(HasSubstr(Hub))));
        EXPECT_EQ(Driver().LblNabto.Caption(), "ID : " + Address);
        EXPECT_EQ(Driver().StatusBar.Panels()[1].Text, "Current DeviceID : " + Address);
        EXPECT_EQ(Driver().device, Address);

        // With the device in force nothing is added.
        exchanges.erase(exchanges.begin(), exchanges.begin() + static_cast<std::ptrdiff_t>(Taking.size()));
        Driver().ContinuousUpdate.RPCEnableMultibleUpdate = false;
        Log.clear();
        Time.Advance(1000); // another name of a result file
        action.Run(action.Boxes);
        EXPECT_EQ(Exchanges(), exchanges);
        EXPECT_TRUE(Dialogs.AllAnswered());
        Close();
    }
}

TEST_F(TDeviceInForce, IsThatOfALogAndOfTheValueWrittenMeanwhile) {
    StartIdle();
    PingHub();
    Silence("ping.json");
    Dialogs.ExpectMessage("The device " + Address + " does not answer. Nothing was sent to it.");
    Main().TrafficButton.Click();
    EXPECT_FALSE(Program->LiveLog.DatalogOn || Driver().Cycle.Dologging);
    Controller().Faults.Replace({});
    PingHub();
    Dialogs.ExpectMessage(Language("HeadAppl", "MessageClearGraphData"), EModalResult::Yes);
    Main().TrafficButton.Click();
    EXPECT_EQ(Exchanges(), Taking);
    RunUntilRows(2);
    Page().SetpointTreeView.SetSelected(TTreeView::TSelection{0, 0});
    Page().SetpointTreeView.OnClick();
    const auto write = [this] {
        Dialogs.ExpectForm("InputDialog", [this](TForm& form) {
            Dialog().EValue.Enter("4");
            PressReturn(form);
            EXPECT_FALSE(form.Visible());
        });
        Page().SetpointGrid.OnDblClick(1);
    };
    Log.clear();
    write();
    EXPECT_EQ(Exchanges().front(), "setpointWriteValue 410000000001");
    // The hub is pinged last, as a nested handler can.
    Program->Nabto.ping("410000000002.hv.example");
    Log.clear();
    write();
    auto exchanges = Exchanges();
    std::erase_if(exchanges, [](const std::string& line) { return line.find("ReadValue") != line.npos; });
    std::vector<std::string> expected = Taking;
    expected.emplace_back("setpointWriteValue 410000000001");
    EXPECT_EQ(exchanges, expected);
    EXPECT_EQ(Writes().size(), 2U);
    Close();
}

// What the driver was refused is taken back too, and a device that is chosen in the middle ends the action.
TEST_F(TDeviceInForce, IsKeptToTheEndOfAnAction) {
    StartIdle();
    Ping(Remote, "You do not have permission to access this device \"410000000003\"");
    EXPECT_FALSE(Driver().initialized);
    Log.clear();
    Time.After(2000, [this] { // in the middle of the reading
        Log.clear();
        Ping(Remote, "You do not have permission to access this device \"410000000003\"");
    });
    SaveInVain();
    EXPECT_EQ(EventLog().back(),
              "The device " + Address + " was left in the middle of an action, which has ended");
    EXPECT_THAT(Exchanges(), ElementsAre("user 410000000003"));
    {
        const TDeviceUse::THold hold(Driver().Use);
        EXPECT_EQ(Driver().init(Remote, Program->ApiClient), -4);
        EXPECT_THAT(EventLog().back(), testing::EndsWith(": a running action keeps another device"));
        EXPECT_EQ(Driver().device, Address);
    }
    EXPECT_NE(Save(), "no file");
    Close();
}

TEST_F(TDeviceInForce, IsKeptByAnEmptyFieldInAnOfflineSession) {
    Arguments = {};
    Dialogs.ExpectForm("NabtoLogOn", [this](TForm&) { LogOn("service", "tidewell", true).Action(); });
    Dialogs.ExpectForm("SetupForm", [this](TForm&) {
        Program->SetupForm.txtRemote.Enter("410000000001");
        Program->SetupForm.ButCommOk.Click();
    });
    Start();
    ASSERT_TRUE(Program->ApiClient._isLocalSession && Driver().initialized);
    EXPECT_EQ(Program->_commandLineParameters.devid, Address);
    SetupBy([](TSetupForm& setup) { setup.ButCommOk.Click(); });
    EXPECT_TRUE(Driver().initialized);
    // A remote device cannot be reached; what was found local stays so.
    Ping(Remote, "You cannot connect to the remote device \"410000000003\" during an offline session.");
    EXPECT_FALSE(Driver().initialized);
    Arguments = {"", Device};
    EXPECT_NE(Save(), "no file");
    EXPECT_TRUE(Driver().initialized);
    Close();
}

} // namespace
} // namespace tidewell::test
