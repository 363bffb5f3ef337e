#pragma once

#include "core/controls/Color.h"
#include "core/controls/Signal.h"

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tidewell {

// Tells a view once that something is new, however much changes until it draws.
class TSLRedraw {
  public:
    void Touch() {
        if (!Pending) {
            Pending = true;
            Changed.Emit();
        }
    }
    bool IsPending() const { return Pending; }
    // The view calls this before it reads what it draws.
    void Begin() { Pending = false; }

    TSignal<> Changed;

  private:
    bool Pending = false;
};

// The points of a curve, in order of adding.
class TSLChannelData {
  public:
    struct TPoint {
        double X = 0;
        double Y = 0;
    };

    explicit TSLChannelData(TSLRedraw& redraw) : Redraw(redraw) {}
    void Clear();
    void AddXYPoint(double x, double y);
    void AddYPoint(double y); // at the last X plus 1, the first at 0
    std::size_t GetSize() const { return Content.size(); }
    // Copies all Y values into a buffer of GetSize() elements.
    void GetDrawYData(double* buffer) const;
    const std::vector<TPoint>& Points() const { return Content; }

  private:
    TSLRedraw& Redraw;
    std::vector<TPoint> Content;
};

// One curve. Its Name is what the legend shows, and carries the live value behind ":[": that part is composed
// when Name is read, so that a sample costs no text.
class TSLDisplayChannel {
  public:
    explicit TSLDisplayChannel(TSLRedraw& redraw) : Data(redraw), Redraw(redraw) {}

    const std::string& Name() const;
    void SetName(std::string_view name);
    // Name becomes its part up to and with ":[", which is added if missing, then what lies more than 20
    // characters behind that, then the value with two decimals and "]".
    void ShowValue(double value);
    // Name becomes base + ":[", the 16 binary digits of the truncated value with a blank in the middle, "]".
    // Throws ERangeError for a value that 16 digits cannot show.
    void ShowBits(std::string_view base, double value);

    bool Visible() const { return IsVisible; }
    void SetVisible(bool visible) { Assign(IsVisible, visible); }
    TColor Color() const { return LineColor; }
    void SetColor(TColor color) { Assign(LineColor, color); }
    // 0: YAxis, 1 and 2: AdditionalAxes. Other numbers are kept too; such a channel has no axis.
    int YAxisIndex() const { return AxisIndex; }
    void SetYAxisIndex(int index) { Assign(AxisIndex, index); }

    TSLChannelData Data;

  private:
    enum class ESuffix { None, Value, Bits };

    template <class T>
    void Assign(T& field, T value) {
        if (!(field == value)) {
            field = value;
            Redraw.Touch();
        }
    }

    TSLRedraw& Redraw;
    std::string Base; // what stands before ":[" while there is a suffix
    std::string Tail; // what stands between ":[" and the value
    ESuffix Suffix = ESuffix::None;
    double Value = 0;
    mutable std::string Composed;
    mutable bool ComposedIsOld = false;
    bool IsVisible = true;
    TColor LineColor;
    int AxisIndex = 0;
};

// The curves of a surface. Their addresses stay until Clear.
class TSLDisplayChannels {
  public:
    explicit TSLDisplayChannels(TSLRedraw& redraw) : Redraw(redraw) {}
    TSLDisplayChannel& Add();
    void Clear();
    std::size_t Count() const { return Content.size(); }
    // Throw EListError beyond the end.
    TSLDisplayChannel& operator[](std::size_t index);
    const TSLDisplayChannel& operator[](std::size_t index) const;
    auto begin() { return Content.begin(); }
    auto end() { return Content.end(); }
    auto begin() const { return Content.begin(); }
    auto end() const { return Content.end(); }

  private:
    TSLRedraw& Redraw;
    std::deque<TSLDisplayChannel> Content;
};

// One end of an axis. Value and DataValue read as they were last set.
class TSLBasicRangedAxisValue {
  public:
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

struct TSLAxis {
    TSLAxis(TSLRedraw& redraw, double min, double max) : Min(redraw, min), Max(redraw, max) {}
    TSLBasicRangedAxisValue Min;
    TSLBasicRangedAxisValue Max;
};

// Two further Y axes, told by their position.
struct TSLAdditionalScopeYAxis {
    TSLAdditionalScopeYAxis(TSLRedraw& redraw, double min, double max) : Axis(redraw, min, max) {}
    TSLAxis Axis;
};

class TSLCursor {
  public:
    TSLCursor(TSLRedraw& redraw, std::string name, TColor color)
        : Redraw(redraw), CursorName(std::move(name)), LineColor(color) {}
    const std::string& Name() const { return CursorName; }
    TColor Color() const { return LineColor; }
    bool Visible() const { return IsVisible; }
    void SetVisible(bool visible) {
        if (IsVisible != visible) {
            IsVisible = visible;
            Redraw.Touch();
        }
    }

  private:
    TSLRedraw& Redraw;
    std::string CursorName;
    TColor LineColor;
    bool IsVisible = false;
};

// The plot surface as data; what draws it follows Redraw.Changed and draws at most once per RefreshInterval.
class TSLScope {
  public:
    TSLScope();
    TSLScope(const TSLScope&) = delete;
    TSLScope& operator=(const TSLScope&) = delete;

    // Redraws at the next occasion.
    void Invalidate() { Redraw.Touch(); }

    TSLRedraw Redraw;
    int RefreshInterval = 200; // ms
    TSLDisplayChannels Channels{Redraw};
    TSLAxis XAxis{Redraw, 0, 52}; // in samples
    TSLAxis YAxis{Redraw, 0, 100};
    std::vector<TSLAdditionalScopeYAxis> AdditionalAxes; // two
    std::vector<TSLCursor> Cursors;                      // one, "CursorValue"
};

} // namespace tidewell
