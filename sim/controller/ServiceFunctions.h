#pragma once

#include "sim/controller/Faults.h"
#include "sim/controller/Firmware.h"
#include "sim/controller/Memories.h"
#include "sim/controller/RegisterBank.h"

#include <nlohmann/json_fwd.hpp>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tidewell {

// What the service functions of a controller have to work on.
struct TServiceSetup {
    struct TLogValue {
        ETable Table = ETable::Setpoint;
        TRegisterAddress At;
    };
    TImageStore::TSetup Images;
    std::optional<TRegisterAddress> CrcResult; // setpoint that tells the bad images after an update
    TUpdateTimes Times;
    std::int32_t LogBlock = 0; // see TFlashRing
    std::int32_t LogInUse = TFlashRing::BlockCount - 1;
    std::vector<TLogValue> LogValues;
    TEepromSetup Eeprom;
};

// The service functions of a controller: firmware update, flash and EEPROM. Without a setup it has none of
// that equipment and refuses.
class TServiceFunctions {
  public:
    // Takes the setup; images that came stay. Log values that the bank lacks are left out.
    void Configure(const TServiceSetup& setup, const TRegisterBank& values);
    void SetClock(std::int64_t startMinutes) { Ring.StartMinutes = startMinutes; }

    struct TCall {
        std::string_view Query; // one that is answered with a status
        const nlohmann::ordered_json& Request;
        const std::vector<TFault>& Due;
        TFaults& Faults;
        const TIdentity& Identity;
        std::int64_t NowMs = 0;
    };
    // The status. Throws ERequestRefused.
    std::int64_t Execute(const TCall& call);

    // Whether the controller is away; ends a restart that is through, which may change the identity.
    bool Away(TFaults& faults, TIdentity& identity, std::int64_t nowMs);
    // The setpoint's value if it is the one that tells the bad images.
    std::optional<std::int32_t> CrcResult(TRegisterAddress at, std::int64_t nowMs) const;
    const TImageStore& Firmware() const { return Images; }

    // A stream serves the transfer that was prepared last, if none did so before.
    void OpenStream();
    std::string ReadStream(std::size_t most); // empty: there is nothing to read
    void WriteStream(std::string_view bytes);

  private:
    enum class ETransfer { None, ReadFlash, ReadEeprom, WriteImage };
    struct TTransfer {
        ETransfer Kind = ETransfer::None;
        std::int64_t Address = 0;
        std::size_t Length = 0;
        std::size_t Moved = 0;
        std::int64_t NowMs = 0; // the flash reads as it was then
        std::string Eeprom;
        std::int32_t File = 0;
    };

    std::int64_t AdminCommand(const TCall& call);
    std::int64_t PrepareUpdate(const TCall& call);
    std::int64_t PrepareWrite(const TCall& call);
    std::int64_t PrepareRead(const TCall& call, ETransfer kind);
    std::int64_t Command(const TCall& call);
    std::int64_t Packet(const TCall& call);

    bool Equipped = false;
    TServiceSetup Setup; // of a controller that is Equipped; its Times are referred to below
    TImageStore Images;
    TUploadDialogue Dialogue{Images, Setup.Times};
    TUpdateMode Update{Images, Setup.Times};
    TFlashRing Ring;
    TTransfer Prepared;
    TTransfer Open;
};

} // namespace tidewell
