#pragma once

#include "sim/controller/ValueSource.h"

#include <cstdint>
#include <map>
#include <optional>
#include <tuple>
#include <vector>

namespace tidewell {

enum class ETable { Setpoint, Datapoint };

// Address of a value inside one object of a controller.
struct TRegisterAddress {
    std::int32_t Obj = 0;
    std::int32_t Address = 0;
    bool operator==(const TRegisterAddress&) const = default;
    bool operator<(const TRegisterAddress& other) const {
        return std::tie(Obj, Address) < std::tie(other.Obj, other.Address);
    }
};

// Values at consecutive addresses that behave alike.
struct TValueRun {
    ETable Table = ETable::Setpoint;
    TRegisterAddress First;
    std::int32_t Count = 1;
    std::vector<TValueSource> Sources; // one for all, or one for each address
    std::int64_t StaggerMs = 0;        // each further address runs ahead by that much more
    bool Signed = false;
    std::optional<std::int32_t> RefusedStatus; // writes are answered with it and change nothing
    std::vector<TRegisterAddress> WrittenAt;   // where the first address is written too
};

// How one value moves by itself, apart from writes.
struct TMotion {
    TValueSource Source;
    std::uint64_t Seed = 0;
    std::uint16_t Bits(std::int64_t nowMs) const;
};

// What a controller holds: 16-bit values by table and address. A written value stays.
class TRegisterBank {
  public:
    // Replaces what was there at those addresses.
    void Add(const TValueRun& run);

    // As it goes on the wire: 0 to 65535, or -32768 to 32767 when signed. Nothing at an unknown address.
    std::optional<std::int32_t> Read(ETable table, TRegisterAddress at, std::int64_t nowMs) const;

    std::optional<TMotion> Motion(ETable table, TRegisterAddress at) const;

    enum class EWrite { Done, Refused, Unknown };
    // Whether a write there would work; when it would be refused, with that status.
    EWrite CheckWrite(TRegisterAddress at, std::int32_t& refusedStatus) const;
    // Ignores refusals; an unknown address changes nothing.
    void Write(TRegisterAddress at, std::uint16_t bits);

  private:
    struct TRegister {
        TMotion Motion;
        bool Signed = false;
        std::optional<std::int32_t> RefusedStatus;
        std::optional<std::uint16_t> Written;
    };
    struct TKey {
        ETable Table = ETable::Setpoint;
        TRegisterAddress At;
        bool operator<(const TKey& other) const {
            return std::tie(Table, At) < std::tie(other.Table, other.At);
        }
    };
    // The key of the value that a write there changes.
    TKey Target(TRegisterAddress at) const;

    std::map<TKey, TRegister> Registers;
    std::map<TRegisterAddress, TKey> WriteTargets; // only where they differ from the address read
};

} // namespace tidewell
