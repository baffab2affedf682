#include <algorithm>
#include <array>
#include <charconv>

#include "EncodingName.h"
#include "Encodings.h"
#include "WindowsSystem.h"

namespace Tool::port {

namespace {

using namespace std::string_view_literals;

constexpr UINT none = 0;
constexpr UINT ascii = 20127;
// The system numbers the first two, but has no converters for them.
constexpr UINT utf16Little = 1200;
constexpr UINT utf16Big = 1201;
constexpr UINT utf16Marked = 1;

struct NamedPage {
    std::string_view name;
    UINT page;
};

/// Of two pages of a name the first is taken that the system has.
constexpr std::array<NamedPage, 19> namedPages = {{
    {"UTF8", CP_UTF8},   {"UTF16LE", utf16Little}, {"UTF16BE", utf16Big}, {"UTF16", utf16Marked},
    {"USASCII", ascii},  {"GB18030", 54936},       {"GB18030", 936},      {"SHIFTJIS", 932},
    {"WINDOWS31J", 932}, {"EUCJP", 20932},         {"JOHAB", 1361},       {"BIG5", 950},
    {"KOI8R", 20866},    {"KOI8U", 21866},         {"TIS620", 874},       {"LATIN1", 28591},
    {"LATIN2", 28592},   {"LATIN9", 28605},        {"MACINTOSH", 10000},
}};

/// The names that hold a number, and what is added to it.
constexpr std::array<NamedPage, 5> numberedPages = {{
    {"WINDOWS", 0},
    {"CP", 0},
    {"IBM", 0},
    {"MS", 0},
    {"ISO8859", 28590},
}};

UINT pageNumbered(std::string_view plain) {
    constexpr UINT firstPage = 37;  // what is lower stands for the pages of the system's settings
    for (const NamedPage& family : numberedPages) {
        if (!plain.starts_with(family.name)) continue;
        UINT number = 0;
        const char* const end = plain.data() + plain.size();
        const auto read = std::from_chars(plain.data() + family.name.size(), end, number);
        if (read.ec == std::errc() && read.ptr == end && family.page + number >= firstPage) return family.page + number;
    }
    return none;
}

/// How many code units the bytes are, as far as there is room for them; 0 when some of them mean nothing.
int unitsOf(UINT page, std::string_view bytes, WCHAR* units = nullptr, int room = 0) {
    return MultiByteToWideChar(page, MB_ERR_INVALID_CHARS, bytes.data(), static_cast<int>(bytes.size()), units, room);
}

/// Pages whose converter does not tell what means nothing are refused by it.
bool canRead(UINT page) {
    const bool isOurs = page == utf16Little || page == utf16Big || page == utf16Marked;
    return isOurs || (page != none && unitsOf(page, "a"sv) == 1);
}

UINT pageOf(const std::string& encoding) {
    const std::string plain = plainEncodingName(encoding);
    const auto* const named = std::ranges::find_if(
        namedPages, [&](const NamedPage& each) { return each.name == plain && canRead(each.page); });
    if (named != namedPages.end()) return named->page;
    const UINT numbered = pageNumbered(plain);
    return canRead(numbered) ? numbered : none;
}

/// Answers false, and appends nothing, when some of the bytes mean nothing.
bool appendAll(WString& text, UINT page, std::string_view bytes) {
    if (bytes.empty()) return true;
    const bool isAscii = std::ranges::none_of(bytes, [](char byte) { return (byte & 0x80) != 0; });
    if (page == ascii && !isAscii) return false;  // its converter drops the eighth bit
    const int units = unitsOf(page, bytes);
    if (units <= 0) return false;
    const std::size_t before = text.size();
    text.resize(before + static_cast<std::size_t>(units));
    return unitsOf(page, bytes, text.data() + before, units) == units;
}

/// The bytes of one character: the fewest that mean anything. Answers 0 when there are none.
std::size_t appendCharacter(WString& text, UINT page, std::string_view bytes) {
    constexpr std::size_t longest = 4;
    for (std::size_t length = 1; length <= std::min(longest, bytes.size()); ++length) {
        if (appendAll(text, page, bytes.substr(0, length))) return length;
    }
    return 0;
}

/// The converter does not tell where it stopped. No byte of a longer character is a line feed.
void appendGood(WString& text, UINT page, std::string_view bytes) {
    while (!bytes.empty()) {
        const std::string_view line = bytes.substr(0, std::min(bytes.find('\n'), bytes.size() - 1) + 1);
        if (!appendAll(text, page, line)) break;
        bytes.remove_prefix(line.size());
    }
    while (const std::size_t length = appendCharacter(text, page, bytes))
        bytes.remove_prefix(length);
}

/// As far as the surrogates are in pairs.
std::size_t goodLength(WStringView text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (!IS_HIGH_SURROGATE(text[i]) && !IS_LOW_SURROGATE(text[i])) continue;
        if (i + 1 == text.size() || !IS_SURROGATE_PAIR(text[i], text[i + 1])) return i;
        ++i;
    }
    return text.size();
}

Decoded convertUtf16(std::string_view bytes, bool isBigEndian) {
    Decoded decoded;
    decoded.text.reserve(bytes.size() / 2);
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto high = static_cast<unsigned char>(bytes[isBigEndian ? i : i + 1]);
        const auto low = static_cast<unsigned char>(bytes[isBigEndian ? i + 1 : i]);
        decoded.text += static_cast<WCHAR>(high << 8 | low);
    }
    decoded.text.resize(goodLength(decoded.text));
    decoded.whole = decoded.text.size() * 2 == bytes.size();
    return decoded;
}

/// Big-endian without a mark.
Decoded convertMarkedUtf16(std::string_view bytes) {
    const bool isLittleEndian = bytes.starts_with("\xFF\xFE"sv);
    const bool isMarked = isLittleEndian || bytes.starts_with("\xFE\xFF"sv);
    return convertUtf16(bytes.substr(isMarked ? 2 : 0), !isLittleEndian);
}

}  // namespace

bool hasConverter(const std::string& encoding) {
    return pageOf(encoding) != none;
}

Decoded convert(std::string_view bytes, const std::string& encoding) {
    const UINT page = pageOf(encoding);
    if (page == none) return {};
    if (page == utf16Marked) return convertMarkedUtf16(bytes);
    if (page == utf16Little || page == utf16Big) return convertUtf16(bytes, page == utf16Big);
    Decoded decoded;
    decoded.whole = appendAll(decoded.text, page, bytes);
    if (!decoded.whole) appendGood(decoded.text, page, bytes);
    return decoded;
}

std::string likeliestEncoding(std::string_view /*bytes*/) {
    return {};
}

}  // namespace Tool::port
