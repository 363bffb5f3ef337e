#include "Support.h"
#include "desktop/binders/FormBinder.h"
#include "desktop/views/Views.h"
#include "scenario/SetpointProgram.h"

#include <QLabel>
#include <QListView>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QTableView>
#include <QTest>

#include <memory>

namespace tidewell::test {

namespace {

const QColor greyResult(0x80, 0x80, 0x80);
const QColor greenResult(0, 128, 0);
const QColor redResult(255, 0, 0);

class LoadSetpointsView : public TSetpointProgram {
  protected:
    LoadSetpointsView() {
        Start();
        Program->LiveLog.TimerLogAutostart->SetEnabled(false);
        Page().SelectedSetpointParent = Page().SetpointTreeView.Nodes().at(0).Text;
        std::string file = "Created at : 1;\nDevice name : M;\nProfile : p;\nSetpointName;F;RawValue;\n";
        for (const char* record : {"Mode;          2          ;2;0;7;0;0;40101;7;",
                                   "Unknown;          5          ;5;0;7;0;0;49999;0;",
                                   "Boost;          45 min          ;45;0;300;0;0;40103;9;"})
            file += std::string(record) + "\n";
        Files.Put("/t/f.csv", file);
        View = ViewOf(Form(), TViewContext{test::Application(), Dialogs, Hold, Files});
        EXPECT_TRUE(Form().LoadForm("/t/f.csv"));
        Form().Open();
        QCoreApplication::processEvents();
    }
    ~LoadSetpointsView() override {
        View.reset();
        Form().Close();
        Close();
    }

    template <class T>
    T& Find(const char* name) {
        return *View->findChild<T*>(QLatin1String(name));
    }
    QTableView& Grid() { return Find<QTableView>("setpointgrid"); }
    QListView& Results() { return Find<QListView>("ResultList"); }
    QString Selected() { return Find<QLabel>("LabSelected").text(); }
    // Of the check box of that row, as it has to be painted.
    QRect Box(int row) {
        const QRect cell = Grid().visualRect(Grid().model()->index(row - 1, 2));
        const TCellRect box =
            Form().setpointgrid.BoxRect({cell.left(), cell.top(), cell.right() + 1, cell.bottom() + 1});
        return {QPoint(box.Left, box.Top), QPoint(box.Right - 1, box.Bottom - 1)};
    }
    void ClickAt(QPoint point) { QTest::mouseClick(Grid().viewport(), Qt::LeftButton, {}, point); }
    QColor ResultColor(int row) {
        return Results().model()->index(row - 1, 0).data(Qt::ForegroundRole).value<QColor>();
    }
    void ExpectAllFits() {
        EXPECT_EQ(View->windowTitle(), "Created at : 1; Device name : M;");
        for (const QWidget* child : View->findChildren<QWidget*>()) {
            const bool caption = qobject_cast<const QPushButton*>(child) != nullptr ||
                                 child->objectName() == QLatin1String("LabSelected");
            if (!caption || !child->isVisible())
                continue;
            EXPECT_GE(child->width(), child->sizeHint().width()) << child->objectName().toStdString();
            EXPECT_TRUE(child->parentWidget()->rect().contains(child->geometry()));
        }
    }

    TDeliveryHold Hold;
    std::unique_ptr<QWidget> View;
};

} // namespace

TEST_F(LoadSetpointsView, ChecksAreSetByMouseAndKeyboard) {
    ExpectAllFits();
    const QSize designed(TLoadSetpoints::DesignedWidth, TLoadSetpoints::DesignedHeight);
    EXPECT_EQ(View->size(), designed.boundedTo(View->screen()->availableSize()));
    EXPECT_TRUE(Find<QLabel>("LabHint").text().contains("Space"));
    EXPECT_EQ(Grid().model()->headerData(2, Qt::Horizontal).toString(), "Enabled");
    EXPECT_EQ(Grid().columnWidth(2), (Grid().viewport()->width() - 5) / 7);
    EXPECT_EQ(Selected(), "3 of 3 selected");
    const auto painted = [this](int row) { return Grid().viewport()->grab(Box(row)).toImage(); };
    const QImage checked = painted(1);
    EXPECT_EQ(painted(3), checked);
    ClickAt(Box(3).topLeft() - QPoint(2, 2));
    EXPECT_NE(painted(3), checked);
    ClickAt(Box(3).topLeft() - QPoint(3, 0));
    EXPECT_EQ(Selected(), "2 of 3 selected");
    QTest::mouseDClick(Grid().viewport(), Qt::LeftButton, {}, Box(3).center()); // the second click of two
    EXPECT_EQ(Selected(), "3 of 3 selected");
    EXPECT_EQ(Grid().model()->index(2, 2).data(Qt::CheckStateRole).toInt(), Qt::Checked);
    EXPECT_EQ(View->focusWidget(), &Grid());
    QTest::keyClick(&Grid(), Qt::Key_Home);
    QTest::keyClick(&Grid(), Qt::Key_Space);
    EXPECT_NE(painted(1), checked);
    Find<QPushButton>("ButClearAll").setFocus();
    QTest::keyClick(&Find<QPushButton>("ButClearAll"), Qt::Key_Return);
    EXPECT_EQ(Selected(), "0 of 3 selected");
    QTest::keyClick(&Grid(), Qt::Key_Escape);
    EXPECT_FALSE(Form().Visible());
}

TEST_F(LoadSetpointsView, ARunIsSeenFromWriteToResult) {
    const QRect place = Grid().geometry();
    int lookedAt = 0;
    const auto label = Form().progresslabel.Changed.Connect([&] {
        if (Form().progresslabel.Caption() != "Address : 49999 Value : 5")
            return;
        ++lookedAt;
        QCoreApplication::processEvents();
        EXPECT_TRUE(Results().isVisible() && !Grid().isVisible());
        EXPECT_EQ(Results().geometry(), place);
        EXPECT_FALSE(Find<QWidget>("ButPanel").isVisible() || Find<QLabel>("LabHint").isVisible());
        EXPECT_EQ(Find<QProgressBar>("ProgressBar").value(), 1);
        EXPECT_EQ(Find<QLabel>("progresslabel").text(), "Address : 49999 Value : 5");
        EXPECT_EQ(ResultColor(1), greyResult); // though it is written
        View->close();
        EXPECT_TRUE(View->isVisible());
    });
    const auto reading = Program->ReadBack.Changed.Connect([&] {
        if (!Program->ReadBack.Running() || lookedAt != 1)
            return;
        ++lookedAt;
        QCoreApplication::processEvents();
        EXPECT_TRUE(Find<QPushButton>("ButEndReadBack").isVisible());
        EXPECT_NE(Find<QLabel>("LabReadBack").text(), "");
        EXPECT_EQ(ResultColor(1), greyResult);
    });
    Dialogs.ExpectMessage(Result(1, 0));
    QTest::mouseClick(&Find<QPushButton>("ButWriteSetpoints"), Qt::LeftButton);
    EXPECT_EQ(lookedAt, 2);
    ASSERT_EQ(Results().model()->rowCount(), 3);
    EXPECT_EQ(ResultColor(1), greenResult);
    EXPECT_EQ(ResultColor(2), redResult);
    EXPECT_EQ(Results().model()->index(0, 0).data().toString().trimmed(),
              QString::fromStdString(Form().ResultList.Rows().at(0).Caption));
    EXPECT_FALSE(Find<QPushButton>("ButEndReadBack").isVisible());

    EXPECT_TRUE(Find<QLabel>("LabHint").text().contains("results"));

    QPalette dark = Results().palette();
    dark.setColor(QPalette::Base, QColor(40, 40, 40));
    Results().setPalette(dark);
    for (const int row : {1, 2}) {
        EXPECT_EQ(ResultColor(row).hslHue(), (row == 1 ? greenResult : redResult).hslHue());
        EXPECT_GT(ResultColor(row).lightness(), (row == 1 ? greenResult : redResult).lightness());
    }
    EXPECT_EQ(View->focusWidget(), &Results());
    QTest::mouseClick(Results().viewport(), Qt::LeftButton);
    EXPECT_TRUE(Grid().isVisible() && !Results().isVisible());
    EXPECT_EQ(View->focusWidget(), &Grid());
}

} // namespace tidewell::test
