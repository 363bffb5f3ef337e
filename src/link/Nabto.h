#pragma once

#include "core/ProgramState.h"
#include "link/DeviceQueries.h"
#include "link/NabtoLibrary.h"
#include "link/NabtoStream.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace tidewell {

class IDialogs;
class IFiles;
class ILibraryLoader;
class ITimers;
class IWait;

// What a read reply says.
struct TValueList {
    std::string Text;     // as JsonToValue tells
    bool HasData = false; // it holds values, however many
};

// The one bridge to the native library: its session, the queries to a device and the one byte stream. A
// missing library is no failure until it is used. The library keeps its profiles in "nabto_config" below the
// process's current directory, which must therefore be the program's folder.
class TUNabto : public TStreamProgress {
  public:
    // directory: the program's folder; its "nabto_config" holds the interface definitions. Once the program
    // is closed no query goes out and no stream is opened.
    TUNabto(const IProgramState& program, ILibraryLoader& loader, IDialogs& dialogs, ITimers& timers,
            IWait& wait, const IFiles& files, std::filesystem::path directory);
    // Closes the session, and so may show messages.
    ~TUNabto() override;

    // Starts the library, opens the session (creating the profile if need be) and installs "standalone.xml".
    // 0, the status that stood in the way, or -1 without a library.
    int Init(const std::string& user, const std::string& password);
    // Closes what is left of the session and opens it again in silence, with the interface in force.
    TNabtoStatus Reopen(const std::string& user, const std::string& password);
    // The status of a request that tells that there is no session any more.
    TEvent<TNabtoStatus> OnSessionGone;
    void Close();
    // Installs the interface definition of that name; false when it is missing or refused.
    bool setQueriesFile(const std::string& fileName);
    // Ids of the devices on the local network, in the library's order.
    std::vector<std::string> GetLocal();

    bool StartStream(const std::string& device) { return Program.IsOpen() && Streams.Start(Session, device); }
    // False when the stream was closed, true when closing failed.
    bool StopStream() { return Streams.Stop(); }
    TStreamRead ReadStream(std::uint32_t readLength) { return Streams.Read(readLength); }
    TNabtoStatus WriteStream(std::span<const std::uint8_t> data, int streamDelay) {
        return Streams.Write(data, streamDelay);
    }

    // What came of loading the library.
    const TLoadedLibrary& Loaded() const { return Library.Module; }
    // The path of an interface definition that is not there.
    TEvent<const std::filesystem::path&> OnInterfaceMissing;

    void ShowError(TNabtoStatus status) { ShowNabtoStatus(Library, Dialogs, status); }
    // Empty, with a message, when the library has no texts.
    std::string GetNabtoStatusStr(TNabtoStatus status);
    // The same without a message: the number, when the library has no texts.
    std::string StatusText(int status) const;

    // One blocking request; empty if any text is, or when there is no reply. The event loop runs before and
    // after, so timers and clicks may come in between; a close before it keeps it from being sent.
    // stillWanted is asked behind the first of them, unless it is empty; false sends nothing.
    std::string SendQuery(const std::string& device, const std::string& request, const std::string& data,
                          const std::function<bool()>& stillWanted = {});
    // Whether the device answers. Fills the identity fields and installs the interface that fits the device.
    bool ping(const std::string& device);
    // Until the device tells its versions anew.
    void ForgetVersions();
    // Empty before the first ping.
    std::string PingedLast() const { return Described.empty() ? std::string() : Described.back(); }
    // Whether another device was pinged since this one last answered, so that the facts or the interface
    // definition may be that one's.
    bool MayDescribeAnother(const std::string& device) const;
    bool isGateway() const;
    bool isZelt4() const { return model == "30015"; }

    static std::string ValueToJson(std::string_view address, std::string_view length, std::string_view obj) {
        return tidewell::ValueToJson(address, length, obj);
    }
    static std::string FormatSaveSetpoint(std::int32_t obj, std::int32_t address, std::int32_t savevalue) {
        return tidewell::FormatSaveSetpoint(obj, address, savevalue);
    }
    static std::string FormatRWData(std::uint32_t address, std::uint32_t length) {
        return tidewell::FormatRWData(address, length);
    }
    static std::string GetCMD(std::int32_t cmd) { return tidewell::GetCMD(cmd); }
    static std::string prepareUpdateData(std::uint32_t fileid, std::uint32_t filesize, std::uint32_t crc32) {
        return tidewell::prepareUpdateData(fileid, filesize, crc32);
    }
    static std::string prepareFlashWriteNostream(std::uint32_t state, std::uint32_t blocknumber,
                                                 std::span<const std::uint8_t> payload) {
        return tidewell::prepareFlashWriteNostream(state, blocknumber, payload);
    }
    // Reports progress unless the state is 15.
    std::string V2prepareFlashWriteNostream(std::uint32_t state, std::uint32_t blocknumber,
                                            std::uint32_t blockcrc, std::span<const std::uint8_t> payload);
    static std::string prepareSystemIdentify(std::int32_t systemId) {
        return tidewell::prepareSystemIdentify(systemId);
    }

    // Value list text "v1; v2; " of a read reply; "error" for a refusal; "No JS", CR LF and the text for what
    // is no JSON object; the reply itself if it holds no values.
    std::string JsonToValue(const std::string& json) { return ReadValueList(json).Text; }
    TValueList ReadValueList(const std::string& json);
    // response.status; 1 for no JSON object or a refusal, -1 for a reply without a status.
    std::int32_t getResponseStatus(const std::string& json);
    // response.Pong, 0 if it is no number, or 1 for no JSON object or a refusal. Fills the identity fields.
    std::uint32_t getpingResponse(const std::string& json);

    std::string queriesFile = "standalone.xml"; // the interface definition in force
    // Facts of the device that answered the last ping; a member it leaves out stays.
    std::string versionHP, versionNP, versionBT, model, varenummer;
    std::string SlaveDeviceNum, SlaveModel, GatewayVersion; // emptied at each ping
    std::string errormessage;                               // text of the device's last refusal
    // That text to show, or that nobody answers.
    std::string LastError() const { return errormessage.empty() ? "Device is not available" : errormessage; }

  private:
    // Creates the profile if there is none.
    TNabtoStatus OpenSession(const std::string& user, const std::string& password);

    const IProgramState& Program;
    TNabtoLibrary Library;
    IDialogs& Dialogs;
    IWait& Wait;
    const IFiles& Files;
    std::filesystem::path Directory;
    void* Session = nullptr;
    TNabtoStream Streams;
    std::vector<std::string> Described; // who answered last, and who was pinged in vain since
};

} // namespace tidewell
