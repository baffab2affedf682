#include <cstdint>
#include <string>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "tests/platform/engine/TextOrders.h"

namespace engine_testing {
namespace {

using Platform::SortKeys;
using Platform::SortOrder;

int sign(int number) {
    return int{number > 0} - int{number < 0};
}

template <typename Number>
void numbersOrderAs(Platform::PropertyKind kind, Number a, Number b) {
    const SortKeys keys("");
    const SortOrder order{property(1, kind), 0};
    const int compared = keyOf(keys, order, bytesOf(a)).compare(keyOf(keys, order, bytesOf(b)));
    RC_ASSERT(sign(compared) == int{a > b} - int{a < b});
}

RC_GTEST_PROP(SortKeys, ShortsOrderByValue, (std::int16_t a, std::int16_t b)) {
    numbersOrderAs(Platform::kindI2, a, b);
}

RC_GTEST_PROP(SortKeys, LongsOrderByValue, (std::int32_t a, std::int32_t b)) {
    numbersOrderAs(Platform::kindI4, a, b);
}

RC_GTEST_PROP(SortKeys, UnsignedShortsOrderByValue, (std::uint16_t a, std::uint16_t b)) {
    numbersOrderAs(Platform::kindUI2, a, b);
}

RC_GTEST_PROP(SortKeys, UnsignedLongsOrderByValue, (std::uint32_t a, std::uint32_t b)) {
    numbersOrderAs(Platform::kindUI4, a, b);
}

RC_GTEST_PROP(SortKeys, TimesOrderByValue, (std::uint64_t a, std::uint64_t b)) {
    numbersOrderAs(Platform::kindFileTime, a, b);
}

RC_GTEST_PROP(SortKeys, RealsOrderByValue, (double a, double b)) {
    numbersOrderAs(Platform::kindR8, a, b);
}

RC_GTEST_PROP(SortKeys, TextKeysAreEqualOnlyWhenTheTextsAre, ()) {
    const SortKeys keys("ko_KR");
    const auto unit = rc::gen::element<WCHAR>(u'a', u'A', u'e', u'\u0301', u'\u00e9', u'가', u'ᄀ', u'ᅡ', u'\xD800',
                                              u'\xDC00', u'\0', u'\u200b', u' ');
    const auto text = rc::gen::container<WString>(unit);
    const auto a = *text;
    const auto b = *text;
    for (const SortOrder& order : {byText, byTextWithoutCase}) {
        RC_ASSERT((keyOf(keys, order, bytesOf(a)) == keyOf(keys, order, bytesOf(b))) == (a == b));
    }
}

}  // namespace
}  // namespace engine_testing
