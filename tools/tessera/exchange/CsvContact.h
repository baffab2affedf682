#pragma once

#include <string_view>
#include <vector>

#include "ContactDraft.h"
#include "CsvColumns.h"
#include "CsvReader.h"
#include "SourceText.h"

namespace Tool {

/// Makes of a row what the phone book can hold of it.
ContactDraft draftOfRow(const CsvRow& row, const std::vector<CsvColumn>& columns);

/// The table that a text is: how its values are separated, what its columns are, and where its rows begin.
struct CsvTable {
    char separator = ',';
    std::size_t start = 0;  ///< Where the headings begin: behind a line that only names the separator.
    int linesBefore = 0;
    std::vector<std::string> headings;
};

/// The separator with which most headings are known, else most there are.
CsvTable csvTableOf(std::string_view text);

/// All rows of a table. `text` is that of the source, in UTF-8. Throws a Failure that names the file and its headings
/// when they tell of nobody.
DraftedFile draftsOfCsv(const SourceText& source, std::string_view text, const std::vector<ColumnMapping>& mappings);

}  // namespace Tool
