#include "CsvReader.h"

#include <algorithm>
#include <csv.h>
#include <new>
#include <utility>

namespace Tool {

namespace {

constexpr std::size_t bufferStep = 1 << 12;

/// With its end, whatever that is.
std::size_t lengthOfLine(std::string_view text) {
    const std::size_t end = text.find_first_of("\r\n");
    if (end == std::string_view::npos) return text.size();
    return end + (text.substr(end).starts_with("\r\n") ? 2 : 1);
}

void begin(csv_parser& parser, char separator) {
    csv_init(&parser, 0);
    csv_set_delim(&parser, static_cast<unsigned char>(separator));
    csv_set_blk_size(&parser, bufferStep);
}

}  // namespace

CsvReader::CsvReader(std::string_view text, char separator)
    : text_(text), separator_(separator), parser_(std::make_unique<csv_parser>()) {
    begin(*parser_, separator_);
}

CsvReader::~CsvReader() {
    csv_free(parser_.get());
}

bool CsvReader::next(CsvRow& row) {
    row_ = CsvRow();
    isComplete_ = false;
    Place behindFirstLine;
    while (!isComplete_ && place_.position < text_.size()) {
        const std::string_view line = takeLine();
        if (row_.line == 0 && isBlankLine(line)) continue;
        if (row_.line == 0) {
            row_.line = place_.lines;
            behindFirstLine = place_;
        }
        feed(line);
    }
    if (row_.line == 0) return false;
    if (!isComplete_) finish(behindFirstLine);
    row = std::move(row_);
    return true;
}

std::string_view CsvReader::takeLine() {
    const std::string_view rest = text_.substr(place_.position);
    const std::string_view line = rest.substr(0, lengthOfLine(rest));
    place_.position += line.size();
    ++place_.lines;
    return line;
}

bool CsvReader::isBlankLine(std::string_view line) const {
    return line.find_first_not_of(separator_ == '\t' ? " \r\n" : " \t\r\n") == std::string_view::npos;
}

void CsvReader::takeValue(void* value, std::size_t length, void* reader) {
    static_cast<CsvReader*>(reader)->row_.values.emplace_back(static_cast<const char*>(value), length);
}

void CsvReader::takeEnd(int /*character*/, void* reader) {
    static_cast<CsvReader*>(reader)->isComplete_ = true;
}

/// A line ends one row at most.
void CsvReader::feed(std::string_view line) {
    if (csv_parse(parser_.get(), line.data(), line.size(), takeValue, takeEnd, this) != line.size())
        throw std::bad_alloc();  // all else it takes
}

/// At the end of the text. An end of a line ends the last row, unless it stands within quotes still.
void CsvReader::finish(Place behindFirstLine) {
    feed("\n");
    if (isComplete_) return;
    row_.values.clear();
    row_.isUnclosed = true;
    csv_free(parser_.get());
    begin(*parser_, separator_);
    if (++unclosed_ <= mostUnclosed) place_ = behindFirstLine;
}

void appendCsvValue(std::string& row, std::string_view value) {
    if (!row.empty()) row += ',';
    const std::size_t before = row.size();
    row.resize(before + 2 * value.size() + 2);  // every character may be a quote
    const std::size_t written = csv_write(row.data() + before, row.size() - before, value.data(), value.size());
    row.resize(before + written);
}

}  // namespace Tool
