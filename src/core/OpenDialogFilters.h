#pragma once

#include "core/ports/IDialogs.h"

#include <cstddef>
#include <vector>

namespace tidewell {

// The filter rows of the one dialog that opens profiles, datalogs and setpoint files.
inline std::vector<TFileFilter> OpenDialogFilters() {
    return {{"pls", "*.pls"},
            {"zls;csv", " *.zls;*.csv"},
            {"txt", "*.txt"},
            {"DAL (SD Card Datalog)", "*.DAL"},
            {"SDpls (SC Card Datalog profile)", "*.SDpls"}};
}
inline constexpr std::size_t OpenDialogCsvFilter = 1;
inline constexpr std::size_t OpenDialogSdDatalogFilter = 3;
inline constexpr std::size_t OpenDialogSdProfileFilter = 4;

} // namespace tidewell
