#include "link/IdentityPanel.h"

#include "core/TextFile.h"
#include "core/ports/IDialogs.h"
#include "link/DeviceServices.h"
#include "link/Nabto.h"

#include <algorithm>
#include <charconv>
#include <system_error>

namespace tidewell {

namespace {

constexpr std::size_t keyOffset = 12;
constexpr std::size_t keySize = 16;
constexpr const char* accountExample = "service@tidewell.example";

// Decodes pairs of hexadecimal digits up to the first that is none; gives the number of bytes.
std::size_t DecodeHex(std::string_view digits, std::span<std::uint8_t> target) {
    std::size_t count = 0;
    for (; count < target.size() && digits.size() >= 2; ++count, digits.remove_prefix(2)) {
        const auto result = std::from_chars(digits.data(), digits.data() + 2, target[count], 16);
        if (result.ec != std::errc() || result.ptr != digits.data() + 2) {
            target[count] = 0;
            break;
        }
    }
    return count;
}

} // namespace

TIdentityPanel::TIdentityPanel(const TDeviceServices& services)
    : TControls(services.Form), Services(services) {
    PanelDevice.SetVisible(false);
    btnSaveInfo.SetEnabled(false);
    btnDeviceID.OnClick = [this] { Ask("Device ID", "Enter Device ID:", factorydeviceid, lblDeviceID); };
    btnCryptoKey.OnClick = [this] { Ask("CryptoKey", "Enter CryptoKey:", factorycryptokey, lblCryptoKey); };
    btnUserAccount.OnClick = [this] { btnUserAccountClick(); };
    btnSaveInfo.OnClick = [this] { btnSaveInfoClick(); };
}

void TIdentityPanel::Ask(const std::string& title, const std::string& prompt, std::string& text,
                         TLabel& label) {
    if (const auto answer = Services.Dialogs.InputBox(title, prompt)) {
        text = *answer;
        label.SetCaption(text);
    }
    btnSaveInfo.SetEnabled(!factorydeviceid.empty() && !factorycryptokey.empty());
}

void TIdentityPanel::btnUserAccountClick() {
    const auto answer = Services.Dialogs.InputBox("User Account", "Enter user account (for example " +
                                                                      std::string(accountExample) + "):");
    if (!answer || answer->empty())
        return;
    useraccount = *answer;
    Services.Nabto.SendQuery(Services.device, "ping.json", UserAccountRequest("1", accountExample));
}

void TIdentityPanel::btnSaveInfoClick() {
    LblJson.SetCaption(" ");
    Identity = {};
    const std::string id = EncodeText(factorydeviceid, EEncoding::Windows1252);
    std::copy_n(id.begin(), std::min(id.size(), Identity.size()), Identity.begin());
    const auto key = std::span(Identity).subspan(keyOffset, keySize);
    std::ranges::fill(key, std::uint8_t{0});
    if (DecodeHex(factorycryptokey, key) < keySize || factorycryptokey.size() != 2 * keySize)
        Services.Dialogs.ShowMessage("CryptoKey must be 32 hexadecimal digits");
}

} // namespace tidewell
