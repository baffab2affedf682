#include "tessera/phonebook/model/NumberText.h"

#include <algorithm>
#include <limits>

namespace PhoneBook {
namespace {

constexpr std::uint64_t beyondAnyLong = std::uint64_t{1} << 32;

struct Number {
    bool negative = false;
    std::uint64_t magnitude = 0;  // held at `beyondAnyLong`
};

bool isSpace(WCHAR ch) {
    return ch == u' ' || (ch >= u'\t' && ch <= u'\r');
}

// The value of a digit in any base up to 16; 16 for what is no digit.
unsigned digitOf(WCHAR ch) {
    if (ch >= u'0' && ch <= u'9') return ch - u'0';
    const unsigned lower = ch | 0x20u;
    return lower >= u'a' && lower <= u'f' ? lower - u'a' + 10 : 16;
}

Number readNumber(const WCHAR* text) {
    Number number;
    if (text == nullptr) return number;
    while (isSpace(*text))
        ++text;
    number.negative = *text == u'-';
    if (*text == u'-' || *text == u'+') ++text;

    unsigned base = *text == u'0' ? 8 : 10;
    if (text[0] == u'0' && (text[1] == u'x' || text[1] == u'X') && digitOf(text[2]) < 16) {
        base = 16;
        text += 2;
    }
    for (unsigned digit = digitOf(*text); digit < base; digit = digitOf(*++text)) {
        number.magnitude = std::min(number.magnitude * base + digit, beyondAnyLong);
    }
    return number;
}

}  // namespace

LONG wcstolText(const WCHAR* text) {
    const Number number = readNumber(text);
    const auto magnitude = static_cast<std::int64_t>(number.magnitude);
    const std::int64_t value = number.negative ? -magnitude : magnitude;
    return static_cast<LONG>(
        std::clamp<std::int64_t>(value, std::numeric_limits<LONG>::min(), std::numeric_limits<LONG>::max()));
}

DWORD wcstoulText(const WCHAR* text) {
    const Number number = readNumber(text);
    if (number.magnitude == beyondAnyLong) return std::numeric_limits<DWORD>::max();
    const auto magnitude = static_cast<DWORD>(number.magnitude);
    return number.negative ? DWORD{0} - magnitude : magnitude;
}

}  // namespace PhoneBook
