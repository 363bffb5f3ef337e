#include "Support.h"
#include "desktop/binders/FormBinder.h"
#include "desktop/views/Views.h"
#include "scenario/SetpointProgram.h"

#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QToolTip>
#include <QTreeWidget>

#include <memory>

namespace tidewell::test {

namespace {

const QColor selectedText(0, 0, 255);
const QColor lightBlue(150, 190, 255);

// Of the whole application, until the end of the block.
class TPaletteOf {
  public:
    TPaletteOf(const QColor& base, const QColor& text) {
        QPalette palette = Before;
        palette.setColor(QPalette::Base, base);
        palette.setColor(QPalette::Text, text);
        QApplication::setPalette(palette);
        QCoreApplication::processEvents();
    }
    ~TPaletteOf() { QApplication::setPalette(Before); }
    TPaletteOf(const TPaletteOf&) = delete;
    TPaletteOf& operator=(const TPaletteOf&) = delete;

  private:
    const QPalette Before = QApplication::palette();
};

// The main window of the whole program, the setpoint page in front.
class SetpointPageView : public TSetpointProgram {
  protected:
    SetpointPageView() {
        Start();
        Program->LiveLog.TimerLogAutostart->SetEnabled(false);
        Main().WindowSetpoint1.Click();
        View = ViewOf(*Program, TViewContext{Application(), Dialogs, Hold, Files});
        View->resize(1000, 700);
        View->show();
        View->activateWindow();
        QCoreApplication::processEvents();
    }
    ~SetpointPageView() override {
        View.reset();
        Close();
    }

    TQtApplication& Application() { return test::Application(); }
    template <class T>
    T& Find(const char* name) {
        return *View->findChild<T*>(QLatin1String(name));
    }
    QTableView& Grid() { return Find<QTableView>("SetpointGrid"); }
    QLineEdit& Filter() { return Find<QLineEdit>("SetpointFilter"); }
    QModelIndex Cell(int column, int row) { return Grid().model()->index(row - 1, column); }
    QString Text(int column, int row) { return Cell(column, row).data().toString(); }
    QPoint Middle(int column, int row) { return Grid().visualRect(Cell(column, row)).center(); }
    void ClickTree(int root, int child, Qt::MouseButton button = Qt::LeftButton) {
        auto& tree = Find<QTreeWidget>("SetpointTreeView");
        QTreeWidgetItem* const item =
            child < 0 ? tree.topLevelItem(root) : tree.topLevelItem(root)->child(child);
        QTest::mouseClick(tree.viewport(), button, {}, tree.visualItemRect(item).center());
        QCoreApplication::processEvents();
    }
    void ClickRow(int row) { QTest::mouseClick(Grid().viewport(), Qt::LeftButton, {}, Middle(0, row)); }
    void Press(int key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(&Grid(), Qt::Key(key), modifiers);
    }
    void StartLog() {
        Dialogs.ExpectMessage(Language("HeadAppl", "MessageClearGraphData"), EModalResult::Yes);
        Main().StartLog1.Click();
        RunUntilRows(1);
    }
    // How often the colour stands in that row, as painted.
    int Pixels(int row, const QColor& color) {
        const QImage picture = Grid().viewport()->grab().toImage();
        const QRect line = Grid().visualRect(Cell(0, row)).united(Grid().visualRect(Cell(4, row)));
        int count = 0;
        for (int y = line.top(); y <= line.bottom(); ++y)
            for (int x = line.left(); x <= line.right(); ++x)
                count += picture.pixelColor(x, y) == color ? 1 : 0;
        return count;
    }
    QColor Ground(int row) {
        return Grid().viewport()->grab().toImage().pixelColor(Grid().visualRect(Cell(4, row)).topRight());
    }

    TDeliveryHold Hold;
    std::unique_ptr<QWidget> View;
};

} // namespace

TEST_F(SetpointPageView, AGroupTakesThePlaceOfTheEmptyLine) {
    auto& empty = Find<QLabel>("LblSetpointPageEmpty");
    EXPECT_TRUE(empty.isVisible() && !Grid().isVisible());
    QTest::keyClick(&*View, Qt::Key_F, Qt::ControlModifier);
    EXPECT_FALSE(Filter().isVisible());
    ClickTree(0, -1);
    EXPECT_TRUE(empty.isVisible());
    ClickTree(0, 0);
    EXPECT_TRUE(!empty.isVisible() && Grid().isVisible());
    EXPECT_EQ(Find<QLabel>("LblSetpointCount").text(), "14 of 14 setpoints");
    EXPECT_EQ(Grid().model()->headerData(4, Qt::Horizontal).toString(), "Highest");
    EXPECT_EQ(Text(0, 1) + Text(1, 1) + Text(4, 3), "101 Operating mode240");
    StartLog();
    EXPECT_EQ(Text(1, 1), "5");
    EXPECT_GE(Grid().rowHeight(0), 16);
    EXPECT_EQ(Grid().rowHeight(0), Grid().rowHeight(13));

    // In seven parts, for the width without the scroll bar; then as the user wants it.
    const int unit = (Grid().viewport()->width() - 5) / 7;
    EXPECT_EQ(Grid().columnWidth(0), 3 * unit);
    EXPECT_EQ(Grid().columnWidth(4), unit);
    Grid().setColumnWidth(1, 200);
    RunUntilRows(2);
    ClickTree(0, 1);
    EXPECT_EQ(Grid().columnWidth(1), 200);
    View->resize(1100, 700);
    QCoreApplication::processEvents();
    EXPECT_EQ(Grid().columnWidth(1), (Grid().viewport()->width() - 5) / 7);
}

TEST_F(SetpointPageView, TheSelectedRowStandsOutByItsFontAlone) {
    ClickTree(0, 0);
    const auto base = [this] { return Grid().palette().color(QPalette::Base); };
    const QColor stripe = Ground(2);
    EXPECT_EQ(Ground(1), base());
    EXPECT_NE(stripe, base());
    EXPECT_EQ(Ground(4), stripe);
    for (const int row : {2, 3}) {
        EXPECT_EQ(Pixels(row, selectedText), 0);
        const QColor ground = Ground(row);
        ClickRow(row);
        EXPECT_EQ(Page().SetpointGrid.SelectedRow(), row);
        EXPECT_GT(Pixels(row, selectedText), 20);
        EXPECT_EQ(Ground(row), ground);
    }
    EXPECT_EQ(Pixels(2, selectedText), 0);
    const TPaletteOf dark(QColor(40, 40, 40), Qt::white);
    EXPECT_EQ(Pixels(3, selectedText), 0);
    EXPECT_GT(Pixels(3, lightBlue), 20);
    EXPECT_EQ(Ground(3), base());
    EXPECT_LT(Ground(2).lightness(), 100);
    EXPECT_GT(Pixels(2, Qt::white), 0);
}

TEST_F(SetpointPageView, RowsAreReachedAndEditedByTheKeyboard) {
    ClickTree(0, 0);
    Grid().setFocus();
    const std::vector<std::pair<int, int>> moves{
        {Qt::Key_Down, 1}, {Qt::Key_Down, 2},  {Qt::Key_End, 14},      {Qt::Key_Up, 13},
        {Qt::Key_Home, 1}, {Qt::Key_Right, 1}, {Qt::Key_PageDown, 14}, {Qt::Key_PageUp, 1}};
    for (const auto& [key, row] : moves) {
        Press(key);
        EXPECT_EQ(Page().SetpointGrid.SelectedRow(), row) << key;
    }
    EXPECT_EQ(Program->ContextHelp.HelpfileDoc.currentParaID, 101);
    Press(Qt::Key_7); // in silence: nothing is logged
    StartLog();
    const auto expectEdit = [this](const std::string& value, bool selectAll) {
        Dialogs.ExpectForm("InputDialog", [this, value, selectAll](TForm&) {
            EXPECT_EQ(Dialog().CurrentDatavalue, value);
            EXPECT_EQ(Dialog().ValueSelectAll, selectAll);
        });
    };
    expectEdit("7", false);
    Press(Qt::Key_7);
    expectEdit("5", true);
    Press(Qt::Key_Return);
    Press(Qt::Key_7, Qt::ControlModifier);
    expectEdit("45", true);
    QTest::mouseDClick(Grid().viewport(), Qt::LeftButton, {}, Middle(3, 3));
    Dialogs.ExpectMessage("List index out of bounds (-2)");
    QTest::mouseDClick(Grid().viewport(), Qt::LeftButton, {}, {10, Grid().viewport()->height() - 5});
}

TEST_F(SetpointPageView, TheFilterIsReachedAndLeftByTheKeyboard) {
    ClickTree(0, 0);
    ClickRow(3);
    int closes = 0;
    Main().OnCloseQuery = [&](bool& mayClose) {
        mayClose = ++closes > 1; // at the end of the test
    };
    QTest::keyClick(&Find<QTreeWidget>("SetpointTreeView"), Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(View->focusWidget(), &Filter());
    QTest::keyClicks(&Filter(), "MODE");
    EXPECT_EQ(Grid().model()->rowCount(), 6);
    EXPECT_EQ(Find<QLabel>("LblSetpointCount").text(), "6 of 14 setpoints");
    EXPECT_FALSE(Grid().selectionModel()->hasSelection());
    QTest::keyClick(&Filter(), Qt::Key_Down);
    EXPECT_EQ(View->focusWidget(), &Grid());
    EXPECT_EQ(Page().SetpointGrid.SelectedRow(), 1);
    QTest::keyClick(&Grid(), Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(Filter().selectedText(), "MODE");
    QTest::keyClick(&Filter(), Qt::Key_Escape);
    EXPECT_EQ(Filter().text(), "");
    EXPECT_EQ(Grid().model()->rowCount(), 14);
    EXPECT_EQ(closes, 0);
    QTest::keyClick(&Filter(), Qt::Key_Escape);
    EXPECT_EQ(closes, 1);
}

TEST_F(SetpointPageView, ACutTextIsToldWhole) {
    ClickTree(0, 0);
    const auto tipAt = [this](QPoint at) {
        QToolTip::hideText();
        QHelpEvent help(QEvent::ToolTip, at, Grid().viewport()->mapToGlobal(at));
        QCoreApplication::sendEvent(Grid().viewport(), &help);
        return QToolTip::isVisible() ? QToolTip::text() : QString();
    };
    EXPECT_EQ(tipAt(Middle(0, 1)), "");
    Grid().setColumnWidth(0, 60);
    EXPECT_TRUE(tipAt(Middle(0, 1)).contains(">101 Operating mode<"));
    Page().SetpointValues[0].Name = "<b>1 & 2</b>, seen at the end of the duct";
    EXPECT_TRUE(tipAt(Middle(0, 1)).contains("&lt;b&gt;1 &amp; 2"));
    QToolTip::hideText();
}

TEST_F(SetpointPageView, ADeviceIsSavedFromItsNodeAndTheReadingIsSeen) {
    ClickTree(0, 2);
    ClickTree(0, -1, Qt::RightButton); // the group stays selected: no menu
    ClickTree(0, -1);
    ExpectEntry(Page().Savesetpoints1);
    auto& panel = Find<QWidget>("ReadBackPanel");
    EXPECT_FALSE(panel.isVisible());
    bool seen = false;
    const auto watch = Program->ReadBack.Changed.Connect([&] {
        QCoreApplication::processEvents();
        if (!panel.isVisible() || !Find<QLabel>("LblReadBack").text().contains("cycle 2 of 3"))
            return;
        seen = Find<QWidget>("FileProgressBar").isVisible();
        QTest::mouseClick(&Find<QPushButton>("ButStopReadBack"), Qt::LeftButton);
    });
    ClickTree(0, -1, Qt::RightButton);
    EXPECT_TRUE(seen);
    EXPECT_FALSE(panel.isVisible());
}

} // namespace tidewell::test
