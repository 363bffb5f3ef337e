// A frame of the graph beside a bare painter that draws the same points, on a widget of 1600 x 800, at 100 %
// and at 200 %. The data is filled in anew before each frame, which is measured with it. Then a graph page
// with a million samples. Without a display it needs QT_QPA_PLATFORM=offscreen in the environment.

#include "IdlePorts.h"
#include "core/DiskFiles.h"
#include "core/controls/Form.h"
#include "core/controls/Lists.h"
#include "desktop/QtApplication.h"
#include "graph/GraphPage.h"
#include "model/Profile.h"
#include "widgets/ScopeView.h"

#include <QPainter>
#include <QPixmap>
#include <QPolygonF>
#include <QProcess>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <iomanip>
#include <iostream>
#include <random>
#include <string>
#include <vector>

namespace tidewell {

namespace {

constexpr int channels = 36;
constexpr int samples = 1100;
constexpr int width = 1600;
constexpr int height = 800;
constexpr int rounds = 25;
constexpr double top = 100; // of the Y axis, which begins at 0

using TValues = std::vector<std::vector<double>>;

// Slow waves; with noise every fourth channel jumps over the whole height instead.
TValues Values(bool noise) {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> anywhere(0, top);
    std::uniform_real_distribution<double> step(-0.1, 0.1);
    TValues values(channels, std::vector<double>(samples));
    for (int channel = 0; channel < channels; ++channel) {
        double walk = 0;
        for (int i = 0; i < samples; ++i) {
            walk += step(random);
            values[static_cast<std::size_t>(channel)][static_cast<std::size_t>(i)] =
                noise && channel % 4 == 0
                    ? anywhere(random)
                    : top * (channel + 1) / (channels + 1) + walk + 3 * std::sin(0.02 * i + channel);
        }
    }
    return values;
}

QColor ColorOf(int channel) {
    return QColor::fromHsv(channel * 10, 255, 180);
}

double Milliseconds(const std::function<void()>& action) {
    const auto begin = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
}

double Median(std::vector<double> times) {
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

// Milliseconds of each action, which take turns: the median of some rounds, the first left out.
std::vector<double> Medians(const std::vector<std::function<void()>>& actions) {
    std::vector<std::vector<double>> times(actions.size());
    for (int round = 0; round <= rounds; ++round)
        for (std::size_t i = 0; i < actions.size(); ++i)
            if (const double passed = Milliseconds(actions[i]); round > 0)
                times[i].push_back(passed);
    std::vector<double> medians;
    for (const auto& each : times)
        medians.push_back(Median(each));
    return medians;
}

// Draws the same points with pens one pixel wide at 100 %, no antialiasing, and nothing else.
class TBare {
  public:
    explicit TBare(const TValues& values) {
        for (std::size_t channel = 0; channel < channels; ++channel)
            for (std::size_t i = 0; i < samples; ++i)
                Lines[channel].append(
                    {static_cast<double>(i) * width / samples, height * (1 - values[channel][i] / top)});
    }
    void Draw() {
        Pixmap.fill(Qt::white);
        QPainter painter(&Pixmap);
        for (int channel = 0; channel < channels; ++channel) {
            painter.setPen(QPen(ColorOf(channel), 1));
            painter.drawPolyline(Lines[static_cast<std::size_t>(channel)]);
        }
    }

  private:
    QPixmap Pixmap{width, height};
    std::vector<QPolygonF> Lines{channels};
};

// Counts what a widget has painted.
class TPainted : public QObject {
  public:
    bool eventFilter(QObject* widget, QEvent* event) override {
        if (event->type() != QEvent::Paint)
            return false;
        widget->removeEventFilter(this);
        QCoreApplication::sendEvent(widget, event);
        widget->installEventFilter(this);
        ++Count;
        return true;
    }
    int Count = 0;
};

// A surface in a window, drawn as soon as something has changed.
class TWindow {
  public:
    explicit TWindow(TSLScope& scope) : View(scope) {
        scope.RefreshInterval = 0;
        View.resize(width, height);
        View.show();
        View.findChild<QWidget*>()->installEventFilter(&Painted);
        Paint();
    }
    // Until the picture is in the window.
    void Paint() {
        const int before = Painted.Count;
        while (Painted.Count == before)
            QCoreApplication::processEvents();
    }
    // Until nothing is left to paint.
    void Settle() {
        for (int before = -1; before != Painted.Count;) {
            before = Painted.Count;
            for (int turn = 0; turn < 10; ++turn)
                QCoreApplication::processEvents();
        }
    }

  private:
    TScopeView View;
    TPainted Painted;
};

class TBench {
  public:
    TBench() {
        Scope.XAxis.Max.SetBoth(samples);
        Scope.YAxis.Max.SetBoth(top);
        for (int channel = 0; channel < channels; ++channel) {
            TSLDisplayChannel& added = Scope.Channels.Add();
            const QColor color = ColorOf(channel);
            added.SetColor(
                {static_cast<std::uint32_t>(qRgb(color.blue(), color.green(), color.red())) & 0xFFFFFFU});
            added.SetName("Supply duct pressure " + std::to_string(channel));
            added.ShowValue(channel * 100);
        }
        Window.Settle();
    }

    void Fill(const TValues& values) {
        for (std::size_t channel = 0; channel < channels; ++channel) {
            TSLChannelData& data = Scope.Channels[channel].Data;
            data.Clear();
            for (std::size_t i = 0; i < samples; ++i)
                data.AddXYPoint(static_cast<double>(i), values[channel][i]);
        }
    }
    void Paint() { Window.Paint(); }
    void ShowOtherValues() {
        for (TSLDisplayChannel& channel : Scope.Channels)
            channel.ShowValue(Value += 0.37);
        Paint();
    }

  private:
    TSLScope Scope;
    TWindow Window{Scope};
    double Value = 0;
};

class TNoLog : public TGraphPage::ILog {
  public:
    void ClearLog() override {}
};

// A page of as many channels with a long log behind it, in its window.
class TPageBench {
  public:
    TPageBench() {
        for (int channel = 0; channel < channels; ++channel) {
            Profile.GraphValues.push_back("Supply duct pressure " + std::to_string(channel) + ";1;clRed;" +
                                          std::to_string(3 + channel) + ";0;1;150;;;;;;1;");
            Profile.GraphPoints.push_back(ParseGraphPoint(Profile.GraphValues.back()));
        }
        Profile.GraphEnableCount = channels;
        Profile.ProfileLoaded = true;
        Page.GraphInit(true);
    }
    void Extend(int count) {
        std::string line;
        for (int n = 0; n < count; ++n) {
            line = "0;1-3-2026;12:00:00;";
            for (int channel = 0; channel < channels; ++channel)
                line += std::to_string(channel * 100 + (n * 37 + channel * 11) % 90) + "; ";
            Page.GraphDataLabelsTimeText.Add("12:00:00");
            Page.GraphDataLabelsDateText.Add("1-3-2026");
            Page.ExtendGraph(line);
        }
    }
    void Scroll(int position) {
        Page.GraphScroll.SetPosition(position);
        Page.GraphScrollScroll(EScrollCode::End, position);
    }

  private:
    TDiskFiles Files;
    TNoWait Wait;
    TNoDialogs Dialogs;
    TNoLog Log;
    TProfile Profile{Files};
    TMemo MemoEventLog{"MemoEventLog"};
    TProgressBar FileProgressBar{"FileProgressBar"};

  public:
    TForm Form{"FormMain"};
    TGraphPage Page{Form, {Profile, Log, Dialogs, Wait, MemoEventLog, FileProgressBar}};
    TWindow Window{Page.graph};
};

void Tell(const std::string& what, double ms, double reference = 0, const std::string& of = {}) {
    std::cout << std::left << std::setw(38) << what << std::right << std::fixed << std::setprecision(2)
              << std::setw(8) << ms << " ms";
    if (reference > 0)
        std::cout << std::setw(8) << ms / reference << " of " << of;
    std::cout << std::endl;
}

void TellPage() {
    constexpr int inView = 1000;
    TPageBench bench;
    const double live = Milliseconds([&] { bench.Extend(inView); }) / inView;
    std::cout << "A live sample, not painted " << 1000 * live << " us\n";
    bench.Extend(1'000'000 - inView);
    bench.Window.Settle();
    int position = 0;
    Tell("Scroll step in 1,000,000 samples", Medians({[&] {
             bench.Scroll(position++);
             bench.Window.Paint();
         }})[0]);
    Tell("Zoom step in 1,000,000 samples", Medians({[&] {
             bench.Page.GraphZoomPlusButtonClick();
             bench.Window.Paint();
         }})[0]);
    std::cout << "  at level " << bench.Page.GraphZoomFactor << std::endl;
    while (bench.Page.GraphZoomFactor < 1000)
        bench.Page.GraphZoomPlusButtonClick();
    bench.Window.Settle();
    Tell("  all in view", Medians({[&] {
             bench.Page.GraphZoomMinusButtonClick();
             bench.Window.Paint();
         }})[0]);
}

// Arguments of a run at 200 %: the frames at 100 %, calm and with noise.
int Run(int argc, char** argv) {
    const bool large = argc == 3;
    if (large)
        qputenv("QT_SCALE_FACTOR", "2");
    const TQtApplication application(argc, argv);
    TBench bench;
    QStringList frames;
    for (const bool noise : {false, true}) {
        const TValues values = Values(noise);
        const std::string kind = noise ? ", a quarter noise" : ", calm";
        TBare bare(values);
        const auto frame = [&] {
            bench.Fill(values);
            bench.Paint();
        };
        if (large) {
            Tell("Frame at 200 %" + kind, Medians({frame})[0], QByteArray(argv[noise ? 2 : 1]).toDouble(),
                 "that at 100 %");
            continue;
        }
        const std::vector<double> times = Medians({[&] { bare.Draw(); }, frame});
        Tell("Bare painter" + kind, times[0]);
        Tell("Frame" + kind, times[1], times[0], "bare");
        frames.append(QString::number(times[1]));
    }
    Tell("Legend of 36 other values", Medians({[&] { bench.ShowOtherValues(); }})[0]);
    if (large)
        return EXIT_SUCCESS;
    const TValues values = Values(true);
    Tell("Filling in the data", Medians({[&] { bench.Fill(values); }})[0]);
    const int result = QProcess::execute(QCoreApplication::applicationFilePath(), frames);
    TellPage();
    return result;
}

} // namespace

} // namespace tidewell

int main(int argc, char** argv) {
    return tidewell::Run(argc, argv);
}
