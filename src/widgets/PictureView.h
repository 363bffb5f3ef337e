#pragma once

#include <QPixmap>
#include <QWidget>

namespace tidewell {

// A picture, smoothly fitted into the widget with its proportions kept.
class TPictureView : public QWidget {
  public:
    explicit TPictureView(QWidget* parent = nullptr);
    void SetPicture(const QPixmap& picture);
    const QPixmap& Picture() const { return Shown; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QPixmap Shown;
};

} // namespace tidewell
