#pragma once

#include "core/controls/Color.h"

#include <QColor>

class QPalette;

namespace tidewell {

inline QColor ToQt(TColor color) {
    return {color.Red(), color.Green(), color.Blue()};
}
TColor FromQt(const QColor& color);

QColor Faded(QColor color, float opacity);
// A share of one colour over another, from 0 to 1.
QColor Mixed(const QColor& over, const QColor& under, double share);
// How bright a colour looks, from 0 to 1.
double Luminance(const QColor& color);
bool HasDarkBase(const QPalette& palette);

// What a surface is drawn with, on light and dark.
struct TScopeColors {
    static TScopeColors Of(const QPalette& palette);
    QColor Surface; // behind everything
    QColor Plot;    // behind the curves
    QColor Text;
    QColor Axis;
    QColor Grid;
    QColor Accent; // what the user points at
};

// The colour itself, or as much of it mixed with black or white that it stands out from the background.
QColor Readable(TColor color, const QColor& background);

} // namespace tidewell
