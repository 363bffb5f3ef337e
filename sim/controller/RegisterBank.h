#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace tidewell {

// Members of the answer to "ping.json" beside "Pong", in order, such as {"Model", 30021}.
using TIdentity = std::vector<std::pair<std::string, std::int64_t>>;

enum class ESource { Constant, Ramp, Sine, Noise, Bits, Counter };

// How a simulated value moves. What First and Second mean depends on the kind: Constant value, -; Ramp from,
// to; Sine middle, amplitude; Noise middle, deviation; Bits value, mask of the bits that flip; Counter start,
// step.
struct TValueSource {
    ESource Kind = ESource::Constant;
    double First = 0;
    double Second = 0;
    std::int64_t PeriodMs = 1000; // above 0
    std::int64_t AheadMs = 0;     // runs ahead of the time by that much
};

// The value at that time, which may lie before 0, before it is cut to 16 bits. The same seed gives the same
// noise in every run.
std::int64_t SourceValue(const TValueSource& source, std::uint64_t seed, std::int64_t nowMs);

// A well-mixed number for each number.
std::uint64_t Mixed(std::uint64_t number);

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

    // Whether there is a value that a write there changes, and the status that refuses it, if one does.
    bool CanWrite(TRegisterAddress at) const { return Registers.contains(Target(at)); }
    std::optional<std::int32_t> RefusedStatus(TRegisterAddress at) const;
    // Ignores refusals; an unknown address changes nothing.
    void Write(TRegisterAddress at, std::uint16_t bits);

  private:
    struct TRegister {
        TMotion Motion;
        bool Signed = false;
        std::optional<std::int32_t> RefusedStatus;
        std::optional<std::uint16_t> Written;
    };
    using TKey = std::pair<ETable, TRegisterAddress>;
    // The key of the value that a write there changes.
    TKey Target(TRegisterAddress at) const;

    std::map<TKey, TRegister> Registers;
    std::map<TRegisterAddress, TKey> WriteTargets; // only where they differ from the address read
};

} // namespace tidewell
