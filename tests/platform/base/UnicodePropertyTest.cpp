#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>
#include <unicode/ustring.h>

#include "tessera/platform/base/Unicode.h"
#include "tests/platform/base/IllFormedUtf8.h"

namespace {

bool isWellFormedToIcu(const std::string& bytes) {
    UErrorCode status = U_ZERO_ERROR;
    int32_t length = 0;
    u_strFromUTF8(nullptr, 0, &length, bytes.data(), static_cast<int32_t>(bytes.size()), &status);
    return status != U_INVALID_CHAR_FOUND;
}

}  // namespace

TEST(Utf8, IllFormedBytesAreIllFormedToIcuToo) {
    for (const char* bytes : illFormedUtf8)
        EXPECT_FALSE(isWellFormedToIcu(bytes)) << bytes;
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
