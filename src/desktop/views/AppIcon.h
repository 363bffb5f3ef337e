#pragma once

#include <QIcon>

namespace tidewell {

// The program's icon, drawn at each size that desktops ask for.
QIcon AppIcon();

} // namespace tidewell
