#include <array>
#include <string>

#include <gtest/gtest.h>

#include "tessera/phonebook/model/TelNo.h"
#include "tessera/platform/base/Unicode.h"

namespace PhoneBook {
namespace {

std::string reduced(const WCHAR* number) {
    return utf8Of(makeCNIP(number).view());
}

std::string dashed(const WCHAR* number) {
    return utf8Of(makeTelNoStrFromCID(number).view());
}

TEST(MakeCNIP, DropsWhatSeparatesDigits) {
    EXPECT_EQ(reduced(TEXT("(02) 123-4567")), "021234567");
    EXPECT_EQ(reduced(TEXT("010.1234.5678")), "01012345678");
    EXPECT_EQ(reduced(TEXT("  010 1234/5678 ext")), "01012345678");
}

TEST(MakeCNIP, KeepsStarHashAndTheCapitalPauseLetters) {
    EXPECT_EQ(reduced(TEXT("*23#")), "*23#");
    EXPECT_EQ(reduced(TEXT("02P12T34")), "02P12T34");
    EXPECT_EQ(reduced(TEXT("02p12t34")), "021234");
}

TEST(MakeCNIP, ReducesALeadingCountryCodeToAZero) {
    EXPECT_EQ(reduced(TEXT("+82 10-1234-5678")), "01012345678");
    EXPECT_EQ(reduced(TEXT("+82-2-123-4567")), "021234567");
    EXPECT_EQ(reduced(TEXT("+ 5")), "05");
}

TEST(MakeCNIP, ACountryCodeWithoutASeparatorTakesTheWholeText) {
    EXPECT_EQ(reduced(TEXT("+821012345678")), "0");
    EXPECT_EQ(reduced(TEXT("+")), "0");
    EXPECT_EQ(reduced(TEXT("+82 ")), "0");
}

TEST(MakeCNIP, APlusElsewhereIsDropped) {
    EXPECT_EQ(reduced(TEXT(" +82 10")), "8210");
    EXPECT_EQ(reduced(TEXT("1+2-3")), "123");
}

TEST(MakeCNIP, KeepsTheFirst32Characters) {
    const WString forty = TEXT("1234567890123456789012345678901234567890");
    const std::string first32 = "12345678901234567890123456789012";

    EXPECT_EQ(reduced(forty.c_str()), first32);
    EXPECT_EQ(reduced((TEXT("+82 ") + forty).c_str()), "0" + first32.substr(0, 31));
    EXPECT_EQ(reduced(forty.substr(0, 32).c_str()), first32);
    EXPECT_EQ(reduced((TEXT("-(") + forty.substr(0, 32) + TEXT(")")).c_str()), first32);
}

TEST(MakeCNIP, ReducesNothingToNothing) {
    EXPECT_EQ(reduced(TEXT("")), "");
    EXPECT_EQ(reduced(nullptr), "");
    EXPECT_EQ(reduced(TEXT("가나다")), "");
}

TEST(MakeCNIP, DigitsOfOtherScriptsAreNoDigits) {
    EXPECT_EQ(reduced(TEXT("１２٣")), "");
}

TEST(MakeCNIP, TerminatesTheBufferAndWritesNothingBehindIt) {
    std::array<WCHAR, nCNIPBufferLength_ + 1> buffer{};
    buffer.fill(u'~');

    makeCNIP(TEXT("1234567890123456789012345678901234567890"), buffer.data());

    EXPECT_EQ(buffer[31], u'2');
    EXPECT_EQ(buffer[32], u'\0');
    EXPECT_EQ(buffer[33], u'~');
}

TEST(MakeTelNoStrFromCID, PutsDashesBehindTheAreaCodeAndBeforeTheLastGroup) {
    EXPECT_EQ(dashed(TEXT("0212345678")), "02-1234-5678");
    EXPECT_EQ(dashed(TEXT("01012345678")), "010-1234-5678");
    EXPECT_EQ(dashed(TEXT("0311234567")), "031-123-4567");
    EXPECT_EQ(dashed(TEXT("021234567")), "02-123-4567");
    EXPECT_EQ(dashed(TEXT("12345678")), "1234-5678");
    EXPECT_EQ(dashed(TEXT("1234567")), "123-4567");
    EXPECT_EQ(dashed(TEXT("010123456789012")), "010-1234-56789012");
}

TEST(MakeTelNoStrFromCID, LeavesShortNumbersAlone) {
    EXPECT_EQ(dashed(TEXT("1234")), "1234");
    EXPECT_EQ(dashed(TEXT("0212")), "0212");
    EXPECT_EQ(dashed(TEXT("")), "");
    EXPECT_EQ(dashed(nullptr), "");
}

TEST(MakeTelNoStrFromCID, CopiesWhatThereIsOfAShortMiddleGroup) {
    EXPECT_EQ(dashed(TEXT("02123")), "02-123-");
    EXPECT_EQ(dashed(TEXT("01012")), "010-12-");
    EXPECT_EQ(dashed(TEXT("021234")), "02-1234-");
    EXPECT_EQ(dashed(TEXT("12345")), "1234-5");
}

}  // namespace
}  // namespace PhoneBook
