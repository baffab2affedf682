#include "tessera/database/UnicodeHandler.h"

#include <algorithm>
#include <array>

namespace Database {
namespace {

constexpr int syllableBase = 0xAC00;
constexpr int syllableCount = 11172;
constexpr int syllablesPerInitial = 588;
constexpr int finalsPerVowel = 28;
constexpr int initialBase = 0x1100;
constexpr int vowelBase = 0x1161;
constexpr int finalBase = 0x11A7;  // one below the first final: index 0 is "no final"

constexpr int letterBase = 0x3130;
constexpr int firstLetter = 0x3131;
constexpr int letterEnd = 0x314F;

// The initial consonant of each compatibility letter, by its distance from `letterBase`; 0 where the
// letter can be no initial.
constexpr std::array<WCHAR, 32> letterInitials = {
    0,      0x1100, 0x1101, 0,      0x1102, 0,      0,      0x1103,  //        ㄱ ㄲ ㄳ ㄴ ㄵ ㄶ ㄷ
    0x1104, 0x1105, 0,      0,      0,      0,      0,      0,       // ㄸ ㄹ ㄺ ㄻ ㄼ ㄽ ㄾ ㄿ
    0,      0x1106, 0x1107, 0x1108, 0,      0x1109, 0x110A, 0x110B,  // ㅀ ㅁ ㅂ ㅃ ㅄ ㅅ ㅆ ㅇ
    0x110C, 0x110D, 0x110E, 0x110F, 0x1110, 0x1111, 0x1112, 0,       // ㅈ ㅉ ㅊ ㅋ ㅌ ㅍ ㅎ
};

// The plain consonants whose tense one is the next character.
constexpr std::array<WCHAR, 10> plainConsonants = {0x1100, 0x1103, 0x1107, 0x1109, 0x110C,
                                                   0x3131, 0x3137, 0x3142, 0x3145, 0x3148};

constexpr bool isSyllable(int ch) {
    return ch >= syllableBase && ch < syllableBase + syllableCount;
}

}  // namespace

int UnicodeHandler::decomposeHangul(CString& out, WCHAR ch) {
    std::array<WCHAR, 4> jamo{};
    const int length = decomposeHangul(jamo.data(), ch);
    out = CString(jamo.data(), length);
    return length;
}

int UnicodeHandler::decomposeHangul(WCHAR* out, WCHAR ch) {
    WCHAR* end = out;
    if (isSyllable(ch)) {
        const int syllable = ch - syllableBase;
        const int final = syllable % finalsPerVowel;
        *end++ = static_cast<WCHAR>(initialBase + syllable / syllablesPerInitial);
        *end++ = static_cast<WCHAR>(vowelBase + syllable % syllablesPerInitial / finalsPerVowel);
        if (final != 0) *end++ = static_cast<WCHAR>(finalBase + final);
    } else {
        *end++ = ch;
    }
    *end = u'\0';
    return static_cast<int>(end - out);
}

int UnicodeHandler::getLIndex(WCHAR ch) {
    if (isSyllable(ch)) return initialBase + (ch - syllableBase) / syllablesPerInitial;
    if (ch < firstLetter || ch >= letterEnd) return ch;
    const WCHAR initial = letterInitials[static_cast<std::size_t>(ch - letterBase)];
    return initial != 0 ? initial : ch;
}

WCHAR UnicodeHandler::getRelatedJa(WCHAR ch) {
    const bool hasTense = std::ranges::find(plainConsonants, ch) != plainConsonants.end();
    return hasTense ? static_cast<WCHAR>(ch + 1) : WCHAR{0};
}

}  // namespace Database
