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
    void Press(QWidget& view, const char* keys, const char* heard) {
        test::Press(keys, &view);
        ExpectHeard(heard);
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
    void ExpectPositions(int lower, int upper) {
        EXPECT_NEAR(Bar.LowerPosition(), lower, Tolerance);
        EXPECT_NEAR(Bar.UpperPosition(), upper, Tolerance);
    }
    // Presses there and drags over a part of the track.
    void Drag(double from, double to) {
        const auto at = [this](double part) {
            return QPoint(static_cast<int>(9 + part * (Track.width() - 18)), Track.height() / 3);
        };
        test::Drag(Track, at(from), at(to));
    }

    int Tolerance = 0;
    TForm Form{"Form"};
    TTrackBar2 Bar{Form, "Bar", 0, 100};
    TMaskEdit Mask{Form, "Edit", "!\\D\\:99;1;_"};
    TTwoThumbTrackBar& Track = Show<TTwoThumbTrackBar>(Bar);
    QLineEdit& Field = Show<QLineEdit>(Mask);
};

} // namespace

// What plain clicks and keys do is told by the journeys on the screen.
TEST_F(BindersTest, ButtonsAndEditsShowMoreThanText) {
    for (const auto& [ground, ink] : {std::pair(0x00FFFF, Qt::black), {0x600000, Qt::white}}) {
        Button.SetColor(TColor{static_cast<std::uint32_t>(ground)});
        EXPECT_EQ(ButtonView.palette().color(QPalette::ButtonText), QColor(ink));
    }
    EXPECT_EQ(ButtonView.palette().color(QPalette::Button), QColor(0, 0, 0x60));
    Edit.SetMaxLength(2);
    test::Press("A B C", &EditView);
    EXPECT_EQ(Edit.Text(), "ab");
    Edit.SetText("long"); // the limit is one for typing
    Edit.SelectAllRequested.Emit();
    EXPECT_EQ(EditView.selectedText(), "long");
    Edit.CaretAtEndRequested.Emit();
    EXPECT_TRUE(EditView.cursorPosition() == 4 && !EditView.hasSelectedText());
}

TEST_F(BindersTest, ListsTellTheRowThatIsPickedByKeys) {
    TListBox list("List");
    list.SetItems({"one", "two"});
    list.OnClick = [&] { Hear("row")(list.ItemIndex()); };
    auto& view = Show<QListWidget>(list);
    Press(view, "Space", ""); // no row is current
    view.setFocus(Qt::TabFocusReason);
    Press(view, "Space Down Return", "row0 row1 ");

    TColorList colors("Colors");
    colors.OnClick = Hear("all");
    auto& colorsView = Show<QListView>(colors);
    QTest::mouseClick(colorsView.viewport(), Qt::RightButton);
    Hold(colorsView, Qt::Key_Space, " ");
    Press(colorsView, "Space A Enter", "all all ");
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
    Press(view, "Up", "select2 ");
    Press(view, "Up End Home", "select1 select2 select1 ");
    QTest::mouseClick(view.viewport(), Qt::RightButton, {},
                      view.visualRect(view.model()->index(1, 1)).center());
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, {300, 30});
    Hold(view, Qt::Key_7, "7");
    Press(view, "Ctrl+7", "select2 cell-1 twice-1 ");
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
}

TEST_F(BindersTest, AMemoFollowsItsLastLineAndStaysAtTheLeft) {
    TMemo memo("Memo");
    auto& view = NewChild<QPlainTextEdit>(Window);
    Bind(view, memo, Desk.Dialogs);
    view.resize(200, 100);
    for (const bool seen : {false, true}) { // before it is first seen, and after
        for (int line = 0; line < 20; ++line)
            memo.Add(line % 2 == 1 ? "short" : std::string(300, 'm'));
        view.setVisible(true);
        QCoreApplication::processEvents();
        EXPECT_GT(view.horizontalScrollBar()->maximum(), 0);
        EXPECT_EQ(view.horizontalScrollBar()->value(), 0);
        EXPECT_EQ(view.verticalScrollBar()->value(), view.verticalScrollBar()->maximum()) << seen;
    }
    memo.TopRequested.Emit();
    EXPECT_EQ(view.verticalScrollBar()->value(), 0);
}

TEST_F(RangeTest, KeysMoveTheThumbThatHasThem) {
    int changes = 0;
    Bar.OnChange = [&changes] { ++changes; };
    Bar.SetPageSize(10);
    Track.setFocus(Qt::TabFocusReason);
    test::Press("Right Up PgUp Left");
    ExpectPositions(11, 100);
    test::Press("Tab PgDown Down Right End Left");
    ExpectPositions(11, 99);
    EXPECT_EQ(changes, 9);
    test::Press("Tab");
    EXPECT_TRUE(Field.hasFocus());
}

TEST_F(RangeTest, TheMouseDragsTheNearerThumb) {
    Tolerance = 1;
    Drag(0, 0.3);
    ExpectPositions(30, 100);
    Drag(1, 0.1); // stops at the other one
    ExpectPositions(30, 30);
    Drag(Bar.LowerPosition() / 100.0, 0.6); // where they lie on each other
    ExpectPositions(30, 60);
    Drag(0.35, 0.35); // a click fetches it
    ExpectPositions(35, 60);
    Bar.SetUpperPosition(20);
    EXPECT_EQ(std::pair(Track.LowerPosition(), Track.UpperPosition()), std::pair(20, 20));
}

TEST_F(RangeTest, AMaskEditKeepsItsShape) {
    Mask.OnClick = Hear("click");
    Mask.OnExit = Hear("exit");
    Mask.SetText("D:7");
    EXPECT_EQ(Field.displayText(), "D:7_");
    Field.setFocus();
    Field.setCursorPosition(3);
    test::Press("X 5", &Field);
    EXPECT_EQ(Mask.Text(), "D:75");
    Field.selectAll();
    test::Press("Del", &Field);
    EXPECT_EQ(Mask.Text(), "D:  ");
    QTest::mouseClick(&Field, Qt::LeftButton);
    QTest::mouseClick(&Field, Qt::RightButton);
    ExpectHeard(""); // a click is told once the field has done with it
    QCoreApplication::processEvents();
    ExpectHeard("click ");
    Press(Field, "Return", "exit ");
    Track.setFocus();
    ExpectHeard("exit ");
}

} // namespace tidewell::test
