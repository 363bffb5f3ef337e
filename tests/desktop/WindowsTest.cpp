#include "Support.h"
#include "desktop/QtText.h"
#include "widgets/BitViews.h"
#include "widgets/ScopeView.h"

namespace tidewell::test {

namespace {

// The whole program on a screen, with our extensions, under the keyboard and the mouse.
class WindowsTest : public testing::Test {
  protected:
    WindowsTest() { World.Edit(TWorld::SystemFile, "[NoExtensions]", "[Extensions]"); }

    // The start up to the end of what the robot does there.
    void Start(const std::vector<std::string>& arguments = {}) {
        World.Start(Windows.Dialogs, arguments);
        RunRobot();
        View = Windows.Of(World.Program->FormMain);
    }
    // The start without dialogs: signed in, and linked to a controller.
    void StartLinked() { Start({"-devid", "410000000001", "-LoginUserPW", "service;tidewell"}); }
    // That, and the first group of the controller's setpoints.
    void ShowSetpoints() {
        Robot.On("FormMain", [](QWidget& main) {
            Press("F6");
            auto& tree = Child<QTreeWidget>(main, "SetpointTreeView");
            QTest::mouseClick(tree.viewport(), Qt::LeftButton, {},
                              tree.visualItemRect(tree.topLevelItem(0)->child(0)).center());
        });
        StartLinked();
        View->resize(1000, 700);
        QCoreApplication::processEvents();
        Grid = &Child<QTableView>(*View, "SetpointGrid");
    }
    void RunRobot() {
        EXPECT_TRUE(WaitFor([this] { return Robot.Done(); }, 20'000));
    }
    // Opens the input dialog of that setpoint.
    void OnInputOf(int row, const TRobot::TAction& action) {
        Robot.On("FormMain", [this, row](QWidget&) {
            Grid->selectRow(row - 1);
            Press("Return", Grid);
        });
        Robot.On("InputDialog", action);
        RunRobot();
    }
    QRect Cell(int column, int row) { return Grid->visualRect(Grid->model()->index(row - 1, column)); }
    // How often the colour stands in that row, as painted.
    int Pixels(int row, const QColor& color) {
        const QImage line = Grid->viewport()->grab(Cell(0, row).united(Cell(4, row))).toImage();
        int count = 0;
        for (int i = 0; i < line.width() * line.height(); ++i)
            count += line.pixelColor(i % line.width(), i / line.width()) == color ? 1 : 0;
        return count;
    }
    QColor Ground(int row) { return Grid->viewport()->grab().toImage().pixelColor(Cell(4, row).topRight()); }
    QString TipAt(QPoint at) {
        QToolTip::hideText();
        QHelpEvent help(QEvent::ToolTip, at, Grid->viewport()->mapToGlobal(at));
        QCoreApplication::sendEvent(Grid->viewport(), &help);
        return QToolTip::isVisible() ? QToolTip::text() : QString();
    }

    TWorld World;
    TWindows Windows{World};
    QWidget* View = nullptr; // of the main form
    QTableView* Grid = nullptr;
    TRobot Robot;
};

} // namespace

TEST_F(WindowsTest, TheKeyboardAloneLeadsFromTheLogonToALinkedController) {
    Robot.On("NabtoLogOn", [](QWidget&) { Type("service\twrong\n"); });
    Robot.OnMessage("Username or password is incorrect.");
    QApplication::setCursorFlashTime(0);
    Robot.On("NabtoLogOn", [](QWidget& logon) {
        EXPECT_EQ(Focused(), "EditUser");
        auto& password = Child<QLineEdit>(logon, "EditPW");
        const QImage line = password.grab({3, password.height() / 2, password.width() - 6, 1}).toImage();
        for (int x = 0; x < line.width(); ++x)
            ASSERT_EQ(line.pixel(x, 0), line.pixel(0, 0)) << "a caret at " << x;
        Type("service\ttidewell\n");
    });
    Robot.On("SetupForm", [](QWidget&) {
        EXPECT_EQ(Focused(), "txtRemote");
        Type("4711\n");
    });
    Robot.OnMessage("You do not have permission to access this device \"4711.hv.example\"");
    Robot.On("SetupForm", [this](QWidget& setup) {
        EXPECT_EQ(TabRing(), "txtRemote ButDeviceSearch butping ButCommOk ");
        const QSize size = setup.size();
        Type("\t \t"); // the search, and into its list
        EXPECT_EQ(Focused(), "ListBoxLocalDevices");
        Press("Down Space"); // picks without connecting
        EXPECT_EQ(World.Program->SetupForm.txtRemote.Text(), "410000000002");
        EXPECT_EQ(Focused(), "txtRemote");
        EXPECT_EQ(setup.size(), size);
        Type("\t \t\n"); // the first one
    });
    Start();
    EXPECT_EQ(World.Program->NabtoDevice.LblNabto.Caption(), "ID : 410000000001.hv.example");
}

TEST_F(WindowsTest, TheLogonHidesThePassword) {
    StartLinked();
    TNabtoLogOn& logon = World.Program->NabtoLogOn;
    Robot.On("NabtoLogOn", [](QWidget& view) {
        EXPECT_EQ(TabRing(), "EditUser EditPW offLineSessionCheckBox ButOk ButCancel ");
        Type(QString::fromUtf8("\tGrüße, \"$\"")); // as it is sent, and never as it is shown
        EXPECT_EQ(Child<QLineEdit>(view, "EditPW").displayText(), "**********");
        EXPECT_EQ(view.minimumSize(), view.maximumSize());
        Type("\x1b");
    });
    EXPECT_EQ(Windows.Dialogs.ShowModal(logon), EModalResult::Cancel);
    EXPECT_EQ(logon.EditPW.Text(), "Grüße, \"$\"");
}

TEST_F(WindowsTest, ASetpointIsTypedAndBitsFlipByMouseAndKeyboard) {
    ShowSetpoints();
    World.Time.Advance(20'000); // logs
    const auto value = [this] { return World.Program->InputDialog.EValue.Text(); };
    int wide = 0;
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
        Press("Right Right Left Space End Right Space", &bits);
        EXPECT_EQ(painted(), "0000100111111110");
        EXPECT_EQ(value(), "2558");
        EXPECT_EQ(bits.size(), bits.sizeHint());
        wide = view.width();
        for (const QWidget* child : view.findChildren<QWidget*>())
            EXPECT_TRUE(child->isHidden() || child->parentWidget()->rect().contains(child->geometry()));
        Type("\x1b");
    });
    OnInputOf(8, [&](QWidget& view) { // in tenths
        auto& field = Child<QLineEdit>(view, "EValue");
        EXPECT_LT(view.width(), wide);
        EXPECT_EQ(Focused(), "EValue");
        EXPECT_EQ(field.selectedText().toStdString(), value());
        EXPECT_TRUE(Child<QPushButton>(view, "ButSend").isDefault());
        Hold(field, Qt::Key_Return, "\r");
        EXPECT_TRUE(view.isVisible());
        Type("21,5\n");
        EXPECT_FALSE(view.isVisible());
    });
    EXPECT_EQ(value(), "21,5");
}

TEST_F(WindowsTest, TheSelectedSetpointStandsOutByItsFontAlone) {
    ShowSetpoints();
    const auto base = [this] { return Grid->palette().color(QPalette::Base); };
    const QColor stripe = Ground(2);
    EXPECT_EQ(Ground(1), base());
    EXPECT_NE(stripe, base());
    EXPECT_EQ(Ground(4), stripe);
    for (const int row : {2, 3}) {
        EXPECT_EQ(Pixels(row, Qt::blue), 0);
        const QColor ground = Ground(row);
        const int thin = Pixels(row, Grid->palette().color(QPalette::Text));
        QTest::mouseClick(Grid->viewport(), Qt::LeftButton, {}, Cell(0, row).center());
        EXPECT_GT(Pixels(row, Qt::blue), thin);
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

TEST_F(WindowsTest, ColumnsShareTheWidthUntilTheUserMovesThemAndCutTextsAreTold) {
    ShowSetpoints();
    const auto unit = [this] { return (Grid->viewport()->width() - 5) / 7; };
    EXPECT_EQ(Grid->columnWidth(0), 3 * unit());
    EXPECT_EQ(Grid->columnWidth(4), unit());
    EXPECT_EQ(TipAt(Cell(0, 1).center()), "");
    Grid->setColumnWidth(0, 60);
    World.Program->SetpointPage.SetpointValues[0].Name = "<b>1 & 2</b>, seen at the end of the duct";
    World.Time.Advance(20'000); // new values
    EXPECT_EQ(Grid->columnWidth(0), 60);
    EXPECT_TRUE(TipAt(Cell(0, 1).center()).contains("&lt;b&gt;1 &amp; 2"));
    QToolTip::hideText();
    View->resize(1100, 700);
    QCoreApplication::processEvents();
    EXPECT_EQ(Grid->columnWidth(0), 3 * unit());
}

TEST_F(WindowsTest, SetpointsAreReachedAndFilteredByTheKeyboard) {
    ShowSetpoints();
    const auto selected = [this] { return World.Program->SetpointPage.SetpointGrid.SelectedRow(); };
    Press("End", Grid);
    Child<QWidget>(*View, "SetpointTreeView").setFocus();
    Press("Ctrl+F");
    EXPECT_EQ(Focused(), "SetpointFilter");
    Type("MODE");
    EXPECT_EQ(Grid->model()->rowCount(), 6);
    EXPECT_FALSE(Grid->selectionModel()->hasSelection());
    Press("Down");
    EXPECT_EQ(Focused(), "SetpointGrid");
    EXPECT_EQ(selected(), 1);
    Press("Ctrl+F");
    EXPECT_EQ(Child<QLineEdit>(*View, "SetpointFilter").selectedText(), "MODE");
    Type("\x1b"); // empties it
    EXPECT_EQ(Grid->model()->rowCount(), 14);
    EXPECT_TRUE(View->isVisible());
}

// By the type chosen, whatever the name looks like. What the window saves by itself goes to the real disk.
TEST_F(WindowsTest, APictureIsSavedInTheTypeChosen) {
    ShowSetpoints();
    const QTemporaryDir real;
    auto& graph = Child<TScopeView>(*View, "graph");
    const auto save = [&](const char* type, const char* name) {
        Robot.On<QFileDialog>("SaveDialog", [&](QFileDialog& box) {
            box.setDirectory(real.path());
            box.selectNameFilter(QString::fromLatin1(type));
            box.findChild<QLineEdit*>("fileNameEdit")->setText(QString::fromLatin1(name));
            static_cast<QDialog&>(box).done(QDialog::Accepted);
        });
        graph.SavePicture();
    };
    const TDiskFiles disk;
    for (const auto& [type, name, file, content] :
         {std::tuple("SVG (*.svg)", "Plant 3.2", "Plant 3.2.svg", "<svg"),
          {"PDF (*.pdf)", "Plant.PDF", "Plant.PDF", "%PDF"},
          {"PNG (*.png)", "plain", "plain.png", "\x89PNG"}}) {
        save(type, name);
        EXPECT_NE(disk.Read(PathFromQt(real.filePath(file))).find(content), std::string::npos) << file;
    }
    World.Program->GraphPage.LblGraphPageEmpty.SetVisible(true); // in its place
    EXPECT_TRUE(graph.isHidden());
}

} // namespace tidewell::test
