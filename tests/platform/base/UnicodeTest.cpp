#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>
#include <unicode/ustring.h>

#include "tessera/platform/base/Unicode.h"
#include "tests/platform/base/Printing.h"

namespace {

WString utf16Of(char32_t ch) {
    if (ch < 0x10000) return {static_cast<WCHAR>(ch)};
    return {static_cast<WCHAR>(0xD7C0 + (ch >> 10)), static_cast<WCHAR>(0xDC00 + (ch & 0x3FF))};
}

bool isWellFormedToIcu(const std::string& bytes) {
    UErrorCode status = U_ZERO_ERROR;
    int32_t length = 0;
    u_strFromUTF8(nullptr, 0, &length, bytes.data(), static_cast<int32_t>(bytes.size()), &status);
    return status != U_INVALID_CHAR_FOUND;
}

}  // namespace

TEST(Utf8, EveryCharacterSurvivesTheWayThereAndBack) {
    for (char32_t ch = 0; ch <= 0x10FFFF; ++ch) {
        if (ch == 0xD800) ch = 0xE000;
        const WString text = utf16Of(ch);
        const auto back = textOfUtf8(utf8Of(text));
        ASSERT_TRUE(back.has_value()) << std::hex << static_cast<unsigned>(ch);
        ASSERT_EQ(back->view(), text) << std::hex << static_cast<unsigned>(ch);
    }
}

TEST(Utf8, IsSpelledAsItShould) {
    EXPECT_EQ(utf8Of(TEXT("A\u00E9\uAE40\U0001F4DE")), "A\xC3\xA9\xEA\xB9\x80\xF0\x9F\x93\x9E");
    EXPECT_EQ(utf8Of(TEXT("")), "");
    EXPECT_EQ(utf8Of(WStringView(TEXT("a\0b"), 3)), std::string("a\0b", 3));
}

TEST(Utf8, ALoneHalfOfAPairIsReplaced) {
    const std::string replacement = "\xEF\xBF\xBD";

    EXPECT_EQ(utf8Of(WString{0xD83D}), replacement);
    EXPECT_EQ(utf8Of(WString{0xDCDE}), replacement);
    EXPECT_EQ(utf8Of(WString{0xD83D, u'a'}), replacement + "a");
    EXPECT_EQ(utf8Of(WString{0xDCDE, 0xD83D}), replacement + replacement);
    EXPECT_EQ(utf8Of(WString{0xD83D, 0xD83D, 0xDCDE}), replacement + "\xF0\x9F\x93\x9E");
}

TEST(Utf8, IllFormedBytesAreRefused) {
    const char* const illFormed[] = {
        "\x80",  // a byte that continues nothing
        "\xC0\x80",
        "\xC1\xBF",  // overlong
        "\xE0\x80\x80",
        "\xE0\x9F\xBF",
        "\xF0\x80\x80\x80",
        "\xF0\x8F\xBF\xBF",
        "\xED\xA0\x80",
        "\xED\xBF\xBF",  // halves of a pair
        "\xF4\x90\x80\x80",
        "\xF5\x80\x80\x80",  // beyond the last character
        "\xFE",
        "\xFF",
        "\xC3",
        "\xE2\x82",
        "\xF0\x9F\x93",  // cut off
        "\xC3"
        "a",
        "\xE2\x82"
        "a",
        "a\xFF",
    };
    for (const char* bytes : illFormed) {
        EXPECT_FALSE(textOfUtf8(bytes).has_value()) << bytes;
        EXPECT_FALSE(isWellFormedToIcu(bytes)) << bytes;
    }
}

TEST(Utf8, ACharacterThatIsCutShortIsRefusedWhateverStandsBehindTheText) {
    const std::string_view whole = "\xEA\xB0\x80";

    EXPECT_TRUE(textOfUtf8(whole).has_value());
    EXPECT_FALSE(textOfUtf8(whole.substr(0, 2)).has_value());
}

RC_GTEST_PROP(Utf8, WhatIcuRefusesIsRefused, ()) {
    // Mostly bytes with a meaning of their own, so that well-formed texts come up too.
    const auto byte = rc::gen::oneOf(
        rc::gen::element<int>(0x41, 0x80, 0xBF, 0xC3, 0xE0, 0xA0, 0xED, 0x9F, 0xF0, 0x90, 0xF4, 0x8F, 0xC0),
        rc::gen::inRange(0, 256));
    std::string bytes;
    for (const int value : *rc::gen::container<std::vector<int>>(byte))
        bytes += static_cast<char>(value);

    const auto text = textOfUtf8(bytes);

    RC_ASSERT(text.has_value() == isWellFormedToIcu(bytes));
    if (text) RC_ASSERT(utf8Of(text->view()) == bytes);
}

RC_GTEST_PROP(Utf8, AnyUtf16GivesWellFormedBytes, ()) {
    const auto units = *rc::gen::container<std::vector<std::uint16_t>>(
        rc::gen::oneOf(rc::gen::element<std::uint16_t>(0xD83D, 0xDCDE, u'a'), rc::gen::arbitrary<std::uint16_t>()));

    RC_ASSERT(isWellFormedToIcu(utf8Of(WString(units.begin(), units.end()))));
}
