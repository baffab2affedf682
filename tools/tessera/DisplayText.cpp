#include "DisplayText.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <utility>

#include "WidthTable.h"

namespace Tool {

namespace {

struct Character {
    char32_t code;
    std::string_view bytes;
};

/// Takes the first character off a UTF-8 text. A byte that begins none is a character of its own.
Character takeCharacter(std::string_view& text) {
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    char32_t code = length == 1 ? lead : lead & (0x7Fu >> length);
    if (length > text.size()) return {0xFFFD, std::exchange(text, {})};
    for (std::size_t i = 1; i < length; ++i)
        code = code << 6 | (static_cast<unsigned char>(text[i]) & 0x3F);
    const Character character{code, text.substr(0, length)};
    text.remove_prefix(length);
    return character;
}

constexpr CodeRange unsafe[] = {
    {0x00, 0x1F},    // controls, among them the escape character
    {0x7F, 0x9F},    // delete, and the controls that are one-character escape sequences
    {0x61C, 0x61C},  // from here on: what turns the direction of writing, or breaks the line
    {0x200E, 0x200F}, {0x2028, 0x202E}, {0x2066, 0x2069}, {0xFEFF, 0xFEFF}, {0xFFF9, 0xFFFB},
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

/// Rewrites the unsafe characters in `format`, but for the one that is part of the text's own layout.
std::string escaped(std::string_view text, const char* format, char32_t kept) {
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        const Character character = takeCharacter(text);
        if (character.code == kept || !isUnsafe(character.code)) {
            out += character.bytes;
            continue;
        }
        char escape[16];
        std::snprintf(escape, sizeof escape, format, static_cast<unsigned>(character.code));
        out += escape;
    }
    return out;
}

constexpr char32_t nothing = 0x110000;

}  // namespace

std::string displayable(std::string_view utf8) {
    return escaped(utf8, "\\u{%x}", nothing);
}

std::string displayableJson(std::string_view json) {
    // Within JSON's strings a line feed is escaped already: those that are left divide lines.
    return escaped(json, "\\u%04x", U'\n');
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
