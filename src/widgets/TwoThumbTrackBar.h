#pragma once

#include "core/controls/Control.h"

#include <QColor>
#include <QWidget>

#include <optional>

namespace tidewell {

// A horizontal track bar with two thumbs, which bound a range. The mouse drags the thumb that is nearer; Tab
// goes from the lower thumb to the upper one, and the arrow keys, Page Up, Page Down, Home and End move the
// one that has the keyboard. A thumb stops at the other one.
class TTwoThumbTrackBar : public QWidget {
  public:
    explicit TTwoThumbTrackBar(QWidget* parent = nullptr);

    void SetRange(int min, int max);
    void SetPositions(int lower, int upper);
    int LowerPosition() const { return Lower; }
    int UpperPosition() const { return Upper; }
    void SetTickFrequency(int positions); // 0: no ticks
    void SetPageSize(int positions);
    void SetThumbColor(const QColor& color);

    // The user has moved a thumb.
    TEvent<int> OnLowerMoved;
    TEvent<int> OnUpperMoved;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void leaveEvent(QEvent* event) override;

  private:
    enum class EThumb { Lower, Upper };

    int& PositionOf(EThumb thumb) { return thumb == EThumb::Lower ? Lower : Upper; }
    void Move(EThumb thumb, int position);
    void Describe();
    QRectF Groove() const;
    qreal XOf(int position) const;
    int PositionAt(qreal x) const;
    EThumb ThumbAt(qreal x) const;
    QRectF ThumbRect(EThumb thumb) const;
    void PaintTicks(QPainter& painter) const;
    void PaintThumb(QPainter& painter, EThumb thumb) const;

    int Min = 0;
    int Max = 100;
    int Lower = 0;
    int Upper = 100;
    int TickFrequency = 0;
    int PageSize = 1;
    QColor ThumbColor = Qt::darkGreen;
    EThumb Current = EThumb::Lower; // has the keyboard
    std::optional<EThumb> Dragged;
    std::optional<EThumb> Hovered;
    qreal GrabOffset = 0; // of the mouse from the middle of the dragged thumb
};

} // namespace tidewell
