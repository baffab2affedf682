#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/tessera/exchange/CsvReader.h"

namespace exchange_test {

using Rows = std::vector<std::vector<std::string>>;

inline std::vector<Tool::CsvRow> rowsOf(std::string_view text, char separator = ',') {
    Tool::CsvReader reader(text, separator);
    std::vector<Tool::CsvRow> rows;
    for (Tool::CsvRow row; reader.next(row);)
        rows.push_back(row);
    return rows;
}

/// The values of each row; "unclosed" for a row that is.
inline Rows valuesOf(std::string_view text, char separator = ',') {
    Rows values;
    for (const Tool::CsvRow& row : rowsOf(text, separator))
        values.push_back(row.isUnclosed ? std::vector<std::string>{"unclosed"} : row.values);
    return values;
}

}  // namespace exchange_test
