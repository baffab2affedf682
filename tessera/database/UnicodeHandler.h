#pragma once

#include "tessera/Export.h"
#include "tessera/platform/base/CString.h"

namespace Database {

/// Hangul arithmetic for the search by initial consonants: it takes a syllable apart into its conjoining
/// jamo, and knows the initial consonant of a syllable or of a consonant letter as typed. No data.
class TESSERA_API UnicodeHandler {
public:
    UnicodeHandler() = default;
    UnicodeHandler(const UnicodeHandler&) = default;
    UnicodeHandler& operator=(const UnicodeHandler&) = default;

    /// `out` becomes the initial, the vowel and, where there is one, the final of a syllable; any other
    /// character by itself. @return the length of `out`: 1, 2 or 3.
    static int decomposeHangul(CString& out, WCHAR ch);
    /// The same into a buffer of at least four characters, zero-terminated.
    static int decomposeHangul(WCHAR* out, WCHAR ch);

    /// The conjoining initial consonant of a syllable or of a compatibility consonant letter; any other
    /// character, and a letter that can be no initial, is its own.
    static int getLIndex(WCHAR ch);

    /// The tense consonant of a plain one that has one, conjoining or compatibility; else 0.
    static WCHAR getRelatedJa(WCHAR ch);
};

}  // namespace Database
