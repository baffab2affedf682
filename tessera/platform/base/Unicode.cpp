#include "tessera/platform/base/Unicode.h"

#include <array>
#include <cstdint>

namespace {

constexpr char32_t replacement_ = 0xFFFD;

constexpr bool isHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool isLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

/// The character at `pos`, which moves behind it.
char32_t nextOfUtf16(WStringView text, std::size_t& pos) {
    const char32_t unit = text[pos++];
    if (!isHighSurrogate(unit)) return isLowSurrogate(unit) ? replacement_ : unit;
    if (pos == text.size() || !isLowSurrogate(text[pos])) return replacement_;
    return 0x10000 + ((unit - 0xD800) << 10) + (text[pos++] - 0xDC00U);
}

char continuationByte(char32_t ch, int shift) {
    return static_cast<char>(0x80 | (ch >> shift & 0x3F));
}

void appendUtf8(std::string& bytes, char32_t ch) {
    if (ch < 0x80) {
        bytes += static_cast<char>(ch);
    } else if (ch < 0x800) {
        bytes += static_cast<char>(0xC0 | ch >> 6);
        bytes += continuationByte(ch, 0);
    } else if (ch < 0x10000) {
        bytes += static_cast<char>(0xE0 | ch >> 12);
        bytes += continuationByte(ch, 6);
        bytes += continuationByte(ch, 0);
    } else {
        bytes += static_cast<char>(0xF0 | ch >> 18);
        bytes += continuationByte(ch, 12);
        bytes += continuationByte(ch, 6);
        bytes += continuationByte(ch, 0);
    }
}

void appendUtf16(WString& text, char32_t ch) {
    if (ch < 0x10000) {
        text += static_cast<WCHAR>(ch);
        return;
    }
    text += static_cast<WCHAR>(0xD800 + ((ch - 0x10000) >> 10));
    text += static_cast<WCHAR>(0xDC00 + ((ch - 0x10000) & 0x3FF));
}

/// A row of the table of well-formed byte sequences: what may follow which lead bytes. The limits of the
/// second byte are what keeps out overlong forms, surrogates and what lies beyond U+10FFFF.
struct LeadBytes {
    std::uint8_t first;
    std::uint8_t last;
    std::uint8_t secondMin;
    std::uint8_t secondMax;
    std::uint8_t following;
    std::uint8_t payload;
};

constexpr std::array<LeadBytes, 9> leadBytes_ = {{
    {0x00, 0x7F, 0x00, 0x00, 0, 0x7F},
    {0xC2, 0xDF, 0x80, 0xBF, 1, 0x1F},
    {0xE0, 0xE0, 0xA0, 0xBF, 2, 0x0F},
    {0xE1, 0xEC, 0x80, 0xBF, 2, 0x0F},
    {0xED, 0xED, 0x80, 0x9F, 2, 0x0F},
    {0xEE, 0xEF, 0x80, 0xBF, 2, 0x0F},
    {0xF0, 0xF0, 0x90, 0xBF, 3, 0x07},
    {0xF1, 0xF3, 0x80, 0xBF, 3, 0x07},
    {0xF4, 0xF4, 0x80, 0x8F, 3, 0x07},
}};

const LeadBytes* rowOf(std::uint8_t lead) {
    for (const LeadBytes& row : leadBytes_) {
        if (lead >= row.first && lead <= row.last) return &row;
    }
    return nullptr;
}

/// The character at `pos`, which moves behind it; nothing when the bytes there are not well-formed.
std::optional<char32_t> nextOfUtf8(std::string_view bytes, std::size_t& pos) {
    const auto lead = static_cast<std::uint8_t>(bytes[pos++]);
    const LeadBytes* row = rowOf(lead);
    if (row == nullptr || bytes.size() - pos < row->following) return std::nullopt;

    char32_t ch = lead & row->payload;
    for (int i = 0; i < row->following; ++i) {
        const auto byte = static_cast<std::uint8_t>(bytes[pos++]);
        const std::uint8_t min = i == 0 ? row->secondMin : 0x80;
        const std::uint8_t max = i == 0 ? row->secondMax : 0xBF;
        if (byte < min || byte > max) return std::nullopt;
        ch = ch << 6 | (byte & 0x3F);
    }
    return ch;
}

}  // namespace

std::string utf8Of(WStringView text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t pos = 0; pos < text.size();) {
        appendUtf8(bytes, nextOfUtf16(text, pos));
    }
    return bytes;
}

std::optional<CString> textOfUtf8(std::string_view bytes) {
    WString text;
    text.reserve(bytes.size());
    for (std::size_t pos = 0; pos < bytes.size();) {
        const std::optional<char32_t> ch = nextOfUtf8(bytes, pos);
        if (!ch) return std::nullopt;
        appendUtf16(text, *ch);
    }
    return CString(text);
}
