#pragma once

#include <QColor>
#include <QIcon>

namespace tidewell {

// A drawing of the resources in that colour, sharp up to 200 %.
QIcon TintedIcon(const QString& name, const QColor& color);

// The program's icon, at each size that desktops ask for.
QIcon AppIcon();

} // namespace tidewell
