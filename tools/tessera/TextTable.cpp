#include "TextTable.h"

#include <algorithm>
#include <cstddef>
#include <iostream>

#include "DisplayText.h"

namespace Tool {

namespace {

constexpr std::size_t cellWidth = 40;

/// The width of each column that has a value, 0 for one that has none.
std::vector<std::size_t> columnWidths(std::span<const Row> rows) {
    std::vector<std::size_t> widths(rows.front().size(), 0);
    for (const Row& row : rows.subspan(1)) {
        for (std::size_t column = 0; column < widths.size(); ++column)
            widths[column] = std::max(widths[column], displayWidth(row[column]));
    }
    for (std::size_t column = 0; column < widths.size(); ++column) {
        if (widths[column] != 0) widths[column] = std::max(widths[column], displayWidth(rows.front()[column]));
    }
    return widths;
}

std::string alignedLine(const Row& row, const std::vector<std::size_t>& widths) {
    std::string line;
    for (std::size_t column = 0; column < row.size(); ++column) {
        if (widths[column] == 0) continue;
        line += row[column];
        line.append(widths[column] - displayWidth(row[column]) + 2, ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

}  // namespace

std::string cellOf(const std::string& text) {
    return cutToWidth(displayable(text), cellWidth);
}

void writeTable(std::span<const Row> rows) {
    if (rows.size() < 2) return;
    const auto widths = columnWidths(rows);
    for (const Row& row : rows)
        std::cout << alignedLine(row, widths) << '\n';
}

std::string GrowingTable::lineOf(const Row& row) {
    for (std::size_t column = 0; column < widths_.size(); ++column)
        widths_[column] = std::max(widths_[column], displayWidth(row[column]));
    return alignedLine(row, widths_);
}

}  // namespace Tool
