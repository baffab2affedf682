// Dates of locales for which systems with knowledge of their own have other customs than ICU.

#include <gtest/gtest.h>

#include "tessera/platform/base/COleDateTime.h"
#include "tests/platform/base/Printing.h"
#include "tests/platform/base/UserLocale.h"

TEST(Format, WritesKoreanAndGermanDatesAsIcuDoes) {
    {
        const UserLocale locale("ko_KR.UTF-8");
        EXPECT_EQ(COleDateTime(1990, 3, 5).Format(), CString(TEXT("1990. 3. 5.")));
    }
    {
        const UserLocale locale("de_DE.UTF-8");
        EXPECT_EQ(COleDateTime(1990, 3, 5).Format(), CString(TEXT("05.03.1990")));
    }
}
