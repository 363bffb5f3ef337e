#pragma once

#include "graph/GraphPage.h"
#include "link/NabtoDevice.h"
#include "mainform/FormMain.h"
#include "mainform/Ports.h"
#include "mainform/ProfileOpening.h"
#include "model/ModbusPanel.h"
#include "model/Profile.h"

#include <filesystem>
#include <string>
#include <vector>

namespace tidewell {

// Shows a downloaded flash datalog on the graph page.
class TFlashDatalogOpening {
  public:
    struct TNeeds {
        TFormMain& Main;
        TModbusPanel& Panel;
        TProfile& Profile;
        TProfileOpening& ProfileOpening;
        TGraphPage& GraphPage;
        TNabtoDevice& Device;
    };
    TFlashDatalogOpening(const TPorts& ports, const TNeeds& needs) : Ports(ports), Needs(needs) {}

    // Draws the file by its companion profile, and closes the device form. No other profile is open
    // afterwards, and no setpoint page. Throws what stands in the way, such as EInOutError for a file that
    // cannot be read or EListError for one without rows; the profile of before is then in force, with the
    // graph empty if it was begun.
    void Show(const std::filesystem::path& profile, const std::filesystem::path& file);

  private:
    // What the companion profile takes the place of.
    struct TBefore {
        TProfileGraph Profile;
        std::vector<TGraphChannelSettings> Channels;
        std::string Caption;
        std::filesystem::path PlsFilePath;
    };
    TBefore Before() const;
    void Draw(IDataLines& lines);
    void Restore(const TBefore& before);

    const TPorts& Ports;
    const TNeeds Needs;
};

} // namespace tidewell
