#include <gtest/gtest.h>

#include "tessera/platform/base/COleDateTime.h"
#include "tests/platform/base/Printing.h"
#include "tests/platform/base/UserLocale.h"

namespace {

struct Reading {
    const char* locale;
    const WCHAR* text;
    COleDateTime date;
};

void expectReadings(std::initializer_list<Reading> readings) {
    for (const Reading& reading : readings) {
        const UserLocale locale(reading.locale);
        COleDateTime date(1.0);
        EXPECT_TRUE(date.ParseDateTime(reading.text)) << reading.locale << ' ' << utf8Of(reading.text);
        EXPECT_EQ(date.GetStatus(), COleDateTime::valid);
        EXPECT_EQ(date.date(), reading.date.date()) << reading.locale << ' ' << utf8Of(reading.text);
    }
}

const COleDateTime fifthOfMarch(1990, 3, 5);
const COleDateTime thirdOfMay(1990, 5, 3);

}  // namespace

TEST(ParseDateTime, TakesTheLocalesOrderFirst) {
    expectReadings({
        {"en_US.UTF-8", TEXT("3/5/1990"), fifthOfMarch},
        {"en_GB.UTF-8", TEXT("3/5/1990"), thirdOfMay},
        {"de_DE.UTF-8", TEXT("5.3.1990"), fifthOfMarch},
        {"en_US.UTF-8", TEXT("5.3.1990"), thirdOfMay},
        {"ko_KR.UTF-8", TEXT("1990. 3. 5."), fifthOfMarch},
        {"ko_KR.UTF-8", TEXT("1990.3.5"), fifthOfMarch},
        {"C", TEXT("1990-03-05"), fifthOfMarch},
    });
}

TEST(ParseDateTime, TakesAnyOtherOrderThatIsADay) {
    expectReadings({
        {"en_US.UTF-8", TEXT("31/12/1990"), COleDateTime(1990, 12, 31)},
        {"en_GB.UTF-8", TEXT("12/31/1990"), COleDateTime(1990, 12, 31)},
        {"C", TEXT("31/12/1990"), COleDateTime(1990, 12, 31)},
        {"C", TEXT("12/31/1990"), COleDateTime(1990, 12, 31)},
        {"C", TEXT("1990/31/12"), COleDateTime(1990, 12, 31)},
        {"C", TEXT("31/1990/12"), COleDateTime(1990, 12, 31)},
        {"C", TEXT("12/1990/31"), COleDateTime(1990, 12, 31)},
        {"ko_KR.UTF-8", TEXT("5. 3. 1990."), fifthOfMarch},
    });
}

TEST(ParseDateTime, TakesIsoInEveryLocale) {
    for (const char* locale : {"C", "ko_KR.UTF-8", "en_US.UTF-8", "en_GB.UTF-8", "de_DE.UTF-8", "ar_EG.UTF-8"}) {
        expectReadings({
            {locale, TEXT("1990-03-05"), fifthOfMarch},
            {locale, TEXT("1990-3-5"), fifthOfMarch},
            {locale, TEXT("1990-03-05T06:00"), COleDateTime(1990, 3, 5, 6)},
        });
    }
}

TEST(ParseDateTime, TakesTheKoreanLongForm) {
    for (const char* locale : {"C", "ko_KR.UTF-8", "en_US.UTF-8"}) {
        expectReadings({
            {locale, TEXT("1990\uB144 3\uC6D4 5\uC77C"), fifthOfMarch},
            {locale, TEXT("1990\uB1443\uC6D45\uC77C"), fifthOfMarch},
            {locale, TEXT("90\uB144 3\uC6D4 5\uC77C"), fifthOfMarch},
            {locale, TEXT("1990\u5E743\u67085\u65E5"), fifthOfMarch},
        });
    }
}

TEST(ParseDateTime, TakesEachOfTheCommonSeparators) {
    expectReadings({
        {"C", TEXT("1990/3/5"), fifthOfMarch},
        {"C", TEXT("1990.03.05"), fifthOfMarch},
        {"C", TEXT("1990.03.05."), fifthOfMarch},
        {"C", TEXT("1990 3 5"), fifthOfMarch},
        {"C", TEXT("1990 - 3 - 5"), fifthOfMarch},
    });
}

TEST(ParseDateTime, AShortYearLiesBetween1930And2029) {
    expectReadings({
        {"C", TEXT("30-01-02"), COleDateTime(1930, 1, 2)},
        {"C", TEXT("99-01-02"), COleDateTime(1999, 1, 2)},
        {"C", TEXT("00-01-02"), COleDateTime(2000, 1, 2)},
        {"C", TEXT("29-01-02"), COleDateTime(2029, 1, 2)},
        {"en_US.UTF-8", TEXT("3/5/90"), fifthOfMarch},
        {"en_US.UTF-8", TEXT("3/5/5"), COleDateTime(2005, 3, 5)},
        {"de_DE.UTF-8", TEXT("5.3.90"), fifthOfMarch},
    });
}

TEST(ParseDateTime, TakesATimeOfDay) {
    expectReadings({
        {"C", TEXT("1990-03-05 06:00"), COleDateTime(1990, 3, 5, 6)},
        {"C", TEXT("1990-03-05 6:00"), COleDateTime(1990, 3, 5, 6)},
        {"C", TEXT("1990-03-05 23:59:59"), COleDateTime(1990, 3, 5, 23, 59, 59)},
        {"C", TEXT("1990-03-05 00:00:00"), fifthOfMarch},
        {"ko_KR.UTF-8", TEXT("1990. 3. 5. 06:00"), COleDateTime(1990, 3, 5, 6)},
        {"C", TEXT("1899-12-29 06:00"), COleDateTime(-1.25)},
    });
}

TEST(ParseDateTime, WhiteSpaceAroundTheTextMeansNothing) {
    expectReadings({
        {"C", TEXT("1990-03-05\r"), fifthOfMarch},
        {"C", TEXT(" \t1990-03-05 \r\n"), fifthOfMarch},
        {"C", TEXT("\u30001990-03-05\u00A0"), fifthOfMarch},
        {"C", TEXT("1990-03-05 06:00\r"), COleDateTime(1990, 3, 5, 6)},
        {"ko_KR.UTF-8", TEXT("1990. 3. 5.\r"), fifthOfMarch},
        {"ar_EG.UTF-8", TEXT("\u200F5/3/1990\u200F"), fifthOfMarch},
        {"ar_EG.UTF-8", TEXT("\u061C5/3/1990\u200E"), fifthOfMarch},
    });
}

TEST(ParseDateTime, DropsTheTimeOfDayWhenToldTo) {
    const UserLocale locale("C");
    COleDateTime date;

    EXPECT_TRUE(date.ParseDateTime(TEXT("1990-03-05 06:00"), VAR_DATEVALUEONLY));
    EXPECT_EQ(date.date(), 32937.0);
    EXPECT_FALSE(date.ParseDateTime(TEXT("1990-03-05 26:00"), VAR_DATEVALUEONLY));
}

TEST(ParseDateTime, RefusesWhatIsNoDate) {
    const WCHAR* const texts[] = {
        TEXT(""),
        TEXT(" "),
        TEXT("\r"),
        TEXT("birthday"),
        TEXT("1990"),
        TEXT("1990-03"),
        TEXT("1990-03-"),
        TEXT("-1990-03-05"),
        TEXT("1990-03-05-"),
        TEXT("1990-03-05x"),
        TEXT("1990-03-05 x"),
        TEXT("x1990-03-05"),
        TEXT("1990-03-05 06"),
        TEXT("1990-03-05 06:"),
        TEXT("1990-03-05 06:0"),
        TEXT("1990-03-05 24:00"),
        TEXT("1990-03-05 006:00"),
        TEXT("1990-03-05 06:000"),
        TEXT("1990-03-05 06:60"),
        TEXT("1990-03-05 06:00:60"),
        TEXT("1990-03-05 06:00:"),
        TEXT("1990-03-05 06:00 pm"),
        TEXT("1990-03-0506:00"),
        TEXT("06:00"),
        TEXT("1990-02-30"),
        TEXT("1900-02-29"),
        TEXT("1990-13-32"),
        TEXT("1990-00-05"),
        TEXT("0000-01-01"),
        TEXT("0099-01-01"),
        TEXT("10000-01-01"),
        TEXT("01990-03-05"),
        TEXT("990-03-05"),
        TEXT("1990-003-05"),
        TEXT("1990-03/05"),
        TEXT("1990--03-05"),
        TEXT("19900305"),
        TEXT("1990-03-05\u0661"),
        TEXT("99999999999999999999-1-1"),
        TEXT("1990\uB144 3\uC6D4"),
        TEXT("3\uC6D4 5\uC77C"),
        TEXT("5\uB144 3\uC6D4 1990\uC77C"),
    };
    for (const char* name : {"C", "ko_KR.UTF-8", "en_US.UTF-8", "de_DE.UTF-8"}) {
        const UserLocale locale(name);
        for (const WCHAR* text : texts) {
            COleDateTime date(1.0);
            EXPECT_FALSE(date.ParseDateTime(text)) << name << ' ' << utf8Of(text);
            EXPECT_EQ(date.GetStatus(), COleDateTime::invalid);
            EXPECT_EQ(date.date(), 0.0);
        }
    }
}

TEST(ParseDateTime, RefusesANullText) {
    COleDateTime date(1.0);

    EXPECT_FALSE(date.ParseDateTime(nullptr));
    EXPECT_EQ(date.date(), 0.0);
    EXPECT_EQ(date.GetStatus(), COleDateTime::invalid);
}

TEST(ParseDateTime, AGoodTextMakesAnInvalidDateValid) {
    const UserLocale locale("C");
    COleDateTime date;
    ASSERT_FALSE(date.ParseDateTime(TEXT("none")));

    EXPECT_TRUE(date.ParseDateTime(TEXT("1990-03-05")));

    EXPECT_EQ(date.GetStatus(), COleDateTime::valid);
    EXPECT_EQ(date.date(), 32937.0);
}
