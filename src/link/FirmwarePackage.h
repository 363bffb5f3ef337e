#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tidewell {

class IFiles;
struct TFirmwareUpdateTexts;

// One image of a firmware package.
struct TUpdateFile {
    std::string filename;  // relative to the package's directory
    std::uint32_t crc = 0; // CRC32, passed on to the device, which alone checks it
    std::uint32_t filesize = 0;
    std::uint32_t swversion = 0; // expected after the update; 0: none was given
    std::string fileId;          // which of the device's versions that is
    std::int32_t TransferType = 0;
    std::int32_t RPCModel = 0;
};

// How an image goes to the device.
enum class ERoad { None, Stream, PreEraseAndStream, RpcMain, RpcDisplay, RpcTarget };

// A firmware package: its configuration file and, beside that, "pc_cfg.fwc" and the images.
struct TFirmwarePackage {
    // A digit per file, the rightmost for the first one.
    std::string FileMask;
    std::uint32_t FileMaskBits = 0; // bit k: file k is sent
    std::vector<TUpdateFile> Files;

    // Of the file at that position from 0. A file that the mask does not reach is left out.
    bool Sent(std::size_t position) const;
    bool Verified(std::size_t position) const; // after the restart
};

// A missing pc_cfg.fwc, or what is wrong in it, leaves the files as they are: by stream and without version.
// Throws EInOutError, and EConvertError, naming file and line, for an image whose CRC32 or size is no number
// or a mask that is too long.
TFirmwarePackage ReadFirmwarePackage(const IFiles& files, const std::filesystem::path& configFile);

// A package read with all that is wrong in it, as texts for the user: beside what ends the other reading also
// images that are not there or have another size, a mask that does not fit the list, and lines of
// pc_cfg.fwc, which is found in any case of letters. Throws EInOutError for a text file that cannot be read.
struct TCheckedPackage {
    TFirmwarePackage Package;
    std::vector<std::string> Mistakes;
};
TCheckedPackage CheckFirmwarePackage(const IFiles& files, const std::filesystem::path& configFile,
                                     const TFirmwareUpdateTexts& texts);

// The routes table. Some targets are never sent again.
ERoad FirstRoad(const TUpdateFile& file);
ERoad RepeatRoad(const TUpdateFile& file); // after a CRC error

// Whether an image of that name is meant for the model: the model stands at the first or the second
// character.
bool FitsModel(std::string_view filename, std::string_view model);

// A path as packages and lists write it, with "\" or "/".
std::filesystem::path PathInPackage(std::string text);
// Of an image; always below the package's directory.
std::filesystem::path ImagePath(const std::filesystem::path& directory, const std::string& filename);

} // namespace tidewell
