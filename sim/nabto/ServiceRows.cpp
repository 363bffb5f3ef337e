#include "sim/nabto/ServiceRows.h"

#include "core/Errors.h"
#include "core/Numbers.h"
#include "sim/nabto/RowText.h"
#include "sim/nabto/SimulationRows.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace tidewell {

namespace {

constexpr std::int32_t MostFiles = 16;
constexpr std::int32_t MostAddress = 1000000;
// Images lie between the two areas of the flash log.
constexpr std::int32_t ImagesBegin = 0xA10000;
constexpr std::int32_t ImagesEnd = 0xD30000;
constexpr std::int32_t MostWord = 65535;

struct TTimeKey {
    std::string_view Name;
    std::int64_t TServiceSetup::*Time;
};
constexpr std::array<TTimeKey, 5> TimeKeys{{
    {"UpdateTime", &TServiceSetup::UpdateMs},
    {"RestartTime", &TServiceSetup::RestartMs},
    {"CheckTime", &TServiceSetup::CheckMs},
    {"ResetTime", &TServiceSetup::ResetMs},
    {"EraseTime", &TServiceSetup::EraseMs},
}};

void ParseImage(const std::string& number, const std::string& text, TImageStore::TSetup& images) {
    const std::int32_t file = ParseIntegerWithin(number, 1, MostFiles);
    const TRowText row = SplitRowText(text);
    const std::int32_t address = ParseIntegerWithin(row.Head, ImagesBegin, ImagesEnd - 1);
    TImageSetup image;
    image.Address = static_cast<std::uint32_t>(address);
    for (const TRowText::TOption& option : row.Options)
        if (option.Name == "room")
            image.Room = static_cast<std::uint32_t>(ParseIntegerWithin(option.Value, 1, ImagesEnd - address));
        else if (option.Name == "version")
            image.Version = option.Value;
        else if (option.Name == "number")
            image.Number = ParseInteger(option.Value);
        else
            throw TError("unknown option \"" + option.Name + "\"");
    if (image.Room == 0)
        throw TError("it has no option \"room\"");
    for (const auto& [other, place] : images)
        if (other != file && image.Address < place.Address + place.Room &&
            place.Address < image.Address + image.Room)
            throw TError("its room overlaps that of image " + std::to_string(other));
    images[file] = image;
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

void ParseServiceRow(const std::string& key, const std::string& text, TServiceSetup& setup) {
    const auto* const time =
        std::find_if(TimeKeys.begin(), TimeKeys.end(),
                     [&key](const TTimeKey& candidate) { return SameText(key, candidate.Name); });
    if (time != TimeKeys.end())
        setup.*time->Time = ParseTime(text);
    else if (constexpr std::string_view Image = "image "; LowerCase(key).starts_with(Image))
        ParseImage(key.substr(Image.size()), text, setup.Images);
    else if (SameText(key, "CrcResult"))
        setup.CrcResult = ParseSetpoint(text, 0);
    else if (SameText(key, "LogValues"))
        setup.LogValues = ParseLogValues(text);
    else if (SameText(key, "LogBlock"))
        setup.LogBlock = ParseIntegerWithin(text, 0, MostWord);
    else if (SameText(key, "LogInUse"))
        setup.LogInUse = ParseIntegerWithin(text, 0, MostWord);
    else if (SameText(key, "LogCounters"))
        setup.Eeprom.LogCounters = ParseIntegerWithin(text, 0, MostWord);
    else if (SameText(key, "ErrorLog"))
        setup.Eeprom.ErrorLog = ParseIntegerWithin(text, 0, MostWord);
    else if (SameText(key, "ErrorEvents"))
        setup.Eeprom.ErrorEvents = ParseIntegerWithin(text, 0, 100);
    else if (SameText(key, "EepromSize"))
        setup.Eeprom.Size = ParseIntegerWithin(text, 0, MostWord + 1);
    else
        throw TError("unknown key");
}

} // namespace tidewell
