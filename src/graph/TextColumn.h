#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tidewell {

// A long list of short texts of which many are equal, such as the time and date of each sample. Each distinct
// text is stored once, and a row costs four bytes beside it.
class TTextColumn {
  public:
    void Add(std::string_view text);
    void Truncate(std::size_t rows); // drops the rows from there on, if there are any
    void Clear();
    std::size_t Count() const { return Rows; }
    // Valid until the next Add or Clear. Throws EListError beyond the end.
    std::string_view At(std::size_t row) const;
    // Bytes of heap memory held.
    std::size_t MemoryUsed() const;

  private:
    using TId = std::uint32_t; // position of a distinct text, in order of first use

    std::string_view Distinct(TId id) const;
    TId Store(std::string_view text);
    void GrowSlots();

    static constexpr std::size_t BlockRows = 4096;

    std::size_t Rows = 0;
    std::vector<std::vector<TId>> Blocks; // all but the last hold BlockRows rows
    std::string Characters;               // all distinct texts, one behind the other
    std::vector<std::uint32_t> Ends;      // of each distinct text in Characters
    std::vector<TId> Slots;               // open hash table of ids + 1; its size is a power of two
};

} // namespace tidewell
