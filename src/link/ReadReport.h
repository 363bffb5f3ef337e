#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tidewell {

class TIniFile;
struct TStreamRead;

// What is told of reads of the device's memory. A text that is missing keeps the English one.
struct TReadTexts {
    // Why a part did not come.
    std::string Refused = "the device refused (status %1)";
    std::string RefusedBecause = "the device refused (%1)";
    std::string NoAnswer = "the device did not answer";
    std::string NoStream = "no stream could be opened";
    std::string Broken = "the stream broke off";
    std::string TimedOut = "nothing more came in time";
    std::string Ended = "the reading was ended";
    // How much came, and where the rest lies.
    std::string Blocks = "Only %1 of %2 blocks were read.";
    std::string Bytes = "Only %1 of %2 bytes were read.";
    std::string MissingBlocks = "Blocks %1 to %2: %3";
    std::string MissingBytes = "Bytes %1 to %2: %3";
    // What became of it.
    std::string SavedPart = "What came is saved in %1.";
    std::string ShowPart = "Show it on the graph?";
    std::string NotSaved = "The flash datalog was read, but not saved.";
    std::string NoRecords = "What was read holds no record of the flash datalog.";
    std::string EmptyRange = "The range is empty, so nothing was read.";
    std::string NoCounters = "The log's counters were not read, so the range is not known.";
    std::string NoErrorLog = "The error log was not read: %1.";
    std::string ErrorLogPart = "Only %1 of %2 events of the error log were read: %3.";
};
TReadTexts ReadReadTexts(const TIniFile& languageFile);

// A part of a wanted range of the device's memory: how much of it came, and why no more. It is counted in
// units, which are flash blocks or bytes.
struct TReadPart {
    std::uint32_t First = 0; // its first unit: number of a block, or address of a byte
    std::uint32_t Unit = 1;  // bytes
    std::uint32_t Wanted = 0;
    std::uint32_t Came = 0; // bytes, as Wanted
    std::string Reason{};   // while it is not whole

    bool Whole() const { return Came >= Wanted; }
    void Take(const TStreamRead& read, const TReadTexts& texts);
};

// Why the device prepared no read, by its reply; empty when it did.
std::string RefusalReason(std::string_view reply, std::int32_t status, const TReadTexts& texts);

// What really came of a wanted range.
class TReadReport {
  public:
    void Clear() { Parts.clear(); }
    void Add(TReadPart part) { Parts.push_back(std::move(part)); }
    bool Empty() const { return Parts.empty(); }
    bool Whole() const;
    std::uint32_t Came() const; // bytes
    std::string Reason() const; // why the first part that is not whole is not
    // How much came, then a line per part that is not whole.
    std::vector<std::string> Lines(const TReadTexts& texts) const;
    std::string Text(const TReadTexts& texts) const; // those lines, with line feeds between

  private:
    std::vector<TReadPart> Parts; // of one unit
};

} // namespace tidewell
