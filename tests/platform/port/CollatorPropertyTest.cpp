#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>
#include <unicode/ucol.h>

#include "tessera/platform/port/Locale.h"

using Platform::port::Collator;

namespace {

WString textOf(const std::vector<std::uint16_t>& units) {
    return {units.begin(), units.end()};
}

int signOf(int value) {
    return (value > 0) - (value < 0);
}

/// What ICU's comparison, which makes no keys, says.
int comparedByIcu(const char* locale, UCollationStrength strength, const WString& a, const WString& b) {
    UErrorCode status = U_ZERO_ERROR;
    UCollator* collator = ucol_open(locale, &status);
    ucol_setStrength(collator, strength);
    const UCollationResult result =
        ucol_strcoll(collator, a.data(), static_cast<int32_t>(a.size()), b.data(), static_cast<int32_t>(b.size()));
    ucol_close(collator);
    return result;
}

// Letters that a locale may order in its own way, cases, combining marks, Hangul, a lone surrogate, a zero.
rc::Gen<std::vector<std::uint16_t>> arbitraryUnits() {
    return rc::gen::container<std::vector<std::uint16_t>>(
        rc::gen::oneOf(rc::gen::element<std::uint16_t>(u'a', u'A', u'z', u'\u00E5', u'\u00C4', u'\u0301', u'1', u' ',
                                                       u'\uAC00', u'\uB098', u'\u4E00', 0xD800, 0),
                       rc::gen::arbitrary<std::uint16_t>()));
}

}  // namespace

RC_GTEST_PROP(Collator, KeysCompareAsTheTextsDo, ()) {
    const auto a = textOf(*arbitraryUnits());
    const auto b = textOf(*arbitraryUnits());
    const bool ignoreCase = *rc::gen::arbitrary<bool>();
    const char* locale = *rc::gen::element("", "ko_KR", "sv_SE", "da_DK");
    const Collator collator(locale, ignoreCase);

    const int byKey = signOf(collator.sortKey(a).compare(collator.sortKey(b)));

    RC_ASSERT(byKey == comparedByIcu(locale, ignoreCase ? UCOL_SECONDARY : UCOL_TERTIARY, a, b));
}

RC_GTEST_PROP(Collator, KeysHoldNoZeroByte, ()) {
    const auto text = textOf(*arbitraryUnits());
    const Collator collator("ko_KR", *rc::gen::arbitrary<bool>());

    RC_ASSERT(collator.sortKey(text).find('\0') == std::string::npos);
}
