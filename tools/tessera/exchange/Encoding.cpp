#include "Encoding.h"

#include <algorithm>
#include <array>

#include "../port/EncodingName.h"
#include "tessera/platform/base/Unicode.h"

namespace Tool {

namespace {

using namespace std::string_view_literals;

struct EncodingName {
    const char* said;
    const char* meant;
};

/// Who says EUC-KR mostly writes its superset, in which every Korean syllable has a place.
constexpr std::array<EncodingName, 12> meanings = {{
    {"EUCKR", "windows-949"},
    {"KSC56011987", "windows-949"},
    {"KSC5601", "windows-949"},
    {"KSX1001", "windows-949"},
    {"CP949", "windows-949"},
    {"UHC", "windows-949"},
    {"MS949", "windows-949"},
    {"SHIFTJIS", "windows-31j"},
    {"SJIS", "windows-31j"},
    {"GB2312", "GB18030"},
    {"GBK", "GB18030"},
    {"ASCII", "US-ASCII"},
}};

std::string meaningOf(const std::string& name) {
    const std::string plain = port::plainEncodingName(name);
    const auto* known =
        std::find_if(meanings.begin(), meanings.end(), [&](const auto& each) { return plain == each.said; });
    return known != meanings.end() ? known->meant : name;
}

/// A text in CP949 has Hangul of the old standard set nearly everywhere; Latin letters with accents that happen to
/// make pairs of that encoding do not.
bool looksKorean(std::string_view bytes) {
    std::size_t pairs = 0;
    std::size_t commonHangul = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto lead = static_cast<unsigned char>(bytes[i]);
        if (lead < 0x80 || i + 1 == bytes.size()) continue;
        const auto trail = static_cast<unsigned char>(bytes[++i]);
        ++pairs;
        if (lead >= 0xB0 && lead <= 0xC8 && trail >= 0xA1) ++commonHangul;
    }
    return commonHangul * 4 >= pairs * 3;
}

/// UTF-16 has a zero in each Latin character, and in the first line feed: one stands early, and its place says
/// which half comes first. A zero further on may as well be a stray one in UTF-8.
const char* byteOrderOfHeader(std::string_view bytes) {
    const std::size_t feed = bytes.find('\n');
    const std::size_t header = std::min(bytes.size(), feed + 2);
    bool zeroAtOdd = false;
    for (std::size_t i = 1; i < header; i += 2)
        zeroAtOdd = zeroAtOdd || bytes[i] == '\0';
    if (zeroAtOdd) return "UTF-16LE";
    const bool feedIsBigEndian = feed != std::string_view::npos && feed % 2 == 1 && bytes[feed - 1] == '\0';
    return feedIsBigEndian ? "UTF-16BE" : nullptr;
}

const char* byteOrderByCount(std::string_view bytes) {
    std::array<std::size_t, 2> zeros{};
    for (std::size_t i = 0; i < bytes.size(); ++i)
        zeros[i % 2] += bytes[i] == '\0' ? 1 : 0;
    return zeros[0] > zeros[1] ? "UTF-16BE" : "UTF-16LE";
}

}  // namespace

bool isKnownEncoding(const std::string& name) {
    return port::hasConverter(meaningOf(name));
}

Decoded decode(std::string_view bytes, const std::string& encoding) {
    // By far the most frequent; its first fault is found the long way.
    if (port::plainEncodingName(encoding) == "UTF8") {
        if (const auto text = textOfUtf8(bytes)) return {WString(text->view()), true};
    }
    return port::convert(bytes, meaningOf(encoding));
}

std::optional<WString> decodeWhole(std::string_view bytes, const std::string& encoding) {
    Decoded decoded = decode(bytes, encoding);
    return decoded.whole ? std::optional(std::move(decoded.text)) : std::nullopt;
}

std::optional<RecognisedEncoding> recogniseEncoding(std::string_view bytes) {
    if (bytes.starts_with("\xEF\xBB\xBF"sv)) return RecognisedEncoding{"UTF-8", 3};
    if (bytes.starts_with("\xFF\xFE"sv)) return RecognisedEncoding{"UTF-16LE", 2};
    if (bytes.starts_with("\xFE\xFF"sv)) return RecognisedEncoding{"UTF-16BE", 2};
    const bool holdsZero = bytes.find('\0') != std::string_view::npos;
    if (const char* const order = holdsZero ? byteOrderOfHeader(bytes) : nullptr; order != nullptr)
        return RecognisedEncoding{order};
    if (decode(bytes, "UTF-8").whole) return RecognisedEncoding{"UTF-8"};
    if (holdsZero) return RecognisedEncoding{byteOrderByCount(bytes)};
    if (looksKorean(bytes) && decode(bytes, "CP949").whole) return RecognisedEncoding{"CP949"};
    return std::nullopt;
}

std::string guessEncoding(std::string_view bytes) {
    return port::likeliestEncoding(bytes);
}

}  // namespace Tool
