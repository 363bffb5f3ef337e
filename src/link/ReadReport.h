#pragma once

#include "core/LanguageTexts.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tidewell {

struct TStreamRead;

// What is told of reads of the device's memory.
struct TDownloadTexts : TOwnTexts {
    TDownloadTexts() : TOwnTexts("ServiceReads") {}
    // Why a part did not come.
    TOwnText Refused{*this, "Refused", "the device refused (status %1)"};
    TOwnText RefusedBecause{*this, "RefusedBecause", "the device refused (%1)"};
    TOwnText NoAnswer{*this, "NoAnswer", "the device did not answer"};
    TOwnText NoStream{*this, "NoStream", "no stream could be opened"};
    TOwnText Broken{*this, "Broken", "the stream broke off"};
    TOwnText TimedOut{*this, "TimedOut", "nothing more came in time"};
    // How much came, and where the rest lies.
    TOwnText Blocks{*this, "Blocks", "Only %1 of %2 blocks were read."};
    TOwnText Bytes{*this, "Bytes", "Only %1 of %2 bytes were read."};
    TOwnText MissingBlocks{*this, "MissingBlocks", "Blocks %1 to %2: %3"};
    TOwnText MissingBytes{*this, "MissingBytes", "Bytes %1 to %2: %3"};
    // What became of it.
    TOwnText SavedPart{*this, "SavedPart", "What came is saved in %1."};
    TOwnText ShowPart{*this, "ShowPart", "Show it on the graph?"};
    TOwnText NotSaved{*this, "NotSaved", "The flash datalog was read, but not saved."};
    TOwnText NoRecords{*this, "NoRecords", "What was read holds no record of the flash datalog."};
    TOwnText EmptyRange{*this, "EmptyRange", "The range is empty, so nothing was read."};
    TOwnText NoCounters{*this, "NoCounters", "The log's counters were not read, so the range is not known."};
    TOwnText NoErrorLog{*this, "NoErrorLog", "The error log was not read: %1."};
    TOwnText ErrorLogPart{*this, "ErrorLogPart", "Only %1 of %2 events of the error log were read: %3."};
};

// A part of a wanted range of the device's memory: how much of it came, and why no more. It is counted in
// units, which are flash blocks or bytes.
struct TReadPart {
    std::uint32_t First = 0; // its first unit: number of a block, or address of a byte
    std::uint32_t Unit = 1;  // bytes
    std::uint32_t Wanted = 0;
    std::uint32_t Came = 0; // bytes, as Wanted
    std::string Reason{};   // while it is not whole

    bool Whole() const { return Came >= Wanted; }
    void Take(const TStreamRead& read, const TDownloadTexts& texts);
};

// Why the device prepared no read, by its reply; empty when it did.
std::string RefusalReason(std::string_view reply, std::int32_t status, const TDownloadTexts& texts);

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
    std::vector<std::string> Lines(const TDownloadTexts& texts) const;
    std::string Text(const TDownloadTexts& texts) const; // those lines, with line feeds between

  private:
    std::vector<TReadPart> Parts; // of one unit
};

} // namespace tidewell
