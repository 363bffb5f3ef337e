#include "link/NabtoStream.h"

#include "core/Errors.h"
#include "core/ports/IDialogs.h"
#include "core/ports/IWait.h"
#include "link/NabtoLibrary.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <new>
#include <utility>

namespace tidewell {

namespace {

constexpr int readTimeout = 2000; // ms
constexpr int writeTimeout = 1;   // ms
constexpr int closePause = 1000;  // ms
constexpr std::size_t writeChunk = 512;

const char* ClassName(const std::exception& error) {
    if (dynamic_cast<const EConvertError*>(&error))
        return "EConvertError";
    if (dynamic_cast<const EListError*>(&error))
        return "EListError";
    if (dynamic_cast<const ERangeError*>(&error))
        return "ERangeError";
    if (dynamic_cast<const EInOutError*>(&error))
        return "EInOutError";
    if (dynamic_cast<const std::bad_alloc*>(&error))
        return "EOutOfMemory";
    return "Exception";
}

} // namespace

std::optional<std::vector<std::uint8_t>> TStreamRead::AtLength(std::uint32_t length) && {
    if (Lost())
        return std::nullopt;
    Bytes.resize(length);
    return std::move(Bytes);
}

TNabtoStream::TNabtoStream(const TNabtoLibrary& library, IDialogs& dialogs, ITimers& timers, IWait& wait,
                           TStreamProgress& progress)
    : Library(library), Dialogs(dialogs), Wait(wait), Progress(progress), timeoutTimer(timers.CreateTimer()) {
    timeoutTimer->SetHandler([this] {
        timeoutTimer->SetEnabled(false);
        streamTimeout = true;
    });
}

bool TNabtoStream::Start(void* session, const std::string& device) {
    if (!Library.NabtoStreamOpen) {
        Dialogs.ShowMessage("No NabtoStreamOpen Function Loaded");
        return false;
    }
    const auto status = static_cast<TNabtoStatus>(Library.NabtoStreamOpen(&Stream, session, device.c_str()));
    if (status == NABTO_OK)
        return true;
    ShowNabtoStatus(Library, Dialogs, status);
    return false;
}

bool TNabtoStream::Stop() {
    if (!Library.NabtoStreamClose) {
        Dialogs.ShowMessage("No NabtoStreamClose Function Loaded");
        return true;
    }
    const auto status = static_cast<TNabtoStatus>(Library.NabtoStreamClose(Stream));
    if (status == NABTO_OK)
        return false;
    ShowNabtoStatus(Library, Dialogs, status);
    return true;
}

// The library needs several closes until it lets a broken stream go: asks until it refuses, six times at
// most.
void TNabtoStream::CloseRepeatedly() {
    for (int counter = 0; counter <= 5 && !Stop(); ++counter)
        Wait.Sleep(closePause);
}

void TNabtoStream::Prepare(int timeout) {
    streamTimeout = false;
    timeoutTimer->SetInterval(timeout);
}

void TNabtoStream::Arm() {
    if (!timeoutTimer->Enabled())
        timeoutTimer->SetEnabled(true);
}

TStreamRead TNabtoStream::Read(std::uint32_t readLength) {
    Prepare(readTimeout);
    Progress.currentstreamlength = readLength;
    Progress.currentstreamprogress = 0;
    TStreamRead read;
    if (!Library.NabtoStreamReadIntoBuf) {
        read.End = TStreamRead::EEnd::Broken;
        Dialogs.ShowMessage("No NabtoStreamReadData Function Loaded");
        return read;
    }
    read.Bytes.reserve(readLength);
    try {
        ReadChunks(readLength, read);
    } catch (const std::exception& error) {
        read.End = TStreamRead::EEnd::Failed;
        Dialogs.ShowMessage(std::string(ClassName(error)) + " error raised, with message : " + error.what());
    }
    timeoutTimer->SetEnabled(false);
    if (streamTimeout && !read.Lost()) {
        Dialogs.ShowMessage("Stream Read, Timeout :(");
        if (read.End == TStreamRead::EEnd::Complete && read.Bytes.size() < readLength)
            read.End = TStreamRead::EEnd::TimedOut;
    }
    return read;
}

void TNabtoStream::ReadChunks(std::uint32_t readLength, TStreamRead& read) {
    // Each chunk is asked for with the full length as capacity, however much is there already. What is never
    // written takes no memory.
    const auto chunk = std::make_unique_for_overwrite<std::uint8_t[]>(readLength);
    std::vector<std::uint8_t>& bytes = read.Bytes;
    while (bytes.size() < readLength && !streamTimeout) {
        if (Progress.Ended()) {
            read.End = TStreamRead::EEnd::Ended;
            return;
        }
        Arm();
        std::size_t count = 0;
        const auto status = static_cast<TNabtoStatus>(
            Library.NabtoStreamReadIntoBuf(Stream, chunk.get(), readLength, &count));
        if (status != NABTO_OK) {
            read.End = TStreamRead::EEnd::Broken;
            CloseRepeatedly();
            ShowNabtoStatus(Library, Dialogs, status);
            return;
        }
        if (count == 0) {
            // The library waited for nothing: the chunk is still to come, and its time goes on.
            Wait.Sleep(1);
            Wait.ProcessMessages();
            continue;
        }
        // The last one may run on behind the length.
        bytes.insert(bytes.end(), chunk.get(),
                     chunk.get() + std::min<std::size_t>(count, readLength - bytes.size()));
        timeoutTimer->SetEnabled(false);
        Progress.currentstreamprogress = static_cast<std::uint32_t>(bytes.size());
        Progress.DoUpdateProgress();
    }
}

TNabtoStatus TNabtoStream::Write(std::span<const std::uint8_t> data, int streamDelay) {
    TNabtoStatus status = NABTO_FAILED;
    if (!Library.NabtoStreamWrite) {
        Dialogs.ShowMessage("No NabtoStreamWrite Function Loaded");
        return status;
    }
    Prepare(writeTimeout);
    Progress.currentstreamlength = static_cast<std::uint32_t>(data.size());
    Progress.currentstreamprogress = 0;
    Arm();
    while (!data.empty() && !streamTimeout) {
        if (Progress.Ended()) {
            timeoutTimer->SetEnabled(false);
            return NABTO_ABORTED;
        }
        Arm();
        const auto chunk = data.first(std::min(data.size(), writeChunk));
        status = static_cast<TNabtoStatus>(
            Library.NabtoStreamWrite(Stream, reinterpret_cast<const char*>(chunk.data()), chunk.size()));
        Wait.Sleep(std::max(streamDelay, 0));
        if (status == NABTO_STREAM_CLOSED)
            CloseRepeatedly();
        if (status != NABTO_OK && status != NABTO_BUFFER_FULL)
            return status;
        timeoutTimer->SetEnabled(false);
        if (status == NABTO_BUFFER_FULL) {
            Wait.ProcessMessages(); // a device that never drains must not lock the windows
            continue;
        }
        data = data.subspan(chunk.size());
        Progress.currentstreamprogress += static_cast<std::uint32_t>(chunk.size());
        Progress.DoUpdateProgress();
    }
    return status;
}

} // namespace tidewell
