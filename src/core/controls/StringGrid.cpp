#include "core/controls/StringGrid.h"

#include "core/Errors.h"

#include <utility>

namespace tidewell {

namespace {
const std::string noText;
} // namespace

const std::string& TStringTable::Cell(std::size_t column, std::size_t row) const {
    if (row >= Rows.size() || column >= Rows[row].size())
        return noText;
    return Rows[row][column];
}

void TStringTable::SetCell(std::size_t column, std::size_t row, const std::string& text) {
    if (row >= Rows.size())
        Rows.resize(row + 1);
    if (column >= Rows[row].size())
        Rows[row].resize(column + 1);
    if (column >= Columns)
        Columns = column + 1;
    Rows[row][column] = text;
}

const std::vector<std::string>& TStringTable::Row(std::size_t row) const {
    if (row >= Rows.size())
        throw EListError(row);
    return Rows[row];
}

void TStringTable::SetRow(std::size_t row, std::vector<std::string> cells) {
    if (row >= Rows.size())
        Rows.resize(row + 1);
    if (cells.size() > Columns)
        Columns = cells.size();
    Rows[row] = std::move(cells);
}

void TStringTable::ClearRow(std::size_t row) {
    if (row < Rows.size())
        Rows[row].clear();
}

} // namespace tidewell
