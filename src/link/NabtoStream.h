#pragma once

#include "core/controls/Control.h"
#include "core/ports/ITimers.h"
#include "link/NabtoClientApi.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tidewell {

class IDialogs;
class IWait;
class TNabtoLibrary;

// How far the running transfer is, in bytes, for whoever shows it.
class TStreamProgress {
  public:
    TStreamProgress() = default;
    virtual ~TStreamProgress() = default;
    TStreamProgress(const TStreamProgress&) = delete;
    TStreamProgress& operator=(const TStreamProgress&) = delete;

    std::uint32_t currentstreamlength = 0;
    std::uint32_t currentstreamprogress = 0;
    TEvent<TStreamProgress&> FOnUpdateProgress;
    // Asked before each chunk, as the event loop runs between them: set to false to end the transfer without
    // a word.
    TEvent<bool&> OnMayGoOn;
    virtual void DoUpdateProgress() { FOnUpdateProgress(*this); }
    bool Ended() const {
        bool goesOn = true;
        OnMayGoOn(goesOn);
        return !goesOn;
    }
};

// What a read of the stream gave.
struct TStreamRead {
    enum class EEnd { Complete, TimedOut, Broken, Failed, Ended };
    std::vector<std::uint8_t> Bytes; // that came
    EEnd End = EEnd::Complete;       // Failed: by an error between the chunks

    // The stream gives no more, or nobody wants it any more.
    bool Lost() const { return End == EEnd::Broken || End == EEnd::Ended; }
    // The customary view of it: nothing of a stream that was lost, else the whole length, in which zero
    // stands for what did not come.
    std::optional<std::vector<std::uint8_t>> AtLength(std::uint32_t length) &&;
};

// The one byte stream to a device: Start, then reads or writes, then Stop. Blocks its caller.
class TNabtoStream {
  public:
    TNabtoStream(const TNabtoLibrary& library, IDialogs& dialogs, ITimers& timers, IWait& wait,
                 TStreamProgress& progress);

    // True when the stream is open; else the status was shown.
    bool Start(void* session, const std::string& device);
    // The reverse: false when the stream was closed, true when closing failed, which was shown.
    bool Stop();
    // At most that many bytes. What ends it early was shown, unless the transfer was ended.
    TStreamRead Read(std::uint32_t readLength);
    // In chunks, each followed by streamDelay ms. Gives the last status; NABTO_FAILED for no data,
    // NABTO_ABORTED for a transfer that was ended.
    TNabtoStatus Write(std::span<const std::uint8_t> data, int streamDelay);

  private:
    void Prepare(int timeout); // ms
    void Arm();
    void ReadChunks(std::uint32_t readLength, TStreamRead& read);
    void CloseRepeatedly();

    const TNabtoLibrary& Library;
    IDialogs& Dialogs;
    IWait& Wait;
    TStreamProgress& Progress;
    void* Stream = nullptr;
    bool streamTimeout = false;
    std::unique_ptr<ITimer> timeoutTimer;
};

} // namespace tidewell
