#include "link/FileUpload.h"

#include "core/Crc16.h"
#include "core/Numbers.h"
#include "core/controls/Lists.h"
#include "core/controls/Simple.h"
#include "core/ports/IClock.h"
#include "core/ports/IDialogs.h"
#include "core/ports/IFiles.h"
#include "link/DeviceServices.h"
#include "link/FirmwarePackage.h"
#include "link/Nabto.h"
#include "link/UpdateRun.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace tidewell {

namespace {

constexpr std::size_t blockSize = 4096;
constexpr std::size_t packetSize = 256;
constexpr std::uint32_t packetsPerBlock = blockSize / packetSize;

// Answers of the command dialogue.
constexpr std::int32_t done = 0;
constexpr std::int32_t refused = 6;
constexpr std::int32_t busy = 7;

constexpr int mostBusy = 6; // in a row
constexpr int mostAsked = 5;
constexpr int mostMainAsked = 5;
constexpr int mostResets = 4;
constexpr int mostResetWaits = 6;
constexpr int mostPacketErrors = 10;
constexpr int linkLost = 100; // counts as that many errors
constexpr int mostBlockFails = 6;
constexpr int mostTries = 5;

constexpr int commandPause = 500; // ms, here and below
constexpr int flashPause = 1000;
constexpr int streamPause = 2000;

constexpr std::int32_t restartCommand = 42;
constexpr std::array<std::uint8_t, 1> commandPayload{9};

std::string Hexadecimal(std::uint16_t value) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (int shift = 12; shift >= 0; shift -= 4)
        text += digits[value >> shift & 15];
    return text;
}

} // namespace

TFileUpload::TImage::TImage(const IFiles& files, const std::filesystem::path& path, std::uint32_t fileSize)
    : Content(files.Read(path)) {
    Content.resize(std::min<std::size_t>(Content.size(), fileSize));
    Whole = static_cast<std::uint32_t>(Content.size() / blockSize);
    Rest = static_cast<std::uint32_t>(Content.size() % blockSize);
}

std::span<const std::uint8_t> TFileUpload::TImage::Bytes() const {
    return {reinterpret_cast<const std::uint8_t*>(Content.data()), Content.size()};
}

std::span<const std::uint8_t> TFileUpload::TImage::Block(std::uint32_t block) const {
    const std::size_t start = std::min(std::size_t{block} * blockSize, Content.size());
    return Bytes().subspan(start, std::min(blockSize, Content.size() - start));
}

void TFileUpload::Log(const std::string& line) {
    Services.memoDebug.Add(line);
}

std::int32_t TFileUpload::Prepare(std::uint32_t fileId, std::uint32_t fileSize, std::uint32_t crc32) {
    std::int32_t answer = 0;
    for (int asked = 0; asked < mostAsked && answer < 2; ++asked)
        answer = Run.Status("prepareUpdate.json", TUNabto::prepareUpdateData(fileId, fileSize, crc32));
    return answer;
}

TFileUpload::TImage TFileUpload::BeginRpcUpload(std::uint32_t fileId, std::uint32_t fileSize,
                                                const std::filesystem::path& path, std::uint32_t crc32) {
    Started = Services.Clock.Monotonic();
    Missed = false;
    IsTaken = false;
    Services.Nabto.currentstreamlength = fileSize;
    Log("PrepareUpdate return value -> " + std::to_string(Prepare(fileId, fileSize, crc32)));
    return {Services.Files, path, fileSize};
}

void TFileUpload::EndRpcUpload(const TImage& image, std::uint32_t fileSize, bool acknowledged) {
    IsTaken = acknowledged && !Missed && image.Bytes().size() == fileSize;
    const auto elapsed = std::chrono::floor<std::chrono::seconds>(Services.Clock.Monotonic() - Started);
    Log("RPC File upload done time elapsed ->" + std::to_string(elapsed.count()) + " sec");
}

std::int32_t TFileUpload::Command(ENostreamState state, std::uint32_t block) {
    return Run.Status(
        "FlashWriteNostream.json",
        TUNabto::prepareFlashWriteNostream(static_cast<std::uint32_t>(state), block, commandPayload));
}

std::int32_t TFileUpload::LoggedCommand(ENostreamState state, const char* text, std::uint32_t block) {
    const std::int32_t answer = Command(state, block);
    Log(text + std::to_string(answer));
    return answer;
}

std::int32_t TFileUpload::Await(ENostreamState state, const char* text,
                                std::initializer_list<std::int32_t> answers, bool untilBusy) {
    for (int busyInRow = 0;;) {
        const std::int32_t answer = LoggedCommand(state, text);
        Run.Sleep(commandPause);
        busyInRow = answer == busy ? busyInRow + 1 : 0;
        if (std::ranges::find(answers, answer) != answers.end() || (untilBusy && busyInRow == mostBusy))
            return answer;
    }
}

std::int32_t TFileUpload::FlashWriteBlock(std::uint32_t blockNumber, std::uint32_t packetCount,
                                          ENostreamState state, std::span<const std::uint8_t> data) {
    Services.Nabto.currentstreamprogress = static_cast<std::uint32_t>(blockNumber * blockSize);
    int errors = 0;
    std::uint32_t index = 0;
    std::uint32_t status = 0;
    do {
        const auto rest = data.subspan(std::min(index * packetSize, data.size()));
        const auto packet = rest.first(std::min(packetSize, rest.size()));
        const std::uint16_t crc = Crc16(Crc16Start, packet, true);
        const auto answer = static_cast<std::uint32_t>(
            Run.Status("FlashWriteNostreamV2.json",
                       Services.Nabto.V2prepareFlashWriteNostream(static_cast<std::uint32_t>(state),
                                                                  RPCPacketNumber, crc, packet)));
        status = answer & 0xFFFFU;
        const std::uint32_t echo = answer >> 16U;
        Run.Sleep(ToInteger(streamDelayEdit.Text()));
        if (status == 0 && echo == RPCPacketNumber) {
            ++index;
            ++RPCPacketNumber;
            continue;
        }
        const std::string number = std::to_string(RPCPacketNumber);
        Log(Services.Clock.LongTime(Services.Clock.Now()) + " ERROR-> " + " Status " +
            std::to_string(status) + " PacketNumber send " + number + " PacketNumber Received " + number +
            " CRC16value " + Hexadecimal(crc));
        errors = status == 1 ? linkLost : errors + 1;
    } while (index < packetCount && errors <= mostPacketErrors);
    Missed = Missed || index < packetCount;
    // The main processor wants a block with a repaired error once more as a whole.
    return state == ENostreamState::MainData && errors > 0 ? refused : static_cast<std::int32_t>(status);
}

TFileUpload::TBlocks TFileUpload::SendBlocks(const TImage& image, ENostreamState state, int mostFails) {
    TBlocks blocks;
    do {
        blocks.Answer = FlashWriteBlock(blocks.Block, packetsPerBlock, state, image.Block(blocks.Block));
        if (blocks.Answer == done)
            ++blocks.Block;
        else
            ++blocks.Fails;
    } while (blocks.Block < image.Whole && blocks.Fails < mostFails);
    return blocks;
}

// The last answer of the reset; the display may still be busy with it.
std::int32_t TFileUpload::ResetDisplay() {
    std::int32_t answer = done;
    int count = 0;
    int round = 0;
    do {
        count = 0;
        Log("ST reset send ");
        answer = Command(ENostreamState::Reset);
        if (answer == done)
            do {
                answer = LoggedCommand(ENostreamState::WaitReset, "Wait Reset status ->");
                Run.Sleep(commandPause);
                ++count;
            } while (answer != done && answer != refused && count < mostResetWaits);
        Log("status :" + std::to_string(answer) + " retrycount :" + std::to_string(count));
        ++round;
    } while (answer != done && round < mostResets);
    if (count >= mostResetWaits)
        Log("retry 5 times on reset wait just continue");
    return answer;
}

// Reset, init and pre-erase of the display.
bool TFileUpload::StartDisplay() {
    if (ResetDisplay() == refused)
        return false;
    Log("ST init send ");
    if (Command(ENostreamState::Init) != done)
        return false;
    std::int32_t answer =
        Await(ENostreamState::WaitDisplayCheck, "Wait Display Check status ->", {done, refused, busy});
    if (answer == done)
        answer = Await(ENostreamState::PreErase, "Display Pre Erase status ->", {done, refused, busy});
    if (answer == done)
        answer =
            Await(ENostreamState::WaitPreErase, "Wait Display pre erase status ->", {done, refused}, true);
    if (answer == done)
        return true;
    LoggedCommand(ENostreamState::Go, "Send Go status ->");
    LoggedCommand(ENostreamState::DeInit, "Send DeInit and Abort upload status ->");
    return false;
}

bool TFileUpload::RpcUploadDisplay(std::uint32_t fileId, std::uint32_t fileSize,
                                   const std::filesystem::path& path, std::uint32_t crc32) {
    RPCPacketNumber = 1;
    const TImage image = BeginRpcUpload(fileId, fileSize, path, crc32);
    if (!StartDisplay())
        return false;
    Log("Start write filedata");
    TBlocks blocks = SendBlocks(image, ENostreamState::Data, 1);
    Log("Write last bit of datafile");
    if (blocks.Answer == done) {
        blocks.Block = image.Whole;
        const auto packets = static_cast<std::uint32_t>((image.Rest + packetSize - 1) / packetSize);
        blocks.Answer =
            FlashWriteBlock(blocks.Block, packets, ENostreamState::Data, image.Block(blocks.Block));
    }
    bool started = false;
    if (blocks.Answer == done) {
        started = Command(ENostreamState::StartProgram, blocks.Block) == done;
        Log("Send program to display");
    } else {
        LoggedCommand(ENostreamState::DeInit, "Send DeInit and Abort upload status ->", blocks.Block);
    }
    EndRpcUpload(image, fileSize, started);
    return blocks.Fails == 0;
}

bool TFileUpload::RpcUploadTarget(std::uint32_t fileId, std::uint32_t fileSize,
                                  const std::filesystem::path& path, std::uint32_t crc32) {
    RPCPacketNumber = 1;
    const TImage image = BeginRpcUpload(fileId, fileSize, path, crc32);
    Log("Reset send ");
    if (Command(ENostreamState::Reset) == refused)
        return false;
    Log("Init send ");
    if (Command(ENostreamState::Init) == refused)
        return false;
    if (LoggedCommand(ENostreamState::PreErase, "Pre Erase status ->") == refused)
        return false;
    if (Await(ENostreamState::WaitPreErase, "Wait RPC  Pre erase status ->", {done, 1, refused}, true) ==
        refused)
        return false;
    Log("Start write filedata");
    const TBlocks blocks = SendBlocks(image, ENostreamState::Data, mostBlockFails);
    Log("Write last bit of datafile");
    std::int32_t last = blocks.Answer;
    if (blocks.Answer == done) {
        const auto packets = static_cast<std::uint32_t>((image.Rest + packetSize - 1) / packetSize);
        last = FlashWriteBlock(image.Whole, packets, ENostreamState::Data, image.Block(image.Whole));
    }
    EndRpcUpload(image, fileSize, blocks.Fails == 0 && last == done);
    return blocks.Fails == 0;
}

bool TFileUpload::RpcUploadMain(std::uint32_t fileId, std::uint32_t fileSize,
                                const std::filesystem::path& path, std::uint32_t crc32) {
    const TImage image = BeginRpcUpload(fileId, fileSize, path, crc32);
    std::int32_t answer = refused;
    for (int asked = 0; asked < mostMainAsked && answer != done; ++asked)
        answer = Command(ENostreamState::AskUpload);
    if (answer != done) {
        Services.Dialogs.ShowMessage("Device does not support RPC fileupload");
        return false;
    }
    Log("RPC Start write filedata");
    const TBlocks blocks = SendBlocks(image, ENostreamState::MainData, mostBlockFails);
    Log(" RPC Write last bit of datafile");
    // One packet above the full ones always goes here.
    const auto packets = static_cast<std::uint32_t>(image.Rest / packetSize + 1);
    const std::int32_t last =
        FlashWriteBlock(image.Whole, packets, ENostreamState::MainData, image.Block(image.Whole));
    EndRpcUpload(image, fileSize, blocks.Fails == 0 && last == done);
    return blocks.Fails == 0;
}

bool TFileUpload::RpcPreErase() {
    Services.Nabto.currentstreamlength = 0;
    Services.Nabto.currentstreamprogress = 0;
    const char* abortText = "RPC  DeInit and Abort upload status ->";
    std::int32_t answer = Await(ENostreamState::PreErase, "RPC Pre Erase status ->", {done, refused, busy});
    if (answer == done) {
        abortText = "RPC DeInit and Abort upload status ->";
        answer = Await(ENostreamState::WaitPreErase, "Wait RPC  Pre erase status ->", {done, refused}, true);
    }
    if (answer == done)
        return true;
    LoggedCommand(ENostreamState::Go, "RPC Go status ->");
    LoggedCommand(ENostreamState::DeInit, abortText);
    return false;
}

bool TFileUpload::StreamUpload(std::uint32_t fileId, std::uint32_t fileSize, const std::string& fileName,
                               std::uint32_t crc32) {
    const auto path = ImagePath(Services.CurrentUpdateSWFile.parent_path(), fileName);
    IsTaken = false;
    for (int tries = 0; tries < mostTries;) {
        const std::int32_t address = Prepare(fileId, fileSize, crc32);
        if (address < 2) {
            // Not counted as a try.
            Services.Dialogs.ShowMessage(Services.Nabto.LastError());
        } else {
            Log("File" + std::to_string(fileId) + " Address: " + std::to_string(address));
            const bool open = OpenFlash(static_cast<std::uint32_t>(address), fileSize);
            if (open) {
                Run.Sleep(streamPause);
                Log("Trys: " + std::to_string(tries));
            }
            if (open && StreamWriteFile(fileId, path, fileSize))
                return true;
            ++tries;
        }
        RestartDevice();
    }
    return false;
}

// Readies the flash for a stream.
bool TFileUpload::OpenFlash(std::uint32_t address, std::uint32_t fileSize) {
    for (int asked = 0; asked < mostAsked; ++asked) {
        const std::int32_t answer = Run.Status("flashWrite.json", TUNabto::FormatRWData(address, fileSize));
        Log("flashWrite.json status-> " + std::to_string(answer));
        if (answer == done)
            return true;
        if (answer > 0)
            Run.Sleep(flashPause);
    }
    return false;
}

void TFileUpload::RestartDevice() {
    Log("Restarting device and trying again");
    for (int asked = 0; asked < mostAsked; ++asked) {
        const std::int32_t answer = Run.Status("admincmd.json", TUNabto::GetCMD(restartCommand));
        Run.Sleep(flashPause);
        if (answer == done)
            break;
    }
    Log("retrying...");
}

bool TFileUpload::StreamWriteFile(std::uint32_t fileId, const std::filesystem::path& path,
                                  std::uint32_t fileSize) {
    const TImage image(Services.Files, path, fileSize);
    const std::int32_t delay = ToIntegerOr(streamDelayEdit.Text(), 0);
    if (image.Bytes().size() != fileSize) {
        Log("File" + std::to_string(fileId) + " has " + std::to_string(image.Bytes().size()) +
            " bytes, not " + std::to_string(fileSize) + ": nothing is sent");
        return true;
    }
    Log("Starting stream...");
    if (!Services.Nabto.StartStream(Services.device))
        return false;
    Log("Writing file" + std::to_string(fileId) + " to stream...");
    bool success = Services.Nabto.WriteStream(image.Bytes(), delay) == NABTO_OK;
    if (success) {
        Log("Write Success");
        Log("closing stream...");
    }
    const bool closeFailed = Services.Nabto.StopStream();
    if (closeFailed)
        success = false;
    else
        Log("Stream Closed");
    IsTaken = success;
    Run.Check();
    return success;
}

} // namespace tidewell
