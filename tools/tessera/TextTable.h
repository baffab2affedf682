#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace Tool {

/// The cells of a line, which may be shown as they are.
using Row = std::vector<std::string>;

/// Any text as a cell: displayable, and cut where it would push the others off the screen.
std::string cellOf(const std::string& text);

/// Writes rows, of which the first is the headings, aligned by display width and without the columns that all
/// the others leave empty. Nothing when there are only headings.
void writeTable(std::span<const Row> rows);

/// A table whose rows are not known beforehand: a column that has to become wider stays so.
class GrowingTable {
public:
    explicit GrowingTable(std::vector<std::size_t> widths) : widths_(std::move(widths)) {}

    /// The next row, aligned, without a line feed. It has as many cells as there are columns.
    std::string lineOf(const Row& row);

private:
    std::vector<std::size_t> widths_;
};

}  // namespace Tool
