#include "widgets/PanelBar.h"

#include "widgets/Child.h"
#include "widgets/Colors.h"
#include "widgets/SimpleViews.h"

#include <QPainter>

#include <algorithm>

namespace tidewell {

namespace {

constexpr int margin = 4; // of a text from its panel's edge
constexpr double fontShare = 0.93;

} // namespace

TPanelBar::TPanelBar(QWidget* parent) : QStatusBar(parent) {
    setSizeGripEnabled(false);
    QFont small = font();
    small.setPointSizeF(small.pointSizeF() * fontShare);
    setFont(small);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void TPanelBar::SetPanels(const std::vector<TPanelText>& panels) {
    while (Labels.size() < panels.size()) {
        auto& label = NewChild<TElidedLabel>(*this);
        label.setObjectName(QStringLiteral("StatusPanel%1").arg(Labels.size()));
        label.show();
        Labels.push_back(&label);
    }
    Widths.clear();
    for (std::size_t i = 0; i < panels.size(); ++i) {
        Widths.push_back(panels[i].Width);
        QLabel& label = *Labels[i];
        if (label.text() != panels[i].Text)
            label.setText(panels[i].Text);
        label.setAlignment(Qt::AlignVCenter | (panels[i].Centred ? Qt::AlignHCenter : Qt::AlignLeft));
    }
    Arrange();
    update();
}

void TPanelBar::Place(std::size_t panel, QWidget& widget, TPlace place) {
    const bool hidden = widget.isHidden();
    widget.setParent(this);
    widget.setVisible(!hidden);
    Placed.push_back({panel, &widget, std::move(place)});
    Arrange();
}

QRect TPanelBar::PanelRect(std::size_t panel) const {
    int left = 0;
    for (std::size_t i = 0; i < panel && i < Widths.size(); ++i)
        left += Widths[i];
    const int wanted = panel < Widths.size() ? Widths[panel] : 0;
    return {left, 0, std::min(wanted, std::max(0, width() - left)), height()};
}

void TPanelBar::SetBarHeight(int pixels) {
    BarHeight = pixels;
    updateGeometry();
}

QSize TPanelBar::sizeHint() const {
    return {std::max(0, PanelRect(Widths.size()).x()), std::max(BarHeight, fontMetrics().height() + 4)};
}

QSize TPanelBar::minimumSizeHint() const {
    return {0, sizeHint().height()};
}

void TPanelBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(Faded(palette().color(QPalette::WindowText), 0.2F));
    painter.drawLine(0, 0, width(), 0);
    for (std::size_t i = 1; i < Widths.size(); ++i) {
        const int x = PanelRect(i).x() - 1;
        painter.drawLine(x, 4, x, height() - 4);
    }
}

void TPanelBar::resizeEvent(QResizeEvent*) {
    Arrange();
}

void TPanelBar::Arrange() {
    for (std::size_t i = 0; i < Labels.size() && i < Widths.size(); ++i)
        Labels[i]->setGeometry(PanelRect(i).adjusted(margin, 1, -margin, 0));
    for (const auto& placed : Placed)
        placed.Widget->setGeometry(placed.Rule(PanelRect(placed.Panel)));
}

} // namespace tidewell
