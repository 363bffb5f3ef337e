#pragma once

#include "sim/controller/Faults.h"
#include "sim/controller/RegisterBank.h"
#include "sim/controller/ServiceFunctions.h"

#include <nlohmann/json_fwd.hpp>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tidewell {

// What a controller answers to a query.
struct TControllerReply {
    bool Answered = true;     // false: the caller waits in vain
    std::int64_t DelayMs = 0; // how late the answer comes
    std::string Text;
};

enum class EStreamOutcome { Done, Full, Closed, Silent };

// What became of a piece that was written to a stream or read from it.
struct TStreamPiece {
    EStreamOutcome Outcome = EStreamOutcome::Done;
    std::int64_t DelayMs = 0;
    std::string Bytes; // read
};

// A controller as the link sees it: identity, values that move with the given time, the twelve queries, one
// byte stream, and faults. It has no clock, thread or socket; times are ms since the start of the simulation
// and must not run backwards.
class TSimulatedController {
  public:
    explicit TSimulatedController(TIdentity identity);

    // The status that tells of a good write.
    std::int32_t WriteStatus = 1;
    // Most bytes that one read of a stream gives.
    std::size_t StreamPiece = 1024;

    TRegisterBank Values;
    TFaults Faults;
    TServiceFunctions Service;

    // Identity can change, as after a firmware update.
    TIdentity Identity;

    // The query's name, such as "ping.json", with its request text. What is no well-formed request is
    // answered with an error reply.
    TControllerReply Query(const std::string& queryName, std::string_view requestJson, std::int64_t nowMs);

    // Bytes that reads of streams will give, behind those that are still waiting.
    void PrepareStream(std::string_view bytes) { StreamWaiting += bytes; }
    // Bytes that came over the stream opened last.
    const std::string& StreamReceived() const { return Received; }
    // False when the controller does not answer.
    bool OpenStream(std::int64_t nowMs);
    // What the service functions prepared comes first. Silent: there is nothing to read.
    TStreamPiece ReadStream(std::size_t capacity, std::int64_t nowMs);
    TStreamPiece WriteStream(std::string_view bytes, std::int64_t nowMs);

  private:
    using TJson = nlohmann::ordered_json;

    TJson Execute(const std::string& queryName, const TJson& request, const std::vector<TFault>& due,
                  std::int64_t nowMs);
    // Whether it restarts.
    bool Away(std::int64_t nowMs) { return Service.Away(Faults, Identity, nowMs); }
    TJson Ping(const TJson& request);
    TJson Read(ETable table, const TJson& request, const std::vector<TFault>& due, std::int64_t nowMs) const;
    TJson Write(const TJson& request, const std::vector<TFault>& due);
    // Cuts what may still move over the stream; sets outcome and delay.
    std::size_t Limit(std::size_t length, const std::vector<TFault>& due, TStreamPiece& piece) const;

    std::string StreamWaiting;
    std::string Received;
    std::size_t StreamMoved = 0;
};

} // namespace tidewell
