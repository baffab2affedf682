#pragma once

#include <array>

#include <gtest/gtest.h>

#include "tessera/database/UnicodeHandler.h"

namespace Database {

inline constexpr int firstSyllable = 0xAC00;
inline constexpr int lastSyllable = 0xD7A3;

/// What a character is taken apart into.
inline WString decomposed(WCHAR ch) {
    CString jamo = TEXT("left over");
    const int length = UnicodeHandler::decomposeHangul(jamo, ch);
    EXPECT_EQ(length, jamo.GetLength());
    return WString(jamo.view());
}

/// The same by way of a plain buffer.
inline WString decomposedIntoBuffer(WCHAR ch) {
    std::array<WCHAR, 5> buffer{};
    buffer.fill(u'~');
    const int length = UnicodeHandler::decomposeHangul(buffer.data(), ch);
    EXPECT_EQ(buffer[static_cast<std::size_t>(length)], u'\0');
    EXPECT_EQ(buffer[static_cast<std::size_t>(length) + 1], u'~');
    return {buffer.data(), static_cast<std::size_t>(length)};
}

}  // namespace Database
