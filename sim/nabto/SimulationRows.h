#pragma once

#include "sim/nabto/SimulationFile.h"

#include <string>
#include <vector>

// The rows of a simulation file. All functions throw TError with the reason alone.
namespace tidewell {

// Key "setpoint 0 101..119" and value "ramp 0 100 30s; signed".
TValueRun ParseValueRow(const std::string& key, const std::string& text);

// Appends the fault of key "Error" and value "Device busy; times=1" unless it is switched off.
void ParseFaultRow(const std::string& key, const std::string& text, std::vector<TFault>& faults);

// One row of a section for service functions, such as key "UpdateTime" and value "30s", or key "Image 1" and
// value "0xA10000; room=65536; version=Version HP".
void ParseServiceRow(const std::string& key, const std::string& text, TServiceSetup& setup);

// Key "nabtoOpenSession" and value "NABTO_FAILED; times=1".
TLibraryFault ParseLibraryRow(const std::string& key, const std::string& text);

} // namespace tidewell
