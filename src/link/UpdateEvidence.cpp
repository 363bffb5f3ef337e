#include "link/UpdateEvidence.h"

#include "link/FirmwarePackage.h"

#include <algorithm>

namespace tidewell {

bool MayChange(EUpdateVerdict verdict) {
    return verdict == EUpdateVerdict::RestartNotSeen || verdict == EUpdateVerdict::ResultUnknown ||
           verdict == EUpdateVerdict::ImageBad;
}

TUpdateEvidence::TUpdateEvidence(const TFirmwarePackage& package) : Images(package.Files.size()) {
    for (std::size_t i = 0; i < Images.size(); ++i) {
        Images[i].Sent = package.Sent(i);
        Images[i].Verified = package.Verified(i);
    }
}

void TUpdateEvidence::BeginRound() {
    Restarted = false;
    Result.reset();
    for (TImage& image : Images)
        image.OtherVersion = false;
}

void TUpdateEvidence::NoteRestart(bool accepted, bool stillThere) {
    Restarted = accepted || !stillThere;
}

bool TUpdateEvidence::Failed(std::size_t image) const {
    const std::int32_t result = Result.value_or(0);
    return (result & 0xFF) != 0 && image < 32 && (static_cast<std::uint32_t>(result) >> image & 1U) != 0;
}

// Of an image that the device has tested it does not matter how it came there, but for one that no road has
// led to: there the device has tested the former one.
EUpdateVerdict TUpdateEvidence::Judge(bool strict) const {
    if (strict && !Restarted)
        return EUpdateVerdict::RestartNotSeen;
    if (!Result && std::ranges::any_of(Images, &TImage::Verified))
        return EUpdateVerdict::ResultUnknown;
    for (std::size_t i = 0; i < Images.size(); ++i)
        if (Images[i].Verified && Failed(i))
            return EUpdateVerdict::ImageBad;
    if (strict && FirstNotTaken() < Images.size())
        return EUpdateVerdict::ImageNotTaken;
    if (strict && std::ranges::any_of(Images, &TImage::OtherVersion))
        return EUpdateVerdict::OtherVersion;
    return EUpdateVerdict::Good;
}

std::size_t TUpdateEvidence::FirstNotTaken() const {
    const auto found = std::ranges::find_if(Images, [](const TImage& image) {
        return image.Sent && !image.Taken && !(image.Verified && image.Tried);
    });
    return static_cast<std::size_t>(found - Images.begin());
}

} // namespace tidewell
