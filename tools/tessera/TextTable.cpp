#include "TextTable.h"

#include <algorithm>
#include <iostream>
#include <numeric>
#include <string_view>

#include "Colour.h"
#include "DisplayText.h"
#include "System.h"

namespace Tool {

namespace {

constexpr std::size_t gap = 2;
/// What is longer pushes the rest of its own line to the right, and no other line.
constexpr std::size_t widestAligned = 40;
/// What a column is shortened to at most while others can still be shortened, and at all.
constexpr std::size_t readableText = 8;
constexpr std::size_t shortestCell = 3;

struct Column {
    std::size_t width = 0;  ///< 0 when no row has a value.
    bool isNumber = true;
};

bool isNumber(std::string_view cell) {
    return cell.find_first_not_of("0123456789+-*#PT()./: ") == std::string_view::npos;
}

std::vector<Column> columnsOf(std::span<const Row> rows) {
    std::vector<Column> columns(rows.front().size());
    for (const Row& row : rows.subspan(1)) {
        for (std::size_t i = 0; i < columns.size(); ++i) {
            columns[i].width = std::max(columns[i].width, displayWidth(row[i].text));
            columns[i].isNumber = columns[i].isNumber && isNumber(row[i].text);
        }
    }
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (columns[i].width != 0) columns[i].width = std::max(columns[i].width, displayWidth(rows.front()[i].text));
    }
    return columns;
}

std::size_t widthOfLine(const std::vector<Column>& columns) {
    const auto add = [](std::size_t width, const Column& column) {
        return width + (column.width != 0 ? column.width + gap : 0);
    };
    const std::size_t width = std::accumulate(columns.begin(), columns.end(), std::size_t{0}, add);
    return width > gap ? width - gap : width;
}

/// Takes from the widest columns first, down to `shortest`, until the line fits. The first column stays: it is what the
/// others are named by.
void shorten(std::vector<Column>& columns, std::size_t width, std::size_t shortest, bool numbersToo) {
    for (std::size_t excess = widthOfLine(columns); excess > width; --excess) {
        Column* widest = nullptr;
        for (Column& column : std::span(columns).subspan(1)) {
            const bool canBe = column.width > shortest && (numbersToo || !column.isNumber);
            if (canBe && (widest == nullptr || column.width > widest->width)) widest = &column;
        }
        if (widest == nullptr) return;
        --widest->width;
    }
}

void fit(std::vector<Column>& columns, std::size_t width) {
    shorten(columns, width, readableText, false);
    shorten(columns, width, shortestCell, false);
    shorten(columns, width, shortestCell, true);
}

std::string shownText(const Cell& cell, bool hasColour) {
    if (!hasColour || cell.marked.empty()) return cell.text;
    std::string shown;
    std::size_t shownUpTo = 0;
    for (const TextRange& range : cell.marked) {
        shown += cell.text.substr(shownUpTo, range.begin - shownUpTo);
        shown += accented(cell.text.substr(range.begin, range.end - range.begin), Accent::match, hasColour);
        shownUpTo = range.end;
    }
    return shown + cell.text.substr(shownUpTo);
}

std::string alignedLine(const Row& row, const std::vector<std::size_t>& widths, bool hasColour) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
        if (widths[i] == 0) continue;
        const std::size_t used = displayWidth(row[i].text);
        line += shownText(row[i], hasColour);
        line.append(widths[i] - std::min(widths[i], used) + gap, ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

/// What is marked stays so as far as it is still there.
Cell cut(const Cell& cell, std::size_t width) {
    Cell shorter = cutToWidth(cell.text, width);
    const auto [kept, ofCell] = std::ranges::mismatch(shorter.text, cell.text);
    const auto length = static_cast<std::size_t>(kept - shorter.text.begin());
    for (const TextRange& range : cell.marked) {
        if (range.begin < length) shorter.marked.push_back({range.begin, std::min(range.end, length)});
    }
    return shorter;
}

Row cut(const Row& row, const std::vector<std::size_t>& widths) {
    Row cells;
    cells.reserve(row.size());
    for (std::size_t i = 0; i < row.size(); ++i)
        cells.push_back(cut(row[i], widths[i]));
    return cells;
}

}  // namespace

std::string tableText(std::span<const Row> rows, const TableLook& look) {
    if (rows.size() < 2) return {};
    const bool isLimited = look.width != 0;
    std::vector<Column> columns = columnsOf(rows);
    if (isLimited) fit(columns, look.width);
    std::vector<std::size_t> widths;
    widths.reserve(columns.size());
    for (const Column& column : columns)
        widths.push_back(isLimited ? column.width : std::min(column.width, widestAligned));
    std::string text;
    for (const Row& row : rows) {
        const std::string line = alignedLine(isLimited ? cut(row, widths) : row, widths, look.hasColour);
        text += accented(line, Accent::heading, look.hasColour && &row == &rows.front()) + '\n';
    }
    return text;
}

void writeTable(const Settings& settings, std::span<const Row> rows) {
    std::cout << tableText(rows, {outputIsTerminal() ? terminalWidth() : 0, outputHasColour(settings)});
}

std::string GrowingTable::lineOf(const Row& row) {
    for (std::size_t column = 0; column < widths_.size(); ++column)
        widths_[column] = std::max(widths_[column], std::min(displayWidth(row[column].text), widestAligned));
    const std::string line = alignedLine(row, widths_, false);
    return outputIsTerminal() ? cutToWidth(line, terminalWidth()) : line;
}

}  // namespace Tool
