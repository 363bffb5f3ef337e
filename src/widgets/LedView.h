#pragma once

#include <QColor>
#include <QWidget>

namespace tidewell {

// An indicator lamp: bright in its colour while on, a dark glass of the same colour while off.
class TLedView : public QWidget {
  public:
    explicit TLedView(QWidget* parent = nullptr);
    void SetOn(bool on);
    bool IsOn() const { return On; }
    void SetColor(const QColor& color);
    const QColor& Color() const { return LampColor; }

    QSize sizeHint() const override { return {16, 16}; }
    QSize minimumSizeHint() const override { return {10, 10}; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void Describe();

    bool On = false;
    QColor LampColor = Qt::green;
};

} // namespace tidewell
