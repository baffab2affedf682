#include <gtest/gtest.h>

#include "tessera/platform/port/WindowsLocale.h"

using Platform::port::icuNameOf;

TEST(IcuName, HasLowLinesBetweenItsParts) {
    EXPECT_EQ(icuNameOf(L"ko"), "ko");
    EXPECT_EQ(icuNameOf(L"ko-KR"), "ko_KR");
    EXPECT_EQ(icuNameOf(L"sr-Latn-RS"), "sr_Latn_RS");
    EXPECT_EQ(icuNameOf(L""), "");
}

TEST(IcuName, LeavesOutAnotherOrderOfTheSameLocale) {
    EXPECT_EQ(icuNameOf(L"de-DE_phoneb"), "de_DE");
    EXPECT_EQ(icuNameOf(L"zh-TW_radstr"), "zh_TW");
}
