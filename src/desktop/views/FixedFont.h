#pragma once

#include <QFont>

namespace tidewell {

// The platform's font whose letters are all of one width, whatever its theme calls so.
QFont FixedFont();

} // namespace tidewell
