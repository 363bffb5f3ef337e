#pragma once

#include "widgets/ScopePlot.h"

#include <QPoint>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

class QMouseEvent;
class QPointF;
class QWheelEvent;
class QWidget;

namespace tidewell {

// What the user does on a surface with mouse and keys, told to the surface and shown at once.
//
// In the plot, dragging marks what to zoom to, or pans in pan mode, with Shift or with the middle button; the
// wheel zooms at the mouse, with Ctrl along X. On a scale both work on its axis alone. A double click leaves
// the zoom.
class TScopeGestures {
  public:
    // The widget gets mouse cursor and hints. All must outlive the object.
    TScopeGestures(TSLScope& scope, TScopePicture& picture, TScopePlot& plot, QWidget& widget);

    void Press(const QMouseEvent& event);
    void Move(const QMouseEvent& event);
    void Release(const QMouseEvent& event);
    void DoubleClick(const QMouseEvent& event);
    void Wheel(const QWheelEvent& event);
    void Leave();
    void Cancel();        // the drag in progress, where it stands
    void FollowPicture(); // other data lies under the mouse

    // Of the shown length of each axis, to the right and up.
    void PanBy(double x, double y);
    // A factor below 1 zooms in, about the middle: along X, or along what the mouse zooms.
    void ZoomBy(double factor, bool alongX);
    void ZoomOff();
    void Click(const TSLAxisToolBarButton& button);
    void ShowCursor(bool show);
    void MoveCursorBy(double samples);
    // Points at the next curve, or the one before.
    void StepHighlight(int step);

    bool PanMode = false;
    // Whether the user pans just now; the display is then held.
    bool Panning() const { return Drag == EDrag::Pan; }

  private:
    enum class EDrag { None, Click, Band, Pan, Cursor };
    using TAxes = std::vector<std::size_t>;

    TAxes ZoomAxes() const; // that zooming in the plot is about
    void StartDrag();
    void Hover(QPoint place);
    void PointAt(const std::optional<TCurveHit>& hit, QPoint place);
    void ShowHint(const TCurveHit& hit, QPoint place);
    void SetHighlight(std::optional<std::size_t> channel, const std::optional<TCurveHit>& hit);
    bool OnCursor(QPoint place) const;
    void ClickAt(QPoint place);
    void DragCursor(QPoint place);
    void MoveCursorTo(double x, double y);
    void DragBand(QPoint place);
    void ZoomToBand();
    void DragPan(QPoint place);
    // Shows other ranges on those axes.
    template <class TChange>
    void Change(const TAxes& axes, TChange change);
    TSLRange Limited(std::size_t axis, TSLRange range) const;
    // Runs an action by which the user may change what the axes show.
    template <class TAction>
    void RunZoom(TAction action);

    TSLScope& Scope;
    TScopePicture& Picture;
    TScopePlot& Plot;
    QWidget& Widget;

    EDrag Drag = EDrag::None;
    bool PansOnDrag = false; // what a drag from here would do
    TAxes DragAxes;
    QPoint PressedAt;
    QPoint HoverAt;
    TSLZoomRect PressedShown;
    bool HeldBefore = false;
    std::optional<std::size_t> PressedEntry; // of the legend
};

} // namespace tidewell
