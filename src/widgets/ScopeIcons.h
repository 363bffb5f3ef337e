#pragma once

#include <QColor>
#include <QIcon>

namespace tidewell {

enum class EScopeIcon {
    ZoomIn,
    ZoomOut,
    ZoomOff,
    ZoomOneDirX,
    ZoomOneDirY,
    Pan,
    Cursor,
    Channels,
    Copy,
    Save
};

// Drawn in that colour, sharp up to 200 %.
QIcon ScopeIcon(EScopeIcon icon, const QColor& color);

} // namespace tidewell
