#pragma once

#include <cstddef>

// Positions in a list row.
namespace tidewell::ListField {

constexpr std::size_t SetpointName = 1;
constexpr std::size_t EEadr = 2;
constexpr std::size_t Min = 3; // raw in the profile, shown once FormatRowLimits has been there, as Max
constexpr std::size_t Max = 4;
constexpr std::size_t Decimal = 5;
constexpr std::size_t Offset = 6;
constexpr std::size_t ModbusAdr = 7;
constexpr std::size_t Structnumber = 8;
constexpr std::size_t Enhed = 9;  // unit or type code
constexpr std::size_t User1 = 10; // names of bits
constexpr std::size_t User2 = 11;
constexpr std::size_t User3 = 12;
constexpr std::size_t User4 = 13;
constexpr std::size_t User5 = 14; // write type
constexpr std::size_t Group = 15;
constexpr std::size_t HelpNumber = 18; // longer rows only

} // namespace tidewell::ListField
