#include <map>

#include <gtest/gtest.h>

#include "tests/database/Decomposed.h"

namespace Database {
namespace {

TEST(UnicodeHandler, TakesTheEdgesOfTheSyllablesApart) {
    EXPECT_EQ(decomposed(0xAC00), TEXT("\x1100\x1161"));
    EXPECT_EQ(decomposed(0xAC01), TEXT("\x1100\x1161\x11A8"));
    EXPECT_EQ(decomposed(0xD7A3), TEXT("\x1112\x1175\x11C2"));
}

TEST(UnicodeHandler, LeavesEveryOtherCharacterWhole) {
    for (int ch = 1; ch <= 0xFFFF; ++ch) {
        if (ch >= firstSyllable && ch <= lastSyllable) continue;
        const WString itself(1, static_cast<WCHAR>(ch));
        ASSERT_EQ(decomposed(static_cast<WCHAR>(ch)), itself) << ch;
        ASSERT_EQ(decomposedIntoBuffer(static_cast<WCHAR>(ch)), itself) << ch;
    }
}

TEST(UnicodeHandler, WhatIsNeitherSyllableNorConsonantLetterIsItsOwnInitial) {
    for (int ch = 1; ch <= 0xFFFF; ++ch) {
        if ((ch >= firstSyllable && ch <= lastSyllable) || (ch >= 0x3131 && ch <= 0x314E)) continue;
        ASSERT_EQ(UnicodeHandler::getLIndex(static_cast<WCHAR>(ch)), ch);
    }
}

TEST(UnicodeHandler, InitialsAtTheEdgesOfTheLetters) {
    EXPECT_EQ(UnicodeHandler::getLIndex(u'A'), u'A');
    EXPECT_EQ(UnicodeHandler::getLIndex(0x3130), 0x3130);
    EXPECT_EQ(UnicodeHandler::getLIndex(0x3131), 0x1100);
    EXPECT_EQ(UnicodeHandler::getLIndex(0x3133), 0x3133);
    EXPECT_EQ(UnicodeHandler::getLIndex(0x314E), 0x1112);
    EXPECT_EQ(UnicodeHandler::getLIndex(0x314F), 0x314F);
}

TEST(UnicodeHandler, ExactlyTheTenPlainConsonantsHaveATenseOne) {
    const std::map<int, int> tense = {
        {0x1100, 0x1101}, {0x1103, 0x1104}, {0x1107, 0x1108}, {0x1109, 0x110A}, {0x110C, 0x110D},
        {0x3131, 0x3132}, {0x3137, 0x3138}, {0x3142, 0x3143}, {0x3145, 0x3146}, {0x3148, 0x3149},
    };
    for (int ch = 0; ch <= 0xFFFF; ++ch) {
        const auto found = tense.find(ch);
        ASSERT_EQ(UnicodeHandler::getRelatedJa(static_cast<WCHAR>(ch)), found != tense.end() ? found->second : 0) << ch;
    }
}

TEST(UnicodeHandler, AssigningAnswersTheObject) {
    UnicodeHandler handler;
    const UnicodeHandler other;

    EXPECT_EQ(&(handler = other), &handler);
}

}  // namespace
}  // namespace Database
