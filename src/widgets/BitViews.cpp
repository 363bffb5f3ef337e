#include "widgets/BitViews.h"

#include "core/KvSupport.h"
#include "widgets/Colors.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionButton>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace tidewell {

namespace {

constexpr int nameInset = 2; // pixels from the cell's left edge
constexpr int edge = 1;      // of the frame around all
constexpr int focusGap = 3;  // from the box
constexpr int textLeft = 5;  // of the rows
constexpr int textTop = 4;
constexpr QColor lime(0, 255, 0);

struct TSlant {
    explicit TSlant(int degrees)
        : Sine(std::sin(degrees * std::numbers::pi / 180)),
          Cosine(std::cos(degrees * std::numbers::pi / 180)) {}
    double Sine;
    double Cosine;
};

QRect ToQt(const TCellRect& rect) {
    return {QPoint(rect.Left, rect.Top), QPoint(rect.Right - 1, rect.Bottom - 1)};
}

int RoundUp(double value) {
    return static_cast<int>(std::ceil(value));
}

// Text that starts at a point of its base line.
class TPainterCanvas : public ICanvas {
  public:
    explicit TPainterCanvas(QPainter& painter) : Painter(painter) {}
    double FontAngle() const override { return Angle; }
    void SetFontAngle(double degrees) override { Angle = degrees; }
    void TextOut(int x, int y, const std::string& text) override {
        Painter.save();
        Painter.translate(x, y);
        Painter.rotate(-Angle);
        Painter.drawText(0, 0, QString::fromStdString(text));
        Painter.restore();
    }

  private:
    QPainter& Painter;
    double Angle = 0;
};

} // namespace

TBitGridView::TBitGridView(TShape shape, std::function<TCellRect(const TCellRect&)> boxOf, QWidget* parent)
    : QWidget(parent), Shape(std::move(shape)), BoxOf(std::move(boxOf)) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    Describe();
}

void TBitGridView::SetNames(const QStringList& names) {
    if (names == Names)
        return;
    Names = names;
    updateGeometry();
    Describe();
    update();
}

void TBitGridView::SetBits(std::vector<bool> bits) {
    if (bits == Bits)
        return;
    Bits = std::move(bits);
    Describe();
    update();
}

bool TBitGridView::Bit(int column) const {
    const auto index = static_cast<std::size_t>(column);
    return index < Bits.size() && Bits[index];
}

// Slanted lines must not overlap: across the slant a column has to be as wide as a line is high.
int TBitGridView::ColumnLeft(int column) const {
    const int least = RoundUp(fontMetrics().height() / TSlant(Shape.NameAngle).Sine);
    int left = edge;
    for (int i = 0; i < column; ++i)
        left += std::max(Shape.ColWidths[static_cast<std::size_t>(i)], least);
    return left;
}

int TBitGridView::NameRowHeight() const {
    const TSlant slant(Shape.NameAngle);
    int longest = 0;
    for (const QString& name : Names)
        longest = std::max(longest, fontMetrics().horizontalAdvance(name));
    return std::max(Shape.NameHeight,
                    RoundUp(longest * slant.Sine + fontMetrics().height() * slant.Cosine) + nameInset);
}

TCellRect TBitGridView::CellRect(int column, int row) const {
    const int bottomOfNames = edge + NameRowHeight();
    const int left = ColumnLeft(column);
    const int right = ColumnLeft(column + 1);
    return row == 0 ? TCellRect{left, edge, right, bottomOfNames}
                    : TCellRect{left, bottomOfNames, right, bottomOfNames + Shape.BitHeight};
}

// So that the turned text begins at the inset and ends its lower edge on the bottom of the cell.
QPoint TBitGridView::NameStart(int column) const {
    const TSlant slant(Shape.NameAngle);
    const TCellRect cell = CellRect(column, 0);
    return {cell.Left + nameInset + RoundUp(fontMetrics().ascent() * slant.Sine),
            cell.Bottom - RoundUp(fontMetrics().descent() * slant.Cosine)};
}

QSize TBitGridView::sizeHint() const {
    const TSlant slant(Shape.NameAngle);
    int width = std::max(Shape.Width, ColumnLeft(ColumnCount()) + edge);
    for (int column = 0; column < ColumnCount() && column < Names.size(); ++column)
        width = std::max(width, NameStart(column).x() + edge +
                                    RoundUp(fontMetrics().horizontalAdvance(Names[column]) * slant.Cosine +
                                            fontMetrics().descent() * slant.Sine));
    return {width, NameRowHeight() + Shape.BitHeight + 2 * edge};
}

void TBitGridView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Base));
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    for (int column = 0; column < ColumnCount(); ++column) {
        PaintName(painter, column);
        PaintBit(painter, column);
    }
}

void TBitGridView::PaintName(QPainter& painter, int column) const {
    if (column >= Names.size())
        return;
    const QPoint start = NameStart(column);
    painter.setPen(palette().color(QPalette::Text));
    TPainterCanvas canvas(painter);
    DrawAngledText(canvas, Shape.NameAngle, start.x(), Names[column].toStdString(), start.y());
}

void TBitGridView::PaintBit(QPainter& painter, int column) const {
    const QRect box = ToQt(BoxOf(CellRect(column, 1)));
    QStyleOptionButton frame;
    frame.initFrom(this);
    frame.rect = box;
    frame.state = QStyle::State_Enabled | QStyle::State_MouseOver | QStyle::State_Off;
    style()->drawPrimitive(QStyle::PE_IndicatorCheckBox, &frame, &painter, this);
    if (Bit(column))
        painter.fillRect(box, lime);
    // Styles draw pale frames, which are lost on a dark ground.
    painter.setBrush(Qt::NoBrush);
    painter.setPen(Faded(palette().color(QPalette::Text), 0.5F));
    painter.drawRoundedRect(QRectF(box).adjusted(0.5, 0.5, -0.5, -0.5), 1, 1);
    if (column != Current || !hasFocus())
        return;
    const QColor highlight = palette().color(QPalette::Highlight);
    painter.setPen(QPen(HasDarkBase(palette()) ? highlight.lighter(160) : highlight, 2));
    painter.drawRoundedRect(QRectF(box).adjusted(-focusGap, -focusGap, focusGap, focusGap), 3, 3);
}

void TBitGridView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    const QPoint point = event->position().toPoint();
    Report(point.x(), point.y());
}

void TBitGridView::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Left:
        return MoveTo(Current - 1);
    case Qt::Key_Right:
        return MoveTo(Current + 1);
    case Qt::Key_Home:
        return MoveTo(0);
    case Qt::Key_End:
        return MoveTo(ColumnCount() - 1);
    case Qt::Key_Space:
        if (!event->isAutoRepeat()) {
            const QPoint middle = ToQt(BoxOf(CellRect(Current, 1))).center();
            Report(middle.x(), middle.y());
        }
        return;
    default:
        QWidget::keyPressEvent(event);
    }
}

void TBitGridView::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        updateGeometry();
    QWidget::changeEvent(event);
}

void TBitGridView::Report(int x, int y) {
    TCellClick click;
    click.X = x;
    click.Y = y;
    for (int row = 0; row < 2; ++row)
        for (int column = 0; column < ColumnCount(); ++column) {
            const TCellRect cell = CellRect(column, row);
            if (cell.Contains(x, y)) {
                click.Column = column;
                click.Row = row;
                click.Cell = cell;
            }
        }
    if (click.Row == 1)
        MoveTo(click.Column);
    OnClick(click);
}

void TBitGridView::MoveTo(int column) {
    Current = std::clamp(column, 0, std::max(0, ColumnCount() - 1));
    Describe();
    update();
}

// What a screen reader tells: the bit of the keyboard.
void TBitGridView::Describe() {
    const QString name = Current < Names.size() ? Names[Current] : QString();
    setAccessibleDescription(name + (Bit(Current) ? QStringLiteral(": on") : QStringLiteral(": off")));
}

TBitRows::TBitRows(std::vector<std::string> rows, int rowHeight, int width, QWidget* parent)
    : QWidget(parent), Rows(std::move(rows)), RowHeight(rowHeight), LeastWidth(width) {
    // Between two rows' texts there must be some air.
    QFont small = font();
    for (int size = fontMetrics().height(); size > RowHeight - textTop; --size) {
        small.setPixelSize(std::max(size - textTop, 1));
        if (QFontMetrics(small, this).height() <= RowHeight - textTop)
            break;
    }
    setFont(small);
}

QSize TBitRows::sizeHint() const {
    int width = LeastWidth;
    for (const std::string& row : Rows)
        width = std::max(width, fontMetrics().horizontalAdvance(QString::fromStdString(row)) + 2 * textLeft);
    return {width, RowHeight * static_cast<int>(Rows.size())};
}

void TBitRows::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Base));
    QRect row(0, 0, width(), RowHeight);
    for (const std::string& text : Rows) {
        const bool set = text.starts_with('1');
        if (set)
            painter.fillRect(row, lime);
        // Black, but for a dark window.
        painter.setPen(set ? QColor(Qt::black) : palette().color(QPalette::Text));
        painter.drawText(QPoint(textLeft, row.top() + textTop + fontMetrics().ascent()),
                         QString::fromStdString(text));
        row.translate(0, RowHeight);
    }
    painter.setPen(TScopeColors::Of(palette()).Axis);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void TBitRows::mouseReleaseEvent(QMouseEvent*) {
    window()->close();
}

} // namespace tidewell
