#include "sim/nabto/SimulationRows.h"

#include "core/Errors.h"
#include "core/Numbers.h"
#include "sim/controller/FlashRing.h"
#include "sim/nabto/RowText.h"
#include "sim/nabto/Status.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

namespace tidewell {

namespace {

constexpr std::int32_t MostAddress = 1000000;
constexpr std::int32_t MostRun = 65536;

[[noreturn]] void Unknown(const std::string& what, const std::string& name) {
    throw TError("unknown " + what + " \"" + name + "\"");
}

void NeedWords(const std::vector<std::string>& words, std::size_t count, const char* form) {
    if (words.size() != count)
        throw TError(std::string("expected \"") + form + "\"");
}

TValueSource MovingSource(ESource kind, const std::vector<std::string>& words, const char* form) {
    NeedWords(words, 4, form);
    TValueSource source{kind, ParseReal(words[1]), ParseReal(words[2]), ParseTime(words[3]), 0};
    if (source.PeriodMs < 1)
        throw TError("the time must be above 0");
    return source;
}

std::vector<TValueSource> ParseSources(const std::string& head) {
    const std::vector<std::string> words = SplitWords(head);
    const std::string kind = words.empty() ? std::string() : words[0];
    if (kind == "list") {
        std::vector<TValueSource> sources;
        for (std::size_t i = 1; i < words.size(); ++i)
            sources.push_back({ESource::Constant, ParseReal(words[i])});
        return sources;
    }
    if (kind == "ramp")
        return {MovingSource(ESource::Ramp, words, "ramp <from> <to> <time>")};
    if (kind == "sine")
        return {MovingSource(ESource::Sine, words, "sine <middle> <amplitude> <time>")};
    if (kind == "noise")
        return {MovingSource(ESource::Noise, words, "noise <middle> <deviation> <time>")};
    if (kind == "bits")
        return {MovingSource(ESource::Bits, words, "bits <value> <mask> <time>")};
    if (kind == "counter")
        return {MovingSource(ESource::Counter, words, "counter <start> <step> <time>")};
    if (kind == "constant") {
        NeedWords(words, 2, "constant <value>");
        return {{ESource::Constant, ParseReal(words[1])}};
    }
    if (words.size() == 1 && TryToFloat(kind))
        return {{ESource::Constant, ParseReal(kind)}};
    Unknown("kind", kind);
}

// False if it is no option of conditions.
bool ParseCondition(const TRowText::TOption& option, TFaultCondition& when) {
    if (option.Name == "from")
        when.FromMs = ParseTime(option.Value);
    else if (option.Name == "to")
        when.ToMs = ParseTime(option.Value);
    else if (option.Name == "skip")
        when.Skip = ParseCount(option.Value);
    else if (option.Name == "times")
        when.Times = ParseCount(option.Value);
    else
        return false;
    return true;
}

bool ParseRequestCondition(const TRowText::TOption& option, TFaultCondition& when) {
    if (option.Name == "query") {
        if (option.Value != StreamQuery && !QueryOccasion(option.Value))
            Unknown("query", option.Value);
        when.Query = option.Value;
    } else if (option.Name == "obj") {
        when.Obj = ParseInteger(option.Value);
    } else if (option.Name == "address") {
        when.Address = ParseInteger(option.Value);
    } else if (option.Name == "state") {
        when.State = ParseInteger(option.Value);
    } else if (option.Name == "block") {
        when.Block = ParseIntegerWithin(option.Value, 0, TFlashRing::BlockCount - 1);
    } else {
        return ParseCondition(option, when);
    }
    return true;
}

enum class EArgument { Time, On, Text, Integer, Count, File };

struct TFaultName {
    std::string_view Name;
    EFault Kind;
    EArgument Argument;
};

constexpr std::array<TFaultName, 20> FaultNames{{
    {"Latency", EFault::Latency, EArgument::Time},
    {"NoAnswer", EFault::NoAnswer, EArgument::On},
    {"Error", EFault::Error, EArgument::Text},
    {"WrongCount", EFault::WrongCount, EArgument::Integer},
    {"Garbage", EFault::Garbage, EArgument::Text},
    {"Huge", EFault::Huge, EArgument::Count},
    {"RefuseWrite", EFault::RefuseWrite, EArgument::Integer},
    {"ChangeAfterWrite", EFault::ChangeAfterWrite, EArgument::Integer},
    {"SlowStream", EFault::SlowStream, EArgument::Time},
    {"BrokenStream", EFault::BrokenStream, EArgument::Count},
    {"StalledStream", EFault::StalledStream, EArgument::Count},
    {"BufferFull", EFault::BufferFull, EArgument::On},
    {"LostAnswer", EFault::LostAnswer, EArgument::On},
    {"Refuse", EFault::Refuse, EArgument::Count},
    {"WrongEcho", EFault::WrongEcho, EArgument::Integer},
    {"ShortRead", EFault::ShortRead, EArgument::Count},
    {"BadImage", EFault::BadImage, EArgument::File},
    {"OldResult", EFault::OldResult, EArgument::On},
    {"LateReturn", EFault::LateReturn, EArgument::Time},
    {"NoReturn", EFault::NoReturn, EArgument::On},
}};

constexpr std::array<std::string_view, 13> Functions{EndSessionsFault,
                                                     "nabtoStartup",
                                                     "nabtoShutdown",
                                                     "nabtoOpenSession",
                                                     "nabtoCloseSession",
                                                     "nabtoCreateProfile",
                                                     "nabtoRpcSetDefaultInterface",
                                                     "nabtoRpcInvoke",
                                                     "nabtoStreamOpen",
                                                     "nabtoStreamClose",
                                                     "nabtoStreamWrite",
                                                     "nabtoStreamReadIntoBuf",
                                                     "nabtoGetLocalDevices"};

void ParseOn(const std::string& text) {
    if (!SameText(text, "on"))
        throw TError("\"" + text + "\" is neither on nor off");
}

void ParseArgument(EArgument argument, const std::string& text, TFault& fault) {
    switch (argument) {
    case EArgument::Time:
        fault.Number = ParseTime(text);
        return;
    case EArgument::On:
        ParseOn(text);
        return;
    case EArgument::Text:
        fault.Text = text;
        return;
    case EArgument::Integer:
        fault.Number = ParseIntegerWithin(text, -MostRun, MostRun);
        return;
    case EArgument::Count:
        fault.Number = static_cast<std::int64_t>(ParseCount(text));
        return;
    case EArgument::File:
        fault.Number = ParseIntegerWithin(text, 1, 16);
        return;
    }
}

} // namespace

TRegisterAddress ParseSetpoint(const std::string& text, std::int32_t obj) {
    const std::size_t slash = text.find('/');
    if (slash == std::string::npos)
        return {obj, ParseIntegerWithin(text, 0, MostAddress)};
    return {ParseIntegerWithin(text.substr(0, slash), 0, MostAddress),
            ParseIntegerWithin(text.substr(slash + 1), 0, MostAddress)};
}

TValueRun ParsePlace(const std::string& text) {
    TValueRun run;
    const std::vector<std::string> words = SplitWords(text);
    NeedWords(words, 3, "setpoint <obj> <address>");
    if (words[0] != "setpoint" && words[0] != "datapoint")
        Unknown("value", words[0]);
    run.Table = words[0] == "setpoint" ? ETable::Setpoint : ETable::Datapoint;
    run.First.Obj = ParseIntegerWithin(words[1], 0, MostAddress);
    const std::size_t dots = words[2].find("..");
    run.First.Address = ParseIntegerWithin(words[2].substr(0, dots), 0, MostAddress);
    if (dots != std::string::npos) {
        const std::int32_t last =
            ParseIntegerWithin(words[2].substr(dots + 2), run.First.Address, run.First.Address + MostRun - 1);
        run.Count = last - run.First.Address + 1;
    }
    return run;
}

TValueRun ParseValueRow(const std::string& key, const std::string& text) {
    TValueRun run = ParsePlace(key);
    const TRowText row = SplitRowText(text);
    run.Sources = ParseSources(row.Head);
    std::int64_t shift = 0;
    for (const TRowText::TOption& option : row.Options)
        if (option.Name == "signed")
            run.Signed = true;
        else if (option.Name == "shift")
            shift = ParseTime(option.Value);
        else if (option.Name == "stagger")
            run.StaggerMs = ParseTime(option.Value);
        else if (option.Name == "write")
            run.WrittenAt.push_back(ParseSetpoint(option.Value, run.First.Obj));
        else if (option.Name == "refused")
            run.RefusedStatus = option.Value.empty() ? 2 : ParseInteger(option.Value);
        else
            Unknown("option", option.Name);
    for (TValueSource& source : run.Sources)
        source.AheadMs = shift;
    if (row.Head.starts_with("list") && run.Sources.size() != static_cast<std::size_t>(run.Count)) {
        throw TError("the list has " + std::to_string(run.Sources.size()) + " values for " +
                     std::to_string(run.Count) + " addresses");
    }
    return run;
}

void ParseFaultRow(const std::string& key, const std::string& text, std::vector<TFault>& faults) {
    for (const TFaultName& name : FaultNames) {
        if (!SameText(key, name.Name))
            continue;
        const TRowText row = SplitRowText(text);
        if (SameText(row.Head, "off"))
            return;
        TFault fault;
        fault.Kind = name.Kind;
        ParseArgument(name.Argument, row.Head, fault);
        for (const TRowText::TOption& option : row.Options)
            if (!ParseRequestCondition(option, fault.When))
                Unknown("option", option.Name);
        if (!fault.When.Query.empty() && !CanBeDue(fault.Kind, fault.When.Query))
            throw TError("this fault never comes with query=" + fault.When.Query);
        faults.push_back(std::move(fault));
        return;
    }
    Unknown("fault", key);
}

TLibraryFault ParseLibraryRow(const std::string& key, const std::string& text) {
    for (const std::string_view function : Functions) {
        if (!SameText(key, function))
            continue;
        const TRowText row = SplitRowText(text);
        TLibraryFault fault{std::string(function), 0, {}};
        if (function == EndSessionsFault)
            ParseOn(row.Head);
        else if (const std::optional<TNabtoStatus> status = StatusByName(row.Head))
            fault.Status = *status;
        else
            Unknown("status", row.Head);
        for (const TRowText::TOption& option : row.Options)
            if (!ParseCondition(option, fault.When))
                Unknown("option", option.Name);
        return fault;
    }
    Unknown("function", key);
}

} // namespace tidewell
