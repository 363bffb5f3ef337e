#pragma once

#include <QScrollArea>

namespace tidewell {

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
