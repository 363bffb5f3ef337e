#pragma once

#include <QColor>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QScrollArea>
#include <QStyledItemDelegate>

class QVBoxLayout;

namespace tidewell {

QFont Bold(QFont font);
// The platform's font whose letters are all of one width, whatever its theme calls so.
QFont FixedFont();

// A push button with some air beside its caption.
class TRoomyButton : public QPushButton {
  public:
    using QPushButton::QPushButton;
    QSize sizeHint() const override { return QPushButton::sizeHint() + QSize(fontMetrics().height(), 0); }
    QSize minimumSizeHint() const override { return sizeHint(); }
};

// Rows of an item view with some air.
class TRoomyRows : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        return QStyledItemDelegate::sizeHint(option, index) + QSize(0, 4);
    }
};

// One line of plain text. Where it does not fit it gets somewhat smaller, then an ellipsis; text() is the
// whole of it.
class TElidedLabel : public QLabel {
  public:
    explicit TElidedLabel(QWidget* parent = nullptr);
    void SetElideMode(Qt::TextElideMode mode);
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

  private:
    Qt::TextElideMode Mode = Qt::ElideRight;
};

// A panel with a caption line above what it holds.
class TCaptionPanel : public QFrame {
  public:
    explicit TCaptionPanel(QWidget* parent = nullptr);
    void SetCaption(const QString& caption) { Title.setText(caption); }
    // The widget becomes a child and takes all the room below the caption.
    void SetContent(QWidget& content);

  private:
    QLabel& Title;
    QVBoxLayout& Column;
};

// A picture, smoothly fitted into the widget with its proportions kept.
class TPictureView : public QWidget {
  public:
    using QWidget::QWidget;
    void SetPicture(const QPixmap& picture);
    const QPixmap& Picture() const { return Shown; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QPixmap Shown;
};

// An indicator lamp: bright in its colour while on, a dark glass of the same colour while off.
class TLedView : public QWidget {
  public:
    explicit TLedView(QWidget* parent = nullptr);
    void Show(bool on, const QColor& color);

    QSize sizeHint() const override { return {16, 16}; }
    QSize minimumSizeHint() const override { return {10, 10}; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    bool On = false;
    QColor Color = Qt::green;
};

// A column of widgets as wide as they need; where it is too low for them it scrolls.
class TColumnScroll : public QScrollArea {
  public:
    explicit TColumnScroll(QWidget* parent = nullptr);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
};

} // namespace tidewell
