#include "desktop/views/Builder.h"

#include <memory>

namespace tidewell {

namespace {

// Adds a layout to a box layout, which owns it.
template <class T, class... TArgs>
T& NewLayout(QBoxLayout& outer, int stretch, TArgs... args) {
    auto inner = std::make_unique<T>(args...);
    T& layout = *inner;
    outer.addLayout(inner.release(), stretch);
    return layout;
}

} // namespace

QPushButton& PressedByEnter(QPushButton& view) {
    view.setAutoDefault(true);
    return view;
}

void KeepRoom(QWidget& widget) {
    QSizePolicy policy = widget.sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    widget.setSizePolicy(policy);
}

TBox& TBox::Margins(int left, int top, int right, int bottom) {
    Layout.setContentsMargins(left, top, right, bottom);
    return *this;
}

TBox& TBox::Spacing(int pixels) {
    Layout.setSpacing(pixels);
    return *this;
}

TBox TBox::AddBox(EWay way, int stretch) {
    return {Parent, Dialogs, NewLayout<QBoxLayout>(Layout, stretch, way)};
}

TGrid TBox::AddGrid(int stretch) {
    return {Parent, Dialogs, NewLayout<QGridLayout>(Layout, stretch)};
}

TBox TBox::AddPanel(EWay way, int stretch) {
    return TBox(way, AddWidget<QWidget>(stretch), Dialogs).Margins(0);
}

TBox TBox::AddPanel(EWay way, TPanel& panel, int stretch) {
    const TBox box = AddPanel(way, stretch);
    Bind(box.Parent, panel, Dialogs);
    return box;
}

QFrame& TBox::AddFrame() {
    auto& frame = AddWidget<QFrame>();
    frame.setFrameShape(QFrame::StyledPanel);
    return frame;
}

void AddEmptyLine(TBox& column, TLabel& label) {
    QLabel& line = column.Add(label, 1);
    line.setAlignment(Qt::AlignCenter);
    line.setWordWrap(true);
    QPalette grey = line.palette();
    grey.setColor(QPalette::WindowText, grey.color(QPalette::PlaceholderText));
    line.setPalette(grey);
}

} // namespace tidewell
