#include <string>

#include <gtest/gtest.h>

#include "tessera/platform/port/Locale.h"

using Platform::port::Collator;

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

    EXPECT_LT(collator.sortKey(text), collator.sortKey(text + TEXT("a")));
    EXPECT_GT(collator.sortKey(text).size(), text.size());
    EXPECT_EQ(collator.sortKey(text).find('\0'), std::string::npos);
}

TEST(Collator, TheVersionNamesTheRules) {
    EXPECT_FALSE(Collator("", false).version().empty());
    EXPECT_EQ(Collator("sv_SE", false).version(), Collator("sv_SE", false).version());
    EXPECT_NE(Collator("sv_SE", false).version(), Collator("", false).version());
}
