#include "sim/controller/SimulatedController.h"

#include "sim/controller/Requests.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <optional>

namespace tidewell {

namespace {

using TJson = nlohmann::ordered_json;

constexpr std::int64_t PingWord = 0x70696E67; // "ping"
constexpr std::int64_t PongWord = 0x706F6E67; // "pong"
constexpr std::int64_t StalledReadMs = 100;

std::int64_t DelayOf(const std::vector<TFault>& due, EFault kind) {
    std::int64_t delay = 0;
    for (const TFault& fault : due)
        delay += fault.Kind == kind ? fault.Number : 0;
    return delay;
}

// What to answer instead of carrying the query out; nothing when all is well.
std::optional<std::string> Spoiled(const std::vector<TFault>& due) {
    if (const TFault* fault = FindFault(due, EFault::Error))
        return ErrorReply(fault->Text);
    if (const TFault* fault = FindFault(due, EFault::Garbage))
        return fault->Text;
    if (const TFault* fault = FindFault(due, EFault::Huge))
        return std::string(Amount(fault->Number), 'x');
    return std::nullopt;
}

// What the request touches, for faults that are bound to an address. A malformed request touches nothing.
TOccasion OccasionOf(const std::string& queryName, const TJson& request, std::int64_t nowMs) {
    TOccasion occasion;
    occasion.Kind = QueryOccasion(queryName).value_or(EOccasion::Ping);
    occasion.Query = queryName;
    occasion.NowMs = nowMs;
    try {
        if (occasion.Kind == EOccasion::Read) {
            occasion.Touched = ReadAddresses(request);
        } else if (occasion.Kind == EOccasion::Write) {
            for (const TWriteEntry& entry : WriteEntries(request))
                occasion.Touched.push_back(entry.At);
        } else if (request.contains("nostreamstate")) {
            occasion.State = NumberMember(request, "nostreamstate");
        } else if (queryName == "flashRead.json") {
            const std::int64_t address = TextMember(request, "address");
            occasion.Flash = {address, address + TextMember(request, "length")};
        }
    } catch (const ERequestRefused&) {
        occasion.Touched.clear(); // told when the query is carried out
    }
    return occasion;
}

TOccasion StreamOccasion(EOccasion kind, std::int64_t nowMs) {
    return {kind, std::string(StreamQuery), {}, {}, nowMs};
}

std::string Shown(TRegisterAddress at) {
    return "address " + std::to_string(at.Address) + " of object " + std::to_string(at.Obj);
}

} // namespace

TSimulatedController::TSimulatedController(TIdentity identity) : Identity(std::move(identity)) {}

TControllerReply TSimulatedController::Query(const std::string& queryName, std::string_view requestJson,
                                             std::int64_t nowMs) {
    TControllerReply reply;
    if (Away(nowMs))
        return {false, 0, {}};
    try {
        const TJson request = ParseRequest(requestJson);
        const std::vector<TFault> due = Faults.Due(OccasionOf(queryName, request, nowMs));
        reply.DelayMs = DelayOf(due, EFault::Latency);
        if (FindFault(due, EFault::NoAnswer) != nullptr)
            return {false, reply.DelayMs, {}};
        if (const std::optional<std::string> spoiled = Spoiled(due))
            return {true, reply.DelayMs, *spoiled};
        reply.Text = JsonText({{"response", Execute(queryName, request, due, nowMs)}});
        reply.Answered = FindFault(due, EFault::LostAnswer) == nullptr;
    } catch (const ERequestRefused& refused) {
        reply.Text = ErrorReply(refused.what());
    }
    return reply;
}

TJson TSimulatedController::Execute(const std::string& queryName, const TJson& request,
                                    const std::vector<TFault>& due, std::int64_t nowMs) {
    if (queryName == "ping.json")
        return Ping(request);
    if (queryName == "setpointReadValue.json")
        return Read(ETable::Setpoint, request, due, nowMs);
    if (queryName == "datapointReadValue.json")
        return Read(ETable::Datapoint, request, due, nowMs);
    if (queryName == "setpointWriteValue.json")
        return Write(request, due);
    return {{"status", Service.Execute({queryName, request, due, Faults, Identity, nowMs})}};
}

TJson TSimulatedController::Ping(const TJson& request) {
    if (request.contains("user")) {
        TextMember(request, "usernumber");
        if (!request["user"].is_string())
            throw ERequestRefused("member \"user\" is no text");
        return {{"status", 0}};
    }
    if (TextMember(request, "ping") != PingWord)
        throw ERequestRefused("wrong ping");
    TJson response{{"Pong", PongWord}};
    for (const auto& [name, value] : Identity)
        response[name] = value;
    return response;
}

TJson TSimulatedController::Read(ETable table, const TJson& request, const std::vector<TFault>& due,
                                 std::int64_t nowMs) const {
    TJson data = TJson::array();
    for (const TRegisterAddress at : ReadAddresses(request)) {
        std::optional<std::int32_t> value = Values.Read(table, at, nowMs);
        if (const auto result = Service.CrcResult(at, nowMs); result && table == ETable::Setpoint)
            value = result;
        if (!value)
            throw ERequestRefused("unknown " + Shown(at));
        data.push_back({{"value", *value}});
    }
    const std::int64_t more = FaultNumber(due, EFault::WrongCount);
    for (std::int64_t i = 0; i < more; ++i)
        data.push_back({{"value", 0}});
    for (std::int64_t i = 0; i > more && !data.empty(); --i)
        data.erase(data.size() - 1);
    return {{"data", data}};
}

TJson TSimulatedController::Write(const TJson& request, const std::vector<TFault>& due) {
    const std::vector<TWriteEntry> entries = WriteEntries(request);
    for (const TWriteEntry& entry : entries) {
        if (!Values.CanWrite(entry.At))
            throw ERequestRefused("unknown " + Shown(entry.At));
        if (const std::optional<std::int32_t> status = Values.RefusedStatus(entry.At))
            return {{"status", *status}};
    }
    if (const TFault* fault = FindFault(due, EFault::RefuseWrite))
        return {{"status", fault->Number}};
    const std::int64_t added = FaultNumber(due, EFault::ChangeAfterWrite);
    for (const TWriteEntry& entry : entries)
        Values.Write(entry.At, static_cast<std::uint16_t>(entry.Bits + added));
    return {{"status", WriteStatus}};
}

bool TSimulatedController::OpenStream(std::int64_t nowMs) {
    if (Away(nowMs) || !Faults.Due(StreamOccasion(EOccasion::StreamOpen, nowMs)).empty())
        return false;
    Service.OpenStream();
    Received.clear();
    StreamMoved = 0;
    return true;
}

std::size_t TSimulatedController::Limit(std::size_t length, const std::vector<TFault>& due,
                                        TStreamPiece& piece) const {
    piece.DelayMs = DelayOf(due, EFault::SlowStream);
    if (FindFault(due, EFault::NoAnswer) != nullptr) {
        piece.Outcome = EStreamOutcome::Silent;
        return 0;
    }
    if (const TFault* fault = FindFault(due, EFault::BrokenStream)) {
        const std::size_t most = Amount(fault->Number);
        if (StreamMoved >= most) {
            piece.Outcome = EStreamOutcome::Closed;
            return 0;
        }
        return std::min(length, most - StreamMoved);
    }
    return length;
}

TStreamPiece TSimulatedController::ReadStream(std::size_t capacity, std::int64_t nowMs) {
    TStreamPiece piece;
    if (Away(nowMs))
        return {EStreamOutcome::Closed, 0, {}};
    const std::vector<TFault> due = Faults.Due(StreamOccasion(EOccasion::StreamRead, nowMs));
    std::size_t most = Limit(std::min(capacity, StreamPiece), due, piece);
    if (const TFault* fault = FindFault(due, EFault::StalledStream);
        fault != nullptr && piece.Outcome == EStreamOutcome::Done) {
        most = std::min(most, Amount(fault->Number - static_cast<std::int64_t>(StreamMoved)));
        if (most == 0) {
            piece.DelayMs += StalledReadMs; // so long the reader waits for nothing
            return piece;
        }
    }
    if (piece.Outcome != EStreamOutcome::Done)
        return piece;
    piece.Bytes = Service.ReadStream(most);
    if (piece.Bytes.empty()) {
        piece.Outcome = StreamWaiting.empty() ? EStreamOutcome::Silent : EStreamOutcome::Done;
        piece.Bytes = StreamWaiting.substr(0, most);
        StreamWaiting.erase(0, most);
    }
    StreamMoved += piece.Bytes.size();
    return piece;
}

TStreamPiece TSimulatedController::WriteStream(std::string_view bytes, std::int64_t nowMs) {
    TStreamPiece piece;
    if (Away(nowMs))
        return {EStreamOutcome::Closed, 0, {}};
    const std::vector<TFault> due = Faults.Due(StreamOccasion(EOccasion::StreamWrite, nowMs));
    const std::size_t most = Limit(bytes.size(), due, piece);
    if (piece.Outcome == EStreamOutcome::Done && FindFault(due, EFault::BufferFull) != nullptr)
        piece.Outcome = EStreamOutcome::Full;
    if (piece.Outcome == EStreamOutcome::Done) {
        // A piece is taken whole or not at all: what would pass the break is lost with it.
        Received += bytes.substr(0, most);
        Service.WriteStream(bytes.substr(0, most));
        StreamMoved += most;
        if (most < bytes.size())
            piece.Outcome = EStreamOutcome::Closed;
    }
    return piece;
}

} // namespace tidewell
