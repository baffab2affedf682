#include <string>

#include <gtest/gtest.h>

#include "tessera/platform/base/Unicode.h"
#include "tests/platform/base/IllFormedUtf8.h"
#include "tests/platform/base/Printing.h"

namespace {

WString utf16Of(char32_t ch) {
    if (ch < 0x10000) return {static_cast<WCHAR>(ch)};
    return {static_cast<WCHAR>(0xD7C0 + (ch >> 10)), static_cast<WCHAR>(0xDC00 + (ch & 0x3FF))};
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
    for (const char* bytes : illFormedUtf8)
        EXPECT_FALSE(textOfUtf8(bytes).has_value()) << bytes;
}

TEST(Utf8, ACharacterThatIsCutShortIsRefusedWhateverStandsBehindTheText) {
    const std::string_view whole = "\xEA\xB0\x80";

    EXPECT_TRUE(textOfUtf8(whole).has_value());
    EXPECT_FALSE(textOfUtf8(whole.substr(0, 2)).has_value());
}
