#pragma once

#include "graph/SLDisplayChannel.h"
#include "graph/SLRedraw.h"

#include <cstddef>
#include <deque>
#include <string>

namespace tidewell {

// A text at a point of the plot area: X in units of the X axis, Y in units of the Y axis of YAxisIndex. It
// moves with the X axis.
class TSLScopeTextLabel {
  public:
    explicit TSLScopeTextLabel(TSLRedraw& redraw) : Redraw(redraw) {}
    const std::string& Name() const { return Text; }
    void SetName(const std::string& name) { Assign(Text, name); }
    bool Visible() const { return IsVisible; }
    void SetVisible(bool visible) { Assign(IsVisible, visible); }
    int YAxisIndex() const { return AxisIndex; }
    void SetYAxisIndex(int index) { Assign(AxisIndex, index); }
    const TSLPoint& Position() const { return Point; }
    void SetPosition(const TSLPoint& point) {
        Assign(Point.X, point.X);
        Assign(Point.Y, point.Y);
    }

  private:
    template <class T>
    void Assign(T& field, const T& value) {
        if (!(field == value)) {
            field = value;
            Redraw.Touch();
        }
    }

    TSLRedraw& Redraw;
    std::string Text;
    bool IsVisible = true;
    int AxisIndex = 0;
    TSLPoint Point;
};

// The labels of a surface in the order of adding. Their addresses stay until Clear.
class TSLScopeLabels {
  public:
    explicit TSLScopeLabels(TSLRedraw& redraw) : Redraw(redraw) {}
    TSLScopeTextLabel& Add();
    void Clear();
    std::size_t Count() const { return Content.size(); }
    TSLScopeTextLabel& operator[](std::size_t index); // throws EListError beyond the end
    auto begin() { return Content.begin(); }
    auto end() { return Content.end(); }
    auto begin() const { return Content.begin(); }
    auto end() const { return Content.end(); }

  private:
    TSLRedraw& Redraw;
    std::deque<TSLScopeTextLabel> Content;
};

} // namespace tidewell
