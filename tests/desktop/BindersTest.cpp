#include "Support.h"
#include "core/Errors.h"
#include "core/controls/Form.h"
#include "desktop/binders/Bind.h"
#include "widgets/Child.h"
#include "widgets/PanelBar.h"
#include "widgets/SimpleViews.h"

#include <QAction>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QTabWidget>
#include <QTableView>
#include <QTest>
#include <QTreeWidget>

namespace tidewell::test {

namespace {

struct TWindow : QWidget {
    template <class TView>
    TView& Add() {
        return NewChild<TView>(*this);
    }
    void Show() {
        resize(400, 300);
        show();
        QCoreApplication::processEvents();
    }
};

class BindersTest : public testing::Test {
  protected:
    // A handler that notes its call, with the row that it is told.
    auto Hear(const std::string& what) {
        return [this, what](auto... row) {
            Heard += what;
            ((Heard += std::to_string(row)), ...);
        };
    }

    TTestDesk Desk;
    std::string Heard;
};

} // namespace

TEST_F(BindersTest, ShowsWhatControlsHaveInCommonAndFollowsThem) {
    auto label = std::make_unique<TLabel>("Label1", "<b>5 & 6</b>");
    label->SetVisible(false);
    TWindow window;
    auto& view = window.Add<QLabel>();
    Bind(view, *label, Desk.Dialogs);
    EXPECT_EQ(view.text(), "<b>5 & 6</b>");
    EXPECT_EQ(view.textFormat(), Qt::PlainText);
    EXPECT_TRUE(view.isHidden());
    {
        QLabel other;
        Bind(other, *label, Desk.Dialogs);
    }
    label->SetVisible(true);
    label->SetEnabled(false);
    label->SetCaption("æøå"); // the control outlives one view
    EXPECT_FALSE(view.isHidden());
    EXPECT_FALSE(view.isEnabled());
    label.reset(); // and another view outlives its control
    EXPECT_EQ(view.text(), QString::fromUtf8("æøå"));
}

TEST_F(BindersTest, ButtonsCheckBoxesAndLampsWork) {
    TButton button("But", "Go");
    TCheckBox box("Box", "Tick");
    TALed led("Led");
    TProgressBar bar("Bar");
    int clicks = 0;
    button.OnClick = [&] {
        if (++clicks == 1)
            throw EConvertError("'x' is not a number");
    };
    box.OnClick = [&] { clicks += box.Checked() ? 10 : 100; };
    TWindow window;
    auto& buttonView = window.Add<QPushButton>();
    auto& boxView = window.Add<QCheckBox>();
    auto& ledView = window.Add<TLedView>();
    auto& barView = window.Add<QProgressBar>();
    Bind(buttonView, button, Desk.Dialogs);
    Bind(boxView, box, Desk.Dialogs);
    Bind(ledView, led, Desk.Dialogs);
    Bind(barView, bar, Desk.Dialogs);
    window.Show();

    {
        const TOnMessageBox answer([](QMessageBox& message) { message.accept(); });
        buttonView.click();
        EXPECT_EQ(answer.Text, "'x' is not a number");
    }
    buttonView.click();
    boxView.click();
    boxView.click();
    EXPECT_EQ(clicks, 112);
    box.SetChecked(true);
    EXPECT_TRUE(boxView.isChecked());

    button.SetColor(TColor{0x00FFFF}); // yellow, then dark blue
    EXPECT_EQ(buttonView.palette().color(QPalette::Button), QColor(255, 255, 0));
    EXPECT_EQ(buttonView.palette().color(QPalette::ButtonText), QColor(Qt::black));
    button.SetColor(TColor{0x600000});
    EXPECT_EQ(buttonView.palette().color(QPalette::ButtonText), QColor(Qt::white));

    led.SetValue(true);
    led.SetTrueColor(TALed::Red);
    EXPECT_EQ(ledView.accessibleDescription(), "on, #ff0000");
    const QImage lit = ledView.grab().toImage();
    led.SetValue(false);
    EXPECT_NE(ledView.grab().toImage(), lit);

    bar.SetMax(0);
    EXPECT_EQ(barView.maximum(), 1); // not the endless bar
    bar.SetMax(200);
    bar.SetPosition(50);
    EXPECT_EQ(barView.value(), 50);
}

TEST_F(BindersTest, EditsPassTypingButNotTheFormsOwnTexts) {
    TEdit edit("Edit");
    edit.SetMaxLength(4);
    edit.OnChange = Hear("c");
    edit.OnReturn = Hear("r");
    TWindow window;
    auto& view = window.Add<QLineEdit>();
    Bind(view, edit, Desk.Dialogs);
    window.Show();
    QTest::keyClicks(&view, "abcdef");
    EXPECT_EQ(edit.Text(), "abcd");
    edit.SetText("xy");
    edit.SelectAllRequested.Emit();
    EXPECT_EQ(view.selectedText(), "xy");
    edit.CaretAtEndRequested.Emit();
    EXPECT_EQ(view.cursorPosition(), 2);
    EXPECT_FALSE(view.hasSelectedText());
    QTest::keyClick(&view, Qt::Key_Return);
    QTest::keyClick(&view, Qt::Key_Enter);
    EXPECT_EQ(Heard, "ccccrr");
}

TEST_F(BindersTest, RadioGroupsShowOneButtonPerItem) {
    TRadioGroup group("Group", "Choose");
    TWindow window;
    auto& view = window.Add<QGroupBox>();
    Bind(view, group, Desk.Dialogs);
    group.SetItems({"a & b", "c"});
    group.SetItemIndex(1);
    const auto radios = [&view] {
        std::string shown;
        for (const auto* radio : view.findChildren<QRadioButton*>())
            shown += (radio->isChecked() ? "*" : "-") + radio->text().toStdString();
        return shown;
    };
    EXPECT_EQ(radios(), "-a && b*c");
    group.SetItems({"only"});
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(radios(), "-only");
}

TEST_F(BindersTest, MemosGrowLineByLine) {
    TMemo memo("Memo");
    memo.Add("before");
    TWindow window;
    auto& view = window.Add<QPlainTextEdit>();
    Bind(view, memo, Desk.Dialogs);
    memo.Add("");
    memo.Add("after");
    memo.SetHint("changes nothing");
    EXPECT_EQ(view.toPlainText(), "before\n\nafter");
    memo.Clear();
    EXPECT_EQ(view.toPlainText(), "");
    memo.Add("anew");
    EXPECT_EQ(view.toPlainText(), "anew");
    EXPECT_TRUE(view.isReadOnly());

    // A long line moves the text aside neither before nor after it is first seen; the last line is in view.
    view.resize(200, 100);
    for (int line = 0; line < 20; ++line)
        memo.Add(line % 2 == 0 ? "short" : std::string(300, 'm'));
    window.Show();
    for (const char* last : {"short", "another"}) {
        EXPECT_GT(view.horizontalScrollBar()->maximum(), 0);
        EXPECT_EQ(view.horizontalScrollBar()->value(), 0);
        QTextCursor end = view.textCursor();
        end.movePosition(QTextCursor::End);
        end.movePosition(QTextCursor::StartOfBlock);
        EXPECT_TRUE(view.viewport()->rect().contains(view.cursorRect(end)))
            << view.verticalScrollBar()->value() << " of " << view.verticalScrollBar()->maximum();
        memo.Add(std::string(400, 'm'));
        memo.Add(last);
    }
}

TEST_F(BindersTest, TreesKeepTheSelectionUnderTheRightButton) {
    TTreeView tree("Tree");
    tree.OnClick = Hear("c");
    tree.OnKeyPress = [&](const std::string& key) { Heard += key == "\r" ? "k" : "?"; };
    tree.OnRightMouseButton = Hear("r");
    tree.OnOtherMouseButton = Hear("o");
    TWindow window;
    auto& view = window.Add<QTreeWidget>();
    view.resize(300, 200);
    Bind(view, tree, Desk.Dialogs);
    tree.SetNodes({{"Device", {"Fans", "Heat"}}, {"Other", {}}});
    window.Show();
    const auto click = [&](Qt::MouseButton button, QTreeWidgetItem* item) {
        QTest::mouseClick(view.viewport(), button, {}, view.visualItemRect(item).center());
        EXPECT_EQ(tree.Selected(), (TTreeView::TSelection{0, 1}));
    };
    click(Qt::LeftButton, view.topLevelItem(0)->child(1));
    click(Qt::RightButton, view.topLevelItem(1));
    QTest::keyClick(&view, Qt::Key_Return);
    EXPECT_EQ(Heard, "ocrk");
    tree.SetSelected(TTreeView::TSelection{1, -1});
    EXPECT_EQ(view.currentItem(), view.topLevelItem(1));
    tree.SetNodes({});
    EXPECT_EQ(view.topLevelItemCount(), 0);
    EXPECT_FALSE(tree.Selected());
}

TEST_F(BindersTest, GridsShowRowZeroAsTheHeading) {
    TStringGrid grid("Grid");
    grid.Cells.SetRow(0, {"Name", "Value"});
    grid.Cells.SetColCount(2);
    grid.OnDblClick = Hear("d");
    grid.OnSelectCell = Hear("s");
    grid.OnKeyPress = [&](const std::string& text) { Heard += "k" + text; };
    TWindow window;
    auto& view = window.Add<QTableView>();
    view.resize(390, 290);
    Bind(view, grid, Desk.Dialogs);
    grid.Cells.SetRow(1, {"Speed", "5"});
    grid.Cells.SetRow(2, {"Heat", "6"});
    grid.ColWidths = {120, 60};
    grid.Repaint();
    window.Show();
    ASSERT_EQ(view.model()->rowCount(), 2);
    EXPECT_EQ(view.model()->headerData(1, Qt::Horizontal).toString(), "Value");
    EXPECT_EQ(view.model()->index(1, 0).data().toString(), "Heat");
    EXPECT_EQ(view.columnWidth(0), 120);

    const QPoint second = view.visualRect(view.model()->index(1, 1)).center();
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, second);
    EXPECT_EQ(grid.SelectedRow(), 2);
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, second);
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, QPoint(20, 280));
    QTest::keyClicks(&view, "7");
    QTest::keyClick(&view, Qt::Key_Return);
    EXPECT_EQ(Heard, "s2d2d-1k7k\r");
    grid.Cells.SetRowCount(1);
    grid.SetSelectedRow(-1);
    EXPECT_EQ(view.model()->rowCount(), 0);
}

TEST_F(BindersTest, PagesAndStatusPanelsFollow) {
    TPageControl pages("Tabs");
    TTabSheet first("First", "one");
    TTabSheet second("Second", "two");
    pages.Pages = {first, second};
    pages.SetActivePageIndex(1);
    TWindow window;
    auto& view = window.Add<QTabWidget>();
    view.addTab(&NewChild<QWidget>(view), QString());
    view.addTab(&NewChild<QWidget>(view), QString());
    Bind(view, pages, Desk.Dialogs);
    EXPECT_EQ(view.currentIndex(), 1);
    view.setCurrentIndex(0);
    EXPECT_TRUE(pages.IsActive(first));
    second.SetVisible(false);
    EXPECT_FALSE(view.isTabVisible(1));

    TForm owner("Form");
    TStatusBar bar(owner, "StatusBar", {{100, "left", false}, {80, "right", true}});
    auto& barView = window.Add<TPanelBar>();
    barView.resize(400, 19);
    Bind(barView, bar, Desk.Dialogs);
    auto& child = window.Add<QLabel>();
    barView.Place(1, child, [](const QRect& panel) { return panel.adjusted(2, 1, -2, 0); });
    bar.SetWidth(0, 150);
    bar.SetText(1, "new");
    EXPECT_EQ(barView.PanelRect(1), QRect(150, 0, 80, 19));
    EXPECT_EQ(child.geometry(), QRect(152, 1, 76, 18));
    EXPECT_EQ(barView.findChild<QLabel*>("StatusPanel1")->text(), "new");
}

TEST_F(BindersTest, MenusHideWithTheirEntries) {
    TMainMenu menu("Menu");
    TMenuItem file("file", "File");
    TMenuItem open("open", "Open");
    TMenuItem log("log", "Log");
    file.Items = {open, log};
    menu.Items = {file};
    open.SetShortCut("F2");
    log.SetCheckable(true);
    log.OnClick = Hear("l");
    TWindow window;
    auto& bar = window.Add<QMenuBar>();
    Bind(bar, menu, Desk.Dialogs);
    const auto action = [&bar](const char* name) -> QAction& {
        return *bar.findChild<QAction*>(QString::fromLatin1(name));
    };
    EXPECT_EQ(action("open").shortcut().toString(), "F2");
    const auto shown = [&action] {
        return std::vector{action("file").isVisible(), action("open").isVisible(), action("log").isVisible()};
    };
    open.SetVisible(false);
    EXPECT_EQ(shown(), (std::vector{true, false, true}));
    log.SetVisible(false);
    EXPECT_EQ(shown(), (std::vector{false, false, false}));
    log.SetVisible(true);
    EXPECT_EQ(shown(), (std::vector{true, false, true}));
    action("log").trigger();
    EXPECT_EQ(Heard, "l");
    EXPECT_FALSE(action("log").isChecked()); // the form decides
    log.SetChecked(true);
    EXPECT_TRUE(action("log").isChecked());
}

} // namespace tidewell::test
