#include <algorithm>
#include <iterator>

#include "Characters.h"
#include "WindowsSystem.h"

namespace Tool::port {

namespace {

struct Range {
    char32_t first;
    char32_t last;
};

/// The blocks of Unicode in which these scripts are, in order.
constexpr Range eastAsianBlocks[] = {
    {0x1100, 0x11FF},    // Hangul Jamo
    {0x2E80, 0x2FDF},    // radicals
    {0x3005, 0x3007},    // marks that repeat or count
    {0x3021, 0x3029},    // numerals
    {0x3038, 0x303B},    // more of both
    {0x3041, 0x30FF},    // Hiragana, Katakana
    {0x3131, 0x318E},    // Hangul letters
    {0x31F0, 0x31FF},    // small Katakana
    {0x3400, 0x4DBF},    // ideographs
    {0x4E00, 0x9FFF},    // ideographs
    {0xA960, 0xA97F},    // Hangul Jamo
    {0xAC00, 0xD7FF},    // Hangul syllables and Jamo
    {0xF900, 0xFAFF},    // ideographs kept for compatibility
    {0xFF66, 0xFFDC},    // halves of Katakana and Hangul
    {0x1AFF0, 0x1B16F},  // Kana
    {0x20000, 0x3FFFD},  // ideographs
};

char32_t firstCharacterOf(WStringView text) {
    const char32_t first = text[0];
    if (text.size() == 1 || !IS_SURROGATE_PAIR(text[0], text[1])) return first;
    return 0x10000 + ((first - HIGH_SURROGATE_START) << 10) + (text[1] - LOW_SURROGATE_START);
}

}  // namespace

bool isLetterOrDigit(WCHAR unit) {
    WORD kinds = 0;
    return GetStringTypeW(CT_CTYPE1, &unit, 1, &kinds) != 0 && (kinds & (C1_ALPHA | C1_DIGIT)) != 0;
}

WCHAR lowerCase(WCHAR unit) {
    CharLowerBuffW(&unit, 1);
    return unit;
}

bool beginsEastAsian(WStringView text) {
    const char32_t first = firstCharacterOf(text);
    return std::any_of(std::begin(eastAsianBlocks), std::end(eastAsianBlocks),
                       [first](const Range& block) { return first >= block.first && first <= block.last; });
}

}  // namespace Tool::port
