#include "Support.h"
#include "core/controls/ControlLock.h"
#include "core/controls/Form.h"
#include "desktop/binders/Bind.h"
#include "widgets/Child.h"
#include "widgets/PanelBar.h"
#include "widgets/SimpleViews.h"
#include "widgets/TwoThumbTrackBar.h"

namespace tidewell::test {

namespace {

// Controls in their widgets. The handlers note what their control has heard and holds.
class BindersTest : public testing::Test {
  protected:
    BindersTest() {
        Window.resize(500, 600);
        Window.show();
        Window.activateWindow();
        EXPECT_TRUE(WaitFor([this] { return Window.isActiveWindow(); }));
    }
    // A handler that notes its call, with the row that it is told.
    auto Hear(const std::string& what) {
        return [this, what](auto... row) {
            Heard += what;
            ((Heard += std::to_string(row)), ...);
            Heard += ' ';
        };
    }
    template <class TView, class TControl>
    TView& Show(TControl& control) {
        auto& view = NewChild<TView>(Window);
        Bind(view, control, Desk.Dialogs);
        Column.addWidget(&view);
        view.show();
        QCoreApplication::processEvents();
        return view;
    }
    void ExpectHeard(const char* what) { EXPECT_EQ(std::exchange(Heard, {}), what); }

    void Press(QWidget& view, const std::vector<Qt::Key>& keys, const char* heard) {
        for (const Qt::Key key : keys)
            QTest::keyClick(&view, key);
        ExpectHeard(heard);
    }
    // A key that was held down since before.
    static void Repeat(QWidget& view, Qt::Key key, const char* text) {
        QKeyEvent held(QEvent::KeyPress, key, Qt::NoModifier, QString::fromLatin1(text), true);
        QCoreApplication::sendEvent(&view, &held);
    }

    TTestDesk Desk;
    TRobot Robot;
    std::string Heard;
    TButton Button{"But", "Go"};
    TCheckBox Box{"Box", "Tick"};
    TEdit Edit{"Edit"};
    QWidget Window;
    QVBoxLayout& Column = NewChild<QVBoxLayout>(Window);
    QPushButton& ButtonView = Show<QPushButton>(Button);
    QCheckBox& BoxView = Show<QCheckBox>(Box);
    QLineEdit& EditView = Show<QLineEdit>(Edit);
};

// A track with two thumbs above a field with a mask.
class RangeTest : public BindersTest {
  protected:
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

    TForm Form{"Form"};
    TTrackBar2 Bar{Form, "Bar", 0, 100};
    TMaskEdit Mask{Form, "Edit", "!\\D\\:99;1;_"};
    TTwoThumbTrackBar& Track = Show<TTwoThumbTrackBar>(Bar);
    QLineEdit& Field = Show<QLineEdit>(Mask);
};

} // namespace

// What plain clicks and keys do is told by the journeys on the screen.
TEST_F(BindersTest, ButtonsAndEditsShowMoreThanText) {
    Button.SetColor(TColor{0x00FFFF}); // yellow, then dark blue
    EXPECT_EQ(ButtonView.palette().color(QPalette::Button), QColor(255, 255, 0));
    EXPECT_EQ(ButtonView.palette().color(QPalette::ButtonText), QColor(Qt::black));
    Button.SetColor(TColor{0x600000});
    EXPECT_EQ(ButtonView.palette().color(QPalette::ButtonText), QColor(Qt::white));
    Edit.SetMaxLength(2);
    QTest::keyClicks(&EditView, "abc");
    EXPECT_EQ(Edit.Text(), "ab");
    Edit.SetText("long"); // the limit is one for typing
    Edit.SelectAllRequested.Emit();
    EXPECT_EQ(EditView.selectedText(), "long");
    Edit.CaretAtEndRequested.Emit();
    EXPECT_EQ(EditView.cursorPosition(), 4);
    EXPECT_FALSE(EditView.hasSelectedText());
}

TEST_F(BindersTest, ListsTellTheRowThatIsPickedByKeys) {
    TListBox list("List");
    list.SetItems({"one", "two"});
    list.OnClick = [&] { Hear("row")(list.ItemIndex()); };
    auto& view = Show<QListWidget>(list);
    Press(view, {Qt::Key_Space}, ""); // no row is current
    view.setFocus(Qt::TabFocusReason);
    Press(view, {Qt::Key_Space}, "row0 ");
    Press(view, {Qt::Key_Down, Qt::Key_Return}, "row1 ");
    TColorList colors("Colors");
    colors.OnClick = Hear("all");
    auto& colorsView = Show<QListView>(colors);
    QTest::mouseClick(colorsView.viewport(), Qt::RightButton);
    Repeat(colorsView, Qt::Key_Space, " ");
    ExpectHeard("");
    Press(colorsView, {Qt::Key_Space, Qt::Key_A, Qt::Key_Enter}, "all all ");
    colors.Add({"done", TColor{0x008000}});
    const auto shown = [&] {
        return colorsView.model()->index(0, 0).data(Qt::ForegroundRole).value<QColor>();
    };
    EXPECT_EQ(shown(), QColor(0, 128, 0));
    QPalette dark = colorsView.palette();
    dark.setColor(QPalette::Base, QColor(40, 40, 40));
    colorsView.setPalette(dark);
    EXPECT_GT(shown().lightness(), QColor(0, 128, 0).lightness());
}

TEST_F(BindersTest, TreesKeepTheSelectionUnderTheRightButton) {
    TTreeView tree("Tree");
    tree.OnRightMouseButton = Hear("right");
    auto& view = Show<QTreeWidget>(tree);
    tree.SetNodes({{"Device", {"Fans", "Heat"}}, {"Other", {}}});
    tree.SetSelected(TTreeView::TSelection{0, 1});
    QTest::mouseClick(view.viewport(), Qt::RightButton, {},
                      view.visualItemRect(view.topLevelItem(1)).center());
    QContextMenuEvent menu(QContextMenuEvent::Keyboard, {5, 5}, {5, 5});
    QCoreApplication::sendEvent(&view, &menu);
    ExpectHeard("right right ");
    EXPECT_EQ(tree.Selected(), (TTreeView::TSelection{0, 1}));
}

TEST_F(BindersTest, GridsTellCellsRowsAndKeys) {
    TStringGrid grid("Grid");
    grid.OnClick = [this](const TCellClick& click) { Hear("cell")(click.Column); };
    grid.OnDblClick = Hear("twice");
    grid.OnSelectCell = Hear("select");
    grid.OnKeyPress = [this](const std::string& key) { Heard += key + " "; };
    auto& view = Show<QTableView>(grid);
    grid.Cells.SetRow(0, {"Name", "Value"});
    grid.Cells.SetRow(2, {"Heat", "6"});
    grid.Repaint();
    Press(view, {Qt::Key_Up}, "select2 ");
    Press(view, {Qt::Key_Up, Qt::Key_End, Qt::Key_Home}, "select1 select2 select1 ");
    QTest::mouseClick(view.viewport(), Qt::RightButton, {},
                      view.visualRect(view.model()->index(1, 1)).center());
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, {300, 30});
    ExpectHeard("select2 cell-1 twice-1 ");
    QTest::keyClick(&view, Qt::Key_7, Qt::ControlModifier);
    Repeat(view, Qt::Key_7, "7");
    ExpectHeard("");
}

TEST_F(BindersTest, TheKeyboardComesBackToWhatWasLocked) {
    TControlLock lock;
    const std::array<TControl*, 3> controls{&Button, &Box, &Edit};
    ButtonView.setFocus();
    lock.Lock(controls);
    EXPECT_FALSE(ButtonView.hasFocus() || BoxView.hasFocus() || EditView.hasFocus());
    lock.Release();
    EXPECT_TRUE(ButtonView.hasFocus());
    lock.Lock(std::array<TControl*, 1>{&Button});
    EditView.setFocus(); // by the user
    lock.Release();
    EXPECT_TRUE(ButtonView.isEnabled() && EditView.hasFocus());
}

TEST_F(BindersTest, WhatIsShownOutlivesAndIsDrawn) {
    auto label = std::make_unique<TLabel>("Label1", "<b>5 & 6</b>");
    auto& view = Show<QLabel>(*label);
    EXPECT_EQ(view.textFormat(), Qt::PlainText);
    {
        QLabel other;
        Bind(other, *label, Desk.Dialogs);
    }
    label->SetCaption("æøå"); // the control outlives one view
    label.reset();            // and another view outlives its control
    EXPECT_EQ(view.text(), QString::fromUtf8("æøå"));

    TForm owner("Form");
    TStatusBar status(owner, "StatusBar", {{100, "left", false}, {80, "right", true}});
    auto& panels = Show<TPanelBar>(status);
    auto& child = NewChild<QLabel>(panels);
    panels.Place(1, child, [](const QRect& panel) { return panel.adjusted(2, 1, -2, 0); });
    status.SetWidth(0, 150);
    EXPECT_EQ(child.geometry(), QRect(152, 1, 76, panels.height() - 1));
}

TEST_F(BindersTest, AMemoFollowsItsLastLineAndStaysAtTheLeft) {
    TMemo memo("Memo");
    auto& view = NewChild<QPlainTextEdit>(Window);
    Bind(view, memo, Desk.Dialogs);
    view.resize(200, 100);
    for (int line = 0; line < 20; ++line)
        memo.Add(line % 2 == 0 ? "short" : std::string(300, 'm'));
    view.show();
    QCoreApplication::processEvents();
    for (const char* last : {"short", "another"}) { // before it is first seen, and after
        EXPECT_GT(view.horizontalScrollBar()->maximum(), 0);
        EXPECT_EQ(view.horizontalScrollBar()->value(), 0);
        QTextCursor end = view.textCursor();
        end.movePosition(QTextCursor::End);
        end.movePosition(QTextCursor::StartOfBlock);
        EXPECT_TRUE(view.viewport()->rect().contains(view.cursorRect(end)));
        memo.Add(std::string(400, 'm'));
        memo.Add(last);
    }
    memo.TopRequested.Emit();
    EXPECT_EQ(view.verticalScrollBar()->value(), 0);
}

TEST_F(RangeTest, KeysMoveTheThumbThatHasThem) {
    int changes = 0;
    Bar.OnChange = [&changes] { ++changes; };
    Bar.SetPageSize(10);
    Track.setFocus(Qt::TabFocusReason);
    Keys({Qt::Key_Right, Qt::Key_Up, Qt::Key_PageUp, Qt::Key_Left});
    EXPECT_EQ(Positions(), std::pair(11, 100));
    Keys({Qt::Key_Tab, Qt::Key_PageDown, Qt::Key_Down, Qt::Key_Right, Qt::Key_End, Qt::Key_Left});
    EXPECT_EQ(Positions(), std::pair(11, 99));
    EXPECT_EQ(changes, 9);
    Keys({Qt::Key_Tab});
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
}

TEST_F(RangeTest, AMaskEditKeepsItsShape) {
    int clicks = 0;
    int exits = 0;
    Mask.OnClick = [&clicks] { ++clicks; };
    Mask.OnExit = [&exits] { ++exits; };
    Mask.SetText("D:7");
    EXPECT_EQ(Field.displayText(), "D:7_");
    Field.setFocus();
    Field.setCursorPosition(3);
    QTest::keyClicks(&Field, "x5");
    EXPECT_EQ(Mask.Text(), "D:75");
    Field.selectAll();
    Keys({Qt::Key_Delete});
    EXPECT_EQ(Mask.Text(), "D:  ");
    QTest::mouseClick(&Field, Qt::LeftButton);
    QTest::mouseClick(&Field, Qt::RightButton);
    EXPECT_EQ(clicks, 0); // once the field has done with it
    QCoreApplication::processEvents();
    EXPECT_EQ(std::pair(clicks, exits), std::pair(1, 0));
    Keys({Qt::Key_Return});
    EXPECT_EQ(exits, 1);
    Track.setFocus();
    EXPECT_EQ(exits, 2);
}

} // namespace tidewell::test
