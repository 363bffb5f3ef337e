#include "widgets/ScopeColors.h"

#include <QPalette>

#include <algorithm>
#include <cmath>

namespace tidewell {

namespace {

constexpr double leastContrast = 2.2;
constexpr int mixSteps = 20;

QColor Mix(const QColor& a, const QColor& b, double shareOfB) {
    const auto mix = [shareOfB](int x, int y) {
        return static_cast<int>(std::lround(x + (y - x) * shareOfB));
    };
    return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}

// Relative luminance, 0 to 1.
double Luminance(const QColor& color) {
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double Contrast(const QColor& a, const QColor& b) {
    const double first = Luminance(a);
    const double second = Luminance(b);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

} // namespace

TScopeColors TScopeColors::Of(const QPalette& palette) {
    const QColor plot = palette.color(QPalette::Active, QPalette::Base);
    const QColor text = palette.color(QPalette::Active, QPalette::Text);
    return {plot,
            plot,
            Mix(text, plot, 0.2),
            Mix(text, plot, 0.5),
            Mix(text, plot, 0.87),
            Mix(text, plot, 0.93),
            palette.color(QPalette::Active, QPalette::Highlight)};
}

QColor Readable(TColor color, const QColor& background) {
    const QColor own(color.Red(), color.Green(), color.Blue());
    const QColor end = Luminance(background) > 0.18 ? Qt::black : Qt::white;
    for (int step = 0; step < mixSteps; ++step) {
        const QColor mixed = Mix(own, end, static_cast<double>(step) / mixSteps);
        if (Contrast(mixed, background) >= leastContrast)
            return mixed;
    }
    return end;
}

} // namespace tidewell
