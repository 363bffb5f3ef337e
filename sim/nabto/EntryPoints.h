#pragma once

#include "sim/nabto/SimulatedNabto.h"

#include <string_view>

namespace tidewell {

// What the C functions of the library work on, one for the process; with nullptr they answer
// NABTO_API_NOT_INITIALIZED. The caller keeps ownership and unbinds before the object goes.
void BindEntryPoints(TSimulatedNabto* nabto);

// The C function of that name, or nullptr.
void* FindEntryPoint(std::string_view name);

} // namespace tidewell
