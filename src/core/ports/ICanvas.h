#pragma once

#include <string>

namespace tidewell {

// What texts are drawn on.
class ICanvas {
  public:
    virtual ~ICanvas() = default;
    virtual double FontAngle() const = 0; // degrees, counter-clockwise
    virtual void SetFontAngle(double degrees) = 0;
    virtual void TextOut(int x, int y, const std::string& text) = 0;
};

} // namespace tidewell
