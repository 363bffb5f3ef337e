#pragma once

#include "sim/controller/RegisterBank.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tidewell {

// What a controller can be made to do wrong. In brackets what Number or Text of the fault mean.
enum class EFault {
    Latency,          // answers late [Number: ms]; several add up
    NoAnswer,         // does not answer, and streams end
    Error,            // answers with an error reply [Text: its body]
    WrongCount,       // a read gives too many values, or too few [Number: how many more]
    Garbage,          // answers with that text [Text]
    Huge,             // answers with very many letters [Number: how many]
    RefuseWrite,      // answers a write with that status and changes nothing [Number]
    ChangeAfterWrite, // stores a written value with that much added [Number]
    SlowStream,       // each piece of a stream takes that long [Number: ms]
    BrokenStream,     // the stream ends after so many bytes [Number]
    StalledStream,    // a stream that is read stands still after so many bytes [Number]
    BufferFull,       // a piece written to a stream is not taken
    LostAnswer,       // does what it is asked, but does not answer
    Refuse,           // answers a service query with that status and does nothing [Number]
    WrongEcho,        // the answer to a packet echoes its number with that much added [Number]
    ShortRead,        // a prepared read gives fewer bytes [Number: how many fewer]
    BadImage,         // the test of a firmware image fails [Number: the file, from 1]
    OldResult,        // an image on its way does not count as bad: the last test's result stands
    LateReturn,       // a restart takes longer [Number: ms]
    NoReturn          // does not come back from a restart
};

enum class EOccasion : std::uint8_t {
    Read,
    Write,
    Ping,
    Service,     // a query that is answered with a status
    PrepareRead, // the same, which prepares a stream to read from
    Packet,      // the same, which carries a piece of an image
    StreamOpen,
    StreamRead,
    StreamWrite,
    Restart,   // begins
    ImageTest, // after a restart
    Return     // a restart would be through
};

// Stands in the place of a query's name for all occasions of streams.
inline constexpr std::string_view StreamQuery = "stream";

// What kind of occasion a query is; nothing for a name that is none of the twelve.
std::optional<EOccasion> QueryOccasion(std::string_view queryName);

// Something that happens to a controller, for which faults can be due.
struct TOccasion {
    EOccasion Kind = EOccasion::Ping;
    std::string Query;                     // its name, or StreamQuery; empty: none
    std::vector<TRegisterAddress> Touched; // by a read or write
    std::optional<std::int64_t> State;     // of an upload without a stream
    std::int64_t NowMs = 0;
    std::pair<std::int64_t, std::int64_t> Flash{}; // from the first byte to behind the last one of a read
};

// When a fault is due. An occasion that fits is counted; the first Skip of them pass, the next Times are hit.
struct TFaultCondition {
    std::int64_t FromMs = 0;
    std::optional<std::int64_t> ToMs{}; // not at or after this time
    std::string Query{};                // its name or StreamQuery; empty: any
    std::optional<std::int32_t> Obj{};
    std::optional<std::int32_t> Address{};
    std::optional<std::int32_t> State{}; // of an upload without a stream
    std::optional<std::int32_t> Block{}; // of the flash log, touched by a read
    std::size_t Skip = 0;
    std::optional<std::size_t> Times{};
    std::size_t Seen = 0; // occasions that fitted so far

    // Counts the occasion if it fits; true if the fault is due.
    bool Strikes(const TOccasion& occasion);
};

struct TFault {
    EFault Kind = EFault::Error;
    std::int64_t Number = 0;
    std::string Text;
    TFaultCondition When;
};

// What a fault of a kind is given.
enum class EFaultArgument { Time, On, Text, Integer, Count, File };

struct TFaultKind {
    EFault Kind = EFault::Error;
    std::string_view Name; // in a simulation file
    EFaultArgument Argument = EFaultArgument::On;
    std::uint32_t Occasions = 0; // a bit for each that it concerns

    // Whether it can ever be due when it is bound to that query, or to StreamQuery.
    bool CanBeDue(std::string_view query) const;
};
std::span<const TFaultKind> FaultKinds(); // in the order of EFault

// The first of a kind; nullptr if there is none.
const TFault* FindFault(const std::vector<TFault>& due, EFault kind);
// Its number; 0 if there is none.
std::int64_t FaultNumber(const std::vector<TFault>& due, EFault kind);
// A number of bytes or letters; 0 for one below.
std::size_t Amount(std::int64_t number);

// The faults of one controller.
class TFaults {
  public:
    void Replace(const std::vector<TFault>& faults); // their counters start at 0
    void Add(const TFault& fault) { Armed.push_back(fault); }
    // Those that are due, in the order they were added. Counts the occasion, so it is asked once for each.
    std::vector<TFault> Due(const TOccasion& occasion);

  private:
    std::vector<TFault> Armed;
};

} // namespace tidewell
