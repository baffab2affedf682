#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>
#include <unicode/ucol.h>

#include "tessera/platform/port/Locale.h"

using Platform::port::Collator;

namespace {

WString textOf(const std::vector<std::uint16_t>& units) {
    return {units.begin(), units.end()};
}

int signOf(int value) {
    return (value > 0) - (value < 0);
}

/// What ICU's comparison, which makes no keys, says.
int comparedByIcu(const char* locale, UCollationStrength strength, const WString& a, const WString& b) {
    UErrorCode status = U_ZERO_ERROR;
    UCollator* collator = ucol_open(locale, &status);
    ucol_setStrength(collator, strength);
    const UCollationResult result =
        ucol_strcoll(collator, a.data(), static_cast<int32_t>(a.size()), b.data(), static_cast<int32_t>(b.size()));
    ucol_close(collator);
    return result;
}

// Letters that a locale may order in its own way, cases, combining marks, Hangul, a lone surrogate, a zero.
rc::Gen<std::vector<std::uint16_t>> arbitraryUnits() {
    return rc::gen::container<std::vector<std::uint16_t>>(
        rc::gen::oneOf(rc::gen::element<std::uint16_t>(u'a', u'A', u'z', u'\u00E5', u'\u00C4', u'\u0301', u'1', u' ',
                                                       u'\uAC00', u'\uB098', u'\u4E00', 0xD800, 0),
                       rc::gen::arbitrary<std::uint16_t>()));
}

}  // namespace

TEST(Collator, OrdersAsPeopleDo) {
    const Collator collator("", false);

    EXPECT_LT(collator.sortKey(TEXT("apple")), collator.sortKey(TEXT("Banana")));
    EXPECT_LT(collator.sortKey(TEXT("banana")), collator.sortKey(TEXT("Banana")));
    EXPECT_LT(collator.sortKey(TEXT("resume")), collator.sortKey(TEXT("r\u00E9sum\u00E9")));
    EXPECT_LT(collator.sortKey(TEXT("\uAC00")), collator.sortKey(TEXT("\uB098")));
    EXPECT_LT(collator.sortKey(TEXT("a")), collator.sortKey(TEXT("aa")));
}

TEST(Collator, FollowsItsLocale) {
    EXPECT_GT(Collator("sv_SE", false).sortKey(TEXT("\u00E5")), Collator("sv_SE", false).sortKey(TEXT("z")));
    EXPECT_LT(Collator("de_DE", false).sortKey(TEXT("\u00E5")), Collator("de_DE", false).sortKey(TEXT("z")));
}

TEST(Collator, IgnoringCaseStillTellsAccentsApart) {
    const Collator collator("", true);

    EXPECT_EQ(collator.sortKey(TEXT("KIM")), collator.sortKey(TEXT("kim")));
    EXPECT_NE(collator.sortKey(TEXT("e")), collator.sortKey(TEXT("\u00E9")));
}

TEST(Collator, TellsCasesApartUnlessToldNotTo) {
    const Collator collator("", false);

    EXPECT_NE(collator.sortKey(TEXT("KIM")), collator.sortKey(TEXT("kim")));
}

TEST(Collator, TheEmptyTextComesFirst) {
    const Collator collator("", false);

    EXPECT_LT(collator.sortKey(WStringView()), collator.sortKey(TEXT(" ")));
    EXPECT_EQ(collator.sortKey(WStringView()), collator.sortKey(TEXT("")));
}

TEST(Collator, AnUnknownLocaleOrdersAsTheRootDoes) {
    EXPECT_EQ(Collator("xx_YY", false).sortKey(TEXT("\u00E5z")), Collator("", false).sortKey(TEXT("\u00E5z")));
    EXPECT_EQ(Collator("xx_YY", false).version(), Collator("", false).version());
}

TEST(Collator, KeysOfLongTextsAreWhole) {
    const Collator collator("", false);
    const WString text(10'000, u'\u00E9');

    EXPECT_LT(collator.sortKey(text), collator.sortKey(text + u'a'));
    EXPECT_GT(collator.sortKey(text).size(), text.size());
    EXPECT_EQ(collator.sortKey(text).find('\0'), std::string::npos);
}

TEST(Collator, TheVersionNamesTheRules) {
    EXPECT_FALSE(Collator("", false).version().empty());
    EXPECT_EQ(Collator("sv_SE", false).version(), Collator("sv_SE", false).version());
    EXPECT_NE(Collator("sv_SE", false).version(), Collator("", false).version());
}

RC_GTEST_PROP(Collator, KeysCompareAsTheTextsDo, ()) {
    const auto a = textOf(*arbitraryUnits());
    const auto b = textOf(*arbitraryUnits());
    const bool ignoreCase = *rc::gen::arbitrary<bool>();
    const char* locale = *rc::gen::element("", "ko_KR", "sv_SE", "da_DK");
    const Collator collator(locale, ignoreCase);

    const int byKey = signOf(collator.sortKey(a).compare(collator.sortKey(b)));

    RC_ASSERT(byKey == comparedByIcu(locale, ignoreCase ? UCOL_SECONDARY : UCOL_TERTIARY, a, b));
}

RC_GTEST_PROP(Collator, KeysHoldNoZeroByte, ()) {
    const auto text = textOf(*arbitraryUnits());
    const Collator collator("ko_KR", *rc::gen::arbitrary<bool>());

    RC_ASSERT(collator.sortKey(text).find('\0') == std::string::npos);
}
