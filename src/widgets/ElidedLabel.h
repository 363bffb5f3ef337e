#pragma once

#include <QLabel>

namespace tidewell {

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

} // namespace tidewell
