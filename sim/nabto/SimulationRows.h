#pragma once

#include "sim/nabto/SimulationFile.h"

#include <cstdint>
#include <string>
#include <vector>

// The rows of a simulation file. All functions throw TError with the reason alone.
namespace tidewell {

// "setpoint 0 101..119": table, first address and count of a run.
TValueRun ParsePlace(const std::string& text);

// "0/101", or the address alone: of that table.
TRegisterAddress ParseSetpoint(const std::string& text, std::int32_t obj);

// Key "setpoint 0 101..119" and value "ramp 0 100 30s; signed".
TValueRun ParseValueRow(const std::string& key, const std::string& text);

// Appends the fault of key "Error" and value "Device busy; times=1" unless it is switched off.
void ParseFaultRow(const std::string& key, const std::string& text, std::vector<TFault>& faults);

// Key "nabtoOpenSession" and value "NABTO_FAILED; times=1".
TLibraryFault ParseLibraryRow(const std::string& key, const std::string& text);

} // namespace tidewell
