#include "ImportFile.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <string_view>
#include <utility>

#include "Arguments.h"
#include "Failure.h"
#include "Numbers.h"
#include "Records.h"
#include "TextLines.h"
#include "tessera/common/CommaSepValList.h"
#include "tessera/platform/base/COleDateTime.h"
#include "tessera/platform/base/Unicode.h"

namespace Tool {

namespace {

constexpr std::size_t columns = PhoneBook::nNumPBAttrs_ - 1;
constexpr std::size_t bufferSize = 1 << 16;
constexpr const char* blankText = "it is blank";

bool holdsZero(WStringView line) {
    return line.find(u'\0') != WStringView::npos;
}

CString textOf(std::string_view line) {
    return textOfUtf8(line).value_or(CString());
}

/// The values of a line as the phone book splits it: where they stand in it.
std::vector<WStringView> valuesOf(const CString& line) {
    CStringArray texts;
    common::CommaSepValList(line).getList(texts);
    std::vector<WStringView> values;
    std::size_t place = 0;
    for (int i = 0; i < texts.GetSize(); ++i) {
        const std::size_t length = texts[i].view().size();
        // Before a value stand blanks and quotes; behind it, up to the comma, whatever else was dropped.
        if (length != 0) place = line.view().find_first_not_of(u'"', line.view().find_first_not_of(u' ', place));
        values.push_back(line.view().substr(place, length));
        place = std::min(line.view().find(u',', place + length), line.view().size() - 1) + 1;
    }
    return values;
}

/// The columns stand in the order of the phone book's attributes, of which the first is none.
const PhoneBook::PBAttribute& attributeOfColumn(std::size_t column) {
    return PhoneBook::aPBAttribute_[column + 1];
}

/// Why the phone book would make nothing good of a line with these values; null when it would.
const char* whySkip(const std::vector<WStringView>& values) {
    bool blank = true;
    TextLengths lengths{};
    for (std::size_t column = 0; column < values.size(); ++column) {
        const std::size_t length = values[column].size();
        if (length == 0) continue;
        if (length > static_cast<std::size_t>(longestText)) return "a value is longer than 32735 characters";
        if (column >= columns) return "it has more columns than the format";
        blank = false;
        lengths[column + 1] = length;
    }
    if (blank) return blankText;
    return canBeStored(lengths) ? nullptr : "its values together are longer than a contact can be";
}

CString withSeparatedCodes(const CString& line, const std::vector<WStringView>& values) {
    CString separated = line;
    for (std::size_t column = std::min(values.size(), columns); column-- > 0;) {  // the last first: places stay
        if (!PhoneBook::PhoneBookDBMgr::isTelNoAttr(attributeOfColumn(column).id)) continue;
        const std::size_t place = missingSeparator(values[column]);
        if (place == WStringView::npos) continue;
        separated.Insert(static_cast<int>(values[column].data() - line.view().data() + std::ptrdiff_t(place)), u' ');
    }
    return separated;
}

/// The field's label as it stands within a sentence.
std::string inSentence(const Field& field) {
    std::string label = field.label;
    label.front() = static_cast<char>(std::tolower(static_cast<unsigned char>(label.front())));
    return label;
}

/// What the phone book changes about a date; empty when it keeps the day.
std::string noteOnDate(WStringView value) {
    COleDateTime day;
    if (!day.ParseDateTime(CString(value))) return " is no date and is left out";
    return canBeBirthday(day.date()) ? "" : " is a date that cannot be kept and is left out";
}

/// What the phone book changes about a number; empty when it keeps it.
std::string noteOnNumber(WStringView value) {
    using Limits = std::numeric_limits<LONG>;
    const std::string text = utf8Of(value);
    // The phone book reads as far as it goes, octal numbers too, and holds the result in a signed number.
    const long long read = std::strtoll(text.c_str(), nullptr, 0);
    const auto kept = static_cast<DWORD>(std::clamp<long long>(read, Limits::min(), Limits::max()));
    const auto meant = numberOf(text);
    if (meant == kept) return {};
    return (meant ? " is taken for " : " is no whole number of 32 bits and becomes ") + std::to_string(kept);
}

std::string noteOn(const std::vector<WStringView>& values) {
    std::string note;
    for (std::size_t column = 0; column < std::min(values.size(), columns); ++column) {
        const PhoneBook::PBAttribute& attribute = attributeOfColumn(column);
        if (values[column].empty() || attribute.text != nullptr) continue;
        const std::string change =
            attribute.number != nullptr ? noteOnNumber(values[column]) : noteOnDate(values[column]);
        if (!change.empty()) note += (note.empty() ? "its " : "; its ") + inSentence(fieldOf(attribute.id)) + change;
    }
    return note;
}

}  // namespace

ImportFile::ImportFile(const std::string& path, std::string_view text) {
    TextLines source(text);
    std::string_view line;
    source.next(line);
    if (line.find('\0') != std::string_view::npos)
        throw Failure(path + ": is no text: its first line holds a zero character");
    const bool holdsReturns = line.find('\r') != std::string_view::npos;
    write(textOf(line));
    for (int number = 2; source.next(line); ++number)
        take(textOf(line), number);
    if (lines_ == 0 && holdsReturns) throw Failure(path + ": its lines end with carriage returns alone");
    flush();
}

void ImportFile::take(const CString& line, int number) {
    ++lines_;
    if (holdsZero(line.view())) return skip(number, "it holds a zero character");
    const auto values = valuesOf(line);
    if (const char* const why = whySkip(values); why != nullptr) return skip(number, why);
    if (std::string note = noteOn(values); !note.empty()) notes_.push_back({number, std::move(note)});
    write(withSeparatedCodes(line, values));
}

bool ImportFile::isAllBad() const {
    int passedOver = 0;
    bool holdsMore = false;
    for (const SkippedLines& each : skipped_) {
        passedOver += each.count;
        holdsMore = holdsMore || std::string_view(each.why) != blankText;
    }
    return holdsMore && passedOver == lines_;
}

void ImportFile::skip(int number, const char* why) {
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
