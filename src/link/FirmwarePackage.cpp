#include "link/FirmwarePackage.h"

#include "core/Errors.h"
#include "core/KvSupport.h"
#include "core/Numbers.h"
#include "core/TextFile.h"
#include "link/FirmwareUpdateTexts.h"

#include <algorithm>
#include <array>
#include <functional>
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

bool Chooses(char digit) {
    return digit == '1' || digit == '2';
}

// Takes a mistake; may throw.
using TReport = std::function<void(const std::string& mistake)>;

struct TConfig {
    TFirmwarePackage Package;
    std::vector<bool> Sized; // the file's size is a number
};

TConfig ReadConfig(const IFiles& files, const std::filesystem::path& configFile,
                   const TFirmwareUpdateTexts& texts, const TReport& report) {
    TConfig config;
    TFirmwarePackage& package = config.Package;
    const std::vector<std::string> lines = ReadLines(files, configFile);
    const auto number = [&](std::size_t index, std::string_view what) {
        const std::string_view text = index < lines.size() ? LastField(lines[index]) : std::string_view();
        const auto value = TryToInteger64(text);
        if (!value)
            report(FillText(texts.NoNumber, {text, what, std::to_string(index + 1), configFile.string()}));
        return value;
    };
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (Holds(lines[i], "Number of files"))
            package.FileMask = LastField(lines[i]);
        if (Holds(lines[i], "Filename")) {
            TUpdateFile file;
            file.filename = LastField(lines[i]);
            file.crc = static_cast<std::uint32_t>(number(i + 1, "CRC32").value_or(0));
            const auto size = number(i + 2, "Filesize");
            file.filesize = static_cast<std::uint32_t>(size.value_or(0));
            package.Files.push_back(std::move(file));
            config.Sized.push_back(size.has_value());
        }
    }
    try {
        package.FileMaskBits = DigitMask(package.FileMask);
    } catch (const ERangeError& error) {
        report(std::string(error.what()) + " (Number of files in " + configFile.string() + ")");
    }
    return config;
}

// False for a line of either kind whose fields are not in order; what is not understood leaves the files as
// they are.
bool ApplyTransferLine(std::string_view line, std::vector<TUpdateFile>& files) {
    const auto fields = SplitStrictly(line, ':');
    const bool version = Holds(line, "Version") && fields.size() == 3;
    const bool transfer = !version && Holds(line, "_Transfer") && fields.size() == 4;
    if (!version && !transfer)
        return false;
    const std::int32_t number = ToIntegerOr(fields[1], noFileNumber);
    if (number < 1 || static_cast<std::size_t>(number) > files.size())
        return false;
    TUpdateFile& file = files[static_cast<std::size_t>(number) - 1];
    if (version) {
        file.fileId = fields[0];
        file.swversion = static_cast<std::uint32_t>(ToIntegerOr(fields[2], 0));
        return TryToInteger(fields[2]).has_value();
    }
    file.TransferType = ToIntegerOr(fields[2], 0);
    file.RPCModel = ToIntegerOr(fields[3], 0);
    return TryToInteger(fields[2]) && TryToInteger(fields[3]);
}

// A remark, or a heading, in which nothing is told.
bool IsRemark(std::string_view line) {
    line = Trim(line);
    const bool heading = !Holds(line, ":") && !Holds(line, "Version") && !Holds(line, "_Transfer");
    return heading || line.front() == ';' || line.front() == '#' || line.starts_with("//");
}

void ApplyTransferFile(const IFiles& files, const std::filesystem::path& path, TFirmwarePackage& package,
                       const TFirmwareUpdateTexts& texts, const TReport& report) {
    const std::vector<std::string> lines = ReadLines(files, path);
    for (std::size_t i = 0; i < lines.size(); ++i)
        if (!ApplyTransferLine(lines[i], package.Files) && !IsRemark(lines[i]))
            report(FillText(texts.BadLine, {std::to_string(i + 1), path.string(), lines[i]}));
}

void CheckMask(const TFirmwarePackage& package, const TFirmwareUpdateTexts& texts, const TReport& report) {
    const std::string& mask = package.FileMask;
    const std::size_t listed = std::min(package.Files.size(), mask.size());
    const auto beyond = std::string_view(mask).substr(0, mask.size() - listed);
    if (std::ranges::none_of(mask, Chooses))
        report(FillText(texts.NothingChosen, {mask}));
    if (std::ranges::any_of(beyond, Chooses))
        report(FillText(texts.ChosenBeyond, {mask, std::to_string(package.Files.size())}));
}

void CheckImages(const IFiles& files, const std::filesystem::path& directory, const TConfig& config,
                 const TFirmwareUpdateTexts& texts, const TReport& report) {
    for (std::size_t i = 0; i < config.Package.Files.size(); ++i) {
        if (!config.Package.Sent(i))
            continue;
        const TUpdateFile& file = config.Package.Files[i];
        const auto path = ImagePath(directory, file.filename);
        try {
            if (const std::size_t size = files.Read(path).size(); config.Sized[i] && size != file.filesize)
                report(FillText(texts.WrongSize,
                                {path.string(), std::to_string(size), std::to_string(file.filesize)}));
        } catch (const EInOutError& error) {
            report(error.what());
        }
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
    return Chooses(MaskDigit(FileMask, position));
}

bool TFirmwarePackage::Verified(std::size_t position) const {
    return MaskDigit(FileMask, position) == '1';
}

TFirmwarePackage ReadFirmwarePackage(const IFiles& files, const std::filesystem::path& configFile) {
    const TFirmwareUpdateTexts texts;
    const auto refuse = [](const std::string& mistake) { throw EConvertError(mistake); };
    TFirmwarePackage package = ReadConfig(files, configFile, texts, refuse).Package;
    const auto transferFile = configFile.parent_path() / transferFileName;
    if (files.FileExists(transferFile))
        ApplyTransferFile(files, transferFile, package, texts, [](const std::string&) {});
    return package;
}

TCheckedPackage CheckFirmwarePackage(const IFiles& files, const std::filesystem::path& configFile,
                                     const TFirmwareUpdateTexts& texts) {
    std::vector<std::string> mistakes;
    const auto report = [&mistakes](const std::string& mistake) { mistakes.push_back(mistake); };
    TConfig config = ReadConfig(files, configFile, texts, report);
    const auto directory = configFile.parent_path();
    if (config.Package.Files.empty())
        report(FillText(texts.NoFile, {configFile.string()}));
    CheckMask(config.Package, texts, report);
    CheckImages(files, directory, config, texts, report);
    const auto names = files.List(directory, transferFileName);
    if (!names.empty()) {
        const bool exact = std::ranges::find(names, transferFileName) != names.end();
        ApplyTransferFile(files, directory / (exact ? transferFileName : names.front()), config.Package,
                          texts, report);
    }
    return {std::move(config.Package), std::move(mistakes)};
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
