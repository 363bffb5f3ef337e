#pragma once

#include "graph/GraphPage.h"
#include "link/NabtoDevice.h"
#include "mainform/FormMainControls.h"
#include "mainform/Ports.h"
#include "mainform/ProfileOpening.h"
#include "model/Profile.h"

#include <filesystem>

namespace tidewell {

// Shows a downloaded flash datalog on the graph page.
class TFlashView {
  public:
    struct TParts {
        TFormMainControls& Controls;
        TProfile& Profile;
        TProfileOpening& ProfileOpening;
        TGraphPage& GraphPage;
        TNabtoDevice& Device;
    };
    TFlashView(const TPorts& ports, const TParts& parts) : Ports(ports), Parts(parts) {}

    // Draws the file by its companion profile, and closes the device form. No other profile is open
    // afterwards, and no setpoint page. Throws EInOutError when the file cannot be read; nothing has changed
    // then.
    void Show(const std::filesystem::path& profile, const std::filesystem::path& file);

  private:
    const TPorts& Ports;
    const TParts Parts;
};

} // namespace tidewell
