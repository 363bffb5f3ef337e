#pragma once

#include <QPushButton>

namespace tidewell {

// A push button with some air beside its caption.
class TRoomyButton : public QPushButton {
  public:
    using QPushButton::QPushButton;
    QSize sizeHint() const override { return QPushButton::sizeHint() + QSize(fontMetrics().height(), 0); }
    QSize minimumSizeHint() const override { return sizeHint(); }
};

} // namespace tidewell
