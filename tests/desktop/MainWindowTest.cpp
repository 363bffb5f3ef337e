#include "ScreenTest.h"
#include "desktop/QtText.h"
#include "widgets/ScopeView.h"

#include <QFileDialog>
#include <QHelpEvent>
#include <QLineEdit>
#include <QMenu>
#include <QTableView>
#include <QTemporaryDir>
#include <QToolTip>

namespace tidewell::test {

namespace {

// The main window of a linked program, with the 14 setpoints of its first group.
class MainWindowTest : public TScreenTest {
  protected:
    MainWindowTest() {
        ShowSetpoints();
        View = &Window(Screen.Program->FormMain);
        View->resize(1000, 700);
        QCoreApplication::processEvents();
    }

    QTableView& Grid() { return Child<QTableView>(*View, "SetpointGrid"); }
    int SelectedRow() { return Screen.Program->SetpointPage.SetpointGrid.SelectedRow(); }
    QRect Cell(int column, int row) { return Grid().visualRect(Grid().model()->index(row - 1, column)); }
    // How often the colour stands in that row, as painted.
    int Pixels(int row, const QColor& color) {
        const QImage picture = Grid().viewport()->grab().toImage();
        const QRect line = Cell(0, row).united(Cell(4, row));
        int count = 0;
        for (int y = line.top(); y <= line.bottom(); ++y)
            for (int x = line.left(); x <= line.right(); ++x)
                count += picture.pixelColor(x, y) == color ? 1 : 0;
        return count;
    }
    QColor Ground(int row) { return Grid().viewport()->grab().toImage().pixelColor(Cell(4, row).topRight()); }
    QString TipAt(QPoint at) {
        QToolTip::hideText();
        QHelpEvent help(QEvent::ToolTip, at, Grid().viewport()->mapToGlobal(at));
        QCoreApplication::sendEvent(Grid().viewport(), &help);
        return QToolTip::isVisible() ? QToolTip::text() : QString();
    }

    QWidget* View = nullptr;
};

} // namespace

TEST_F(MainWindowTest, TheSelectedSetpointStandsOutByItsFontAlone) {
    const auto base = [this] { return Grid().palette().color(QPalette::Base); };
    const QColor stripe = Ground(2);
    EXPECT_EQ(Ground(1), base());
    EXPECT_NE(stripe, base());
    EXPECT_EQ(Ground(4), stripe);
    for (const int row : {2, 3}) {
        EXPECT_EQ(Pixels(row, Qt::blue), 0);
        const QColor ground = Ground(row);
        QTest::mouseClick(Grid().viewport(), Qt::LeftButton, {}, Cell(0, row).center());
        EXPECT_GT(Pixels(row, Qt::blue), 20);
        EXPECT_EQ(Ground(row), ground);
    }
    EXPECT_EQ(Pixels(2, Qt::blue), 0);
    const QPalette light = QApplication::palette();
    QPalette dark = light;
    dark.setColor(QPalette::Base, QColor(40, 40, 40));
    dark.setColor(QPalette::Text, Qt::white);
    QApplication::setPalette(dark);
    QCoreApplication::processEvents();
    EXPECT_EQ(Pixels(3, Qt::blue), 0);
    EXPECT_GT(Pixels(3, QColor(150, 190, 255)), 20);
    EXPECT_EQ(Ground(3), base());
    EXPECT_LT(Ground(2).lightness(), 100);
    EXPECT_GT(Pixels(2, Qt::white), 0);
    QApplication::setPalette(light);
}

TEST_F(MainWindowTest, ColumnsShareTheWidthUntilTheUserMovesThemAndCutTextsAreTold) {
    const int unit = (Grid().viewport()->width() - 5) / 7;
    EXPECT_EQ(Grid().columnWidth(0), 3 * unit);
    EXPECT_EQ(Grid().columnWidth(4), unit);
    EXPECT_GE(Grid().rowHeight(0), 16);
    EXPECT_EQ(TipAt(Cell(0, 1).center()), "");
    Grid().setColumnWidth(0, 60);
    Screen.Advance(20'000); // new values
    EXPECT_EQ(Grid().columnWidth(0), 60);
    EXPECT_TRUE(TipAt(Cell(0, 1).center()).contains(">101 Operating mode<"));
    Screen.Program->SetpointPage.SetpointValues[0].Name = "<b>1 & 2</b>, seen at the end of the duct";
    EXPECT_TRUE(TipAt(Cell(0, 1).center()).contains("&lt;b&gt;1 &amp; 2"));
    QToolTip::hideText();
    View->resize(1100, 700);
    QCoreApplication::processEvents();
    EXPECT_EQ(Grid().columnWidth(0), 3 * ((Grid().viewport()->width() - 5) / 7));
}

TEST_F(MainWindowTest, SetpointsAreReachedAndFilteredByTheKeyboard) {
    Grid().setFocus();
    std::vector<int> rows;
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_End, Qt::Key_Up, Qt::Key_Home,
                              Qt::Key_Right, Qt::Key_PageDown, Qt::Key_PageUp, Qt::Key_Down, Qt::Key_Down}) {
        Press(key);
        rows.push_back(SelectedRow());
    }
    EXPECT_EQ(rows, (std::vector{1, 2, 14, 13, 1, 1, 14, 1, 2, 3}));
    Child<QWidget>(*View, "SetpointTreeView").setFocus();
    Press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(Focused(), "SetpointFilter");
    Type("MODE");
    EXPECT_EQ(Grid().model()->rowCount(), 6);
    EXPECT_FALSE(Grid().selectionModel()->hasSelection());
    Press(Qt::Key_Down);
    EXPECT_EQ(Focused(), "SetpointGrid");
    EXPECT_EQ(SelectedRow(), 1);
    Press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(Child<QLineEdit>(*View, "SetpointFilter").selectedText(), "MODE");
    Type("\x1b"); // empties it
    EXPECT_EQ(Grid().model()->rowCount(), 14);
    EXPECT_TRUE(View->isVisible());
    int closes = 0;
    Screen.Program->FormMain.OnCloseQuery = [&](bool& mayClose) { mayClose = ++closes < 0; };
    Type("\x1b");
    EXPECT_EQ(closes, 1);
    Screen.Program->FormMain.OnCloseQuery = nullptr;
}

TEST_F(MainWindowTest, AClickOnABitFieldShowsItsBits) {
    auto& graph = Child<TScopeView>(*View, "graph");
    Press(Qt::Key_F7);
    Screen.Advance(20'000);
    constexpr std::size_t status = 15;
    Screen.Program->GraphPage.graph.Channels[status].SetVisible(true);
    Screen.Advance(1000);
    ASSERT_TRUE(WaitFor([&] { return !graph.Plot().LegendEntryRect(status).isEmpty(); }));
    const TOnNext<QMenu> next([this](QMenu& menu) {
        QWidget& rows = Child<QWidget>(menu, "BinaryGraphList");
        const QImage image = rows.grab().toImage();
        const auto& bits = Screen.Program->GraphPage.NamedBits.BinaryGraphList;
        EXPECT_EQ(image.height(), 20 * std::ssize(bits));
        for (int row = 0; row < std::ssize(bits); ++row) // the names stand behind the left edge
            EXPECT_EQ(image.pixelColor(2, 20 * row + 10) == QColor(0, 255, 0),
                      bits[static_cast<std::size_t>(row)].starts_with("1"));
        QTest::mouseClick(&rows, Qt::LeftButton);
    });
    QTest::mouseClick(&graph, Qt::LeftButton, {}, graph.Plot().LegendEntryRect(status).center());
}

// By the type chosen, whatever the name looks like. What the window saves by itself goes to the real disk.
TEST_F(MainWindowTest, APictureIsSavedInTheTypeChosen) {
    const QTemporaryDir real;
    const std::filesystem::path folder = PathFromQt(real.path());
    auto& graph = Child<TScopeView>(*View, "graph");
    const auto save = [&](const char* type, const char* name) {
        const TOnNext<QFileDialog> choose([&](QFileDialog& box) {
            box.setDirectory(real.path());
            box.selectNameFilter(QString::fromLatin1(type));
            box.findChild<QLineEdit*>("fileNameEdit")->setText(QString::fromLatin1(name));
            static_cast<QDialog&>(box).done(QDialog::Accepted);
        });
        graph.SavePicture();
    };
    const TDiskFiles disk;
    save("SVG (*.svg)", "Plant 3.2");
    save("PDF (*.pdf)", "Plant.PDF");
    save("PNG (*.png)", "plain");
    EXPECT_NE(disk.Read(folder / "Plant 3.2.svg").find("<svg"), std::string::npos);
    EXPECT_TRUE(disk.Read(folder / "plain.png").starts_with("\x89PNG"));
    EXPECT_TRUE(disk.Read(folder / "Plant.PDF").starts_with("%PDF"));
    std::filesystem::copy_file(folder / "plain.png", folder / "Plant.pdf");
    {
        const TOnMessageBox no([](QMessageBox& box) { box.done(QMessageBox::No); });
        save("PDF (*.pdf)", "Plant");
    }
    EXPECT_TRUE(disk.Read(folder / "Plant.pdf").starts_with("\x89PNG"));
    const TOnMessageBox told([](QMessageBox& box) { box.accept(); });
    save("PNG (*.png)", "none/such/full.png");
    EXPECT_TRUE(told.Text.startsWith("Cannot write ")) << told.Text.toStdString();

    Screen.Program->GraphPage.LblGraphPageEmpty.SetVisible(true); // in its place
    EXPECT_TRUE(graph.isHidden());
}

} // namespace tidewell::test
