#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct csv_parser;

namespace Tool {

/// A row of a table. It takes up several lines of the file when a value in quotes holds ends of lines.
struct CsvRow {
    int line = 0;  ///< Where it begins, from 1.
    std::vector<std::string> values;
    bool isUnclosed = false;  ///< A quote opens in it that nothing closes: it has no values; reading goes on behind it.
};

/// Takes a table apart, row by row. Blank lines are no rows. The text is borrowed.
class CsvReader {
public:
    CsvReader(std::string_view text, char separator);
    ~CsvReader();
    CsvReader(const CsvReader&) = delete;
    CsvReader& operator=(const CsvReader&) = delete;

    bool next(CsvRow& row);
    /// So many quotes were not closed that the text behind the last row was not read.
    bool hasGivenUp() const { return unclosed_ > mostUnclosed; }

private:
    /// Behind each all the rest of the text is read anew.
    static constexpr int mostUnclosed = 100;

    struct Place {
        std::size_t position = 0;
        int lines = 0;  ///< That many stand before it.
    };

    static void takeValue(void* value, std::size_t length, void* reader);
    static void takeEnd(int character, void* reader);
    std::string_view takeLine();
    bool isBlankLine(std::string_view line) const;
    void feed(std::string_view line);
    void finish(Place behindFirstLine);

    std::string_view text_;
    char separator_;
    std::unique_ptr<csv_parser> parser_;
    CsvRow row_;  ///< The one that is being read.
    bool isComplete_ = false;
    Place place_;  ///< Behind what the parser has seen.
    int unclosed_ = 0;
};

/// Appends a value, in quotes, to a row of a table that commas separate.
void appendCsvValue(std::string& row, std::string_view value);

}  // namespace Tool
