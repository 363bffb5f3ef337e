#pragma once

#include "ProgramOnScreen.h"
#include "Robot.h"
#include "Support.h"

#include <QTest>
#include <QTreeWidget>

namespace tidewell::test {

// The whole program on a screen, under the keyboard and the mouse. What the robot is to do must be done at
// the end.
class TScreenTest : public testing::Test {
  protected:
    ~TScreenTest() override { EXPECT_TRUE(Robot.Done()); }

    // The start up to the end of what the robot does there.
    void Start() {
        Screen.Build();
        Screen.Advance(200);
        RunRobot();
    }
    // The start without dialogs: signed in, and linked to a controller.
    void StartLinked() {
        Screen.Arguments = {"-devid", "410000000001", "-LoginUserPW", "service;tidewell"};
        Start();
    }
    // That, and the first group of the controller's setpoints.
    void ShowSetpoints() {
        Robot.On("FormMain", [](QWidget& main) {
            Press(Qt::Key_F6);
            auto& tree = Child<QTreeWidget>(main, "SetpointTreeView");
            QTest::mouseClick(tree.viewport(), Qt::LeftButton, {},
                              tree.visualItemRect(tree.topLevelItem(0)->child(0)).center());
        });
        StartLinked();
    }
    void RunRobot() {
        EXPECT_TRUE(WaitFor([this] { return Robot.Done(); }, 20'000));
    }
    QWidget& Window(const TForm& form) { return *Screen.Desktop.Dialogs.FindView(form); }
    template <class TWidget>
    static TWidget& Child(QWidget& window, const char* name) {
        auto* const child = dynamic_cast<TWidget*>(window.findChild<QWidget*>(QString::fromLatin1(name)));
        if (child == nullptr)
            throw std::runtime_error(name);
        return *child;
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

    TProgramOnScreen Screen;
    TRobot Robot{[this](const QString& line) {
        ADD_FAILURE() << line.toStdString();
        Screen.Desktop.Dialogs.CancelAll();
    }};
};

} // namespace tidewell::test
