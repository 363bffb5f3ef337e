#pragma once

namespace tidewell {

class TBox;
class TFlashDatalog;
class TServiceTools;

// Panels of the service form, added to a column. They show while the form shows them.

// The range of the flash datalog: slider, its ends, the edits of its thumbs, the download.
void AddFlashRange(TBox& column, TFlashDatalog& flash);
// Flash and EEPROM by address.
void AddReadPanels(TBox& column, TServiceTools& tools);

} // namespace tidewell
