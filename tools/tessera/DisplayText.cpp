#include "DisplayText.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>
#include <optional>

#include "WidthTable.h"

namespace Tool {

namespace {

struct Character {
    char32_t code;
    std::string_view bytes;
    bool isWellFormed = true;
};

/// How many bytes a character that begins with this one has; 0 for a byte that begins none.
std::size_t lengthBehind(unsigned char lead) {
    if (lead < 0x80) return 1;
    if (lead < 0xC2 || lead > 0xF4) return 0;
    return lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// The character of these bytes; nothing when they are none, or one that has a shorter form.
std::optional<char32_t> decoded(std::string_view bytes) {
    constexpr std::array<char32_t, 5> smallest = {0, 0, 0x80, 0x800, 0x10000};
    const auto lead = static_cast<unsigned char>(bytes.front());
    if (bytes.size() == 1) return lead;
    char32_t code = lead & (0x7Fu >> bytes.size());
    for (const char byte : bytes.substr(1)) {
        if (!isContinuation(byte)) return std::nullopt;
        code = code << 6 | (static_cast<unsigned char>(byte) & 0x3F);
    }
    const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < smallest[bytes.size()] || code > 0x10FFFF || isSurrogate) return std::nullopt;
    return code;
}

/// Takes the first character off a text; a byte that begins none, by itself.
Character takeCharacter(std::string_view& text) {
    const std::size_t length = lengthBehind(static_cast<unsigned char>(text.front()));
    const bool isWhole = length != 0 && length <= text.size();
    const auto code = isWhole ? decoded(text.substr(0, length)) : std::nullopt;
    const std::string_view bytes = text.substr(0, code ? length : 1);
    text.remove_prefix(bytes.size());
    return {code.value_or(static_cast<unsigned char>(bytes.front())), bytes, code.has_value()};
}

// What only joins or does not show (zero-width characters, variation selectors, tags) stays: a terminal does nothing
// with it, and emoji and several scripts are written with it.
constexpr CodeRange unsafe[] = {
    {0x00, 0x1F},    // controls, among them the escape character
    {0x7F, 0x9F},    // delete, and the controls that are one-character escape sequences
    {0x61C, 0x61C},  // from here on: what turns the direction of writing, or breaks the line
    {0x200E, 0x200F}, {0x2028, 0x202E}, {0x2066, 0x206F}, {0xFEFF, 0xFEFF}, {0xFFF9, 0xFFFB},
};

bool isUnsafe(char32_t code) {
    return std::any_of(std::begin(unsafe), std::end(unsafe),
                       [code](const CodeRange& range) { return code >= range.first && code <= range.last; });
}

template <class Ranges>
bool contains(const Ranges& ranges, char32_t code) {
    const auto after = std::upper_bound(ranges.begin(), ranges.end(), code,
                                        [](char32_t value, const CodeRange& range) { return value < range.first; });
    return after != ranges.begin() && code <= std::prev(after)->last;
}

std::size_t widthOf(char32_t code) {
    if (contains(noColumn, code)) return 0;
    return contains(twoColumns, code) ? 2 : 1;
}

/// How the unsafe characters are written, and which one is part of the text's own layout.
struct Escapes {
    const char* character;
    const char* strayByte;
    char32_t kept;
};

std::string escaped(std::string_view text, const Escapes& escapes) {
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        const Character character = takeCharacter(text);
        if (character.isWellFormed && (character.code == escapes.kept || !isUnsafe(character.code))) {
            out += character.bytes;
            continue;
        }
        char escape[16];
        std::snprintf(escape, sizeof escape, character.isWellFormed ? escapes.character : escapes.strayByte,
                      static_cast<unsigned>(character.code));
        out += escape;
    }
    return out;
}

constexpr char32_t nothing = 0x110000;

}  // namespace

std::string displayable(std::string_view utf8) {
    return escaped(utf8, {"\\u{%x}", "\\x{%x}", nothing});
}

std::string displayableJson(std::string_view json) {
    // Within JSON's strings a line feed is escaped already: those that are left divide lines.
    return escaped(json, {"\\u%04x", "\\ufffd", U'\n'});
}

std::size_t displayWidth(std::string_view utf8) {
    std::size_t width = 0;
    while (!utf8.empty())
        width += widthOf(takeCharacter(utf8).code);
    return width;
}

std::string cutToWidth(std::string_view utf8, std::size_t columns) {
    if (displayWidth(utf8) <= columns) return std::string(utf8);
    std::string out;
    std::size_t used = 1;  // of the ellipsis
    while (!utf8.empty()) {
        const Character character = takeCharacter(utf8);
        used += widthOf(character.code);
        if (used > columns) break;
        out += character.bytes;
    }
    return out + "…";
}

}  // namespace Tool
