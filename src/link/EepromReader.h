#pragma once

#include "link/ReadReport.h"

#include <cstdint>
#include <span>
#include <string>

namespace tidewell {

struct TDeviceServices;

// Each big-endian pair of bytes as an unsigned decimal number closed by ";": "513;1027;". Empty for an odd
// number of bytes.
std::string BytesToWordList(std::span<const std::uint8_t> bytes);

// Reads the device's EEPROM, and tells each step in memoDebug.
class TEepromReader {
  public:
    // What a read gave.
    struct TResult {
        // The word list; empty on a failure, and when the program was closed meanwhile. Zeros stand for what
        // a stream was too slow to give; key Service/Strict leaves it out, and keeps what came of a lost
        // stream.
        std::string Words;
        TReadReport Report;
    };

    explicit TEepromReader(const TDeviceServices& services) : Services(services) {}

    TResult ReadEeprom(std::uint32_t address, std::uint32_t length); // in bytes

  private:
    // Fills the part, and gives the words.
    std::string ReadPart(std::uint32_t address, TReadPart& part);

    const TDeviceServices& Services;
};

} // namespace tidewell
