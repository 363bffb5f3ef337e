#include "link/EepromReader.h"

#include "core/Extensions.h"
#include "core/controls/Lists.h"
#include "link/DeviceServices.h"
#include "link/Nabto.h"

#include <utility>

namespace tidewell {

std::string BytesToWordList(std::span<const std::uint8_t> bytes) {
    std::string list;
    if (bytes.size() % 2 != 0)
        return list;
    for (; !bytes.empty(); bytes = bytes.subspan(2))
        list += std::to_string(bytes[0] << 8U | bytes[1]) + ";";
    return list;
}

TEepromReader::TResult TEepromReader::ReadEeprom(std::uint32_t address, std::uint32_t length) {
    TResult result;
    Services.memoDebug.Clear();
    if (length == 0)
        return result;
    TReadPart part{.First = address, .Wanted = length};
    result.Words = ReadPart(address, part);
    result.Report.Add(std::move(part));
    if (Services.Extensions.ServiceStrict && !result.Report.Whole() && !Services.Nabto.Ended())
        for (const std::string& line : result.Report.Lines(Services.DownloadTexts))
            Services.memoDebug.Add(line);
    return result;
}

std::string TEepromReader::ReadPart(std::uint32_t address, TReadPart& part) {
    const std::uint32_t length = part.Wanted;
    Services.memoDebug.Add("Preparing Stream... Read Eeprom values");
    Services.memoDebug.Add("Read Address: " + std::to_string(address));
    Services.memoDebug.Add("Read Length: " + std::to_string(length));
    const std::string reply =
        Services.Nabto.SendQuery(Services.device, "eepReadRaw.json", TUNabto::FormatRWData(address, length));
    const std::int32_t status = Services.Nabto.getResponseStatus(reply);
    part.Reason = RefusalReason(reply, status, Services.DownloadTexts);
    if (status != 0 || Services.Nabto.Ended())
        return {};
    Services.memoDebug.Add("Preperation Success");
    Services.memoDebug.Add("Starting Stream...");
    if (!Services.Nabto.StartStream(Services.device)) {
        part.Reason = Services.DownloadTexts.NoStream;
        return {};
    }
    Services.memoDebug.Add("Stream Started");
    Services.memoDebug.Add("Reading Stream...");
    TStreamRead read = Services.Nabto.ReadStream(length);
    part.Take(read, Services.DownloadTexts);
    Services.memoDebug.Add("Done Reading");
    std::string list;
    if (Services.Extensions.ServiceStrict)
        list = BytesToWordList(std::span(read.Bytes).first(read.Bytes.size() / 2 * 2));
    else if (const auto bytes = std::move(read).AtLength(length))
        list = BytesToWordList(*bytes);
    Services.Nabto.StopStream();
    Services.memoDebug.Add("Stream is Closed now ");
    return list;
}

} // namespace tidewell
