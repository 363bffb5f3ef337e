#pragma once

#include "core/controls/Color.h"

#include <QColor>

class QPalette;

namespace tidewell {

// What a surface is drawn with, on light and dark.
struct TScopeColors {
    static TScopeColors Of(const QPalette& palette);
    QColor Surface; // behind everything
    QColor Plot;    // behind the curves
    QColor Text;
    QColor Axis;
    QColor Grid;
    QColor SubGrid;
    QColor Accent; // what the user points at
};

// The colour itself, or as much of it mixed with black or white that it stands out from the background.
QColor Readable(TColor color, const QColor& background);

} // namespace tidewell
