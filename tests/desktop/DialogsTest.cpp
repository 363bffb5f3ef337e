#include "ScreenTest.h"
#include "widgets/BitViews.h"

#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>

#include <gmock/gmock.h>

namespace tidewell::test {

namespace {

using testing::ElementsAre;

class DialogsTest : public TScreenTest {
  protected:
    static std::string FocusedRadio() {
        const auto* const button = qobject_cast<QRadioButton*>(QApplication::focusWidget());
        return button != nullptr && button->isChecked() ? button->text().toStdString() : std::string();
    }
    // Opens the input dialog of that setpoint.
    void OnInputOf(int row, const TRobot::TAction& action) {
        Robot.On("FormMain", [row](QWidget& main) {
            auto& grid = Child<QTableView>(main, "SetpointGrid");
            grid.selectRow(row - 1);
            QTest::keyClick(&grid, Qt::Key_Return);
        });
        On("InputDialog", action);
        RunRobot();
    }
};

} // namespace

TEST_F(DialogsTest, TheKeyboardAloneLeadsFromTheLogonToALinkedController) {
    Robot.On("NabtoLogOn", [](QWidget&) { Type("service\twrong\n"); });
    OnMessage("Username or password is incorrect.");
    QApplication::setCursorFlashTime(0);
    Robot.On("NabtoLogOn", [](QWidget& logon) {
        EXPECT_EQ(Focused(), "EditUser");
        auto& password = Child<QLineEdit>(logon, "EditPW");
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
    On("SetupForm", [this](QWidget& setup) {
        EXPECT_THAT(TabRing(), ElementsAre("txtRemote", "ButDeviceSearch", "butping", "ButCommOk"));
        const QSize size = setup.size();
        Type("\t "); // the search
        auto& list = Child<QListWidget>(setup, "ListBoxLocalDevices");
        ASSERT_TRUE(list.isVisible());
        Type("\t");
        ASSERT_TRUE(list.hasFocus());
        Press(Qt::Key_Down);
        Type(" "); // picks without connecting
        EXPECT_EQ(Screen.Program->SetupForm.txtRemote.Text(), "410000000002");
        EXPECT_EQ(Focused(), "txtRemote");
        EXPECT_EQ(setup.size(), size);
        Type("\t \t\n"); // the first one
    });
    Start();
    EXPECT_EQ(Screen.Program->NabtoDevice.LblNabto.Caption(), "ID : 410000000001.hv.example");
}

TEST_F(DialogsTest, TheLogonTakesItsKeys) {
    StartLinked();
    TNabtoLogOn& logon = Screen.Program->NabtoLogOn;
    const std::vector<const char*> accepting{"a\n", "a\tb\n", "\t\t \n", "\t\t\t ", "\t\t\t\n"};
    const std::vector<const char*> cancelling{"\t\t\t\t ", "\t\t\t\t\n", "a\x1b", "\t\t\x1b"};
    for (const auto& rows : {accepting, cancelling})
        for (const char* keys : rows) {
            Robot.On("NabtoLogOn", [keys](QWidget&) { Type(keys); });
            EXPECT_EQ(Screen.Desktop.Dialogs.ShowModal(logon),
                      rows == accepting ? EModalResult::Ok : EModalResult::Cancel)
                << keys;
            ASSERT_FALSE(logon.Visible());
        }
    EXPECT_TRUE(logon.offLineSessionCheckBox.Checked());
    Robot.On("NabtoLogOn", [](QWidget& view) {
        EXPECT_THAT(TabRing(),
                    ElementsAre("EditUser", "EditPW", "offLineSessionCheckBox", "ButOk", "ButCancel"));
        Type("\t");
        Type(QString::fromUtf8("Grüße, \"$\"")); // as it is sent, and never as it is shown
        EXPECT_EQ(Child<QLineEdit>(view, "EditPW").displayText(), "**********");
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

TEST_F(DialogsTest, TheLanguageIsChosenByKeys) {
    StartLinked();
    Robot.On("FormMain", [](QWidget&) { Press(Qt::Key_F12); });
    Robot.On("languagedialog", [](QWidget&) {
        EXPECT_EQ(FocusedRadio(), "english.lng");
        Press(Qt::Key_Up);
        EXPECT_EQ(FocusedRadio(), "deutsch.lng");
        Type("\t");
        EXPECT_EQ(Focused(), "Button");
        Type("\n");
    });
    OnMessage("The language is changed. The program now ends and starts again.");
    RunRobot();
    EXPECT_THAT(Screen.Process.Calls, ElementsAre("start /opt/tidewell/tidewell"));
    EXPECT_TRUE(Screen.Application.IsTerminated);
}

TEST_F(DialogsTest, ASetpointIsTyped) {
    ShowSetpoints();
    Screen.Advance(20'000); // logs
    const auto value = [this] { return Screen.Program->InputDialog.EValue.Text(); };
    OnInputOf(8, [&](QWidget& view) { // in tenths
        auto& field = Child<QLineEdit>(view, "EValue");
        EXPECT_EQ(Focused(), "EValue");
        EXPECT_EQ(field.selectedText().toStdString(), value());
        EXPECT_TRUE(Child<QPushButton>(view, "ButSend").isDefault());
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"), true);
        QCoreApplication::sendEvent(&field, &held); // since before the dialog came up
        EXPECT_TRUE(view.isVisible());
        Type("99,9");
        OnMessage("This value is not valid.");
        Type("\n");
        EXPECT_EQ(field.selectedText(), "99,9");
        Type("21,5\n");
        EXPECT_FALSE(view.isVisible());
    });
    EXPECT_EQ(value(), "21,5");
    OnInputOf(11, [&](QWidget& view) { // two characters, a limit for typing
        EXPECT_FALSE(view.findChild<QWidget*>("binaryvaluegrid")->isVisible());
        Type("XYZ");
        EXPECT_EQ(value(), "XY");
        Type("\x1b");
    });
}

TEST_F(DialogsTest, BitsFlipByMouseAndKeyboardAndTheDialogFits) {
    ShowSetpoints();
    Screen.Advance(20'000); // logs
    const auto fits = [](QWidget& view) {
        for (const QWidget* child : view.findChildren<QWidget*>())
            EXPECT_TRUE(child->isHidden() || child->parentWidget()->rect().contains(child->geometry()))
                << child->objectName().toStdString();
    };
    QSize usual;
    OnInputOf(9, [&](QWidget& view) {
        auto& bits = Child<TBitGridView>(view, "binaryvaluegrid");
        const auto box = [&bits](int column) {
            const TCellRect cell = bits.CellRect(column, 1);
            return QPoint((cell.Left + cell.Right) / 2, (cell.Top + cell.Bottom) / 2);
        };
        const auto painted = [&] {
            const QImage picture = bits.grab().toImage();
            std::string row;
            for (int column = 0; column < 16; ++column)
                row += picture.pixelColor(box(column)) == QColor(0, 255, 0) ? '1' : '0';
            return row;
        };
        EXPECT_EQ(painted(), "0000010111111111");
        QTest::mouseClick(&bits, Qt::LeftButton, {}, box(4));
        QTest::mouseClick(&bits, Qt::RightButton, {}, box(5));
        for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Right, Qt::Key_Left, Qt::Key_Space, Qt::Key_End,
                                  Qt::Key_Right, Qt::Key_Space})
            QTest::keyClick(&bits, key);
        EXPECT_EQ(painted(), "0000100111111110");
        EXPECT_EQ(Screen.Program->InputDialog.EValue.Text(), "2558");
        EXPECT_EQ(bits.size(), bits.sizeHint());
        fits(view);
        usual = view.size();
        Type("\x1b");
    });
    const QFont before = QApplication::font();
    QFont large = before;
    large.setPointSize(24);
    QApplication::setFont(large);
    OnInputOf(9, [&](QWidget& view) {
        fits(view);
        EXPECT_GT(view.height(), usual.height());
        Type("\x1b");
    });
    QApplication::setFont(before);
}

TEST_F(DialogsTest, SetpointsToLoadAreCheckedByMouseAndKeyboard) {
    ShowSetpoints();
    TLoadSetpoints& form = Screen.Program->LoadSetpoints;
    std::string file = "Created at : 1;\nDevice name : M;\nProfile : p;\nSetpointName;F;RawValue;\n";
    for (const char* record : {"Mode;2;2;0;7;0;0;40101;7;\n", "Unknown;5;5;0;7;0;0;49999;0;\n"})
        file += record;
    Screen.Files.Put("/f.csv", file);
    Screen.Program->SetpointPage.SelectedSetpointParent = "Device Aria 450";
    EXPECT_TRUE(form.LoadForm("/f.csv"));
    On("LoadSetpoints", [&](QWidget& view) {
        auto& grid = Child<QTableView>(view, "setpointgrid");
        auto& results = Child<QListView>(view, "ResultList");
        const auto box = [&](int row) {
            const QRect cell = grid.visualRect(grid.model()->index(row, 2));
            const TCellRect at =
                form.setpointgrid.BoxRect({cell.left(), cell.top(), cell.right() + 1, cell.bottom() + 1});
            return QRect(QPoint(at.Left, at.Top), QPoint(at.Right - 1, at.Bottom - 1));
        };
        const auto painted = [&](int row) { return grid.viewport()->grab(box(row)).toImage(); };
        const QImage checked = painted(1);
        EXPECT_EQ(Focused(), "setpointgrid");
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, box(1).topLeft() - QPoint(2, 2));
        EXPECT_NE(painted(1), checked);
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, box(1).topLeft() - QPoint(3, 0));
        EXPECT_EQ(form.LabSelected.Caption(), "1 of 2 selected");
        QTest::mouseDClick(grid.viewport(), Qt::LeftButton, {}, box(1).center()); // the second of two
        EXPECT_EQ(painted(1), checked);
        Press(Qt::Key_Home);
        Press(Qt::Key_Space);
        EXPECT_NE(painted(0), checked);
        Child<QWidget>(view, "ButcheckAll").setFocus();
        Type("\n"); // presses the button that has the keyboard
        EXPECT_EQ(form.LabSelected.Caption(), "2 of 2 selected");
        const QRect place = grid.geometry();
        Robot.On("MessageBox", [](QWidget&) { Type("\n"); });
        Click(view, "ButWriteSetpoints");
        EXPECT_EQ(results.geometry(), place);
        EXPECT_EQ(view.focusWidget(), &results);
        QTest::mouseClick(results.viewport(), Qt::LeftButton);
        EXPECT_EQ(view.focusWidget(), &grid);
        Type("\x1b");
    });
    Screen.Desktop.Dialogs.ShowModal(form);
}

} // namespace tidewell::test
