// What ICU knows of languages. Systems with knowledge of their own differ in such details.

#include <gtest/gtest.h>

#include "tessera/platform/port/DatePattern.h"
#include "tessera/platform/port/Locale.h"

using Platform::port::DateOrder;
using Platform::port::DatePattern;
using Platform::port::datePatternOf;

TEST(Case, ALetterWhoseCounterpartIsOfAnotherScriptsRangeIsMapped) {
    EXPECT_EQ(Platform::port::lowerCase(u'\u0130'), u'i');
    EXPECT_EQ(Platform::port::upperCase(u'\u0130'), u'\u0130');
}

TEST(DatePattern, FollowsTheLocalesShortDate) {
    const struct {
        const char* locale;
        DateOrder order;
        WString first, second, after;
        bool padded;
    } patterns[] = {
        {"ko_KR", DateOrder::yearMonthDay, TEXT(". "), TEXT(". "), TEXT("."), false},
        {"en_US", DateOrder::monthDayYear, TEXT("/"), TEXT("/"), TEXT(""), false},
        {"en_GB", DateOrder::dayMonthYear, TEXT("/"), TEXT("/"), TEXT(""), true},
        {"de_DE", DateOrder::dayMonthYear, TEXT("."), TEXT("."), TEXT(""), true},
        {"sv_SE", DateOrder::yearMonthDay, TEXT("-"), TEXT("-"), TEXT(""), true},
        {"hu_HU", DateOrder::yearMonthDay, TEXT(". "), TEXT(". "), TEXT("."), true},
        {"fi_FI", DateOrder::dayMonthYear, TEXT("."), TEXT("."), TEXT(""), false},
    };
    for (const auto& expected : patterns) {
        const DatePattern pattern = datePatternOf(expected.locale);
        EXPECT_EQ(pattern.order, expected.order) << expected.locale;
        EXPECT_EQ(pattern.before, TEXT("")) << expected.locale;
        EXPECT_EQ(pattern.separators[0], expected.first) << expected.locale;
        EXPECT_EQ(pattern.separators[1], expected.second) << expected.locale;
        EXPECT_EQ(pattern.after, expected.after) << expected.locale;
        EXPECT_EQ(pattern.padded, expected.padded) << expected.locale;
    }
}

TEST(DatePattern, QuotedTextBelongsToWhatStandsBehind) {
    const DatePattern bulgarian = datePatternOf("bg_BG");

    EXPECT_EQ(bulgarian.order, DateOrder::dayMonthYear);
    EXPECT_TRUE(bulgarian.after.ends_with(TEXT("\u0433.")));
}

TEST(DatePattern, ALocaleWithACalendarOfItsOwnWritesGregorianDates) {
    EXPECT_EQ(datePatternOf("th_TH").order, DateOrder::dayMonthYear);
    EXPECT_EQ(datePatternOf("th_TH").after, TEXT(""));
    EXPECT_EQ(datePatternOf("fa_IR").order, DateOrder::yearMonthDay);
}
