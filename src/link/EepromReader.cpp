#include "link/EepromReader.h"

#include "core/Extensions.h"
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
    memoDebug.Clear();
    if (length == 0)
        return result;
    TReadPart part{.First = address, .Wanted = length};
    result.Words = ReadPart(address, part);
    result.Report.Add(std::move(part));
    if (Extensions.ServiceStrict && !result.Report.Whole() && !Nabto.Ended())
        for (const std::string& line : result.Report.Lines(Texts))
            memoDebug.Add(line);
    return result;
}

std::string TEepromReader::ReadPart(std::uint32_t address, TReadPart& part) {
    const std::uint32_t length = part.Wanted;
    memoDebug.Add("Preparing Stream... Read Eeprom values");
    memoDebug.Add("Read Address: " + std::to_string(address));
    memoDebug.Add("Read Length: " + std::to_string(length));
    const std::string reply =
        Nabto.SendQuery(Device, "eepReadRaw.json", TUNabto::FormatRWData(address, length));
    const std::int32_t status = Nabto.getResponseStatus(reply);
    part.Reason = RefusalReason(reply, status, Texts);
    if (status != 0 || Nabto.Ended())
        return {};
    memoDebug.Add("Preperation Success");
    memoDebug.Add("Starting Stream...");
    if (!Nabto.StartStream(Device)) {
        part.Reason = Texts.NoStream;
        return {};
    }
    memoDebug.Add("Stream Started");
    memoDebug.Add("Reading Stream...");
    TStreamRead read = Nabto.ReadStream(length);
    part.Take(read, Texts);
    memoDebug.Add("Done Reading");
    std::string list;
    if (Extensions.ServiceStrict)
        list = BytesToWordList(std::span(read.Bytes).first(read.Bytes.size() / 2 * 2));
    else if (const auto bytes = std::move(read).AtLength(length))
        list = BytesToWordList(*bytes);
    Nabto.StopStream();
    memoDebug.Add("Stream is Closed now ");
    return list;
}

} // namespace tidewell
