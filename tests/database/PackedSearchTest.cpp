#include <string>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "tessera/database/PackedSearch.h"

namespace Database {
namespace {

/// Few characters, so that keys stand in texts, and texts of several blocks.
template <class Char>
std::basic_string<Char> textOf(std::size_t atMost) {
    const auto length = *rc::gen::inRange<std::size_t>(0, atMost + 1);
    const auto character = rc::gen::element(Char{0}, static_cast<Char>('0'), static_cast<Char>('1'));
    return *rc::gen::container<std::basic_string<Char>>(length, character);
}

template <class Char>
void findsWhatTheLibraryFinds() {
    const std::basic_string<Char> text = textOf<Char>(300);
    const std::basic_string<Char> key = textOf<Char>(8);
    const std::basic_string_view<Char> packed = text;
    for (std::size_t from = 0; from <= text.size() + 1; ++from)
        RC_ASSERT(findInPacked<Char>(packed, key, from) == packed.find(key, from));
}

RC_GTEST_PROP(PackedSearch, FindsBytesWhereTheStandardLibraryDoes, ()) {
    findsWhatTheLibraryFinds<char>();
}

RC_GTEST_PROP(PackedSearch, FindsCodeUnitsWhereTheStandardLibraryDoes, ()) {
    findsWhatTheLibraryFinds<WCHAR>();
}

TEST(PackedSearch, FindsAKeyInEveryPlaceOfALongText) {
    const std::string key = "010-1234";
    for (std::size_t at = 0; at < 200; ++at) {
        const std::string text = std::string(at, '0') + key + std::string(200 - at, '0');
        EXPECT_EQ(findInPacked<char>(text, key), at);
    }
}

}  // namespace
}  // namespace Database
