#include "FileFormat.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

#include "../Failure.h"
#include "CsvContact.h"
#include "NumberPlaces.h"
#include "VCardReader.h"
#include "tessera/common/CommaSepValList.h"
#include "tessera/platform/base/Unicode.h"

namespace Tool {

namespace {

using Values = std::vector<WString>;

constexpr std::array<WStringView, 17> ownHeader = {
    TEXT("name"),  TEXT("group"),  TEXT("categories"), TEXT("mobile"),  TEXT("home"),     TEXT("business"),
    TEXT("email"), TEXT("avatar"), TEXT("photo"),      TEXT("bell"),    TEXT("birthday"), TEXT("callingscreen"),
    TEXT("pager"), TEXT("fax"),    TEXT("notes"),      TEXT("private"), TEXT("primary")};

/// Lines that are looked at to see what stands where, and as much of each.
constexpr int sampleLines = 100;
constexpr std::size_t sampleOfLine = 1 << 16;

std::optional<Values> takeValues(std::string_view& text) {
    if (text.empty()) return std::nullopt;
    const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
    const auto line = textOfUtf8(text.substr(0, std::min(end, sampleOfLine)));
    const std::size_t feed = text.substr(end).starts_with("\r\n") ? 2 : 1;
    text.remove_prefix(std::min(end + feed, text.size()));
    CStringArray items;
    common::CommaSepValList(line.value_or(CString())).getList(items);
    Values values;
    for (const CString& item : items)
        values.emplace_back(item.view());
    return values;
}

bool beginsAsOurs(const Values& header) {
    if (header.empty() || header.size() > ownHeader.size()) return false;
    return std::equal(header.begin(), header.end(), ownHeader.begin(),
                      [](const auto& left, WStringView right) { return spelledPlainly(left) == right; });
}

bool looksLikeNumber(WStringView text) {
    const auto isDigit = [](WCHAR unit) { return unit >= u'0' && unit <= u'9'; };
    return std::count_if(text.begin(), text.end(), isDigit) >= 3 &&
           text.find_first_not_of(TEXT("0123456789+-.()/ *#")) == WStringView::npos;
}

/// Whether a name stands at its place, and telephone numbers at theirs and at no others of the first six.
bool standsAsOurs(const Values& values) {
    constexpr WStringView signsOfMarkup = TEXT(":;=<>{}|\t");
    if (values.front().find_first_of(signsOfMarkup) != WString::npos) return false;
    for (std::size_t column = 0; column < std::min<std::size_t>(values.size(), 6); ++column) {
        const bool isForNumbers = column >= 3;
        if (!values[column].empty() && looksLikeNumber(values[column]) != isForNumbers) return false;
    }
    return true;
}

bool looksLikeMarkup(const WString& header) {
    return header.empty() || WStringView(TEXT("<{[%")).find(header.front()) != WStringView::npos;
}

/// Whether the first line begins as the header that export writes, which has no quotes.
bool hasOwnHeader(std::string_view text) {
    const std::string_view line = text.substr(0, text.find_first_of("\r\n"));
    if (line.find('"') != std::string_view::npos) return false;
    const auto header = takeValues(text);
    return header && beginsAsOurs(*header);
}

/// Whether below a header of one word, whatever it is, the values stand at the places of our own.
bool hasOwnPlaces(std::string_view text) {
    const auto header = takeValues(text);
    if (!header || header->size() != 1 || looksLikeMarkup(header->front())) return false;
    for (int line = 0; line < sampleLines; ++line) {
        const auto values = takeValues(text);
        if (values && !values->empty() && !standsAsOurs(*values)) return false;
    }
    return true;
}

}  // namespace

FileFormat recogniseFormat(const SourceText& source) {
    if (beginWithVCard(source.bytes(), 1)) return FileFormat::vcard;
    const std::string text = source.utf8();
    if (hasOwnHeader(text)) return FileFormat::tessera;
    const std::vector<std::string> headings = csvTableOf(text).headings;
    if (tellOfPeople(columnsOf(headings, {}))) return FileFormat::csv;
    // Something may stand before the first card, but a card may also stand in the notes of a table.
    if (beginWithVCard(source.bytes(), sampleLines)) return FileFormat::vcard;
    if (headings.size() <= 1 && hasOwnPlaces(text)) return FileFormat::tessera;
    throw Failure(source.path() +
                  ": is no file of contacts that can be recognised: it holds no cards, and of its columns (" +
                  listOfHeadings(headings) + ") none is known; --map says what they are, --format what the file is");
}

}  // namespace Tool
