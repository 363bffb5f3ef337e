#include "Support.h"
#include "desktop/binders/FormBinder.h"
#include "desktop/views/Views.h"
#include "link/FakeNabto.h"
#include "link/Nabto.h"
#include "link/NabtoDevice.h"
#include "model/ModbusPanel.h"
#include "setpoints/Finputdialog.h"
#include "support/IdleSurroundings.h"
#include "support/MemoryFiles.h"
#include "widgets/BitViews.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <gmock/gmock.h>

namespace tidewell::test {

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

const std::string tenths = "0;Supply air;512;0.0;10.0;1;0;40101;3;1;;;;;0;Air;";
const std::string bits =
    "0;Functions;513;0;65535;0;0;40102;3;100;Remote,Panel,Timer,Holidays,Mmmmmmmmm;;;;0;Air;";
const std::string characters = "0;Name;514;0;65535;0;0;40103;3;102;;;;;0;Air;";

class InputViewTest : public testing::Test {
  protected:
    InputViewTest() {
        Files.Put("/t/s.inn", "[CommInitNabto]\nEnabled=TRUE\n");
        Device.device = "d";
        Device.initialized = true;
        Desk.Dialogs.RegisterView(Dialog, [this] {
            return ViewOf(Dialog, TViewContext{Application(), Desk.Dialogs, Desk.Hold, Files});
        });
    }
    ~InputViewTest() override { Desk.Dialogs.DestroyViews(); }

    void Show(const std::string& row, const std::string& value, bool selectAll = true) {
        Dialog.Hide();
        Dialog.CurrentSetpointSpecific = row;
        Dialog.CurrentDatavalue = value;
        Dialog.ValueSelectAll = selectAll;
        Desk.Dialogs.Show(Dialog);
        QCoreApplication::processEvents();
    }
    QWidget& View() { return *Desk.Dialogs.FindView(Dialog); }
    template <class T>
    T& Find(const char* name) {
        return *View().findChild<T*>(QLatin1String(name));
    }
    QLineEdit& Field() { return Find<QLineEdit>("EValue"); }
    TBitGridView& Grid() {
        return *static_cast<TBitGridView*>(View().findChild<QWidget*>("binaryvaluegrid"));
    }
    QPoint Box(int column) {
        const TCellRect cell = Grid().CellRect(column, 1);
        return {(cell.Left + cell.Right) / 2, (cell.Top + cell.Bottom) / 2};
    }
    // No name or box is cut, and nothing sticks out of the window.
    void ExpectRoom() {
        EXPECT_TRUE(View().rect().contains(Grid().geometry()));
        EXPECT_EQ(Grid().size(), Grid().sizeHint());
        for (QWidget* child : View().findChildren<QWidget*>()) {
            EXPECT_TRUE(child->isHidden() || child->parentWidget()->rect().contains(child->geometry()))
                << child->objectName().toStdString();
        }
    }

    TTestDesk Desk;
    TMemoryFiles Files;
    TFakeNabto Library;
    TQtClock Clock;
    TIdleSurroundings World{
        Desk.Dialogs, Desk.Timers, Desk.Wait, Files, Clock, Library, {"/t/s.inn", {}, {}, {}, "/t"}};
    TNabtoDevice Device{World.Needs};
    TStatusBar StatusBar{World.Main, "StatusBar", {}};
    TInputDialog Dialog{{Desk.Dialogs, World.Panel, Device, World.MemoEventLog, StatusBar}};
};

} // namespace

TEST_F(InputViewTest, AValueIsTypedRefusedAndSent) {
    Show(tenths, "2.5");
    EXPECT_EQ(View().windowTitle(), "Supply air");
    EXPECT_EQ(View().focusWidget(), &Field());
    EXPECT_TRUE(Find<QPushButton>("ButSend").isDefault());
    EXPECT_FALSE(Find<QLineEdit>("EMin").isEnabled());
    EXPECT_FALSE(Find<QLineEdit>("EId").isVisible() || Grid().isVisible());

    // Enter held down since before the dialog came up.
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"), true);
    QCoreApplication::sendEvent(&Field(), &held);
    EXPECT_THAT(Library.Calls, IsEmpty());

    QTest::keyClicks(&Field(), "10,1"); // over the value, which is selected
    EXPECT_EQ(Dialog.EValue.Text(), "10,1");
    {
        const TOnMessageBox answer([](QMessageBox& box) { box.accept(); });
        QTest::keyClick(&Field(), Qt::Key_Return);
    }
    EXPECT_TRUE(View().isVisible());
    EXPECT_EQ(Field().selectedText(), "10,1");
    QTest::keyClicks(&Field(), "5.5");
    QTest::keyClick(&Field(), Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_FALSE(View().isVisible());
    EXPECT_THAT(Library.Calls, ElementsAre(EndsWith(R"("obj":"0","address":"512","value":"55"}]}})")));

    Show(tenths, "7", false);
    QTest::keyClicks(&Field(), "5"); // behind the first digit
    EXPECT_EQ(Dialog.EValue.Text(), "75");
    QTest::keyClick(&Field(), Qt::Key_Escape);
    EXPECT_FALSE(View().isVisible());
    EXPECT_EQ(Library.Calls.size(), 1U);
}

TEST_F(InputViewTest, BitsFlipByMouseAndKeyboard) {
    Show(bits, "1");
    ASSERT_TRUE(Grid().isVisible());
    EXPECT_GE(View().width(), 462);
    QTest::mouseClick(&Grid(), Qt::LeftButton, {}, Box(0));
    EXPECT_EQ(Field().text(), "32769");
    QTest::mouseClick(&Grid(), Qt::RightButton, {}, Box(0));
    QTest::keyClick(&Grid(), Qt::Key_Left);
    QTest::keyClick(&Grid(), Qt::Key_Right);
    QTest::keyClick(&Grid(), Qt::Key_Space);
    EXPECT_EQ(Field().text(), "49153");
    QTest::keyClick(&Grid(), Qt::Key_End);
    QTest::keyClick(&Grid(), Qt::Key_Right);
    QTest::keyClick(&Grid(), Qt::Key_Space);
    EXPECT_EQ(Field().text(), "49152");
    const QImage picture = Grid().grab().toImage();
    const QColor green(0, 255, 0);
    EXPECT_EQ(picture.pixelColor(Box(1)), green);
    EXPECT_NE(picture.pixelColor(Box(2)), green);
}

TEST_F(InputViewTest, TheDialogFitsWhatItShows) {
    Show(bits, "0");
    ExpectRoom();
    const int wide = View().width();
    Show(tenths, "1");
    EXPECT_GE(View().width(), 220);
    EXPECT_LT(View().width(), wide);
    const int height = View().height();

    const QFont before = QApplication::font();
    QFont large = before;
    large.setPointSize(24);
    QApplication::setFont(large);
    Show(bits, "0");
    ExpectRoom();
    QApplication::setFont(before);
    Show(tenths, "1");
    EXPECT_TRUE(WaitFor([&] { return View().height() == height; }));
}

TEST_F(InputViewTest, TheLimitOfTwoCharactersIsOneForTyping) {
    Show(characters, "16961");
    EXPECT_EQ(Field().text(), "AB");
    EXPECT_EQ(Field().selectedText(), "AB");
    QTest::keyClicks(&Field(), "XYZ");
    EXPECT_EQ(Dialog.EValue.Text(), "XY");
    Show(tenths, "10.0", false);
    EXPECT_EQ(Field().text(), "10.0");
    QTest::keyClicks(&Field(), "1");
    EXPECT_EQ(Field().text(), "10.0");
    Field().selectAll();
    QTest::keyClicks(&Field(), "9.5");
    EXPECT_EQ(Dialog.EValue.Text(), "9.");
}

} // namespace tidewell::test
