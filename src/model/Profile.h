#pragma once

#include "core/IniFile.h"
#include "core/controls/Color.h"
#include "core/ports/IFiles.h"
#include "model/ValueCodec.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace tidewell {

// What the user may have changed of one channel of the plot surface.
struct TGraphChannelSettings {
    std::string Name; // with or without the value behind ":["
    bool Visible = true;
    TColor Color;
    int YAxisIndex = 0; // from 0
};

struct TFlashPage {
    bool doFlashPage = false;
    std::int32_t DF_FDCountNum = 0;
    std::filesystem::path FlashLogProfile; // may not exist
};

// The graph side of the open profile.
struct TProfileGraph {
    bool ProfileLoaded = false;
    bool OfDevice = false;     // was chosen by the model that the device reported
    bool DeviceSilent = false; // the device linked to since then has reported none
    // Nothing is logged by a profile that may be of another device than the one linked to.
    bool MayLog() const { return ProfileLoaded && !DeviceSilent; }
    std::vector<std::string> GraphValues; // values of GraphPoints, in file order
    std::vector<TGraphPoint> GraphPoints; // the same, parsed
    std::vector<std::string> GraphKeys;   // their keys
    std::size_t GraphEnableCount = 0;     // how many of them are channels
    std::vector<std::string> FindGraphNameList;
    TIniSection VisibleGraph;
    std::filesystem::path currentprofilefile;
    std::string ReadFailure;     // why that file could not be read; empty if it was
    bool HoldsNoProfile = false; // it was, but holds no section that a profile has
};

// The graph side and the settings of the open profile. The devices are TModbusPanel's.
class TProfile : public TProfileGraph {
  public:
    explicit TProfile(IFiles& files) : Files(files) {}

    // Replaces GraphValues to currentprofilefile by those of the file and sets ProfileLoaded. Missing
    // sections and a missing file leave the lists empty.
    void Open(const std::filesystem::path& path);
    // Replaces the settings and FlashPage. An empty path gives the defaults.
    void ReadNabtoSection(const std::filesystem::path& path);

    // FlashPage.FlashLogProfile if that file exists, otherwise empty.
    std::filesystem::path GetFlashLogProfilepath() const;
    // "profile/M3" and "cfg/english.lng" make "profile/M3_english.pls".
    static std::filesystem::path PadCurrentProfileExtension(const std::filesystem::path& base,
                                                            const std::filesystem::path& languageFile);

    // Writes what the user changed on the graph back into currentprofilefile; channels stand in the order of
    // the plot surface. Only the lines of the changed keys change. Rows are matched to keys by position, and
    // a duplicate key writes to its first line. Does nothing without a loaded profile, or if the file is
    // gone, read-only or locked. Throws EInOutError if reading or writing fails otherwise; the file is then
    // as it was.
    void WriteGraphSettings(const std::vector<TGraphChannelSettings>& channels);
    // The same for a file that others may have edited since it was read: rows are matched by their keys, and
    // only those are written that were changed here. Gives the keys of those that differ from what was read,
    // which are left alone.
    std::vector<std::string> WriteChangedSettings(const std::vector<TGraphChannelSettings>& channels);

    TFlashPage FlashPage;
    std::int32_t DF_HPM_SNUM = 0;
    std::int32_t DF_HPM_SETPKTNUM = 0;
    bool DebugLog = false;
    std::int32_t ErrorLogOffset = 0; // start address of the device's error log
    bool NabtoErrorlogEnable = false;

  private:
    bool MayWrite() const;
    IFiles& Files;
};

// The poll questions of a profile, in the order of the values in the data line; the value of a row is
// "<obj>;<command>;<address>;<length>;...".
TIniSection ReadPollQuestions(const IFiles& files, const std::filesystem::path& path);

} // namespace tidewell
