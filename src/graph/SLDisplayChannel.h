#pragma once

#include "core/controls/Color.h"
#include "core/controls/Control.h"
#include "graph/SLRedraw.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace tidewell {

// In data coordinates.
struct TSLPoint {
    double X = 0;
    double Y = 0;
};

// The points of a curve, in order of adding.
class TSLChannelData {
  public:
    explicit TSLChannelData(TSLRedraw& redraw) : Redraw(redraw) {}
    void Clear();
    void AddXYPoint(double x, double y);
    void AddYPoint(double y); // at the last X plus 1, the first at 0
    void DropFrom(double x);  // the last points, as far as they lie at x or behind
    std::size_t GetSize() const { return Content.size(); }
    // Copies all Y values into a buffer of GetSize() elements. Part of the contract; nothing here calls it.
    void GetDrawYData(double* buffer) const;
    const std::vector<TSLPoint>& Points() const { return Content; }

  private:
    TSLRedraw& Redraw;
    std::vector<TSLPoint> Content;
};

// The name without ":[" and that many characters behind it; what lies further behind stays.
std::string WithoutValue(std::string_view name, std::size_t characters);
// Towards 0; outside the range the conversion saturates, and what is no number gives the lowest one.
std::int32_t Truncated(double value);

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
    // Name becomes base + ":[", the low 16 binary digits of the truncated value with a blank in the middle,
    // "]".
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

    // A curve was clicked: index, whether the handler has dealt with it, point of the curve.
    TEvent<std::size_t, bool&, const TSLPoint&> OnClick;

  private:
    TSLRedraw& Redraw;
    std::deque<TSLDisplayChannel> Content;
};

} // namespace tidewell
