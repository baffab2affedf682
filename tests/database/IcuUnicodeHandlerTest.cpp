#include <gtest/gtest.h>
#include <unicode/normalizer2.h>
#include <unicode/unistr.h>

#include "tests/database/Decomposed.h"

// Hangul taken apart here and by ICU.

namespace Database {
namespace {

WString canonicallyDecomposed(int ch) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* const nfd = icu::Normalizer2::getNFDInstance(status);
    icu::UnicodeString jamo;
    EXPECT_TRUE(U_SUCCESS(status) && nfd->getDecomposition(ch, jamo)) << ch;
    return {jamo.getBuffer(), static_cast<std::size_t>(jamo.length())};
}

TEST(UnicodeHandler, TakesEverySyllableApartAsUnicodeDoes) {
    for (int syllable = firstSyllable; syllable <= lastSyllable; ++syllable) {
        const auto ch = static_cast<WCHAR>(syllable);
        const WString jamo = canonicallyDecomposed(syllable);
        ASSERT_EQ(decomposed(ch), jamo) << syllable;
        ASSERT_EQ(decomposedIntoBuffer(ch), jamo) << syllable;
        ASSERT_EQ(UnicodeHandler::getLIndex(ch), jamo[0]) << syllable;
    }
}

// A compatibility letter is an initial exactly when its compatibility decomposition is one.
TEST(UnicodeHandler, TheInitialOfALetterIsItsCompatibilityDecompositionWhenThatIsAnInitial) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* const nfkd = icu::Normalizer2::getNFKDInstance(status);
    ASSERT_TRUE(U_SUCCESS(status));
    for (WCHAR letter = 0x3131; letter <= 0x314E; ++letter) {
        icu::UnicodeString jamo;
        ASSERT_TRUE(nfkd->getDecomposition(letter, jamo));
        // Unicode has the clusters that end no syllable among the initials beyond the nineteen modern ones.
        const bool isModernInitial = jamo.length() == 1 && jamo[0] >= 0x1100 && jamo[0] <= 0x1112;
        EXPECT_EQ(UnicodeHandler::getLIndex(letter), isModernInitial ? jamo[0] : letter) << static_cast<int>(letter);
    }
}

}  // namespace
}  // namespace Database
