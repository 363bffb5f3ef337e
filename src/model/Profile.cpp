#include "model/Profile.h"

#include "core/KvSupport.h"
#include "core/Numbers.h"
#include "model/ColorText.h"

#include <algorithm>

namespace tidewell {

namespace {

constexpr std::string_view graphSection = "GraphPoints";
constexpr std::string_view visibleSection = "VisibleGraph";
constexpr std::string_view settingsSection = "NabtoSection";
constexpr std::string_view questionSection = "NabtoDevice";

// The name without the ending and what follows it; the whole name if it has no such ending.
std::string CutAt(const std::string& name, std::string_view ending) {
    const auto found = LowerCase(name).find(ending);
    return found == std::string::npos ? name : name.substr(0, found);
}

// The value that the graph shows in a channel's name reaches from ":[" over at most 30 characters.
std::string WithoutValue(std::string name) {
    const std::size_t begin = name.find(":[");
    if (begin == std::string::npos)
        return name;
    const auto continues = [&](std::size_t at) {
        return at < name.size() && (static_cast<unsigned char>(name[at]) & 0xC0U) == 0x80U;
    };
    std::size_t end = begin;
    for (int characters = 0; characters < 30 && end < name.size(); ++characters)
        do
            ++end;
        while (continues(end));
    return name.erase(begin, end - begin);
}

std::string WithSettings(std::string row, const TGraphChannelSettings& channel) {
    row = SetRowField(row, 2, ColorToText(channel.Color, GetRowField(row, 2)));
    row = SetRowField(row, 1, std::to_string(channel.YAxisIndex + 1));
    return SetRowField(row, 0, WithoutValue(channel.Name));
}

} // namespace

void TProfile::Open(const std::filesystem::path& path) {
    const TIniFile file(Files, path);
    GraphValues.clear();
    GraphPoints.clear();
    GraphKeys.clear();
    FindGraphNameList.clear();
    GraphEnableCount = 0;
    const TIniSection graph = file.ReadSection(graphSection);
    for (const auto& row : graph.Rows()) {
        GraphValues.push_back(row.Value);
        GraphPoints.push_back(ParseGraphPoint(row.Value));
        GraphKeys.push_back(row.Name);
        FindGraphNameList.emplace_back(Trim(GetRowField(row.Value, 0)));
        if (GraphPoints.back().IsChannel)
            ++GraphEnableCount;
    }
    VisibleGraph = file.ReadSection(visibleSection);
    ProfileLoaded = true;
    OfDevice = false;
    DeviceSilent = false;
    currentprofilefile = path;
    ReadFailure = file.ReadFailure();
    HoldsNoProfile =
        ReadFailure.empty() && std::ranges::none_of(file.SectionNames(), [](const std::string& name) {
            return SameText(name, graphSection) || SameText(name, settingsSection) ||
                   name.find("Device") != std::string::npos;
        });
}

void TProfile::ReadNabtoSection(const std::filesystem::path& path) {
    const TIniFile file = path.empty() ? TIniFile("") : TIniFile(Files, path);
    DF_HPM_SNUM = file.ReadInteger(settingsSection, "DF_HPM_SNUM", 0);
    DF_HPM_SETPKTNUM = file.ReadInteger(settingsSection, "DF_HPM_SETPKTNUM", 0);
    FlashPage.doFlashPage = file.ReadTrue(settingsSection, "Enabled");
    DebugLog = file.ReadTrue(settingsSection, "DebugLog");
    FlashPage.DF_FDCountNum = file.ReadInteger(settingsSection, "DF_FDCountNum", 0);
    ErrorLogOffset = file.ReadInteger(settingsSection, "ErrorLogOffset", 0);
    NabtoErrorlogEnable = file.ReadTrue(settingsSection, "NabtoErrorlogEnable");
    FlashPage.FlashLogProfile.clear();
    if (!path.empty())
        FlashPage.FlashLogProfile =
            path.parent_path() / (CutAt(path.filename().string(), ".pls") + "_Flash.pls");
}

std::filesystem::path TProfile::GetFlashLogProfilepath() const {
    return Files.FileExists(FlashPage.FlashLogProfile) ? FlashPage.FlashLogProfile : std::filesystem::path();
}

std::filesystem::path TProfile::PadCurrentProfileExtension(const std::filesystem::path& base,
                                                           const std::filesystem::path& languageFile) {
    std::filesystem::path padded = base;
    padded += "_" + CutAt(languageFile.filename().string(), ".lng") + ".pls";
    return padded;
}

bool TProfile::MayWrite() const {
    return ProfileLoaded && Files.FileExists(currentprofilefile) && !Files.IsLocked(currentprofilefile);
}

std::vector<std::string> TProfile::WriteChangedSettings(const std::vector<TGraphChannelSettings>& channels) {
    std::vector<std::string> edited;
    if (!MayWrite())
        return edited;
    TIniFile file(Files, currentprofilefile);
    const auto write = [&](std::string_view section, const std::string& key,
                           const std::optional<std::string>& read, const std::string& value) {
        if (read == value)
            return;
        if (file.Find(section, key) == read)
            file.WriteText(section, key, value);
        else
            edited.push_back(key);
    };
    for (std::size_t k = 0; k < channels.size(); ++k) {
        const std::string key = "graph " + std::to_string(k);
        const auto read = VisibleGraph.Find(key);
        const bool shown = read && (SameText(*read, "true") || ToIntegerOr(*read, 0) != 0);
        if (!read || shown != channels[k].Visible)
            write(visibleSection, key, read, BooleanText(channels[k].Visible));
    }
    std::size_t k = 0;
    for (std::size_t i = 0; i < GraphValues.size(); ++i)
        if (GraphPoints[i].IsChannel && k < channels.size())
            write(graphSection, GraphKeys[i], GraphValues[i], WithSettings(GraphValues[i], channels[k++]));
    file.Save(Files);
    return edited;
}

void TProfile::WriteGraphSettings(const std::vector<TGraphChannelSettings>& channels) {
    if (!MayWrite())
        return;
    TIniFile file(Files, currentprofilefile);
    for (std::size_t k = 0; k < channels.size(); ++k)
        file.WriteText(visibleSection, "graph " + std::to_string(k), BooleanText(channels[k].Visible));

    const TIniSection section = file.ReadSection(graphSection);
    const std::size_t count = std::min(GraphValues.size(), section.Count());
    std::size_t k = 0;
    for (std::size_t i = 0; i < count; ++i) {
        std::string row = GraphValues[i];
        if (GraphPoints[i].IsChannel && k < channels.size())
            row = WithSettings(row, channels[k++]);
        file.WriteText(graphSection, section.Rows()[i].Name, row);
    }
    file.Save(Files);
}

TIniSection ReadPollQuestions(const IFiles& files, const std::filesystem::path& path) {
    return TIniFile(files, path).ReadSection(questionSection);
}

} // namespace tidewell
