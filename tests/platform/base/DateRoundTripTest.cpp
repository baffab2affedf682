#include <string>

#include <gtest/gtest.h>

#include "tessera/platform/base/COleDateTime.h"
#include "tests/platform/base/LocalesByWriting.h"
#include "tests/platform/base/Printing.h"
#include "tests/platform/base/UserLocale.h"

namespace {

void expectSameDayBack(DATE day, const std::string& locale) {
    const CString text = COleDateTime(day).Format();
    COleDateTime back;
    ASSERT_TRUE(back.ParseDateTime(text)) << locale << ' ' << utf8Of(text.view());
    ASSERT_EQ(back.date(), day) << locale << ' ' << utf8Of(text.view());
}

}  // namespace

TEST(DateRoundTrip, ThereAreManyWaysOfWriting) {
    EXPECT_GT(localesByWriting().size(), 20U);
}

TEST(DateRoundTrip, EveryDayOfSeveralYearsComesBackInEveryLocale) {
    for (const auto& [writing, name] : localesByWriting()) {
        const UserLocale locale(name);
        for (const int year : {100, 1601, 1899, 1900, 1999, 2000, 2024, 9999}) {
            const DATE first = COleDateTime(year, 1, 1).date();
            const DATE last = COleDateTime(year, 12, 31).date();
            for (DATE day = first; day <= last; day += 1.0)
                ASSERT_NO_FATAL_FAILURE(expectSameDayBack(day, name));
        }
    }
}
