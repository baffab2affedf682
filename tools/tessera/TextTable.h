#pragma once

#include <span>
#include <string>
#include <vector>

namespace Tool {

/// The cells of a line, which may be shown as they are.
using Row = std::vector<std::string>;

/// Any text as a cell: displayable, and cut where it would push the others off the screen.
std::string cellOf(const std::string& text);

/// Writes rows, of which the first is the headings, aligned by display width and without the columns that all
/// the others leave empty. Nothing when there are only headings.
void writeTable(std::span<const Row> rows);

}  // namespace Tool
