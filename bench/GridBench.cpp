// The setpoint page with its painting, 2,000 setpoints in one group, from what comes in to the painted grid:
// a data line, a click on the group, a key in the filter. Without a display it needs
// QT_QPA_PLATFORM=offscreen in the environment.

#include "SetpointRig.h"
#include "core/DiskFiles.h"
#include "desktop/QtApplication.h"
#include "desktop/binders/FormBinder.h"
#include "desktop/views/Views.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QTableView>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>

namespace tidewell {

namespace {

constexpr int setpoints = 2000;
constexpr int screenWidth = 1920; // pixels
constexpr int screenHeight = 1080;

// Rounds of the same work; the slowest one is told beside the mean.
class TGridRig {
  public:
    TGridRig() {
        FillSetpointPage(View, Rig.Page, PanelGroupSetpoints, MemoEventLog,
                         {*static_cast<TQtApplication*>(QCoreApplication::instance()), Dialogs, Hold, Files});
        View.resize(screenWidth, screenHeight);
        View.show();
        Grid = View.findChild<QTableView*>(QStringLiteral("SetpointGrid"));
        Filter = View.findChild<QLineEdit*>(QStringLiteral("SetpointFilter"));
        if (Grid == nullptr || Filter == nullptr)
            std::abort();
        Grid->viewport()->installEventFilter(&Painted);
        Settle();
    }

    template <class TAction>
    void Time(benchmark::State& state, TAction&& action) {
        using TClock = std::chrono::steady_clock;
        const auto start = TClock::now();
        action();
        Settle();
        const std::chrono::duration<double> elapsed = TClock::now() - start;
        state.SetIterationTime(elapsed.count());
        double& most = state.counters["most_ms"].value;
        most = std::max(most, 1000 * elapsed.count());
    }
    // Does all that is due, until the grid has been painted.
    void Settle() {
        const int before = Painted.Count;
        do
            QCoreApplication::processEvents();
        while (Painted.Count == before);
    }
    void Type(int key, const QString& text) {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
        QCoreApplication::sendEvent(Filter, &press);
    }

    TPageRig Rig{setpoints};

  private:
    struct TPaintCount : QObject {
        bool eventFilter(QObject*, QEvent* event) override {
            if (event->type() == QEvent::Paint)
                ++Count;
            return false;
        }
        int Count = 0;
    };

    TPaintCount Painted;
    TNoDialogs Dialogs;
    TDiskFiles Files;
    TDeliveryHold Hold;
    TPanel PanelGroupSetpoints{"PanelGroupSetpoints"};
    TMemo MemoEventLog{"MemoEventLog"};
    QWidget View;
    QTableView* Grid = nullptr; // children of the view, here and below
    QLineEdit* Filter = nullptr;
};

void ShowLine(benchmark::State& state) {
    TGridRig rig;
    const std::array<std::string, 2> lines{DataLine(setpoints, 1), DataLine(setpoints, 2)};
    std::size_t line = 0;
    for (auto pass : state)
        rig.Time(state, [&] { rig.Rig.Page.ApplyDataLine(lines[++line % 2]); });
}
BENCHMARK(ShowLine)->UseManualTime()->Unit(benchmark::kMillisecond);

void ClickGroup(benchmark::State& state) {
    TGridRig rig;
    for (auto pass : state) {
        rig.Rig.ChooseGroup(1);
        rig.Settle();
        rig.Time(state, [&] { rig.Rig.ChooseGroup(0); });
    }
}
BENCHMARK(ClickGroup)->UseManualTime()->Unit(benchmark::kMillisecond);

// Types an address, which narrows the rows key by key, and takes it back.
void TypeInFilter(benchmark::State& state) {
    TGridRig rig;
    const QString text = QStringLiteral("40195");
    qsizetype at = 0;
    for (auto pass : state) {
        const bool back = at >= text.size();
        rig.Time(state, [&] {
            if (back)
                rig.Type(Qt::Key_Backspace, {});
            else
                rig.Type(0, text.mid(at, 1));
        });
        at = (at + 1) % (2 * text.size());
    }
}
BENCHMARK(TypeInFilter)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

} // namespace tidewell

int main(int argc, char** argv) {
    const tidewell::TQtApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return EXIT_FAILURE;
    benchmark::RunSpecifiedBenchmarks();
    return EXIT_SUCCESS;
}
