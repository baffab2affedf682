#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "Settings.h"
#include "TextRange.h"

namespace Tool {

/// A text in a table, which is displayable.
struct Cell {
    Cell(std::string shown) : text(std::move(shown)) {}
    Cell(const char* shown) : text(shown) {}

    std::string text;
    std::vector<TextRange> marked = {};  ///< In their order, what stands out where there are colours.
};

/// The cells of a line.
using Row = std::vector<Cell>;

/// How wide a table may be, and whether its headings, and what is marked, stand out.
struct TableLook {
    std::size_t width = 0;  ///< 0: as wide as it comes.
    bool hasColour = false;
};

/// Rows as lines, of which the first is the headings, aligned by display width and without the columns that all the
/// others leave empty. Nothing when there are only headings. A table that would be too wide has texts cut, and numbers
/// only when there is nothing left of those.
std::string tableText(std::span<const Row> rows, const TableLook& look);

/// Writes such a table to standard output: as wide as a terminal, and whole to everything else.
void writeTable(const Settings& settings, std::span<const Row> rows);

/// A table whose rows are not known beforehand: a column that has to become wider stays so.
class GrowingTable {
public:
    explicit GrowingTable(std::vector<std::size_t> widths) : widths_(std::move(widths)) {}

    /// The next row, aligned, without a line feed, and cut to the terminal that standard output is. It has as many
    /// cells as there are columns.
    std::string lineOf(const Row& row);

private:
    std::vector<std::size_t> widths_;
};

}  // namespace Tool
