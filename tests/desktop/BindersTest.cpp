#include "Support.h"
#include "core/Errors.h"
#include "desktop/binders/EditBinder.h"
#include "desktop/binders/GridBinder.h"
#include "desktop/binders/ListBinders.h"
#include "desktop/binders/MenuBinder.h"
#include "desktop/binders/PageBinder.h"
#include "desktop/binders/SimpleBinders.h"
#include "desktop/binders/StatusBarBinder.h"
#include "desktop/binders/TreeBinder.h"
#include "widgets/Child.h"
#include "widgets/LedView.h"
#include "widgets/PanelBar.h"

#include <QAction>
#include <QCheckBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTableView>
#include <QTest>
#include <QTreeWidget>

namespace tidewell::test {

namespace {

class BindersTest : public testing::Test {
  protected:
    static void Show(QWidget& window) {
        window.resize(400, 300);
        window.show();
        QCoreApplication::processEvents();
    }

    TTestDesk Desk;
};

} // namespace

TEST_F(BindersTest, ShowsWhatControlsHaveInCommonAndFollowsThem) {
    auto label = std::make_unique<TLabel>("Label1", "<b>5 & 6</b>");
    label->SetVisible(false);
    label->SetHint("a hint");
    QWidget window;
    auto& view = NewChild<QLabel>(window);
    BindLabel(view, *label);
    EXPECT_EQ(view.objectName(), "Label1");
    EXPECT_EQ(view.text(), "<b>5 & 6</b>");
    EXPECT_EQ(view.textFormat(), Qt::PlainText);
    EXPECT_TRUE(view.isHidden());
    EXPECT_EQ(view.toolTip(), "a hint");
    label->SetVisible(true);
    label->SetEnabled(false);
    label->SetCaption("æøå");
    EXPECT_FALSE(view.isHidden());
    EXPECT_FALSE(view.isEnabled());
    EXPECT_EQ(view.text(), QString::fromUtf8("æøå"));
    label.reset(); // the view outlives its control
    EXPECT_EQ(view.text(), QString::fromUtf8("æøå"));
}

TEST_F(BindersTest, AControlOutlivesItsView) {
    TLabel label("Label1");
    QWidget window;
    {
        QLabel view(&window);
        BindLabel(view, label);
    }
    label.SetCaption("later");
    EXPECT_TRUE(window.findChildren<QLabel*>().isEmpty());
}

TEST_F(BindersTest, ButtonsCheckBoxesAndLampsWork) {
    TButton button("But", "Go");
    TCheckBox box("Box", "Tick");
    TALed led("Led");
    TProgressBar bar("Bar");
    int clicks = 0;
    button.OnClick = [&] {
        ++clicks;
    };
    box.OnClick = [&] {
        clicks += box.Checked() ? 10 : 100;
    };
    QWidget window;
    auto& buttonView = NewChild<QPushButton>(window);
    auto& boxView = NewChild<QCheckBox>(window);
    auto& ledView = NewChild<TLedView>(window);
    auto& barView = NewChild<QProgressBar>(window);
    BindButton(buttonView, button, Desk.Dialogs);
    BindCheckBox(boxView, box, Desk.Dialogs);
    BindLed(ledView, led);
    BindProgressBar(barView, bar);
    Show(window);

    buttonView.click();
    boxView.click();
    boxView.click();
    EXPECT_EQ(clicks, 111);
    box.SetChecked(true);
    EXPECT_TRUE(boxView.isChecked());

    button.SetColor(TColor{0x00FFFF}); // yellow, then dark blue
    EXPECT_EQ(buttonView.palette().color(QPalette::Button), QColor(255, 255, 0));
    EXPECT_EQ(buttonView.palette().color(QPalette::ButtonText), QColor(Qt::black));
    button.SetColor(TColor{0x600000});
    EXPECT_EQ(buttonView.palette().color(QPalette::ButtonText), QColor(Qt::white));

    led.SetValue(true);
    led.SetTrueColor(TALed::Red);
    EXPECT_TRUE(ledView.IsOn());
    EXPECT_EQ(ledView.Color(), QColor(Qt::red));
    EXPECT_EQ(ledView.accessibleName(), "Led");
    EXPECT_EQ(ledView.accessibleDescription(), "on, #ff0000");
    const QImage lit = ledView.grab().toImage();
    led.SetValue(false);
    EXPECT_NE(ledView.grab().toImage(), lit);

    bar.SetMax(0);
    bar.SetPosition(0);
    EXPECT_EQ(barView.maximum(), 1); // not the endless bar
    bar.SetMax(200);
    bar.SetPosition(50);
    EXPECT_EQ(barView.value(), 50);
}

TEST_F(BindersTest, EditsPassTypingButNotTheFormsOwnTexts) {
    TEdit edit("Edit");
    edit.SetMasked(true);
    edit.SetMaxLength(4);
    int changes = 0;
    int returns = 0;
    edit.OnChange = [&] {
        ++changes;
    };
    QWidget window;
    auto& view = NewChild<QLineEdit>(window);
    BindEdit(view, edit, Desk.Dialogs);
    Show(window);
    EXPECT_EQ(view.echoMode(), QLineEdit::Password);
    QTest::keyClicks(&view, "abcdef");
    EXPECT_EQ(edit.Text(), "abcd");
    EXPECT_EQ(changes, 4);
    edit.SetText("xy");
    EXPECT_EQ(view.text(), "xy");
    EXPECT_EQ(changes, 4);
    edit.SelectAllRequested.Emit();
    EXPECT_EQ(view.selectedText().size(), 2);
    edit.CaretAtEndRequested.Emit();
    EXPECT_EQ(view.cursorPosition(), 2);
    EXPECT_FALSE(view.hasSelectedText());
    edit.OnReturn = [&] {
        ++returns;
    };
    QTest::keyClick(&view, Qt::Key_Return);
    QTest::keyClick(&view, Qt::Key_Enter);
    EXPECT_EQ(returns, 2);
}

TEST_F(BindersTest, ListsReportThePickedRow) {
    TListBox list("List");
    TRadioGroup group("Group", "Choose");
    std::string picked;
    list.OnClick = [&] {
        picked += "list" + std::to_string(list.ItemIndex());
    };
    group.OnClick = [&] {
        picked += "group" + std::to_string(group.ItemIndex());
    };
    QWidget window;
    auto& listView = NewChild<QListWidget>(window);
    auto& groupView = NewChild<QGroupBox>(window);
    BindListBox(listView, list, Desk.Dialogs);
    BindRadioGroup(groupView, group, Desk.Dialogs);
    list.SetItems({"one", "two"});
    group.SetItems({"a & b", "c"});
    Show(window);

    EXPECT_EQ(listView.count(), 2);
    EXPECT_TRUE(listView.selectedItems().isEmpty());
    listView.setCurrentRow(1);
    QTest::keyClick(&listView, Qt::Key_Space);
    EXPECT_EQ(picked, "list1");

    auto radios = groupView.findChildren<QRadioButton*>();
    ASSERT_EQ(radios.size(), 2);
    EXPECT_EQ(radios[0]->text(), "a && b");
    EXPECT_FALSE(radios[0]->isChecked() || radios[1]->isChecked());
    radios[1]->click();
    EXPECT_EQ(picked, "list1group1");
    group.SetItemIndex(0);
    EXPECT_TRUE(radios[0]->isChecked());
    EXPECT_FALSE(radios[1]->isChecked());
    group.SetItems({"only"});
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    radios = groupView.findChildren<QRadioButton*>();
    ASSERT_EQ(radios.size(), 1);
    EXPECT_FALSE(radios[0]->isChecked());
}

TEST_F(BindersTest, MemosGrowLineByLine) {
    TMemo memo("Memo");
    memo.Add("before");
    QWidget window;
    auto& view = NewChild<QPlainTextEdit>(window);
    BindMemo(view, memo);
    memo.Add("");
    memo.Add("after");
    EXPECT_EQ(view.toPlainText(), "before\n\nafter");
    memo.SetHint("changes nothing");
    EXPECT_EQ(view.toPlainText(), "before\n\nafter");
    memo.Clear();
    EXPECT_EQ(view.toPlainText(), "");
    memo.Add("anew");
    EXPECT_EQ(view.toPlainText(), "anew");
    EXPECT_TRUE(view.isReadOnly());
    EXPECT_EQ(view.lineWrapMode(), QPlainTextEdit::NoWrap);
}

TEST_F(BindersTest, TreesKeepTheSelectionUnderTheRightButton) {
    TTreeView tree("Tree");
    std::string heard;
    tree.OnClick = [&] {
        heard += 'c';
    };
    tree.OnRightMouseButton = [&] {
        heard += 'r';
    };
    tree.OnOtherMouseButton = [&] {
        heard += 'o';
    };
    QWidget window;
    auto& view = NewChild<QTreeWidget>(window);
    view.resize(300, 200);
    BindTree(view, tree, Desk.Dialogs);
    tree.SetNodes({{"Device", {"Fans", "Heat"}}, {"Other", {}}});
    Show(window);
    ASSERT_EQ(view.topLevelItemCount(), 2);
    EXPECT_EQ(view.topLevelItem(0)->child(1)->text(0), "Heat");

    const auto pointOf = [&](QTreeWidgetItem* item) {
        return view.visualItemRect(item).center();
    };
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, pointOf(view.topLevelItem(0)->child(1)));
    EXPECT_EQ(heard, "oc");
    EXPECT_EQ(tree.Selected(), (TTreeView::TSelection{0, 1}));
    QTest::mouseClick(view.viewport(), Qt::RightButton, {}, pointOf(view.topLevelItem(1)));
    EXPECT_EQ(heard, "ocr");
    EXPECT_EQ(tree.Selected(), (TTreeView::TSelection{0, 1}));
    QTest::keyClick(&view, Qt::Key_Return);
    EXPECT_EQ(heard, "ocrc");
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
    std::string heard;
    grid.OnDblClick = [&](int row) {
        heard += "d" + std::to_string(row);
    };
    grid.OnKeyPress = [&](const std::string& text) {
        heard += "k" + text;
    };
    grid.OnSelectCell = [&](int row) {
        heard += "s" + std::to_string(row);
    };
    QWidget window;
    auto& view = NewChild<QTableView>(window);
    view.resize(390, 290);
    BindGrid(view, grid, Desk.Dialogs);
    grid.Cells.SetRow(1, {"Speed", "5"});
    grid.Cells.SetRow(2, {"Heat", "6"});
    grid.ColWidths = {120, 60};
    grid.Repaint();
    Show(window);
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
    EXPECT_EQ(heard, "s2d2d-1k7k\r");
    grid.Cells.SetRowCount(1);
    grid.SetSelectedRow(-1);
    EXPECT_EQ(view.model()->rowCount(), 0);
}

TEST_F(BindersTest, PagesFollowBothWays) {
    TPageControl pages("Tabs");
    TTabSheet first("First", "one");
    TTabSheet second("Second", "two");
    pages.Pages = {first, second};
    int changes = 0;
    pages.OnChange = [&] {
        ++changes;
    };
    pages.SetActivePageIndex(1);
    QWidget window;
    auto& view = NewChild<QTabWidget>(window);
    view.addTab(&NewChild<QWidget>(view), QString());
    view.addTab(&NewChild<QWidget>(view), QString());
    BindPages(view, pages, Desk.Dialogs);
    EXPECT_EQ(view.currentIndex(), 1);
    EXPECT_EQ(view.tabText(0), "one");
    EXPECT_EQ(view.widget(1)->objectName(), "Second");
    view.setCurrentIndex(0);
    EXPECT_TRUE(pages.IsActive(first));
    EXPECT_EQ(changes, 2);
    second.SetVisible(false);
    EXPECT_FALSE(view.isTabVisible(1));
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
    int clicks = 0;
    log.OnClick = [&] {
        ++clicks;
    };
    QWidget window;
    auto& bar = NewChild<QMenuBar>(window);
    BindMainMenu(bar, menu, Desk.Dialogs);
    auto* const fileAction = bar.findChild<QAction*>("file");
    auto* const openAction = bar.findChild<QAction*>("open");
    auto* const logAction = bar.findChild<QAction*>("log");
    ASSERT_TRUE(fileAction != nullptr && openAction != nullptr && logAction != nullptr);
    EXPECT_EQ(openAction->text(), "Open");
    EXPECT_EQ(openAction->shortcut().toString(), "F2");
    open.SetVisible(false);
    EXPECT_FALSE(openAction->isVisible());
    EXPECT_TRUE(fileAction->isVisible());
    log.SetVisible(false);
    EXPECT_FALSE(fileAction->isVisible());
    log.SetVisible(true);
    EXPECT_TRUE(fileAction->isVisible());
    logAction->trigger();
    EXPECT_EQ(clicks, 1);
    EXPECT_FALSE(logAction->isChecked()); // the form decides
    log.SetChecked(true);
    EXPECT_TRUE(logAction->isChecked());
}

TEST_F(BindersTest, StatusPanelsTakeTheModelsWidths) {
    TStatusBar bar("StatusBar", {{100, "left", false}, {80, "right", true}});
    QWidget window;
    auto& view = NewChild<TPanelBar>(window);
    view.resize(400, 19);
    BindStatusBar(view, bar);
    auto& child = NewChild<QLabel>(window);
    view.Place(1, child, [](const QRect& panel) { return panel.adjusted(2, 1, -2, 0); });
    bar.SetWidth(0, 150);
    bar.SetText(1, "new");
    EXPECT_EQ(view.PanelRect(1), QRect(150, 0, 80, 19));
    EXPECT_EQ(child.geometry(), QRect(152, 1, 76, 18));
    EXPECT_EQ(view.findChild<QLabel*>("StatusPanel1")->text(), "new");
}

TEST_F(BindersTest, AnExceptionIsShownAndTheProgramGoesOn) {
    TButton button("But", "Go");
    int clicks = 0;
    button.OnClick = [&] {
        if (++clicks == 1)
            throw EConvertError("'x' is not a number");
    };
    QWidget window;
    auto& view = NewChild<QPushButton>(window);
    BindButton(view, button, Desk.Dialogs);
    Show(window);
    const TOnMessageBox answer([](QMessageBox& box) { box.button(QMessageBox::Ok)->click(); });
    view.click();
    EXPECT_EQ(answer.Text, "'x' is not a number");
    view.click();
    EXPECT_EQ(clicks, 2);
}

} // namespace tidewell::test
