#include <string>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "tessera/database/PackedSearch.h"
#include "tessera/platform/base/Types.h"

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

}  // namespace
}  // namespace Database
