#pragma once

#include <string>
#include <vector>

namespace tidewell {

// A settled read-back of all values, for who has written setpoints: two whole poll cycles of the same length
// in characters. To order one, set SetDatapointListCount and Error_SetDatapointListCount to 0 and start the
// log; it is there when SetDatapointListCount reaches 3. With Error_SetDatapointListCount of 3 or more it
// failed, else row 1 of SetDatapointList is the snapshot.
struct TReadBackSnapshot {
    std::vector<std::string> SetDatapointList;
    int SetDatapointListCount = 0;
    int Error_SetDatapointListCount = 0;

    // Takes the values of a finished cycle. The first one after an order is only waited for.
    void SaveSetDatapointstringToStringlist(const std::string& cycle);
};

} // namespace tidewell
