#include "ProgramOnScreen.h"
#include "Robot.h"
#include "Support.h"

#include <QCheckBox>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QToolTip>

#include <gmock/gmock.h>

namespace tidewell::test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// The dialogs of a running program under the keyboard and the mouse.
class DialogsTest : public testing::Test {
  protected:
    ~DialogsTest() override { EXPECT_TRUE(Robot.Done()); }

    // The start up to the end of what the robot does there.
    void Start() {
        Screen.Build();
        Screen.Advance(200);
    }
    // The start without dialogs: signed in, and linked to a controller.
    void StartLinked() {
        Screen.Arguments = {"-devid", "410000000001", "-LoginUserPW", "service;tidewell"};
        Start();
    }
    template <class TWidget>
    static TWidget& Child(QWidget& window, const char* name) {
        auto* const child = window.findChild<TWidget*>(QString::fromLatin1(name));
        if (child == nullptr)
            throw std::runtime_error(name);
        return *child;
    }
    static std::string FocusedRadio() {
        const auto* const button = qobject_cast<QRadioButton*>(QApplication::focusWidget());
        return button != nullptr && button->isChecked() ? button->text().toStdString() : std::string();
    }
    static void Click(QWidget& window, const char* name) {
        QTest::mouseClick(&Child<QWidget>(window, name), Qt::LeftButton);
    }
    // A fatal failure ends the dialogs.
    void On(const QString& window, const TRobot::TAction& action) {
        Robot.On(window, [this, action](QWidget& view) {
            action(view);
            if (HasFatalFailure())
                Screen.Desktop.Dialogs.CancelAll();
        });
    }
    // Answers a message box by Enter, once it has this text.
    void OnMessage(const std::string& text) {
        Robot.On("MessageBox", [text](QWidget& box) {
            EXPECT_EQ(static_cast<QMessageBox&>(box).text().toStdString(), text);
            Type("\n");
        });
    }
    TSetupForm& SetupForm() { return Screen.Program->SetupForm; }

    TProgramOnScreen Screen;
    TRobot Robot{[this](const QString& line) {
        ADD_FAILURE() << line.toStdString();
        Screen.Desktop.Dialogs.CancelAll();
    }};
};

} // namespace

TEST_F(DialogsTest, TheKeyboardAloneLeadsFromTheLogonToALinkedController) {
    Robot.On("NabtoLogOn", [](QWidget&) { Type("service\twrong\n"); });
    OnMessage("Username or password is incorrect.");
    QApplication::setCursorFlashTime(0);
    Robot.On("NabtoLogOn", [](QWidget& logon) {
        EXPECT_EQ(Focused(), "EditUser");
        auto& password = Child<QLineEdit>(logon, "EditPW");
        EXPECT_EQ(password.text(), "");
        const QImage image = password.grab(password.rect().adjusted(3, 4, -3, -4)).toImage();
        for (int x = 0; x < image.width(); ++x)
            ASSERT_EQ(image.pixel(x, image.height() / 2), image.pixel(image.width() - 1, image.height() / 2))
                << "a caret at " << x;
        Type("service\ttidewell\n");
    });
    On("SetupForm", [](QWidget&) {
        EXPECT_EQ(Focused(), "txtRemote");
        Type("4711\n");
    });
    OnMessage("You do not have permission to access this device \"4711.hv.example\"");
    On("SetupForm", [](QWidget& setup) {
        EXPECT_EQ(Focused(), "txtRemote");
        Type("\t "); // the search
        auto& list = Child<QListWidget>(setup, "ListBoxLocalDevices");
        ASSERT_TRUE(list.isVisible());
        Type("\t");
        ASSERT_TRUE(list.hasFocus());
        Press(Qt::Key_Down);
        Press(Qt::Key_Up);
        Type("\n");
    });
    Start();
    TFormMain& main = Screen.Program->FormMain;
    EXPECT_TRUE(Robot.Done());
    EXPECT_EQ(main.Caption(), "/opt/tidewell/profile/Aria450_english.pls");
    EXPECT_EQ(Screen.Program->NabtoDevice.LblNabto.Caption(), "ID : 410000000001.hv.example");
}

TEST_F(DialogsTest, TheLogonTakesItsKeys) {
    struct TCase {
        const char* Keys; // typed into the fresh dialog
        EModalResult Result;
    };
    StartLinked();
    TNabtoLogOn& logon = Screen.Program->NabtoLogOn;
    for (const TCase& test : {TCase{"a\n", EModalResult::Ok}, TCase{"a\tb\n", EModalResult::Ok},
                              TCase{"\t\t \n", EModalResult::Ok}, TCase{"\t\t\t ", EModalResult::Ok},
                              TCase{"\t\t\t\n", EModalResult::Ok}, TCase{"\t\t\t\t ", EModalResult::Cancel},
                              TCase{"\t\t\t\t\n", EModalResult::Cancel}, TCase{"a\x1b", EModalResult::Cancel},
                              TCase{"\t\t\x1b", EModalResult::Cancel}}) {
        Robot.On("NabtoLogOn", [&test](QWidget&) {
            EXPECT_EQ(Focused(), "EditUser");
            Type(test.Keys);
        });
        EXPECT_EQ(Screen.Desktop.Dialogs.ShowModal(logon), test.Result) << test.Keys;
        ASSERT_FALSE(logon.Visible());
    }
    EXPECT_TRUE(logon.offLineSessionCheckBox.Checked());
    Robot.On("NabtoLogOn", [](QWidget& view) {
        EXPECT_THAT(TabRing(),
                    ElementsAre("EditUser", "EditPW", "offLineSessionCheckBox", "ButOk", "ButCancel"));
        Type("\t");
        Type(QString::fromUtf8("Grüße, \"$\"")); // as it is sent, and never as it is shown
        auto& password = Child<QLineEdit>(view, "EditPW");
        EXPECT_EQ(password.text(), QString::fromUtf8("Grüße, \"$\""));
        EXPECT_EQ(password.displayText(), "**********");
        auto& offline = Child<QCheckBox>(view, "offLineSessionCheckBox");
        QHelpEvent help(QEvent::ToolTip, QPoint(3, 3), offline.mapToGlobal(QPoint(3, 3)));
        QCoreApplication::sendEvent(&offline, &help);
        EXPECT_THAT(QToolTip::text().toStdString(), HasSubstr("not connected to the internet"));
        QToolTip::hideText();
        // No icons, no other size, in the middle of the screen.
        EXPECT_FALSE(view.windowFlags() & (Qt::WindowSystemMenuHint | Qt::WindowMinMaxButtonsHint));
        EXPECT_EQ(view.minimumSize(), view.maximumSize());
        const QPoint off = view.frameGeometry().center() - view.screen()->availableGeometry().center();
        EXPECT_LE(off.manhattanLength(), 4);
        Type("\x1b");
    });
    Screen.Desktop.Dialogs.ShowModal(logon);
    EXPECT_EQ(logon.EditPW.Text(), "Grüße, \"$\"");
}

TEST_F(DialogsTest, AMissingHelperLibraryIsToldAndTheLogonWorksOn) {
    Screen.KHelper.Present = false;
    Screen.Files.Content[TProgramOnScreen::SystemFile] += "\n[Logon]\nPrivatePassword=FALSE\n";
    Screen.Arguments = {"-devid", "410000000001"};
    OnMessage("Error Dll not loaded");
    Robot.On("NabtoLogOn", [](QWidget&) {
        EXPECT_EQ(Focused(), "EditUser");
        Type("service\ttidewell\n");
    });
    OnMessage("The password cannot be scrambled: the function GetCPUIDasString of the library KHelper is not "
              "loaded");
    Start();
    EXPECT_EQ(Screen.Program->FormMain.Caption(), "/opt/tidewell/profile/Aria450_english.pls");
}

TEST_F(DialogsTest, TheSetupDialogWorksByMouseAndKeys) {
    StartLinked();
    On("SetupForm", [this](QWidget& view) {
        EXPECT_EQ(Focused(), "txtRemote");
        EXPECT_THAT(TabRing(), ElementsAre("txtRemote", "ButDeviceSearch", "butping", "ButCommOk"));
        auto& list = Child<QListWidget>(view, "ListBoxLocalDevices");
        const QSize size = view.size();
        for (const int row : {1, 0}) {
            Click(view, "ButDeviceSearch");
            ASSERT_TRUE(list.isVisible());
            EXPECT_TRUE(list.selectedItems().isEmpty());
            QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                              list.visualItemRect(list.item(row)).center());
            EXPECT_FALSE(list.isVisible());
            EXPECT_EQ(SetupForm().txtRemote.Text(), "41000000000" + std::to_string(row + 1));
            EXPECT_EQ(Focused(), "txtRemote");
        }
        Click(view, "ButDeviceSearch");
        EXPECT_THAT(TabRing(), ElementsAre("ButDeviceSearch", "ListBoxLocalDevices", "butping", "ButCommOk",
                                           "txtRemote"));
        EXPECT_EQ(view.size(), size);
        Type("\t");
        EXPECT_EQ(list.currentRow(), 0);
        Press(Qt::Key_Down);
        Type(" "); // picks without connecting
        EXPECT_EQ(SetupForm().txtRemote.Text(), "410000000002");
        EXPECT_EQ(Focused(), "txtRemote");
        OnMessage("Gateway DeviceID: 410000000002.hv.example\nGateway Model: 30011\nGateway Number: 20110\n"
                  "Gateway Version: 305\nSlave Number: 20120\nSlaveModel: 30022");
        On("SetupForm", [](QWidget& again) {
            Click(again, "txtRemote");
            Press(Qt::Key_A, Qt::ControlModifier);
            Type("1\x1b");
        });
        Click(view, "butping");
    });
    Screen.Program->DeviceActions.Setup1Click();
    EXPECT_FALSE(SetupForm().Visible());
    EXPECT_EQ(SetupForm().txtRemote.Text(), "1");
    EXPECT_EQ(Screen.Program->NabtoDevice.device, "410000000002.hv.example"); // from the ping alone
}

TEST_F(DialogsTest, TheLanguageIsChosenByKeysAndAWrongOneIsTold) {
    StartLinked();
    Robot.On("FormMain", [](QWidget&) { Press(Qt::Key_F12); });
    Robot.On("languagedialog", [](QWidget& view) {
        EXPECT_EQ(FocusedRadio(), "english.lng");
        Press(Qt::Key_Up);
        EXPECT_EQ(FocusedRadio(), "deutsch.lng");
        Type("\t");
        EXPECT_EQ(Focused(), "Button");
        Type("\x1b");
        EXPECT_FALSE(view.isVisible());
    });
    EXPECT_TRUE(WaitFor([this] { return Robot.Done(); }));
    EXPECT_TRUE(Screen.Process.Calls.empty());

    Screen.EditSystemFile("Current=english.lng", "Current=dansk.lng");
    Robot.On("languagedialog", [this](QWidget& view) {
        for (const auto* button : view.findChildren<QRadioButton*>())
            EXPECT_FALSE(button->isChecked());
        OnMessage("List index out of bounds (-1)");
        Click(view, "Button");
        EXPECT_TRUE(view.isVisible());
        Type("\t"); // back to the list
        Press(Qt::Key_Space);
        OnMessage("The language is changed. The program now ends and starts again.");
        Type("\n");
    });
    Screen.Program->FormMain.Changelanguage1.Click();
    EXPECT_THAT(Screen.Files.Content[TProgramOnScreen::SystemFile],
                HasSubstr("LanguageFile_Current=deutsch.lng"));
    EXPECT_THAT(Screen.Process.Calls, ElementsAre("start /opt/tidewell/tidewell"));
    EXPECT_TRUE(Screen.Application.IsTerminated);
}

} // namespace tidewell::test
