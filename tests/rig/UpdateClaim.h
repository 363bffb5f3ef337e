#pragma once

#include "rig/Test.h"

namespace tidewell::test {

class TWorld;

// What is not true of a firmware update that the screen tells as a success: the controller holds each image
// that was sent and tested, with ServiceStrict each that was sent. Empty when nothing false is claimed.
std::string FalseUpdateClaim(TWorld& world);

} // namespace tidewell::test
