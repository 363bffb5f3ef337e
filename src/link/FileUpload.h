#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <span>
#include <string>

namespace tidewell {

class IFiles;
class TEdit;
class TUpdateRun;
struct TDeviceServices;

// The field "nostreamstate" of an upload without a stream.
enum class ENostreamState : std::uint32_t {
    AskUpload = 1,
    MainData = 2,
    Init = 5,
    WaitDisplayCheck = 6,
    PreErase = 7,
    Data = 8, // for the display and other targets
    StartProgram = 11,
    Go = 12,
    DeInit = 13,
    WaitPreErase = 14,
    Reset = 15,
    WaitReset = 16,
};

// Brings an image to the device by one of two roads: through the byte stream, or in requests of 256 bytes
// each. fileId is the file's number, from 1; fileSize and crc32 are what the package says; true is success,
// as far as the tool can see it. All of them block, log to memoDebug, throw EInOutError for an image that
// cannot be read and EUpdateEnded when the run is ended meanwhile.
class TFileUpload {
  public:
    // streamDelayEdit: ms after each packet or piece.
    TFileUpload(const TDeviceServices& services, TUpdateRun& run, const TEdit& edit)
        : Services(services), Run(run), streamDelayEdit(edit) {}

    // fileName is relative to the directory of CurrentUpdateSWFile. A device that keeps refusing the
    // preparation is asked without limit.
    bool StreamUpload(std::uint32_t fileId, std::uint32_t fileSize, const std::string& fileName,
                      std::uint32_t crc32);
    // A file shorter than fileSize is not sent, which counts as success.
    bool StreamWriteFile(std::uint32_t fileId, const std::filesystem::path& path, std::uint32_t fileSize);

    // These throw EConvertError if streamDelayEdit holds no number.
    bool RpcUploadDisplay(std::uint32_t fileId, std::uint32_t fileSize, const std::filesystem::path& path,
                          std::uint32_t crc32);
    bool RpcUploadTarget(std::uint32_t fileId, std::uint32_t fileSize, const std::filesystem::path& path,
                         std::uint32_t crc32);
    bool RpcUploadMain(std::uint32_t fileId, std::uint32_t fileSize, const std::filesystem::path& path,
                       std::uint32_t crc32);
    bool RpcPreErase();
    // Sends up to 4096 bytes in packets of 256, each until it is accepted or has failed too often. At least
    // one packet goes, and behind the end of the data empty ones. 0 is success.
    std::int32_t FlashWriteBlock(std::uint32_t blockNumber, std::uint32_t packetCount, ENostreamState state,
                                 std::span<const std::uint8_t> data);

    std::uint16_t RPCPacketNumber = 0; // of the next packet
    // Whether the device has acknowledged every byte of the image sent last, whatever the upload returned.
    bool Taken() const { return IsTaken; }

  private:
    // The bytes of an image, at most as many as its package says, in blocks of 4096.
    class TImage {
      public:
        TImage(const IFiles& files, const std::filesystem::path& path, std::uint32_t fileSize);
        std::span<const std::uint8_t> Bytes() const;
        std::span<const std::uint8_t>
        Block(std::uint32_t block) const; // up to 4096 bytes; empty behind the end
        std::uint32_t Whole = 0;          // blocks
        std::uint32_t Rest = 0;           // bytes behind them

      private:
        std::string Content;
    };
    // How a row of blocks ended.
    struct TBlocks {
        std::int32_t Answer = 0; // of the last block
        std::uint32_t Block = 0; // the one to come
        int Fails = 0;
    };

    void Log(const std::string& line);
    std::int32_t Prepare(std::uint32_t fileId, std::uint32_t fileSize, std::uint32_t crc32);
    TImage BeginRpcUpload(std::uint32_t fileId, std::uint32_t fileSize, const std::filesystem::path& path,
                          std::uint32_t crc32);
    // acknowledged: what the device said to the last part of the image.
    void EndRpcUpload(const TImage& image, std::uint32_t fileSize, bool acknowledged);
    std::int32_t Command(ENostreamState state, std::uint32_t block = 0);
    std::int32_t LoggedCommand(ENostreamState state, const char* text, std::uint32_t block = 0);
    // Repeats the command, with pauses, until the answer is one of these or, if told so, six times 7 in a
    // row.
    std::int32_t Await(ENostreamState state, const char* text, std::initializer_list<std::int32_t> answers,
                       bool untilBusy = false);
    std::int32_t ResetDisplay();
    bool StartDisplay();
    TBlocks SendBlocks(const TImage& image, ENostreamState state, int mostFails);
    bool OpenFlash(std::uint32_t address, std::uint32_t fileSize);
    void RestartDevice();

    const TDeviceServices& Services;
    TUpdateRun& Run;
    const TEdit& streamDelayEdit;
    std::chrono::milliseconds Started{}; // of the running RPC upload
    bool Missed = false;                 // a packet of it was given up
    bool IsTaken = false;
};

} // namespace tidewell
