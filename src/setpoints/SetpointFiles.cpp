#include "setpoints/SetpointFiles.h"

namespace tidewell {

void TSetpointFiles::Savesetpoints1Click() {}
void TSetpointFiles::Loadsetpointfromfile1Click() {}
void TSetpointFiles::SetpointSaveSetpoints(const std::string&) {}

} // namespace tidewell
