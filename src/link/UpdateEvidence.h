#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace tidewell {

struct TFirmwarePackage;

// What an update may claim; the first that holds.
enum class EUpdateVerdict { RestartNotSeen, ResultUnknown, ImageBad, ImageNotTaken, OtherVersion, Good };

// Whether a further restart, with the test behind it, may change it.
bool MayChange(EUpdateVerdict verdict);

// What the device itself said of an update: each step notes here what it has learned, and Judge alone decides
// what may be claimed. Images are counted from 0.
class TUpdateEvidence {
  public:
    TUpdateEvidence() = default;
    explicit TUpdateEvidence(const TFirmwarePackage& package);

    // A restart makes what the device said of its images and versions void.
    void BeginRound();
    // Of the command: the device told that it takes it; and whether it answered right behind it.
    void NoteRestart(bool accepted, bool stillThere);
    void NoteResult(std::optional<std::int32_t> result) { Result = result; }
    void NoteTaken(std::size_t image, bool taken) {
        Images[image].Tried = true;
        Images[image].Taken = taken;
    }
    void NoteVersion(std::size_t image, bool expected) { Images[image].OtherVersion = !expected; }

    bool RestartSeen() const { return Restarted; }
    bool ResultKnown() const { return Result.has_value(); }
    bool Failed(std::size_t image) const; // by the result
    // strict: only by what was said. Else the restart, what was taken and the versions are given credit.
    EUpdateVerdict Judge(bool strict) const;
    std::size_t FirstNotTaken() const;

  private:
    struct TImage {
        bool Sent = false;
        bool Verified = false;     // by the device's own test after the restart
        bool Tried = false;        // there is a road for it
        bool Taken = false;        // the device acknowledged the whole of it
        bool OtherVersion = false; // it reports another version than the one expected
    };
    std::vector<TImage> Images;
    bool Restarted = false;
    std::optional<std::int32_t> Result; // a bit per image that failed its test
};

} // namespace tidewell
