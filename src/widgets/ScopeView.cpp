#include "widgets/ScopeView.h"

#include "widgets/ChannelSettings.h"
#include "widgets/Child.h"
#include "widgets/ScopeExport.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QKeyEvent>

#include <algorithm>

namespace tidewell {

namespace {

constexpr double panStep = 0.1; // of what is shown
constexpr double zoomStep = 0.8;
constexpr double cursorJump = 10; // samples, with Shift

// Shows a surface before its first frame is due.
TScopePicture& FirstPicture(TScopePicture& picture, const TSLScope& scope) {
    picture.Take(scope);
    return picture;
}

} // namespace

TScopeView::TScopeView(TSLScope& scope, QWidget* parent)
    : QWidget(parent), Scope(scope), ThePlot(*this, FirstPicture(Picture, scope)),
      Gestures(scope, Picture, ThePlot, *this), ToolBar(NewChild<TScopeToolBar>(*this, scope, Gestures)),
      Changed(scope.Redraw.Changed.Connect([this] { Schedule(); })) {
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(QStringLiteral("Graph"));
    ThePlot.ApplySettings(scope);
    ToolBar.OnChannelSettings = [this] { ShowChannelSettings(); };
    ToolBar.OnCopy = [this] { CopyPicture(); };
    ToolBar.OnSave = [this] { SavePicture(); };
    Timer.setSingleShot(true);
    Timer.setTimerType(Qt::PreciseTimer);
    connect(&Timer, &QTimer::timeout, this, [this] { Refresh(); });
}

void TScopeView::Schedule() {
    if (Timer.isActive() || !isVisible())
        return;
    const qint64 passed = SinceFrame.isValid() ? SinceFrame.elapsed() : Scope.RefreshInterval;
    Timer.start(static_cast<int>(std::max<qint64>(Scope.RefreshInterval - passed, 0)));
}

void TScopeView::Refresh() {
    if (!isVisible())
        return; // all is still due when it is shown
    const bool picture = Scope.Redraw.IsPending();
    const bool names = Scope.Redraw.AreNamesPending();
    const bool replaced = Scope.Redraw.AreCurvesReplaced();
    Scope.Redraw.Begin();
    const bool held = Scope.Hold() && !Gestures.Panning();
    if (held != ThePlot.Overlay.Held) {
        ThePlot.Overlay.Held = held;
        ThePlot.DrawOverlay();
    }
    SinceFrame.start();
    if (!Scope.Hold() || replaced) {
        if (picture) {
            Picture.Take(Scope);
            if (replaced)
                ThePlot.Overlay.Highlighted.reset();
            Gestures.FollowPicture();
            ThePlot.ApplySettings(Scope);
            ThePlot.Draw();
            ++FrameCount;
        } else if (names) {
            Picture.TakeNames(Scope);
            ThePlot.DrawLegend();
        }
    }
    ToolBar.Follow(Picture);
}

QImage TScopeView::Snapshot(double scale) {
    return PictureOf(ThePlot, size(), scale);
}

void TScopeView::CopyPicture() {
    QApplication::clipboard()->setImage(Snapshot(devicePixelRatioF()));
}

void TScopeView::SavePicture() {
    OnSavePicture(
        [this](EPictureType type) { return PictureBytes(ThePlot, size(), devicePixelRatioF(), type); });
}

void TScopeView::ShowChannelSettings() {
    TChannelSettings dialog(Scope, this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    Picture.TakeLooks(Scope); // shows on a held display too
    Picture.TakeNames(Scope);
    ThePlot.DrawSoon();
}

bool TScopeView::event(QEvent* event) {
    // The Tab key leaves the surface, the arrows stay.
    if (event->type() == QEvent::ShortcutOverride) {
        const auto& key = *static_cast<QKeyEvent*>(event);
        if (key.key() >= Qt::Key_Left && key.key() <= Qt::Key_Down) {
            event->accept();
            return true;
        }
    }
    return QWidget::event(event);
}

void TScopeView::resizeEvent(QResizeEvent*) {
    ThePlot.Resize(size());
    ToolBar.Follow(Picture);
}

void TScopeView::showEvent(QShowEvent*) {
    Schedule();
}

void TScopeView::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange ||
        event->type() == QEvent::StyleChange) {
        ThePlot.ApplyColors();
        ThePlot.ApplySettings(Scope);
        ThePlot.DrawSoon();
    }
    QWidget::changeEvent(event);
}

void TScopeView::mousePressEvent(QMouseEvent* event) {
    Gestures.Press(*event);
}

void TScopeView::mouseMoveEvent(QMouseEvent* event) {
    Gestures.Move(*event);
}

void TScopeView::mouseReleaseEvent(QMouseEvent* event) {
    Gestures.Release(*event);
}

void TScopeView::mouseDoubleClickEvent(QMouseEvent* event) {
    Gestures.DoubleClick(*event);
}

void TScopeView::wheelEvent(QWheelEvent* event) {
    Gestures.Wheel(*event);
    event->accept();
}

void TScopeView::leaveEvent(QEvent*) {
    Gestures.Leave();
}

void TScopeView::ShowFocus(bool show) {
    if (show == ThePlot.Overlay.Focused)
        return;
    ThePlot.Overlay.Focused = show;
    ThePlot.DrawOverlay();
}

void TScopeView::focusInEvent(QFocusEvent* event) {
    ShowFocus(event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason);
    QWidget::focusInEvent(event);
}

void TScopeView::focusOutEvent(QFocusEvent* event) {
    Gestures.Cancel();
    ShowFocus(false);
    QWidget::focusOutEvent(event);
}

void TScopeView::contextMenuEvent(QContextMenuEvent* event) {
    // The mouse opens it when its button is released.
    if (event->reason() != QContextMenuEvent::Mouse)
        Scope.OnContextPopup(event->x(), event->y());
    event->accept();
}

bool TScopeView::HandleArrow(const QKeyEvent& event) {
    const int key = event.key();
    const bool along = key == Qt::Key_Left || key == Qt::Key_Right;
    if (!along && key != Qt::Key_Up && key != Qt::Key_Down)
        return false;
    const int sign = key == Qt::Key_Left || key == Qt::Key_Down ? -1 : 1;
    if (along && Scope.Cursors[0].Visible())
        Gestures.MoveCursorBy(event.modifiers().testFlag(Qt::ShiftModifier) ? sign * cursorJump : sign);
    else if (along)
        Gestures.PanBy(sign * panStep, 0);
    else if (event.modifiers().testFlag(Qt::ControlModifier))
        Gestures.StepHighlight(-sign);
    else
        Gestures.PanBy(0, sign * panStep);
    return true;
}

void TScopeView::keyPressEvent(QKeyEvent* event) {
    const bool control = event->modifiers().testFlag(Qt::ControlModifier);
    if (event->matches(QKeySequence::Copy))
        CopyPicture();
    else if (event->key() == Qt::Key_Plus || event->key() == Qt::Key_Equal)
        Gestures.ZoomBy(zoomStep, control);
    else if (event->key() == Qt::Key_Minus)
        Gestures.ZoomBy(1 / zoomStep, control);
    else if (event->key() == Qt::Key_Home)
        Gestures.ZoomOff();
    else if (!HandleArrow(*event))
        QWidget::keyPressEvent(event);
}

} // namespace tidewell
