#include "link/ReadBackSnapshot.h"

#include "core/KvSupport.h"

namespace tidewell {

void TReadBackSnapshot::SaveSetDatapointstringToStringlist(const std::string& cycle) {
    switch (SetDatapointListCount) {
    case 0:
        SetDatapointList.clear();
        SetDatapointListCount = 1;
        break;
    case 1:
        SetDatapointList.push_back(cycle);
        SetDatapointListCount = 2;
        break;
    case 2:
        SetDatapointList.push_back(cycle);
        if (MaxTextLength({SetDatapointList.front()}) == MaxTextLength({cycle}))
            SetDatapointListCount = 3;
        else
            SetDatapointListCount = ++Error_SetDatapointListCount < 4 ? 0 : 3;
        break;
    default:
        break;
    }
}

} // namespace tidewell
