#include "link/EepromReader.h"

#include "link/Nabto.h"

namespace tidewell {

std::string BytesToWordList(std::span<const std::uint8_t> bytes) {
    std::string list;
    if (bytes.size() % 2 != 0)
        return list;
    for (; !bytes.empty(); bytes = bytes.subspan(2))
        list += std::to_string(bytes[0] << 8U | bytes[1]) + ";";
    return list;
}

std::string TEepromReader::ReadEeprom(std::uint32_t address, std::uint32_t length) {
    memoDebug.Clear();
    if (length == 0)
        return {};
    memoDebug.Add("Preparing Stream... Read Eeprom values");
    memoDebug.Add("Read Address: " + std::to_string(address));
    memoDebug.Add("Read Length: " + std::to_string(length));
    const std::string reply =
        Nabto.SendQuery(Device, "eepReadRaw.json", TUNabto::FormatRWData(address, length));
    if (Nabto.getResponseStatus(reply) != 0 || Nabto.Ended())
        return {};
    memoDebug.Add("Preperation Success");
    memoDebug.Add("Starting Stream...");
    if (!Nabto.StartStream(Device))
        return {};
    memoDebug.Add("Stream Started");
    memoDebug.Add("Reading Stream...");
    const auto bytes = Nabto.ReadStream(length);
    memoDebug.Add("Done Reading");
    std::string list = bytes ? BytesToWordList(*bytes) : std::string();
    Nabto.StopStream();
    memoDebug.Add("Stream is Closed now ");
    return list;
}

} // namespace tidewell
