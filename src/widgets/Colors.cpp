#include "widgets/Colors.h"

#include <QPalette>

#include <algorithm>
#include <cmath>

namespace tidewell {

namespace {

constexpr double contrastOnLight = 2.2;
constexpr double contrastOnDark = 3;
constexpr int mixSteps = 20;

double Contrast(const QColor& a, const QColor& b) {
    const double first = Luminance(a);
    const double second = Luminance(b);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

// To whole steps of 8 bits, as the raster draws them.
QColor MixedEvenly(const QColor& over, const QColor& under, double share) {
    const auto mix = [share](int a, int b) { return static_cast<int>(std::lround(b + (a - b) * share)); };
    return {mix(over.red(), under.red()), mix(over.green(), under.green()), mix(over.blue(), under.blue())};
}

} // namespace

TColor FromQt(const QColor& color) {
    return {static_cast<std::uint32_t>(color.blue()) << 16U |
            static_cast<std::uint32_t>(color.green()) << 8U | static_cast<std::uint32_t>(color.red())};
}

QColor Faded(QColor color, float opacity) {
    color.setAlphaF(opacity);
    return color;
}

QColor Mixed(const QColor& over, const QColor& under, double share) {
    const auto mix = [share](float a, float b) { return static_cast<float>(a * share + b * (1 - share)); };
    return QColor::fromRgbF(mix(over.redF(), under.redF()), mix(over.greenF(), under.greenF()),
                            mix(over.blueF(), under.blueF()));
}

double Luminance(const QColor& color) {
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

bool HasDarkBase(const QPalette& palette) {
    return palette.color(QPalette::Base).lightness() < 128;
}

TScopeColors TScopeColors::Of(const QPalette& palette) {
    const QColor plot = palette.color(QPalette::Active, QPalette::Base);
    const QColor text = palette.color(QPalette::Active, QPalette::Text);
    return {plot,
            plot,
            MixedEvenly(plot, text, 0.2),
            MixedEvenly(plot, text, 0.5),
            MixedEvenly(plot, text, 0.87),
            palette.color(QPalette::Active, QPalette::Highlight)};
}

QColor Readable(TColor color, const QColor& background) {
    const QColor own = ToQt(color);
    const bool light = Luminance(background) > 0.18;
    const QColor end = light ? Qt::black : Qt::white;
    const double leastContrast = light ? contrastOnLight : contrastOnDark;
    for (int step = 0; step < mixSteps; ++step) {
        const QColor mixed = MixedEvenly(end, own, static_cast<double>(step) / mixSteps);
        if (Contrast(mixed, background) >= leastContrast)
            return mixed;
    }
    return end;
}

} // namespace tidewell
