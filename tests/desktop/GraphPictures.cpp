#include "Picture.h"
#include "graph/GraphPage.h"
#include "widgets/ScopeView.h"

#include <QApplication>
#include <QCursor>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>

#include <string>

namespace tidewell::test {

namespace {

constexpr int logged = 1560; // seconds, which give most of the samples that a view holds
constexpr int drawn = 400;   // ms, after which the newest picture stands on the screen

const std::vector<std::string> linked = {"-devid", "410000000001", "-LoginUserPW", "service;tidewell"};

TScopeView& View(QWidget& window) {
    return static_cast<TScopeView&>(*window.findChild<QWidget*>("graph"));
}

TGraphPage& Page(TStage stage) {
    return stage.Screen.Program->GraphPage;
}

// Logs with some curves more than the installation shows.
void Log(QWidget& window, TStage stage, int seconds = logged) {
    for (const std::size_t channel : {3U, 4U, 11U, 15U})
        Page(stage).graph.Channels[channel].SetVisible(true);
    stage.Robot.On("MessageBox", [](QWidget&) { Type("\n"); });
    Press(Qt::Key_F5);
    QApplication::setActiveWindow(&window); // does not get the keyboard back from the question by itself
    stage.Screen.Advance(1000 * seconds);
    QTest::qWait(drawn);
}

void ShowToolBar(TStage stage) {
    Page(stage).Graphitems1.Click();
    QTest::qWait(drawn);
}

// A point of a channel, in pixels of the view.
QPoint PlaceOf(const TScopeView& view, const TGraphPage& page, std::size_t channel, std::size_t point) {
    const TSLDisplayChannel& curve = page.graph.Channels[channel];
    const TSLPoint& at = curve.Data.Points()[point];
    const TPlotMap map = view.Plot().Map();
    return QPointF(map.X.Pixel(at.X), map.Y.at(static_cast<std::size_t>(curve.YAxisIndex())).Pixel(at.Y))
        .toPoint();
}

// Clicks from the event loop, because the popup has a loop of its own.
void ClickSoon(QWidget& widget, QPoint place) {
    QTimer::singleShot(0, &widget, [&widget, place] {
        QCursor::setPos(widget.mapToGlobal(place));
        QTest::mouseClick(&widget, Qt::LeftButton, {}, place);
    });
}

// Along Y with the wheel, with the toolbar, and the mouse on a curve.
void Zoom(QWidget& window, TStage stage) {
    constexpr std::size_t supplyAir = 1;
    TScopeView& view = View(window);
    const QPoint place = PlaceOf(view, Page(stage), supplyAir, 500);
    for (int turn = 0; turn < 6; ++turn) {
        QWheelEvent event(place, view.mapToGlobal(place), {}, {0, 120}, Qt::NoButton, {}, Qt::NoScrollPhase,
                          false);
        QCoreApplication::sendEvent(&view, &event);
    }
    ShowToolBar(stage);
    QTest::mouseMove(&view, PlaceOf(view, Page(stage), supplyAir, 500));
    QTest::qWait(drawn);
}

// Logs for long enough that a part of the log is saved, and opens that. A file of the same name lies on the
// disk, because the dialog wants to see one.
void OpenDatalog(QWidget& window, TStage stage) {
    const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("morning.csv"));
    QFile(name).open(QIODevice::WriteOnly);
    Log(window, stage, 2 * logged);
    std::string saved;
    for (const auto& [path, content] : stage.Screen.Files.Content)
        if (path.filename().string().ends_with("partial.csv"))
            saved = content;
    stage.Screen.Files.Put(name.toStdString(), saved);
    Press(Qt::Key_F5);
    QTest::qWait(drawn);
    stage.Robot.On("OpenDialog", [name](QWidget&) { Type(name + QStringLiteral("\n")); });
    Press(Qt::Key_F3);
    QTest::qWait(drawn);
}

} // namespace

std::vector<TPicture> GraphPictures() {
    return {
        {"main", "FormMain", linked, {}, [](QWidget& window, TStage stage) { Log(window, stage); }},
        {"graph-bits",
         "FormMain",
         linked,
         {},
         [](QWidget& window, TStage stage) {
             constexpr std::size_t status = 15;
             Log(window, stage);
             ClickSoon(View(window), View(window).Plot().LegendEntryRect(status).center());
         }},
        {"graph-zoom",
         "FormMain",
         linked,
         {},
         [](QWidget& window, TStage stage) {
             Log(window, stage);
             Zoom(window, stage);
         }},
        {"datalog", "FormMain", linked,
         [](TStage stage) { stage.Screen.EditSystemFile("DatalogCount=50000", "DatalogCount=1800"); },
         OpenDatalog},
        {"channels",
         "ChannelSettings",
         linked,
         [](TStage stage) {
             stage.Robot.On("FormMain", [stage](QWidget& window) {
                 ShowToolBar(stage);
                 QTest::mouseClick(window.findChild<QWidget*>("ChannelSettings"), Qt::LeftButton);
             });
         },
         {}},
    };
}

} // namespace tidewell::test
