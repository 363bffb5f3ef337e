#pragma once

#include "rig/Test.h"

namespace tidewell::test {

class TWorld;

// What a journey does to the world around the program, by the words behind "edit" and "fault". Both throw
// TBadStep.
void EditFile(TWorld& world, const std::string& rest);
void SetFault(TWorld& world, const std::string& rest);

} // namespace tidewell::test
