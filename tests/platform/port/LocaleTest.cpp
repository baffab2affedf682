#include <gtest/gtest.h>

#include "tessera/platform/port/Locale.h"
#include "tessera/platform/port/SystemLocale.h"
#include "tests/platform/port/ScopedVariable.h"

using Platform::port::lowerCase;
using Platform::port::systemLocale;
using Platform::port::upperCase;
using Platform::port::userCollationLocale;

TEST(Case, LettersOfEveryScriptAreMapped) {
    EXPECT_EQ(lowerCase(u'A'), u'a');
    EXPECT_EQ(upperCase(u'z'), u'Z');
    EXPECT_EQ(lowerCase(u'\u00C9'), u'\u00E9');
    EXPECT_EQ(upperCase(u'\u0436'), u'\u0416');
    EXPECT_EQ(lowerCase(u'\uFF21'), u'\uFF41');
}

TEST(Case, WhatHasNoCaseStays) {
    for (const WCHAR ch : {u'1', u' ', u'\uAC00', u'\u4E00', u'\u0000'}) {
        EXPECT_EQ(lowerCase(ch), ch);
        EXPECT_EQ(upperCase(ch), ch);
    }
}

TEST(Case, ALetterWithoutASingleCounterpartStays) {
    EXPECT_EQ(upperCase(u'\u00DF'), u'\u00DF');
}

TEST(Case, HalvesOfAPairStay) {
    for (int unit = 0xD800; unit <= 0xDFFF; ++unit) {
        ASSERT_EQ(lowerCase(static_cast<WCHAR>(unit)), unit);
        ASSERT_EQ(upperCase(static_cast<WCHAR>(unit)), unit);
    }
}

TEST(Case, MappingTwiceIsMappingOnce) {
    for (int unit = 0; unit <= 0xFFFF; ++unit) {
        const auto ch = static_cast<WCHAR>(unit);
        ASSERT_EQ(lowerCase(lowerCase(ch)), lowerCase(ch)) << unit;
        ASSERT_EQ(upperCase(upperCase(ch)), upperCase(ch)) << unit;
    }
}

TEST(UserCollationLocale, IsTheEnvironmentsNameAsIcuWritesIt) {
    const struct {
        const char* posix;
        const char* icu;
    } names[] = {
        {"ko_KR.UTF-8", "ko_KR"},
        {"ko_KR", "ko_KR"},
        {"ko", "ko"},
        {"de_DE@euro", "de_DE"},
        {"de_DE.UTF-8@euro", "de_DE"},
        {"sr_RS@latin", "sr_Latn_RS"},
        {"uz_UZ.UTF-8@cyrillic", "uz_Cyrl_UZ"},
        {"C", ""},
        {"POSIX", ""},
        {"C.UTF-8", ""},
        {"C.utf8", ""},
        {"ko KR", ""},
        {"/usr/share", ""},
        {".UTF-8", ""},
    };
    for (const auto& name : names) {
        const ScopedVariable all("LC_ALL", name.posix);
        EXPECT_EQ(userCollationLocale(), name.icu) << name.posix;
    }
}

TEST(UserCollationLocale, TakesTheFirstVariableThatIsSet) {
    const ScopedVariable lang("LANG", "de_DE.UTF-8");
    {
        const ScopedVariable all("LC_ALL", "ko_KR.UTF-8");
        const ScopedVariable collate("LC_COLLATE", "sv_SE.UTF-8");
        EXPECT_EQ(userCollationLocale(), "ko_KR");
    }
    {
        const ScopedVariable all("LC_ALL", "");
        const ScopedVariable collate("LC_COLLATE", "sv_SE.UTF-8");
        EXPECT_EQ(userCollationLocale(), "sv_SE");
    }
    {
        const ScopedVariable all("LC_ALL", std::nullopt);
        const ScopedVariable collate("LC_COLLATE", std::nullopt);
        EXPECT_EQ(userCollationLocale(), "de_DE");
    }
}

TEST(UserCollationLocale, IsTheSystemsWhenNoneIsSet) {
    const ScopedVariable all("LC_ALL", std::nullopt);
    const ScopedVariable collate("LC_COLLATE", std::nullopt);
    const ScopedVariable lang("LANG", std::nullopt);

    EXPECT_EQ(userCollationLocale(), systemLocale());
}
