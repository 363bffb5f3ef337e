#pragma once

#include "core/controls/ExclusiveUse.h"

namespace tidewell {

// Of the device, for an action of more than one exchange: it has one stream.
class TDeviceUse : public TExclusiveUse {};

} // namespace tidewell
