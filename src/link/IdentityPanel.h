#pragma once

#include "core/controls/Simple.h"

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace tidewell {

class IDialogs;
class TUNabto;

// The factory panel for a device's identity. What it prepares stays here: nothing sends it.
class TIdentityPanel {
  public:
    using TBlock = std::array<std::uint8_t, 80>;

    // device: address of the device in force, read at each use.
    TIdentityPanel(IDialogs& dialogs, TUNabto& nabto, const std::string& device);

    TPanel PanelDevice{"PanelDevice"};
    TButton btnDeviceID{"btnDeviceID", "Device ID"};
    TButton btnCryptoKey{"btnCryptoKey", "CryptoKey"};
    TButton btnUserAccount{"btnUserAccount", "User Account"};
    TButton btnSaveInfo{"btnSaveInfo", "Save Info"};
    TLabel lblDeviceID{"lblDeviceID"};
    TLabel lblCryptoKey{"lblCryptoKey"};
    TLabel LblJson{"LblJson"};

    std::string factorydeviceid;
    std::string factorycryptokey;
    std::string useraccount;
    TBlock Identity{}; // as btnSaveInfo last built it

    // The id's characters from offset 0, the key's 16 bytes from offset 12, the rest zero. Digits behind the
    // first pair that is not hexadecimal are left out.
    static TBlock IdentityBlock(std::string_view deviceId, std::string_view cryptoKey);

  private:
    void Ask(const std::string& title, const std::string& prompt, std::string& text, TLabel& label);
    void btnUserAccountClick();

    IDialogs& Dialogs;
    TUNabto& Nabto;
    const std::string& Device;
};

} // namespace tidewell
