#include "graph/TextColumn.h"

#include "core/Errors.h"

#include <functional>

namespace tidewell {

void TTextColumn::Add(std::string_view text) {
    const bool sameAsLast = Rows > 0 && Distinct(Blocks.back().back()) == text;
    const TId id = sameAsLast ? Blocks.back().back() : Store(text);
    if (Rows % BlockRows == 0)
        Blocks.emplace_back().reserve(BlockRows);
    Blocks.back().push_back(id);
    ++Rows;
}

void TTextColumn::Truncate(std::size_t rows) {
    if (rows >= Rows)
        return;
    Rows = rows;
    Blocks.resize((rows + BlockRows - 1) / BlockRows);
    if (!Blocks.empty())
        Blocks.back().resize(rows - (Blocks.size() - 1) * BlockRows);
}

void TTextColumn::Clear() {
    *this = TTextColumn();
}

std::string_view TTextColumn::At(std::size_t row) const {
    if (row >= Rows)
        throw EListError("List index out of bounds (" + std::to_string(row) + ")");
    return Distinct(Blocks[row / BlockRows][row % BlockRows]);
}

std::size_t TTextColumn::MemoryUsed() const {
    std::size_t used = Blocks.capacity() * sizeof(Blocks[0]) + Characters.capacity() +
                       Ends.capacity() * sizeof(Ends[0]) + Slots.capacity() * sizeof(Slots[0]);
    for (const auto& block : Blocks)
        used += block.capacity() * sizeof(TId);
    return used;
}

std::string_view TTextColumn::Distinct(TId id) const {
    const std::uint32_t begin = id == 0 ? 0 : Ends[id - 1];
    return std::string_view(Characters).substr(begin, Ends[id] - begin);
}

TTextColumn::TId TTextColumn::Store(std::string_view text) {
    if (Ends.size() * 4 >= Slots.size() * 3)
        GrowSlots();
    const std::size_t mask = Slots.size() - 1;
    std::size_t slot = std::hash<std::string_view>()(text) & mask;
    for (; Slots[slot] != 0; slot = (slot + 1) & mask)
        if (Distinct(Slots[slot] - 1) == text)
            return Slots[slot] - 1;
    Characters += text;
    Ends.push_back(static_cast<std::uint32_t>(Characters.size()));
    Slots[slot] = static_cast<TId>(Ends.size());
    return Slots[slot] - 1;
}

void TTextColumn::GrowSlots() {
    std::vector<TId> grown(Slots.empty() ? 16 : Slots.size() * 2, 0);
    const std::size_t mask = grown.size() - 1;
    for (TId id = 0; id < Ends.size(); ++id) {
        std::size_t slot = std::hash<std::string_view>()(Distinct(id)) & mask;
        while (grown[slot] != 0)
            slot = (slot + 1) & mask;
        grown[slot] = id + 1;
    }
    Slots = std::move(grown);
}

} // namespace tidewell
