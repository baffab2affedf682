#include <algorithm>
#include <cwchar>
#include <limits>
#include <string>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

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

// Texts near to numbers: what numbers are made of, in any order and at any length.
rc::Gen<std::string> nearlyNumber() {
    const auto piece = rc::gen::element<std::string>("0", "0x", "0X", "1", "7", "8", "9", "a", "F", "g", "x", "+", "-",
                                                     " ", "\t", "\r", "2147483647", "4294967295", "ffffffff", ",");
    return rc::gen::map(rc::gen::container<std::vector<std::string>>(piece),
                        [](const std::vector<std::string>& pieces) {
                            std::string text;
                            for (const std::string& next : pieces)
                                text += next;
                            return text;
                        });
}

RC_GTEST_PROP(NumberText, ReadsAsTheCLibraryCutToThirtyTwoBits, ()) {
    static_assert(sizeof(long) == 8, "the library's own long is the wider one that the model cuts");
    const std::string text = *nearlyNumber();
    const WString narrow(text.begin(), text.end());
    const std::wstring wide(text.begin(), text.end());

    const long whole = std::wcstol(wide.c_str(), nullptr, 0);

    RC_ASSERT(wcstolText(narrow.c_str()) == std::clamp<long>(whole, longMin, longMax));
    const bool isBeyond = whole > 0xFFFFFFFFl || whole < -0xFFFFFFFFl;
    RC_ASSERT(wcstoulText(narrow.c_str()) == (isBeyond ? 0xFFFFFFFFu : static_cast<DWORD>(whole)));
}

}  // namespace
}  // namespace PhoneBook
