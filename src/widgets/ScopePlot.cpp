#include "widgets/ScopePlot.h"

#include "widgets/Child.h"

#include <qcustomplot.h>

#include <array>
#include <cmath>
#include <functional>
#include <memory>
#include <utility>

namespace tidewell {

namespace {

constexpr int pixelsPerTickX = 64; // at least, here and below
constexpr int pixelsPerTickY = 34;
constexpr int fewestTicks = 4;
constexpr double legendShare = 0.45; // of the width, at most
constexpr int outerMargin = 8;       // pixels
constexpr int scaleGap = 6;          // between two scales at the same side

// Ticks at round steps, and the numbers at them.
class TTicker : public QCPAxisTicker {
  public:
    double BaseStep = 0; // made coarser or finer as needed; 0: none
    double LeastStep = 0;
    int SubTicks = 4;
    int Precision = 1;
    bool Fixed = false;
    int MostTicks = 10;

  protected:
    double getTickStep(const QCPRange& range) override {
        const double least = range.size() / std::max(MostTicks, 1);
        Step = BaseStep > 0 ? BaseStep : Round(least);
        if (Step < least || range.size() / Step < fewestTicks)
            Step = Round(Step < least ? least : range.size() / (2.0 * fewestTicks));
        Step = std::max(Step, LeastStep);
        return Step;
    }
    int getSubTickCount(double) override { return SubTicks; }
    QString getTickLabel(double tick, const QLocale&, QChar, int) override {
        const int needed = Step < 1 ? static_cast<int>(std::ceil(-std::log10(Step) - 1e-6)) : 0;
        const double value = std::abs(tick) < Step * 1e-6 ? 0 : tick;
        return QString::number(value, 'f', Fixed ? std::max(Precision, needed) : needed);
    }

  private:
    // The next of 1, 2, 5, 10, 20, ...
    static double Round(double step) {
        const double power = std::pow(10, std::floor(std::log10(step)));
        const double mantissa = step / power;
        for (const double round : {1.0, 2.0, 5.0})
            if (mantissa <= round * (1 + 1e-9))
                return round * power;
        return 10 * power;
    }

    double Step = 1;
};

// One thing that is drawn on a layer.
class TDrawn : public QCPLayerable {
  public:
    TDrawn(const QString& layerName, QCustomPlot* plot) : QCPLayerable(plot, layerName) {}
    TEvent<QCPPainter&> OnDraw;

  protected:
    void applyDefaultAntialiasingHint(QCPPainter* painter) const override { painter->setAntialiasing(false); }
    void draw(QCPPainter* painter) override { OnDraw(*painter); }
    // The library moves it up by a pixel; the lowest row is to be drawn, too.
    QRect clipRect() const override { return QCPLayerable::clipRect().adjusted(0, 0, 0, 1); }
};

// Layers and buffers. Only the part of a buffer that holds something is put on the screen.
class TCanvas : public QCustomPlot {
  public:
    using QCustomPlot::QCustomPlot;
    // After that of the picture, which is opaque.
    static constexpr int LegendBuffer = 1;
    static constexpr int OverlayBuffer = 2;
    QRect LegendRect;
    QRect OverlayRect;

    // That part of a buffer alone; everything, when a new picture is due anyhow.
    void Repaint(int buffer, const QRect& part, const std::function<void(QCPPainter&)>& paint) {
        if (part.isEmpty())
            return;
        if (!HasBuffers() || hasInvalidatedPaintBuffers()) {
            replot(rpQueuedReplot);
            return;
        }
        {
            const std::unique_ptr<QCPPainter> painter(mPaintBuffers[buffer]->startPainting());
            painter->setClipRect(part);
            painter->setCompositionMode(QPainter::CompositionMode_Clear);
            painter->fillRect(part, Qt::transparent);
            painter->setCompositionMode(QPainter::CompositionMode_SourceOver);
            paint(*painter);
        }
        mPaintBuffers[buffer]->donePainting();
        update(part);
    }

  protected:
    void paintEvent(QPaintEvent* event) override {
        if (!HasBuffers()) {
            QCustomPlot::paintEvent(event);
            return;
        }
        QCPPainter painter(this);
        mPaintBuffers[0]->draw(&painter);
        const QRegion due = event->region();
        for (const int buffer : {LegendBuffer, OverlayBuffer}) {
            const QRegion part = due & (buffer == LegendBuffer ? LegendRect : OverlayRect);
            if (part.isEmpty())
                continue;
            painter.setClipRegion(part);
            mPaintBuffers[buffer]->draw(&painter);
        }
    }

  private:
    bool HasBuffers() const {
        return mPaintBuffers.size() == OverlayBuffer + 1 &&
               qFuzzyCompare(mBufferDevicePixelRatio, devicePixelRatioF());
    }
};

} // namespace

class TScopePlot::TImpl {
  public:
    TImpl(QWidget& owner, const TScopePicture& picture, const TScopeOverlay& overlay)
        : Picture(picture), Overlay(overlay), Canvas(NewChild<TCanvas>(owner)),
          Area(*Canvas.axisRect()), Axes{Canvas.xAxis, Canvas.yAxis, Canvas.yAxis2,
                                         Area.addAxis(QCPAxis::atRight)} {
        Canvas.setAttribute(Qt::WA_TransparentForMouseEvents);
        Canvas.setFocusPolicy(Qt::NoFocus);
        Canvas.setBackground(QBrush(Qt::NoBrush));
        Canvas.setNotAntialiasedElements(QCP::aeAll);
        Canvas.plotLayout()->setColumnSpacing(0);
        Canvas.plotLayout()->addElement(0, 1, &LegendPlace);
        for (std::size_t i = 0; i < Axes.size(); ++i) {
            Tickers[i] = QSharedPointer<TTicker>::create();
            Axes[i]->setTicker(Tickers[i]);
            Axes[i]->setVisible(i <= 1);
            Axes[i]->setTickLabelPadding(i == 0 ? 2 : 4);
            Axes[i]->setTickLength(0, 5);
            Axes[i]->setSubTickLength(0, 3);
            Axes[i]->grid()->setVisible(i <= 1);
        }
        Axes[3]->setPadding(scaleGap);
        Canvas.layer(QStringLiteral("legend"))->setMode(QCPLayer::lmBuffered);
        Canvas.layer(QStringLiteral("overlay"))->setMode(QCPLayer::lmBuffered);
        AddDrawn();
        QObject::connect(
            &Canvas, &QCustomPlot::beforeReplot, &Canvas, [this] { Arrange(); });
        QObject::connect(&Canvas, &QCustomPlot::afterReplot, &Canvas, [this] { TellRects(); });
    }

    void Arrange() {
        for (std::size_t i = 0; i < Axes.size(); ++i) {
            TSLZoomRect shown = Picture.Shown;
            const TSLRange& range = RangeOf(shown, i);
            Axes[i]->setRange(range.Lower, range.Upper);
        }
        for (const std::size_t axis : {2U, 3U})
            Axes[axis]->setVisible(Picture.UsesAxis(static_cast<int>(axis) - 1));
        Tickers[0]->MostTicks = Canvas.width() / pixelsPerTickX;
        for (const std::size_t axis : {1U, 2U, 3U})
            Tickers[axis]->MostTicks = Canvas.height() / pixelsPerTickY;
        // As wide as most numbers, so that the plot stays where it is while the user zooms.
        const int scale = Canvas.fontMetrics().horizontalAdvance(QStringLiteral("-000.0")) + 2 * outerMargin;
        Area.setMinimumMargins({scale, outerMargin + 2, outerMargin + 4, outerMargin});
        const QSize room(static_cast<int>(Canvas.width() * legendShare), Canvas.height());
        const int width = Legend.Arrange(Picture, Canvas.font(), room);
        LegendPlace.setMinimumSize(width, 1);
        LegendPlace.setMaximumSize(width, QWIDGETSIZE_MAX);
    }

    QRect Plot() const { return Area.rect(); }
    QPoint LegendOrigin() const { return LegendPlace.rect().topLeft(); }
    void PaintLegend(QPainter& painter) {
        painter.setFont(Canvas.font());
        painter.setRenderHint(QPainter::Antialiasing);
        Legend.Paint(painter, LegendOrigin(), Picture, Drawing.Colors, Overlay.Highlighted);
    }
    QRect OverlayRect() const {
        const bool any = Overlay.Pointed || Overlay.Highlighted || !Overlay.Band.isEmpty() || Overlay.Held ||
                         Overlay.Focused || Picture.Cursor.Visible;
        return any ? Plot().adjusted(0, 0, 1, 1) : QRect();
    }
    void TellRects() {
        Canvas.LegendRect = LegendPlace.rect();
        Canvas.OverlayRect = OverlayRect();
    }

    const TScopePicture& Picture;
    const TScopeOverlay& Overlay;
    TCanvas& Canvas; // a child of the owner, and the rest of Qt's objects of the canvas
    QCPAxisRect& Area;
    std::array<QCPAxis*, scopeAxes> Axes;
    std::array<QSharedPointer<TTicker>, scopeAxes> Tickers;
    QCPLayoutElement& LegendPlace = NewChild<QCPLayoutElement>(Canvas);
    TScopeDrawing Drawing{Picture, Overlay};
    TScopeLegend Legend;

  private:
    void Add(const char* layer, std::function<void(QCPPainter&)> paint) {
        NewChild<TDrawn>(Canvas, QString::fromLatin1(layer)).OnDraw = std::move(paint);
    }
    void AddDrawn() {
        Add("background", [this](QCPPainter& painter) {
            painter.fillRect(Canvas.viewport(), Drawing.Colors.Surface);
            if (Drawing.Colors.Plot != Drawing.Colors.Surface)
                painter.fillRect(Plot(), Drawing.Colors.Plot);
        });
        Add("main", [this](QCPPainter& painter) {
            painter.setClipRect(Plot());
            Drawing.DrawCurves(painter, Plot(), painter.modes().testFlag(QCPPainter::pmVectorized));
        });
        Add(
            "axes",
            [this](QCPPainter& painter) {
                painter.setFont(Canvas.font());
                Drawing.DrawTexts(painter, Plot());
            });
        Add(
            "legend", [this](QCPPainter& painter) { PaintLegend(painter); });
        Add("overlay", [this](QCPPainter& painter) { Drawing.DrawOverlay(painter, Plot()); });
    }
};

TScopePlot::TScopePlot(QWidget& owner, const TScopePicture& picture)
    : Impl(std::make_unique<TImpl>(owner, picture, Overlay)) {
    ApplyColors();
}

TScopePlot::~TScopePlot() = default;

void TScopePlot::Resize(QSize size) {
    Impl->Canvas.resize(size); // draws
}

void TScopePlot::ApplyColors() {
    const TScopeColors colors = TScopeColors::Of(Impl->Canvas.palette());
    Impl->Drawing.Colors = colors;
    for (QCPAxis* axis : Impl->Axes) {
        axis->setBasePen(QPen(colors.Axis, 1));
        axis->setTickPen(QPen(colors.Axis, 1));
        axis->setSubTickPen(QPen(colors.Axis, 1));
        axis->setTickLabelColor(colors.Text);
        axis->setTickLabelFont(Impl->Canvas.font());
        axis->grid()->setPen(QPen(colors.Grid, 1));
    }
}

void TScopePlot::ApplySettings(const TSLScope& scope) {
    const TScopeColors& colors = Impl->Drawing.Colors;
    for (std::size_t i = 0; i < scopeAxes; ++i) {
        const TSLScopeAxis& axis = i == 0 ? scope.XAxis : *scope.Axis(static_cast<int>(i) - 1);
        TTicker& ticker = *Impl->Tickers[i];
        ticker.BaseStep = axis.MajorTicks.Step;
        ticker.LeastStep = i == 0 ? 1 : 0; // X counts samples
        ticker.SubTicks = axis.MinorTicks.Count;
        ticker.Precision = i == 0 ? 0 : axis.Format.Precision;
        ticker.Fixed = axis.Format.FixedPrecision;
        QCPGrid& grid = *Impl->Axes[i]->grid();
        const auto& view = axis.DataView;
        const bool zeroLine = i > 0 && view.ZeroLine.Visible;
        grid.setVisible(view.Lines.Visible || zeroLine);
        grid.setPen(view.Lines.Visible ? QPen(colors.Grid, 1) : QPen(Qt::NoPen));
        grid.setZeroLinePen(zeroLine ? QPen(Readable(view.ZeroLine.Color, colors.Plot), 1) : QPen(Qt::NoPen));
    }
}

void TScopePlot::Draw() {
    Impl->Canvas.replot(QCustomPlot::rpQueuedRefresh);
}

void TScopePlot::DrawSoon() {
    Impl->Canvas.replot(QCustomPlot::rpQueuedReplot);
}

void TScopePlot::DrawLegend() {
    if (Impl->Legend.Fits(Impl->Picture, Impl->Canvas.font()))
        Impl->Canvas.Repaint(TCanvas::LegendBuffer, Impl->LegendPlace.rect(),
                             [this](QCPPainter& painter) { Impl->PaintLegend(painter); });
    else
        Draw();
}

void TScopePlot::DrawOverlay() {
    const QRect due = Impl->Canvas.OverlayRect | Impl->OverlayRect();
    Impl->TellRects();
    Impl->Canvas.Repaint(TCanvas::OverlayBuffer, due,
                         [this](QCPPainter& painter) { Impl->Drawing.DrawOverlay(painter, Impl->Plot()); });
}

void TScopePlot::Print(QPaintDevice& device, QSize size, bool vector) {
    QCPPainter painter;
    painter.begin(&device);
    painter.setMode(QCPPainter::pmNoCaching);
    painter.setMode(QCPPainter::pmVectorized, vector);
    const TScopeOverlay onScreen = std::exchange(Overlay, {});
    Impl->Arrange();
    Impl->Canvas.toPainter(&painter, size.width(), size.height());
    Overlay = onScreen;
}

QRect TScopePlot::PlotRect() const {
    return Impl->Plot();
}

TPlotMap TScopePlot::Map() const {
    return MapOf(Impl->Picture.Shown, Impl->Plot());
}

std::optional<std::size_t> TScopePlot::ScaleAt(QPoint place) const {
    const QRect plot = Impl->Plot();
    if (place.y() > plot.bottom())
        return place.x() >= plot.left() && place.x() <= plot.right() ? std::optional<std::size_t>(0)
                                                                     : std::nullopt;
    if (place.y() < plot.top())
        return std::nullopt;
    if (place.x() < plot.left())
        return 1;
    if (place.x() <= plot.right() || place.x() >= Impl->LegendPlace.rect().left())
        return std::nullopt;
    const bool outer = Impl->Axes[3]->visible() && place.x() >= plot.right() + Impl->Axes[3]->offset();
    if (outer || !Impl->Axes[2]->visible())
        return Impl->Axes[3]->visible() ? std::optional<std::size_t>(3) : std::nullopt;
    return 2;
}

std::optional<std::size_t> TScopePlot::LegendEntryAt(QPoint place) const {
    return Impl->Legend.EntryAt(place, Impl->LegendOrigin());
}

QRect TScopePlot::LegendEntryRect(std::size_t channel) const {
    return Impl->Legend.EntryRect(channel, Impl->LegendOrigin());
}

} // namespace tidewell
