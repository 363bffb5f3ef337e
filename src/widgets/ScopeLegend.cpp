#include "widgets/ScopeLegend.h"

#include "widgets/CurveShape.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace tidewell {

namespace {

constexpr int swatchWidth = 18; // pixels, here and below
constexpr int gap = 6;
constexpr int margin = 8;  // around the list
constexpr int wideRow = 6; // added to the font's height while there is room
constexpr int narrowRow = 1;
constexpr int widthStep = 12;
constexpr int swatchLine = 3;

// The curve's colour, and an arrow to the side of its scale: left, right, or two to the right.
void PaintSwatch(QPainter& painter, const QRect& place, const TScopeCurve& curve,
                 const TScopeColors& colors) {
    const QColor color = Readable(curve.Color, colors.Plot);
    const double middle = place.center().y() + 0.5;
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    if (!IsDrawn(curve)) {
        painter.setPen(color);
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(QRectF(place.left() + 3.5, middle - 2.5, place.width() - 7, 5));
        return;
    }
    painter.drawRect(QRectF(place.left(), middle - swatchLine / 2.0, place.width(), swatchLine));
    const auto arrow = [&](double tip, double length) {
        QPainterPath path(QPointF(tip, middle));
        path.lineTo(tip + length, middle - 4.5);
        path.lineTo(tip + length, middle + 4.5);
        painter.fillPath(path, color);
    };
    if (curve.YAxisIndex == 0)
        arrow(place.left() - 1, 6);
    for (int i = 0; i < curve.YAxisIndex; ++i)
        arrow(place.right() + 2 - 6 * i, -6);
}

} // namespace

const TScopeLegend::TText& TScopeLegend::TextOf(const TScopePicture& picture, std::size_t channel,
                                                const QFont& font) {
    if (font != TextFont)
        Texts.clear();
    TextFont = font;
    Texts.resize(picture.Curves.size());
    TText& text = Texts[channel];
    if (const std::string& name = picture.Curves[channel].Name; name != text.Name) {
        text.Name = name;
        text.Text.setTextFormat(Qt::PlainText);
        text.Text.setText(QString::fromStdString(name));
        text.Text.prepare({}, font);
        text.Width = static_cast<int>(std::ceil(text.Text.size().width()));
    }
    return text;
}

QString TScopeLegend::ShortText(const std::string& name, const QFontMetrics& metrics, int width) {
    const auto end = std::min(name.find(":["), name.size());
    const QString value = QString::fromStdString(name.substr(end));
    const int room = width - metrics.horizontalAdvance(value);
    if (room <= 0)
        return metrics.elidedText(QString::fromStdString(name), Qt::ElideRight, width);
    return metrics.elidedText(QString::fromStdString(name.substr(0, end)), Qt::ElideRight, room) + value;
}

int TScopeLegend::NameWidth(const TScopePicture& picture, const QFont& font) {
    int width = 0;
    for (std::size_t i = 0; i < picture.Curves.size(); ++i)
        if (picture.Curves[i].Visible)
            width = std::max(width, TextOf(picture, i, font).Width);
    return width;
}

int TScopeLegend::Arrange(const TScopePicture& picture, const QFont& font, QSize room) {
    const QFontMetrics metrics(font);
    std::vector<std::size_t> listed;
    for (std::size_t i = 0; i < picture.Curves.size(); ++i)
        if (picture.Curves[i].Visible)
            listed.push_back(i);
    if (listed != Listed)
        EntryWidth = 0;
    Listed = std::move(listed);
    Entries.clear();
    if (Listed.empty())
        return 0;

    const int wish = swatchWidth + gap + NameWidth(picture, font) + widthStep;
    EntryWidth = std::max(EntryWidth, wish - wish % widthStep);
    const int height = std::max(room.height() - 2 * margin, 1);
    const int count = static_cast<int>(Listed.size());
    const int row = metrics.height() + std::clamp(height / count - metrics.height(), narrowRow, wideRow);
    const int rows = std::max(height / row, 1);
    const int columns = (count + rows - 1) / rows;
    const int most = std::max(room.width() / columns - 2 * margin, swatchWidth);
    IsNarrow = EntryWidth > most;
    const int width = std::min(EntryWidth, most);
    for (int i = 0; i < count; ++i)
        Entries.push_back(
            {Listed[static_cast<std::size_t>(i)],
             QRect(margin + i / rows * (width + 2 * margin), margin + i % rows * row, width, row)});
    return columns * (width + 2 * margin);
}

bool TScopeLegend::Fits(const TScopePicture& picture, const QFont& font) {
    return IsNarrow || swatchWidth + gap + NameWidth(picture, font) <= EntryWidth;
}

void TScopeLegend::Paint(QPainter& painter, QPoint origin, const TScopePicture& picture,
                         const TScopeColors& colors, std::optional<std::size_t> highlighted) {
    const QFontMetrics metrics = painter.fontMetrics();
    for (const TEntry& entry : Entries) {
        if (entry.Channel >= picture.Curves.size())
            return;
        const TScopeCurve& curve = picture.Curves[entry.Channel];
        const QRect place = entry.Rect.translated(origin);
        if (highlighted == entry.Channel) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(Faded(colors.Accent, 0.25F));
            painter.drawRoundedRect(QRectF(place).adjusted(-4, 0, 4, 0), 3, 3);
        }
        PaintSwatch(painter, QRect(place.left(), place.top(), swatchWidth, place.height()), curve, colors);
        const QRect text = place.adjusted(swatchWidth + gap, 0, 0, 0);
        const QPoint corner(text.left(), text.top() + (text.height() - metrics.height()) / 2);
        painter.setPen(colors.Text);
        if (IsNarrow)
            painter.drawText(corner + QPoint(0, metrics.ascent()),
                             ShortText(curve.Name, metrics, text.width()));
        else
            painter.drawStaticText(corner, TextOf(picture, entry.Channel, painter.font()).Text);
    }
}

std::optional<std::size_t> TScopeLegend::EntryAt(QPoint place, QPoint origin) const {
    for (const TEntry& entry : Entries)
        if (entry.Rect.contains(place - origin))
            return entry.Channel;
    return std::nullopt;
}

QRect TScopeLegend::EntryRect(std::size_t channel, QPoint origin) const {
    for (const TEntry& entry : Entries)
        if (entry.Channel == channel)
            return entry.Rect.translated(origin);
    return {};
}

} // namespace tidewell
