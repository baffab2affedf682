#include <gtest/gtest.h>

#include "tessera/platform/port/IcuDates.h"
#include "tessera/platform/port/Locale.h"
#include "tests/platform/port/ScopedVariable.h"

using Platform::port::DateOrder;
using Platform::port::DatePattern;
using Platform::port::datePatternOf;
using Platform::port::userDatePattern;

namespace {

struct Expected {
    const char* locale;
    DateOrder order;
    WString first, second, after;
    bool padded;
};

void expectPattern(const DatePattern& pattern, const Expected& expected) {
    EXPECT_EQ(pattern.order, expected.order) << expected.locale;
    EXPECT_EQ(pattern.before, TEXT("")) << expected.locale;
    EXPECT_EQ(pattern.separators[0], expected.first) << expected.locale;
    EXPECT_EQ(pattern.separators[1], expected.second) << expected.locale;
    EXPECT_EQ(pattern.after, expected.after) << expected.locale;
    EXPECT_EQ(pattern.padded, expected.padded) << expected.locale;
}

const Expected iso = {"iso", DateOrder::yearMonthDay, TEXT("-"), TEXT("-"), TEXT(""), true};

}  // namespace

TEST(DatePattern, FollowsTheLocalesShortDate) {
    const Expected patterns[] = {
        {"ko_KR", DateOrder::yearMonthDay, TEXT(". "), TEXT(". "), TEXT("."), false},
        {"en_US", DateOrder::monthDayYear, TEXT("/"), TEXT("/"), TEXT(""), false},
        {"en_GB", DateOrder::dayMonthYear, TEXT("/"), TEXT("/"), TEXT(""), true},
        {"de_DE", DateOrder::dayMonthYear, TEXT("."), TEXT("."), TEXT(""), true},
        {"sv_SE", DateOrder::yearMonthDay, TEXT("-"), TEXT("-"), TEXT(""), true},
        {"hu_HU", DateOrder::yearMonthDay, TEXT(". "), TEXT(". "), TEXT("."), true},
        {"fi_FI", DateOrder::dayMonthYear, TEXT("."), TEXT("."), TEXT(""), false},
    };
    for (const Expected& expected : patterns) {
        expectPattern(datePatternOf(expected.locale), expected);
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

TEST(DatePattern, IsIsoWhenNothingIsKnownOfTheLocale) {
    expectPattern(datePatternOf(""), iso);
    expectPattern(datePatternOf("xx_YY"), iso);
}

TEST(UserDatePattern, TakesTheFirstVariableThatIsSet) {
    const ScopedVariable lang("LANG", "de_DE.UTF-8");
    {
        const ScopedVariable all("LC_ALL", "ko_KR.UTF-8");
        const ScopedVariable time("LC_TIME", "en_US.UTF-8");
        EXPECT_EQ(userDatePattern().order, DateOrder::yearMonthDay);
    }
    {
        const ScopedVariable all("LC_ALL", "");
        const ScopedVariable time("LC_TIME", "en_US.UTF-8");
        EXPECT_EQ(userDatePattern().order, DateOrder::monthDayYear);
    }
    {
        const ScopedVariable all("LC_ALL", std::nullopt);
        const ScopedVariable time("LC_TIME", std::nullopt);
        EXPECT_EQ(userDatePattern().order, DateOrder::dayMonthYear);
    }
}

TEST(UserDatePattern, IsIsoInTheCLocale) {
    for (const char* name : {"C", "POSIX", "C.UTF-8", "C.utf8", "", "../../etc", "@latin"}) {
        const ScopedVariable lang("LANG", std::nullopt);
        const ScopedVariable time("LC_TIME", std::nullopt);
        const ScopedVariable all("LC_ALL", name);
        expectPattern(userDatePattern(), iso);
    }
}
