#pragma once

#include "tessera/platform/base/Types.h"

namespace PhoneBook {

// Numbers from text as the C library's wide functions read them with base 0, for a 32-bit long: leading
// white space, a sign, then 0x and hexadecimal digits, 0 and octal digits, or decimal digits, as far as
// they go. No digits give 0. Null is the empty text.

/// Held at the largest or smallest value when the number is beyond it.
[[nodiscard]] LONG wcstolText(const WCHAR* text);
/// Held at 0xFFFFFFFF when the number is beyond it; a minus sign negates what was read.
[[nodiscard]] DWORD wcstoulText(const WCHAR* text);

}  // namespace PhoneBook
