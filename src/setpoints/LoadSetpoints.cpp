#include "setpoints/LoadSetpoints.h"

#include "core/ports/IDialogs.h"

namespace tidewell {

TLoadSetpoints::TLoadSetpoints(const TParts& parts) : TForm("LoadSetpoints"), Parts(parts) {}
bool TLoadSetpoints::LoadForm(const std::filesystem::path&) {
    return Parts.Dialogs.WorkAreaHeight() > 0;
}

} // namespace tidewell
