#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "tessera/platform/base/COleDateTime.h"
#include "tests/platform/base/Printing.h"
#include "tests/platform/base/UserLocale.h"

namespace {

void expectCivil(const COleDateTime& date, int year, int month, int day) {
    EXPECT_EQ(date.GetStatus(), COleDateTime::valid) << date.date();
    EXPECT_EQ(date.GetYear(), year) << date.date();
    EXPECT_EQ(date.GetMonth(), month) << date.date();
    EXPECT_EQ(date.GetDay(), day) << date.date();
}

void expectInvalid(const COleDateTime& date) {
    EXPECT_EQ(date.GetStatus(), COleDateTime::invalid);
    EXPECT_EQ(date.date(), 0.0);
    EXPECT_EQ(date.GetYear(), -1);
    EXPECT_EQ(date.GetMonth(), -1);
    EXPECT_EQ(date.GetDay(), -1);
    EXPECT_TRUE(date.Format().IsEmpty());
}

}  // namespace

TEST(COleDateTime, CountsDaysFromTheEndOf1899) {
    expectCivil(COleDateTime(), 1899, 12, 30);
    expectCivil(COleDateTime(2.0), 1900, 1, 1);
    expectCivil(COleDateTime(32937.0), 1990, 3, 5);
    expectCivil(COleDateTime(60.0), 1900, 2, 28);  // 1900 was no leap year
    expectCivil(COleDateTime(61.0), 1900, 3, 1);
    expectCivil(COleDateTime(949998.0), 4501, 1, 1);
}

TEST(COleDateTime, CoversTheYears100To9999) {
    expectCivil(COleDateTime(-657434.0), 100, 1, 1);
    expectCivil(COleDateTime(-657434.75), 100, 1, 1);
    expectCivil(COleDateTime(2958465.0), 9999, 12, 31);
    expectCivil(COleDateTime(2958465.75), 9999, 12, 31);
    expectInvalid(COleDateTime(-657435.0));
    expectInvalid(COleDateTime(2958466.0));
}

TEST(COleDateTime, ALastInstantIsNotRoundedIntoADayThatDoesNotExist) {
    const UserLocale locale("C");
    const DATE lastInstant = std::nextafter(2958466.0, 0.0);

    EXPECT_EQ(COleDateTime(lastInstant).Format(), CString(TEXT("9999-12-31 23:59:59")));
}

TEST(COleDateTime, AnyOtherLastInstantIsRoundedIntoTheNextDay) {
    const UserLocale locale("C");
    const DATE lastInstant = std::nextafter(32'938.0, 0.0);

    EXPECT_EQ(COleDateTime(32'938.0).Format(), CString(TEXT("1990-03-06")));
    EXPECT_EQ(COleDateTime(lastInstant).Format(), CString(TEXT("1990-03-06")));
}

TEST(COleDateTime, WhatIsNoNumberIsInvalid) {
    expectInvalid(COleDateTime(std::numeric_limits<double>::quiet_NaN()));
    expectInvalid(COleDateTime(std::numeric_limits<double>::infinity()));
    expectInvalid(COleDateTime(-std::numeric_limits<double>::infinity()));
    expectInvalid(COleDateTime(1e300));
    expectInvalid(COleDateTime(-1e300));
}

TEST(COleDateTime, BeforeDayZeroTheFractionStillCountsForwards) {
    const UserLocale locale("C");

    EXPECT_EQ(COleDateTime(-1.25).Format(), CString(TEXT("1899-12-29 06:00:00")));
    EXPECT_EQ(COleDateTime(-0.25).Format(), CString(TEXT("1899-12-30 06:00:00")));
    EXPECT_EQ(COleDateTime(0.25).Format(), CString(TEXT("1899-12-30 06:00:00")));
    EXPECT_EQ(COleDateTime(1899, 12, 29, 6).date(), -1.25);
    EXPECT_EQ(COleDateTime(1899, 12, 30, 6).date(), 0.25);
}

TEST(COleDateTime, IsMadeOfACivilDate) {
    EXPECT_EQ(COleDateTime(1990, 3, 5).date(), 32937.0);
    EXPECT_EQ(COleDateTime(1990, 3, 5, 12).date(), 32937.5);
    EXPECT_EQ(COleDateTime(100, 1, 1).date(), -657434.0);
    EXPECT_EQ(COleDateTime(9999, 12, 31).date(), 2958465.0);
    EXPECT_EQ(COleDateTime(2000, 2, 29).GetStatus(), COleDateTime::valid);
}

TEST(COleDateTime, ADayThatDoesNotExistIsInvalid) {
    expectInvalid(COleDateTime(1900, 2, 29));
    expectInvalid(COleDateTime(2023, 2, 29));
    expectInvalid(COleDateTime(2023, 4, 31));
    expectInvalid(COleDateTime(2023, 0, 1));
    expectInvalid(COleDateTime(2023, 13, 1));
    expectInvalid(COleDateTime(2023, 1, 0));
    expectInvalid(COleDateTime(2023, -1, 1));
    expectInvalid(COleDateTime(2023, 257, 257));
    expectInvalid(COleDateTime(99, 1, 1));
    expectInvalid(COleDateTime(10000, 1, 1));
    expectInvalid(COleDateTime(2023, 1, 1, 24));
    expectInvalid(COleDateTime(2023, 1, 1, 0, 60));
    expectInvalid(COleDateTime(2023, 1, 1, 0, 0, 60));
    expectInvalid(COleDateTime(2023, 1, 1, -1));
}

TEST(Format, FollowsTheUsersLocale) {
    const struct {
        const char* locale;
        const WCHAR* text;
    } rows[] = {
        {"C", TEXT("1990-03-05")},         {"POSIX", TEXT("1990-03-05")},       {"C.UTF-8", TEXT("1990-03-05")},
        {"en_US.UTF-8", TEXT("3/5/1990")}, {"en_GB.UTF-8", TEXT("05/03/1990")}, {"sv_SE.UTF-8", TEXT("1990-03-05")},
        {"xx_YY", TEXT("1990-03-05")},
    };
    for (const auto& row : rows) {
        const UserLocale locale(row.locale);
        EXPECT_EQ(COleDateTime(1990, 3, 5).Format(), CString(row.text)) << row.locale;
    }
}

TEST(Format, YearsAlwaysHaveFourDigits) {
    const UserLocale locale("en_US.UTF-8");

    EXPECT_EQ(COleDateTime(100, 1, 2).Format(), CString(TEXT("1/2/0100")));
}

TEST(Format, ShowsATimeOfDayOtherThanMidnight) {
    const UserLocale locale("C");

    EXPECT_EQ(COleDateTime(1990, 3, 5, 7, 8, 9).Format(), CString(TEXT("1990-03-05 07:08:09")));
    EXPECT_EQ(COleDateTime(1990, 3, 5, 7, 8, 9).Format(VAR_DATEVALUEONLY), CString(TEXT("1990-03-05")));
    EXPECT_EQ(COleDateTime(1990, 3, 5).Format(), CString(TEXT("1990-03-05")));
}
