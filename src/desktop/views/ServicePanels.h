#pragma once

#include "desktop/binders/FormBinder.h"

class QVBoxLayout;

namespace tidewell {

class TFlashDatalog;
class TServiceTools;

// Panels of the service form, added to a column. They show while the form shows them.

// The range of the flash datalog: slider, its ends, the edits of its thumbs, the download.
void AddFlashRange(QVBoxLayout& column, TFlashDatalog& flash, const TViewContext& context);
// Flash and EEPROM by address.
void AddReadPanels(QVBoxLayout& column, TServiceTools& tools, const TViewContext& context);

} // namespace tidewell
