#include "Support.h"
#include "core/controls/Form.h"
#include "desktop/binders/Bind.h"
#include "widgets/Child.h"
#include "widgets/TwoThumbTrackBar.h"

#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>

namespace tidewell::test {

namespace {

class RangeTest : public testing::Test {
  protected:
    RangeTest() {
        Bar.SetFrequency(10);
        Bar.SetPageSize(10);
        Bind(Track, Bar, Desk.Dialogs);
        Bind(Field, Edit, Desk.Dialogs);
        auto& column = NewChild<QVBoxLayout>(Window);
        column.addWidget(&Track);
        column.addWidget(&Field);
        Window.resize(412, 200);
        Window.show();
        Window.activateWindow();
        EXPECT_TRUE(WaitFor([this] { return Window.isActiveWindow(); }));
    }
    std::pair<int, int> Positions() const { return {Bar.LowerPosition(), Bar.UpperPosition()}; }
    void Keys(const std::vector<Qt::Key>& keys) {
        for (const Qt::Key key : keys)
            QTest::keyClick(QApplication::focusWidget(), key);
    }
    // Presses there and drags over a part of the track.
    void Drag(double from, double to) {
        const auto at = [this](double part) {
            return QPoint(static_cast<int>(9 + part * (Track.width() - 18)), Track.height() / 3);
        };
        QTest::mousePress(&Track, Qt::LeftButton, {}, at(from));
        QTest::mouseMove(&Track, at((from + to) / 2));
        QTest::mouseMove(&Track, at(to));
        QTest::mouseRelease(&Track, Qt::LeftButton, {}, at(to));
    }

    TTestDesk Desk;
    TForm Form{"Form"};
    TTrackBar2 Bar{Form, "Bar", 0, 100};
    TMaskEdit Edit{Form, "Edit", "!\\D\\:99;1;_"};
    QWidget Window;
    TTwoThumbTrackBar& Track = NewChild<TTwoThumbTrackBar>(Window);
    QLineEdit& Field = NewChild<QLineEdit>(Window);
};

} // namespace

TEST_F(RangeTest, KeysMoveTheThumbThatHasThem) {
    int changes = 0;
    Bar.OnChange = [&changes] { ++changes; };
    Track.setFocus(Qt::TabFocusReason);
    Keys({Qt::Key_Right, Qt::Key_Up, Qt::Key_PageUp, Qt::Key_Left});
    EXPECT_EQ(Positions(), std::pair(11, 100));
    Keys({Qt::Key_Tab, Qt::Key_PageDown, Qt::Key_Down, Qt::Key_Right, Qt::Key_End, Qt::Key_Left});
    EXPECT_EQ(Positions(), std::pair(11, 99));
    EXPECT_EQ(changes, 9);
    Keys({Qt::Key_Home}); // as far as the other thumb
    EXPECT_EQ(Positions(), std::pair(11, 11));
    Keys({Qt::Key_Backtab, Qt::Key_End, Qt::Key_Home});
    EXPECT_EQ(Positions(), std::pair(0, 11));
    Keys({Qt::Key_Tab, Qt::Key_Tab});
    EXPECT_TRUE(Field.hasFocus());
}

TEST_F(RangeTest, TheMouseDragsTheNearerThumb) {
    Drag(0, 0.3);
    EXPECT_NEAR(Bar.LowerPosition(), 30, 1);
    Drag(1, 0.1); // stops at the other one
    EXPECT_EQ(Bar.UpperPosition(), Bar.LowerPosition());
    Drag(Bar.LowerPosition() / 100.0, 0.6); // where they lie on each other
    EXPECT_NEAR(Bar.LowerPosition(), 30, 1);
    EXPECT_NEAR(Bar.UpperPosition(), 60, 1);
    Drag(0.35, 0.35); // a click fetches it
    EXPECT_NEAR(Bar.LowerPosition(), 35, 1);
    Bar.SetUpperPosition(20);
    EXPECT_EQ(std::pair(Track.LowerPosition(), Track.UpperPosition()), std::pair(20, 20));
    Bar.SetEnabled(false);
    Drag(0.2, 0.8);
    EXPECT_EQ(Positions(), std::pair(20, 20));
}

TEST_F(RangeTest, AMaskEditKeepsItsShape) {
    int clicks = 0;
    int exits = 0;
    Edit.OnClick = [&clicks] { ++clicks; };
    Edit.OnExit = [&exits] { ++exits; };
    Edit.SetText("D:7");
    EXPECT_EQ(Field.displayText(), "D:7_");
    Field.setFocus();
    Field.setCursorPosition(3);
    QTest::keyClicks(&Field, "x5");
    EXPECT_EQ(Edit.Text(), "D:75");
    Field.selectAll();
    Keys({Qt::Key_Delete});
    EXPECT_EQ(Edit.Text(), "D:  ");
    QTest::mouseClick(&Field, Qt::LeftButton);
    QTest::mouseClick(&Field, Qt::RightButton);
    EXPECT_EQ(clicks, 0); // once the field has done with it
    QCoreApplication::processEvents();
    EXPECT_EQ(std::pair(clicks, exits), std::pair(1, 0));
    Keys({Qt::Key_Return});
    EXPECT_EQ(exits, 1);
    Track.setFocus();
    EXPECT_EQ(exits, 2);
    Edit.SetEnabled(false);
    QTest::mouseClick(&Field, Qt::LeftButton);
    QCoreApplication::processEvents();
    EXPECT_EQ(clicks, 1);
}

} // namespace tidewell::test
