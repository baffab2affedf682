#include "ImportFile.h"

#include <cstddef>
#include <string_view>

#include "Failure.h"
#include "Records.h"
#include "TextLines.h"

namespace Tool {

namespace {

constexpr std::size_t columns = PhoneBook::nNumPBAttrs_ - 1;
constexpr std::size_t bufferSize = 1 << 16;

bool holdsZero(std::u16string_view line) {
    return line.find(u'\0') != std::u16string_view::npos;
}

/// Why the phone book would make nothing good of a line; null when it would.
const char* whySkip(std::u16string_view line) {
    if (line.find_first_not_of(u", \t") == std::u16string_view::npos) return "it is blank";
    if (holdsZero(line)) return "it holds a zero character";
    TextLengths lengths{};
    for (std::size_t column = 0;; ++column) {
        const std::size_t comma = line.find(u',');
        const std::u16string_view value = line.substr(0, comma);
        if (value.size() > static_cast<std::size_t>(longestText)) return "a value is longer than 32735 characters";
        if (column >= columns && !value.empty()) return "it has more columns than the format";
        // The columns stand in the order of the phone book's attributes, of which the first is none.
        if (column < columns) lengths[column + 1] = value.size();
        if (comma == std::u16string_view::npos) break;
        line.remove_prefix(comma + 1);
    }
    return canBeStored(lengths) ? nullptr : "its values together are longer than a contact can be";
}

}  // namespace

ImportFile::ImportFile(const std::string& path) {
    TextLines source(path);
    CString line;
    source.next(line);
    if (holdsZero(line.view())) throw Failure(path + ": is no text: its first line holds a zero character");
    write(line);
    for (int number = 2; source.next(line); ++number)
        take(line, number);
    flush();
}

void ImportFile::take(const CString& line, int number) {
    ++lines_;
    const char* const why = whySkip(line.view());
    if (why == nullptr) return write(line);
    const bool goesOn = !skipped_.empty() && skipped_.back().first + skipped_.back().count == number &&
                        std::string_view(skipped_.back().why) == why;
    if (goesOn) {
        ++skipped_.back().count;
    } else {
        skipped_.push_back({number, 1, why});
    }
}

void ImportFile::write(const CString& line) {
    for (const WCHAR unit : line.view()) {
        buffer_ += static_cast<char>(unit & 0xFF);
        buffer_ += static_cast<char>(unit >> 8);
    }
    buffer_.append("\n\0", 2);
    if (buffer_.size() >= bufferSize) flush();
}

void ImportFile::flush() {
    clean_.append(buffer_);
    buffer_.clear();
}

}  // namespace Tool
