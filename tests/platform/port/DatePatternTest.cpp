#include <gtest/gtest.h>

#include "tessera/platform/port/DatePattern.h"
#include "tessera/platform/port/Locale.h"
#include "tests/platform/port/ScopedVariable.h"

using Platform::port::DateOrder;
using Platform::port::DatePattern;
using Platform::port::datePatternFrom;
using Platform::port::datePatternOf;
using Platform::port::userDatePattern;

namespace {

void expectIso(const DatePattern& pattern) {
    EXPECT_EQ(pattern.order, DateOrder::yearMonthDay);
    EXPECT_EQ(pattern.before, TEXT(""));
    EXPECT_EQ(pattern.separators[0], TEXT("-"));
    EXPECT_EQ(pattern.separators[1], TEXT("-"));
    EXPECT_EQ(pattern.after, TEXT(""));
    EXPECT_TRUE(pattern.padded);
}

}  // namespace

TEST(DatePattern, FollowsTheLocale) {
    const DatePattern american = datePatternOf("en_US");
    EXPECT_EQ(american.order, DateOrder::monthDayYear);
    EXPECT_EQ(american.separators[0], TEXT("/"));
    EXPECT_EQ(american.separators[1], TEXT("/"));
    EXPECT_FALSE(american.padded);

    EXPECT_EQ(datePatternOf("en_GB").order, DateOrder::dayMonthYear);
    EXPECT_TRUE(datePatternOf("en_GB").padded);
    expectIso(datePatternOf("sv_SE"));
}

TEST(DatePattern, IsIsoWhenNothingIsKnownOfTheLocale) {
    expectIso(datePatternOf(""));
    expectIso(datePatternOf("xx_YY"));
}

TEST(DatePattern, IsIsoForADateThatIsNotMadeOfThreeNumbers) {
    for (const WCHAR* shortDate :
         {TEXT("dd-MMM-yyyy"), TEXT("dddd/MM/yy"), TEXT("dd.MM.yy G"), TEXT("MM.yy"), TEXT("")})
        expectIso(datePatternFrom(shortDate));
    EXPECT_EQ(datePatternFrom(TEXT("dd-MM-yyyy")).order, DateOrder::dayMonthYear);
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
    for (const char* name : {"C", "POSIX", "C.UTF-8", "C.utf8", "../../etc", "@latin"}) {
        const ScopedVariable lang("LANG", std::nullopt);
        const ScopedVariable time("LC_TIME", std::nullopt);
        const ScopedVariable all("LC_ALL", name);
        expectIso(userDatePattern());
    }
}
