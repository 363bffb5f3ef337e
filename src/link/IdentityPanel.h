#pragma once

#include "core/controls/Simple.h"

#include <array>
#include <cstdint>
#include <string>

namespace tidewell {

struct TDeviceServices;

// The factory panel for a device's identity. What it prepares stays here: nothing sends it.
class TIdentityPanel : public TControls {
  public:
    explicit TIdentityPanel(const TDeviceServices& services);

    TPanel PanelDevice{*this, "PanelDevice"};
    TButton btnDeviceID{*this, "btnDeviceID", "Device ID"};
    TButton btnCryptoKey{*this, "btnCryptoKey", "CryptoKey"};
    TButton btnUserAccount{*this, "btnUserAccount", "User Account"};
    TButton btnSaveInfo{*this, "btnSaveInfo", "Save Info"};
    TLabel lblDeviceID{*this, "lblDeviceID"};
    TLabel lblCryptoKey{*this, "lblCryptoKey"};
    TLabel LblJson{*this, "LblJson"};

    std::string factorydeviceid;
    std::string factorycryptokey;
    std::string useraccount;
    // As btnSaveInfo last built it: the id's characters from offset 0, the key's 16 bytes from offset 12, the
    // rest zero.
    std::array<std::uint8_t, 80> Identity{};

  private:
    void Ask(const std::string& title, const std::string& prompt, std::string& text, TLabel& label);
    void btnUserAccountClick();
    void btnSaveInfoClick();

    const TDeviceServices& Services;
};

} // namespace tidewell
