#include "Arguments.h"

#include <charconv>
#include <string_view>
#include <system_error>

#include "Failure.h"
#include "tessera/platform/base/Unicode.h"

namespace Tool {

CString textArgument(const std::string& name, const std::string& value) {
    const auto text = textOfUtf8(value);
    if (!text) throw wrongUsage(name + " is not UTF-8 text");
    return *text;
}

std::optional<DWORD> numberOf(std::string_view text) {
    std::string_view digits = text;
    const bool hexadecimal = digits.starts_with("0x") || digits.starts_with("0X");
    if (hexadecimal) digits.remove_prefix(2);
    DWORD number = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), number, hexadecimal ? 16 : 10);
    if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
    return number;
}

DWORD numberArgument(const std::string& name, const std::string& value) {
    const auto number = numberOf(value);
    if (!number) throw wrongUsage(name + " wants a number from 0 to 4294967295, not \"" + value + "\"");
    return *number;
}

}  // namespace Tool
