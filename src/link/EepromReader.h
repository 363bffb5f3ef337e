#pragma once

#include "core/controls/Lists.h"

#include <cstdint>
#include <span>
#include <string>

namespace tidewell {

class TUNabto;

// Each big-endian pair of bytes as an unsigned decimal number closed by ";": "513;1027;". Empty for an odd
// number of bytes.
std::string BytesToWordList(std::span<const std::uint8_t> bytes);

// Reads the device's EEPROM, and tells each step in memoDebug.
class TEepromReader {
  public:
    // device: address of the device in force, read at each use.
    TEepromReader(TUNabto& nabto, TMemo& memo, const std::string& device)
        : Nabto(nabto), memoDebug(memo), Device(device) {}

    // Length in bytes. The word list; empty on a failure, and when the program was closed meanwhile.
    std::string ReadEeprom(std::uint32_t address, std::uint32_t length);

  private:
    TUNabto& Nabto;
    TMemo& memoDebug;
    const std::string& Device;
};

} // namespace tidewell
