#include "link/FirmwarePackage.h"

#include "core/Errors.h"
#include "core/KvSupport.h"
#include "core/Numbers.h"
#include "core/TextFile.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tidewell {

namespace {

constexpr const char* transferFileName = "pc_cfg.fwc";
constexpr std::int32_t noFileNumber = 9999;

bool Holds(std::string_view line, std::string_view text) {
    return line.find(text) != std::string_view::npos;
}

// What stands behind the last ':'; the whole line if there is none.
std::string_view LastField(std::string_view line) {
    return Trim(line.substr(line.rfind(':') + 1));
}

char MaskDigit(std::string_view mask, std::size_t position) {
    return position < mask.size() ? mask[mask.size() - 1 - position] : '0';
}

// The lines of one configuration file, with the file's name for what is wrong in them.
class TConfigLines {
  public:
    TConfigLines(const IFiles& files, const std::filesystem::path& path)
        : Path(path), Lines(ReadLines(files, path)) {}

    std::size_t Count() const { return Lines.size(); }
    std::string_view Line(std::size_t index) const { return Lines[index]; }

    std::uint32_t Number(std::size_t index, const char* what) const {
        const std::string_view text = index < Lines.size() ? LastField(Lines[index]) : std::string_view();
        if (const auto value = TryToInteger64(text))
            return static_cast<std::uint32_t>(*value);
        throw EConvertError("'" + std::string(text) + "' is not a valid integer value (" + what + ", line " +
                            std::to_string(index + 1) + " of " + Path.string() + ")");
    }

  private:
    const std::filesystem::path& Path;
    std::vector<std::string> Lines;
};

void ApplyTransferLine(std::string_view line, std::vector<TUpdateFile>& files) {
    const auto fields = SplitStrictly(line, ':');
    const bool version = Holds(line, "Version") && fields.size() == 3;
    const bool transfer = !version && Holds(line, "_Transfer") && fields.size() == 4;
    if (!version && !transfer)
        return;
    const std::int32_t number = ToIntegerOr(fields[1], noFileNumber);
    if (number < 1 || static_cast<std::size_t>(number) > files.size())
        return;
    TUpdateFile& file = files[static_cast<std::size_t>(number) - 1];
    if (version) {
        file.fileId = fields[0];
        file.swversion = static_cast<std::uint32_t>(ToIntegerOr(fields[2], 0));
    } else {
        file.TransferType = ToIntegerOr(fields[2], 0);
        file.RPCModel = ToIntegerOr(fields[3], 0);
    }
}

struct TRoute {
    std::int32_t TransferType;
    std::int32_t RPCModel;
    ERoad First;
    ERoad Repeat;
};

// Where the two columns differ they are meant to.
constexpr std::array<TRoute, 7> routes{{
    {0, 2, ERoad::PreEraseAndStream, ERoad::Stream},
    {1, 0, ERoad::RpcMain, ERoad::RpcMain},
    {1, 1, ERoad::RpcDisplay, ERoad::RpcDisplay},
    {1, 2, ERoad::RpcTarget, ERoad::None},
    {2, 2, ERoad::PreEraseAndStream, ERoad::None},
    {2, 0, ERoad::Stream, ERoad::RpcMain},
    {2, 1, ERoad::Stream, ERoad::RpcDisplay},
}};

TRoute RouteOf(const TUpdateFile& file) {
    const auto* const route = std::ranges::find_if(routes, [&file](const TRoute& candidate) {
        return candidate.TransferType == file.TransferType && candidate.RPCModel == file.RPCModel;
    });
    if (route != routes.end())
        return *route;
    const ERoad road = file.TransferType == 0 ? ERoad::Stream : ERoad::None;
    return {file.TransferType, file.RPCModel, road, road};
}

} // namespace

bool TFirmwarePackage::Sent(std::size_t position) const {
    const char digit = MaskDigit(FileMask, position);
    return digit == '1' || digit == '2';
}

bool TFirmwarePackage::Verified(std::size_t position) const {
    return MaskDigit(FileMask, position) == '1';
}

TFirmwarePackage ReadFirmwarePackage(const IFiles& files, const std::filesystem::path& configFile) {
    TFirmwarePackage package;
    const TConfigLines lines(files, configFile);
    for (std::size_t i = 0; i < lines.Count(); ++i) {
        const std::string_view line = lines.Line(i);
        if (Holds(line, "Number of files"))
            package.FileMask = LastField(line);
        if (Holds(line, "Filename")) {
            TUpdateFile file;
            file.filename = LastField(line);
            file.crc = lines.Number(i + 1, "CRC32");
            file.filesize = lines.Number(i + 2, "Filesize");
            package.Files.push_back(std::move(file));
        }
    }
    try {
        package.FileMaskBits = DigitMask(package.FileMask);
    } catch (const ERangeError& error) {
        throw EConvertError(std::string(error.what()) + " (Number of files in " + configFile.string() + ")");
    }
    const auto transferFile = configFile.parent_path() / transferFileName;
    if (files.FileExists(transferFile))
        for (const std::string& line : ReadLines(files, transferFile))
            ApplyTransferLine(line, package.Files);
    return package;
}

ERoad FirstRoad(const TUpdateFile& file) {
    return RouteOf(file).First;
}

ERoad RepeatRoad(const TUpdateFile& file) {
    return RouteOf(file).Repeat;
}

bool FitsModel(std::string_view filename, std::string_view model) {
    return !model.empty() && filename.find(model) <= 1;
}

std::filesystem::path PathInPackage(std::string text) {
    std::ranges::replace(text, '\\', '/');
    return text;
}

std::filesystem::path ImagePath(const std::filesystem::path& directory, const std::string& filename) {
    return directory / PathInPackage(filename).relative_path();
}

} // namespace tidewell
