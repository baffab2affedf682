#include <limits>

#include <gtest/gtest.h>

#include "tessera/phonebook/model/NumberText.h"

namespace PhoneBook {
namespace {

constexpr LONG longMax = std::numeric_limits<LONG>::max();
constexpr LONG longMin = std::numeric_limits<LONG>::min();

TEST(NumberText, ReadsDecimalHexadecimalAndOctal) {
    EXPECT_EQ(wcstolText(TEXT("28")), 28);
    EXPECT_EQ(wcstolText(TEXT("0x0000001c")), 28);
    EXPECT_EQ(wcstolText(TEXT("0X1C")), 28);
    EXPECT_EQ(wcstolText(TEXT("034")), 28);
    EXPECT_EQ(wcstoulText(TEXT("0xFFFFFFFF")), 0xFFFFFFFFu);
}

TEST(NumberText, ReadsASignAndLeadingWhiteSpace) {
    EXPECT_EQ(wcstolText(TEXT(" \t\r\n\v\f-12")), -12);
    EXPECT_EQ(wcstolText(TEXT("+12")), 12);
    EXPECT_EQ(wcstolText(TEXT("-0x10")), -16);
    EXPECT_EQ(wcstolText(TEXT("- 12")), 0);
    EXPECT_EQ(wcstolText(TEXT("--12")), 0);
}

TEST(NumberText, StopsAtWhatIsNoDigit) {
    EXPECT_EQ(wcstolText(TEXT("12\r")), 12);
    EXPECT_EQ(wcstolText(TEXT("12abc")), 12);
    EXPECT_EQ(wcstolText(TEXT("089")), 0);
    EXPECT_EQ(wcstolText(TEXT("0178")), 15);
    EXPECT_EQ(wcstolText(TEXT("0xg")), 0);
    EXPECT_EQ(wcstolText(TEXT("0x")), 0);
    EXPECT_EQ(wcstolText(TEXT("１２")), 0);
}

TEST(NumberText, NoDigitsGiveZero) {
    EXPECT_EQ(wcstolText(TEXT("")), 0);
    EXPECT_EQ(wcstolText(nullptr), 0);
    EXPECT_EQ(wcstolText(TEXT("abc")), 0);
    EXPECT_EQ(wcstolText(TEXT("-")), 0);
    EXPECT_EQ(wcstoulText(TEXT("")), 0u);
    EXPECT_EQ(wcstoulText(nullptr), 0u);
}

TEST(NumberText, ALongStopsAtItsBounds) {
    EXPECT_EQ(wcstolText(TEXT("2147483647")), longMax);
    EXPECT_EQ(wcstolText(TEXT("2147483648")), longMax);
    EXPECT_EQ(wcstolText(TEXT("0x80000004")), longMax);
    EXPECT_EQ(wcstolText(TEXT("-2147483648")), longMin);
    EXPECT_EQ(wcstolText(TEXT("-2147483649")), longMin);
    EXPECT_EQ(wcstolText(TEXT("99999999999999999999999999")), longMax);
    EXPECT_EQ(wcstolText(TEXT("-99999999999999999999999999")), longMin);
}

TEST(NumberText, AnUnsignedLongWrapsAroundASignAndStopsAtItsBound) {
    EXPECT_EQ(wcstoulText(TEXT("-1")), 0xFFFFFFFFu);
    EXPECT_EQ(wcstoulText(TEXT("-4294967295")), 1u);
    EXPECT_EQ(wcstoulText(TEXT("4294967295")), 0xFFFFFFFFu);
    EXPECT_EQ(wcstoulText(TEXT("4294967296")), 0xFFFFFFFFu);
    EXPECT_EQ(wcstoulText(TEXT("-4294967296")), 0xFFFFFFFFu);
    EXPECT_EQ(wcstoulText(TEXT("99999999999999999999999999")), 0xFFFFFFFFu);
}

}  // namespace
}  // namespace PhoneBook
