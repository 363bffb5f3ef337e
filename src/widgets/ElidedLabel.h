#pragma once

#include <QLabel>

namespace tidewell {

// One line of plain text that ends in an ellipsis where it does not fit; text() is the whole of it.
class TElidedLabel : public QLabel {
  public:
    explicit TElidedLabel(QWidget* parent = nullptr);
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;
};

} // namespace tidewell
