#include "Support.h"
#include "core/controls/Form.h"
#include "core/controls/Lists.h"
#include "desktop/QtText.h"
#include "desktop/views/Views.h"
#include "graph/GraphPage.h"
#include "model/Profile.h"
#include "support/MemoryFiles.h"
#include "widgets/Child.h"
#include "widgets/ScopeView.h"

#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>
#include <QTest>
#include <QVBoxLayout>

namespace tidewell::test {

namespace {

class TNoLog : public TGraphPage::ILog {
  public:
    void ClearLog() override {}
};

// A page with one number and one bit field, views of 11 samples, and its window.
class GraphPageViewTest : public testing::Test {
  protected:
    GraphPageViewTest() {
        Files.Put("/p/a.pls", "[GraphPoints]\r\nA=Temp;1;clBlue;3;0;1;150;;;;;;1;\r\n"
                              "B=Flags;1;clRed;4;0;0;100;Mains,Running,Auto;;;;;1;\r\n");
        Profile.Open("/p/a.pls");
        Page.XAxisJump = 10;
        Page.GraphInit(false);
        Page.LblGraphPageEmpty.SetCaption("Curves come here");
        Desk.Dialogs.RegisterPopup(Page.GraphBinaryPopup,
                                   [this](QMenu& menu) { FillBinaryPopup(menu, Page); });
        auto& column = NewChild<QVBoxLayout>(Window);
        auto& panel = NewChild<QWidget>(Window);
        FillGraphControls(panel, Page, Desk.Dialogs);
        auto& page = NewChild<QWidget>(Window);
        FillGraphPage(page, Page, Desk.Dialogs, Files);
        column.addWidget(&page, 1);
        column.addWidget(&panel);
        Window.resize(800, 500);
        Window.show();
    }

    void Extend(std::size_t count) {
        for (std::size_t n = Page.GraphSampleCount(); n < count; ++n) {
            Page.GraphDataLabelsTimeText.Add("t" + std::to_string(n));
            Page.GraphDataLabelsDateText.Add("d");
            Page.ExtendGraph(std::to_string(n) + ";d;t;" + std::to_string(n) + "; 40960; ");
        }
    }
    template <class TWidget>
    TWidget& Find(const char* name) {
        return *Window.findChild<TWidget*>(QString::fromLatin1(name));
    }

    TMemoryFiles Files;
    TProfile Profile{Files};
    TNoLog Log;
    TMemo MemoEventLog{"MemoEventLog"};
    TProgressBar FileProgressBar{"FileProgressBar"};
    TTestDesk Desk;
    TForm Form{"FormMain"};
    TGraphPage Page{Form, {Profile, Log, Desk.Dialogs, Desk.Wait, MemoEventLog, FileProgressBar}};
    QWidget Window;
};

} // namespace

TEST_F(GraphPageViewTest, TheLineStandsThereUntilThereAreCurves) {
    EXPECT_TRUE(Find<QLabel>("LblGraphPageEmpty").isVisible());
    EXPECT_FALSE(Find<QWidget>("graph").isVisible());
    Page.GraphInit(true);
    EXPECT_FALSE(Find<QLabel>("LblGraphPageEmpty").isVisible());
    EXPECT_TRUE(Find<QWidget>("graph").isVisible());
    EXPECT_EQ(Find<QWidget>("GraphScroll").height(), 20);
}

TEST_F(GraphPageViewTest, TheScrollBarTellsEachMove) {
    Page.GraphInit(true);
    auto& bar = Find<QScrollBar>("GraphScroll");
    EXPECT_FALSE(bar.isEnabled());
    Extend(60);
    EXPECT_TRUE(bar.isEnabled());
    EXPECT_EQ(bar.maximum(), 5);
    EXPECT_EQ(bar.value(), 5);
    std::vector<std::pair<EScrollCode, int>> told;
    Page.GraphScroll.OnScroll = [&](EScrollCode code, int position) {
        told.emplace_back(code, position);
        Page.GraphScrollScroll(code, position);
    };
    bar.setSliderDown(true);
    bar.setSliderPosition(3);
    EXPECT_EQ(Page.graph.Labels[0].Name(), "t30");
    EXPECT_EQ(Page.graph.XAxis.Min.Value(), 50);
    Extend(61); // keeps away from the thumb
    bar.setSliderPosition(2);
    bar.setSliderDown(false);
    EXPECT_EQ(Page.graph.XAxis.Min.Value(), 20);
    QTest::keyClick(&bar, Qt::Key_Left);
    EXPECT_EQ(Page.graph.XAxis.Min.Value(), 10);
    using enum EScrollCode;
    EXPECT_EQ(told, (std::vector<std::pair<EScrollCode, int>>{{Track, 3}, {Track, 2}, {End, 2}, {End, 1}}));
}

// By the type chosen, whatever the name looks like.
TEST_F(GraphPageViewTest, APictureIsSavedInTheTypeChosen) {
    auto& view = static_cast<TScopeView&>(Find<QWidget>("graph"));
    const std::filesystem::path folder = std::filesystem::temp_directory_path();
    Files.CreateDirectories(folder);
    const auto save = [&](const char* type, const char* name) {
        const TOnNext<QFileDialog> choose([&](QFileDialog& box) {
            box.setDirectory(PathToQt(folder));
            box.selectNameFilter(QString::fromLatin1(type));
            box.findChild<QLineEdit*>("fileNameEdit")->setText(QString::fromLatin1(name));
            static_cast<QDialog&>(box).done(QDialog::Accepted);
        });
        view.SavePicture();
    };
    save("SVG (*.svg)", "Plant 3.2");
    save("PDF (*.pdf)", "Plant.PDF");
    save("PNG (*.png)", "plain");
    EXPECT_NE(Files.Read(folder / "Plant 3.2.svg").find("<svg"), std::string::npos);
    EXPECT_TRUE(Files.Read(folder / "Plant.PDF").starts_with("%PDF"));
    EXPECT_TRUE(Files.Read(folder / "plain.png").starts_with("\x89PNG"));
    {
        const TOnMessageBox no([](QMessageBox& box) { box.done(QMessageBox::No); });
        save("PDF (*.pdf)", "Plant 3");
        Files.Put(folder / "Plant 3.pdf", "kept");
        save("PDF (*.pdf)", "Plant 3");
    }
    EXPECT_EQ(Files.Read(folder / "Plant 3.pdf"), "kept");
    Files.Room = 3;
    const TOnMessageBox told([&](QMessageBox& box) {
        EXPECT_TRUE(box.text().startsWith("Cannot write ")) << box.text().toStdString();
        box.accept();
    });
    save("PNG (*.png)", "full.png");
}

TEST_F(GraphPageViewTest, AClickOnABitFieldShowsItsBits) {
    Page.GraphInit(true);
    Extend(5);
    auto& view = static_cast<TScopeView&>(Find<QWidget>("graph"));
    ASSERT_TRUE(WaitFor([&] { return view.Frames() > 0 && !Page.graph.Redraw.IsPending(); }));
    const TOnNext<QMenu> next([](QMenu& menu) {
        EXPECT_EQ(menu.objectName(), "GraphBinaryPopup");
        EXPECT_EQ(menu.actions().value(0)->objectName(), "binaryview1");
        auto* const rows = menu.findChild<QWidget*>("BinaryGraphList");
        ASSERT_NE(rows, nullptr);
        const QImage image = rows->grab().toImage();
        EXPECT_EQ(image.height(), 3 * 20);
        // 40960 is 1010 0000 0000 0000; the names stand behind the left edge.
        const std::vector<QColor> expected{QColor(0, 255, 0), rows->palette().color(QPalette::Base),
                                           QColor(0, 255, 0)};
        for (int row = 0; row < 3; ++row)
            EXPECT_EQ(image.pixelColor(2, 20 * row + 10), expected[static_cast<std::size_t>(row)]) << row;
        QTest::mouseClick(rows, Qt::LeftButton);
    });
    QTest::mouseClick(&view, Qt::LeftButton, {}, view.Plot().LegendEntryRect(1).center());
    EXPECT_EQ(Page.NamedBits.BinaryGraphList,
              (std::vector<std::string>{"1   Mains", "0   Running", "1   Auto"}));
}

} // namespace tidewell::test
