#pragma once

class QVBoxLayout;

namespace tidewell {

class TLabel;

// Adds the one line of a page that has nothing to show yet.
void AddEmptyLine(QVBoxLayout& column, TLabel& label);

} // namespace tidewell
