#include "tessera/database/schema/PropText.h"

#include <array>
#include <charconv>
#include <concepts>
#include <limits>
#include <string>
#include <string_view>

namespace Database {
namespace {

CString ofAscii(std::string_view characters) {
    return CString(WString(characters.begin(), characters.end()));
}

CString decimal(int value) {
    return ofAscii(std::to_string(value));
}

template <std::unsigned_integral Number>
std::string hexDigits(Number value, std::size_t leastDigits) {
    std::array<char, 2 * sizeof(Number)> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value, 16).ptr;
    const std::string shown(digits.data(), end);
    return shown.size() >= leastDigits ? shown : std::string(leastDigits - shown.size(), '0') + shown;
}

CString timeText(const FILETIME& time) {
    return ofAscii("0x" + hexDigits(time.dwHighDateTime, 8) + ":0x" + hexDigits(time.dwLowDateTime, 8));
}

CString sixDecimals(double value) {
    constexpr std::size_t longest = std::numeric_limits<double>::max_exponent10 + 10;  // sign, point, decimals
    std::array<char, longest> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, 6).ptr;
    return ofAscii({text.data(), end});
}

}  // namespace

CString renderText(const CCeDBProp& prop) {
    if (prop.isEmpty()) return {};
    switch (prop.getType()) {
        case CCeDBProp::typeI2:
            return decimal(prop.getI2());
        case CCeDBProp::typeUI2:
            return ofAscii("0x" + hexDigits(prop.getUI2(), 4));
        case CCeDBProp::typeI4:
            return decimal(prop.getI4());
        case CCeDBProp::typeUI4:
            return ofAscii("0x" + hexDigits(prop.getUI4(), 8));
        case CCeDBProp::typeFileTime:
            return timeText(prop.getFileTime());
        case CCeDBProp::typeText:
            return prop.getText();
        case CCeDBProp::typeBlob:
            return ofAscii(hexDigits(reinterpret_cast<std::uintptr_t>(prop.getBlob().data()), 8));
        case CCeDBProp::typeBool:
            return decimal(prop.getBool() ? 1 : 0);
        case CCeDBProp::typeR8:
            return sixDecimals(prop.getR8());
    }
    return {};
}

}  // namespace Database
