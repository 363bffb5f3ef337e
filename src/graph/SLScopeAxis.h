#pragma once

#include "core/controls/Color.h"
#include "core/controls/Control.h"
#include "graph/SLRedraw.h"

#include <optional>

namespace tidewell {

// One end of an axis. Value and DataValue read as they were last set.
class TSLBasicRangedAxisValue {
  public:
    struct TLimit {
        double Value = 0;
    };
    struct TRange {
        TLimit High;
        TLimit Low;
    };

    TSLBasicRangedAxisValue(TSLRedraw& redraw, double value)
        : Redraw(redraw), LimitValue(value), LimitDataValue(value) {}
    double Value() const { return LimitValue; }
    double DataValue() const { return LimitDataValue; }
    void SetValue(double value) { Assign(LimitValue, value); }
    void SetDataValue(double value) { Assign(LimitDataValue, value); }
    void SetBoth(double value) {
        SetValue(value);
        SetDataValue(value);
    }
    bool AutoScale() const { return IsAutoScale; }
    void SetAutoScale(bool automatic) { Assign(IsAutoScale, automatic); }

    TRange Range;

  private:
    template <class T>
    void Assign(T& field, T value) {
        if (field != value) {
            field = value;
            Redraw.Touch();
        }
    }

    TSLRedraw& Redraw;
    double LimitValue;
    double LimitDataValue;
    bool IsAutoScale = false;
};

// A button of an axis's toolbar. PerformClick does what a click by the user does.
struct TSLAxisToolBarButton {
    void PerformClick() const { OnClick(); }
    TEvent<> OnClick;
    bool Visible = true;
};

// What an axis shows at present.
struct TSLRange {
    double Lower = 0;
    double Upper = 0;
    friend bool operator==(const TSLRange&, const TSLRange&) = default;
};

struct TSLAxisToolBarButtons {
    TSLAxisToolBarButton ZoomIn;     // to the middle half
    TSLAxisToolBarButton ZoomOut;    // to twice the range, at most Min to Max
    TSLAxisToolBarButton ZoomOff;    // to Min to Max
    TSLAxisToolBarButton ZoomOneDir; // a mouse zoom by dragging works on this axis alone
};

// An axis shows the range from Min to Max unless it is zoomed. A zoom ends with ZoomOff, and only so: new
// limits lie below it.
class TSLScopeAxis {
  public:
    struct TToolBar {
        TSLAxisToolBarButtons Buttons;
    };

    TSLScopeAxis(TSLRedraw& redraw, double min, double max);
    TSLScopeAxis(const TSLScopeAxis&) = delete;
    TSLScopeAxis& operator=(const TSLScopeAxis&) = delete;

    TSLRange Shown() const; // zoom included
    bool Zoomed() const { return Zoom.has_value(); }
    void SetZoom(const TSLRange& range); // nothing for a range that is empty, reversed or not finite
    void ZoomOff();

    TSLBasicRangedAxisValue Min;
    TSLBasicRangedAxisValue Max;
    TToolBar ToolBar;
    bool ZoomOneDir = false;

    struct {
        bool EnabledMin = true;
        bool EnabledMax = true;
    } AutoScaling;
    struct {
        bool Visible = true;
    } AxisLabel;
    struct {
        struct {
            bool Visible = true;
        } Lines;
        struct {
            bool Visible = true;
            TColor Color;
        } ZeroLine;
    } DataView;
    struct {
        int Precision = 1; // decimals on the scale
        bool FixedPrecision = false;
    } Format;
    struct {
        int Count = 4;
    } MinorTicks;
    struct {
        double Step = 0; // 0: the view's own
    } MajorTicks;
    struct {
        int Size = 0;
    } ViewSize;
    struct {
        TSLBasicRangedAxisValue::TRange Range;
    } Zooming;
    struct {
        bool SnapToSample = false;
    } CursorSettings;
    struct {
        int Value = 0; // 0: no limit
    } MaxSample;

  private:
    void ZoomOutByTwo();

    TSLRedraw& Redraw;
    std::optional<TSLRange> Zoom;
};

using TSLScopeXAxis = TSLScopeAxis;
using TSLAdditionalScopeYAxis = TSLScopeAxis;

} // namespace tidewell
