#pragma once

#include "core/controls/Color.h"
#include "core/controls/Control.h"
#include "graph/SLDisplayChannel.h"
#include "graph/SLRedraw.h"
#include "graph/SLScopeAxis.h"
#include "graph/SLScopeTextLabel.h"

#include <array>
#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <utility>

namespace tidewell {

enum class EMouseCursor { crDefault, crHandPoint };

// A vertical line that the user moves over the curves.
class TSLCursor {
  public:
    TSLCursor(TSLRedraw& redraw, std::string name, TColor color)
        : Redraw(redraw), CursorName(std::move(name)), LineColor(color) {}
    const std::string& Name() const { return CursorName; }
    TColor Color() const { return LineColor; }
    bool Visible() const { return IsVisible; }
    void SetVisible(bool visible);
    const TSLPoint& Position() const { return Point; }
    void SetPosition(const TSLPoint& point);

    EMouseCursor VerticalMouseCursor = EMouseCursor::crHandPoint; // while the mouse is over the line

  private:
    TSLRedraw& Redraw;
    std::string CursorName;
    TColor LineColor;
    bool IsVisible = false;
    TSLPoint Point;
};

class TSLCursors {
  public:
    explicit TSLCursors(TSLRedraw& redraw) : Redraw(redraw) {}
    TSLCursor& Add(std::string name, TColor color) {
        return Content.emplace_back(Redraw, std::move(name), color);
    }
    std::size_t Count() const { return Content.size(); }
    TSLCursor& operator[](std::size_t index); // throws EListError beyond the end
    const TSLCursor& operator[](std::size_t index) const;

    // The user has moved a cursor: its index and new position.
    TEvent<std::size_t, const TSLPoint&> OnPositionChange;

  private:
    TSLRedraw& Redraw;
    std::deque<TSLCursor> Content;
};

// The ranges of all axes before or after a zoom.
struct TSLZoomRect {
    TSLRange X;
    std::array<TSLRange, 3> Y;
    friend bool operator==(const TSLZoomRect&, const TSLZoomRect&) = default;
};

enum class EZoomMode { zmBoth, zmXAxis, zmYAxis };

// The first Y axis, and the two beside it.
struct TSLScopeYAxis : TSLScopeAxis {
    explicit TSLScopeYAxis(TSLRedraw& redraw);
    struct TAdditional {
        TAdditional(TSLRedraw& redraw, double min, double max) : Axis(redraw, min, max) {}
        TSLAdditionalScopeYAxis Axis;
    };
    std::deque<TAdditional> AdditionalAxes; // two
};

// The plot surface as data; what draws it follows Redraw.Changed, draws at most once per RefreshInterval, and
// reports what the user does through the User... operations, which raise the events.
class TSLScope {
  public:
    TSLScope();
    TSLScope(const TSLScope&) = delete;
    TSLScope& operator=(const TSLScope&) = delete;

    // Y axis of that index, 0 to 2; none for another one.
    TSLScopeAxis* Axis(int yAxisIndex);
    const TSLScopeAxis* Axis(int yAxisIndex) const;
    // Leaves all zoom, on all axes.
    void ZoomOff();
    // True freezes the drawn picture; data keeps being accepted. When the channels are cleared, the picture
    // is taken once more.
    void SetHold(bool hold);
    bool Hold() const { return IsHeld; }
    // Redraws at the next occasion.
    void Invalidate() { Redraw.Touch(); }
    TSLZoomRect ShownRect() const;

    // What the user does, as the view reports it. A zoom raises OnZoomChanged when it has changed a range.
    void UserZooms(TSLScopeAxis& axis, const TSLRange& range);
    // All axes at once; one that is to show Min to Max is no longer zoomed.
    void UserZooms(const TSLZoomRect& rect);
    void UserClicks(const TSLAxisToolBarButton& button);
    void UserZoomsOff();
    void UserMovesCursor(std::size_t cursor, const TSLPoint& position);

    TSLRedraw Redraw;
    int RefreshInterval = 200; // ms
    TSLDisplayChannels Channels{Redraw};
    TSLScopeLabels Labels{Redraw};
    TSLScopeXAxis XAxis{Redraw, 0, 52}; // in samples
    TSLScopeYAxis YAxis{Redraw};
    TSLCursors Cursors{Redraw}; // one, "CursorValue"

    struct TToolBar {
        explicit TToolBar(TSLRedraw& redraw) : Redraw(redraw) {}
        bool Visible() const { return IsVisible; }
        void SetVisible(bool visible);
        int Right = 10; // pixels from the right bottom corner
        int Bottom = 40;

      private:
        TSLRedraw& Redraw;
        bool IsVisible = false;
    } ToolBar{Redraw};
    struct {
        bool HoldOnPan = true;
        EZoomMode Mode = EZoomMode::zmYAxis;
    } Zooming;
    struct {
        bool Visible = false;
    } Title;
    struct {
        struct {
            bool HiglightFromMouse = true;
        } Channels;
    } Highlighting;
    struct {
        struct TCaption {
            bool Visible = false;
        };
        struct {
            TCaption Caption;
            // A channel's entry was clicked: its index, whether the handler has dealt with it.
            TEvent<std::size_t, bool&> OnItemClick;
        } Channels;
        struct {
            bool Visible = false;
            TCaption Caption;
        } Cursors, CursorLinks, Labels;
    } Legend;

    TEvent<const TSLZoomRect&, const TSLZoomRect&> OnZoomChanged; // old and new, by the user
    TEvent<int, int> OnContextPopup;                              // pixels of the surface
    TEvent<std::size_t, const TSLPoint&> OnOverChannel;           // the mouse moves over a curve
    TEvent<std::string&, double> OnCustomMouseHitLabel;           // text of the hint, Y of the data point

  private:
    void TellZoom(const TSLZoomRect& before);

    bool IsHeld = false;
};

} // namespace tidewell
