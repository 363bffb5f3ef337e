#include "sim/nabto/SimulationRows.h"

#include "core/Errors.h"
#include "core/Numbers.h"
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
constexpr std::int32_t MostFiles = 16;
constexpr std::int32_t MostWord = 65535;
constexpr std::int32_t MostEvents = 100;
// Images lie between the two areas of the flash log.
constexpr std::int32_t ImagesBegin = 0xA10000;
constexpr std::int32_t ImagesEnd = 0xD30000;

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

// "<address>" of the given object, or "<object>/<address>".
TRegisterAddress ParseAddress(const std::string& text, std::int32_t obj) {
    const std::size_t slash = text.find('/');
    if (slash == std::string::npos)
        return {obj, ParseIntegerWithin(text, 0, MostAddress)};
    return {ParseIntegerWithin(text.substr(0, slash), 0, MostAddress),
            ParseIntegerWithin(text.substr(slash + 1), 0, MostAddress)};
}

std::string ParseQuery(const std::string& text) {
    if (text != StreamQuery && !QueryOccasion(text))
        Unknown("query", text);
    return text;
}

std::int32_t ParseBlock(const std::string& text) {
    return ParseIntegerWithin(text, 0, TFlashRing::BlockCount - 1);
}

// False if it is no option of conditions.
bool ParseCondition(const TRowText::TOption& option, TFaultCondition& when) {
    return TakeOption(option, {{"from", Into(when.FromMs, ParseTime)},
                               {"to", Into(when.ToMs, ParseTime)},
                               {"skip", Into(when.Skip, ParseCount)},
                               {"times", Into(when.Times, ParseCount)}});
}

bool ParseRequestCondition(const TRowText::TOption& option, TFaultCondition& when) {
    return ParseCondition(option, when) || TakeOption(option, {{"query", Into(when.Query, ParseQuery)},
                                                               {"obj", Into(when.Obj, ParseInteger)},
                                                               {"address", Into(when.Address, ParseInteger)},
                                                               {"state", Into(when.State, ParseInteger)},
                                                               {"block", Into(when.Block, ParseBlock)}});
}

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

void ParseArgument(EFaultArgument argument, const std::string& text, TFault& fault) {
    switch (argument) {
    case EFaultArgument::Time:
        fault.Number = ParseTime(text);
        return;
    case EFaultArgument::On:
        ParseOn(text);
        return;
    case EFaultArgument::Text:
        fault.Text = text;
        return;
    case EFaultArgument::Integer:
        fault.Number = ParseIntegerWithin(text, -MostRun, MostRun);
        return;
    case EFaultArgument::Count:
        fault.Number = static_cast<std::int64_t>(ParseCount(text));
        return;
    case EFaultArgument::File:
        fault.Number = ParseIntegerWithin(text, 1, MostFiles);
        return;
    }
}

void ParseImage(const std::string& number, const std::string& text, TImageStore::TSetup& images) {
    const std::int32_t file = ParseIntegerWithin(number, 1, MostFiles);
    const TRowText row = SplitRowText(text);
    const std::int32_t address = ParseIntegerWithin(row.Head, ImagesBegin, ImagesEnd - 1);
    TImageSetup image;
    image.Address = static_cast<std::uint32_t>(address);
    const auto room = [address](const std::string& value) {
        return static_cast<std::uint32_t>(ParseIntegerWithin(value, 1, ImagesEnd - address));
    };
    for (const TRowText::TOption& option : row.Options)
        if (!TakeOption(option, {{"room", Into(image.Room, room)},
                                 {"version", Into(image.Version, AsItIs)},
                                 {"number", Into(image.Number, ParseInteger)}}))
            Unknown("option", option.Name);
    if (image.Room == 0)
        throw TError("it has no option \"room\"");
    for (const auto& [other, place] : images)
        if (other != file && image.Address < place.Address + place.Room &&
            place.Address < image.Address + image.Room)
            throw TError("its room overlaps that of image " + std::to_string(other));
    images[file] = image;
}

TRegisterAddress ParseSetpoint(const std::string& text) {
    return ParseAddress(text, 0);
}

std::int32_t ParseWord(const std::string& text) {
    return ParseIntegerWithin(text, 0, MostWord);
}

// "setpoint 0 101..119": table, first address and count of a run.
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

std::vector<TServiceSetup::TLogValue> ParseLogValues(const std::string& text) {
    std::vector<TServiceSetup::TLogValue> values;
    for (const std::string& name : SplitNames(text)) {
        const TValueRun run = ParsePlace(name);
        for (std::int32_t i = 0; i < run.Count; ++i)
            values.push_back({run.Table, {run.First.Obj, run.First.Address + i}});
    }
    if (values.size() > TFlashRing::MostValues) {
        throw TError("a record has room for " + std::to_string(TFlashRing::MostValues) + " values, not " +
                     std::to_string(values.size()));
    }
    return values;
}

} // namespace

TValueRun ParseValueRow(const std::string& key, const std::string& text) {
    TValueRun run = ParsePlace(key);
    const TRowText row = SplitRowText(text);
    run.Sources = ParseSources(row.Head);
    std::int64_t shift = 0;
    for (const TRowText::TOption& option : row.Options) {
        const auto writtenAt = [&](const std::string& value) {
            run.WrittenAt.push_back(ParseAddress(value, run.First.Obj));
        };
        const auto refused = [](const std::string& value) { return value.empty() ? 2 : ParseInteger(value); };
        if (!TakeOption(option, {{"signed", [&](const std::string&) { run.Signed = true; }},
                                 {"shift", Into(shift, ParseTime)},
                                 {"stagger", Into(run.StaggerMs, ParseTime)},
                                 {"write", writtenAt},
                                 {"refused", Into(run.RefusedStatus, refused)}}))
            Unknown("option", option.Name);
    }
    for (TValueSource& source : run.Sources)
        source.AheadMs = shift;
    if (row.Head.starts_with("list") && run.Sources.size() != static_cast<std::size_t>(run.Count)) {
        throw TError("the list has " + std::to_string(run.Sources.size()) + " values for " +
                     std::to_string(run.Count) + " addresses");
    }
    return run;
}

void ParseFaultRow(const std::string& key, const std::string& text, std::vector<TFault>& faults) {
    for (const TFaultKind& kind : FaultKinds()) {
        if (!SameText(key, kind.Name))
            continue;
        const TRowText row = SplitRowText(text);
        if (SameText(row.Head, "off"))
            return;
        TFault fault;
        fault.Kind = kind.Kind;
        ParseArgument(kind.Argument, row.Head, fault);
        for (const TRowText::TOption& option : row.Options)
            if (!ParseRequestCondition(option, fault.When))
                Unknown("option", option.Name);
        if (!fault.When.Query.empty() && !kind.CanBeDue(fault.When.Query))
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

void ParseServiceRow(const std::string& key, const std::string& text, TServiceSetup& setup) {
    constexpr std::string_view Image = "image ";
    if (LowerCase(key).starts_with(Image)) {
        ParseImage(key.substr(Image.size()), text, setup.Images);
        return;
    }
    const auto events = [](const std::string& value) { return ParseIntegerWithin(value, 0, MostEvents); };
    const auto size = [](const std::string& value) { return ParseIntegerWithin(value, 0, MostWord + 1); };
    if (!TakeKey(key, text,
                 {{"UpdateTime", Into(setup.Times.Update, ParseTime)},
                  {"RestartTime", Into(setup.Times.Restart, ParseTime)},
                  {"CheckTime", Into(setup.Times.Check, ParseTime)},
                  {"ResetTime", Into(setup.Times.Reset, ParseTime)},
                  {"EraseTime", Into(setup.Times.Erase, ParseTime)},
                  {"CrcResult", Into(setup.CrcResult, ParseSetpoint)},
                  {"LogValues", Into(setup.LogValues, ParseLogValues)},
                  {"LogBlock", Into(setup.LogBlock, ParseWord)},
                  {"LogInUse", Into(setup.LogInUse, ParseWord)},
                  {"LogCounters", Into(setup.Eeprom.LogCounters, ParseWord)},
                  {"ErrorLog", Into(setup.Eeprom.ErrorLog, ParseWord)},
                  {"ErrorEvents", Into(setup.Eeprom.ErrorEvents, events)},
                  {"EepromSize", Into(setup.Eeprom.Size, size)}}))
        throw TError("unknown key");
}

} // namespace tidewell
