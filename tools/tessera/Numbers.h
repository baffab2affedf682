#pragma once

#include <cstddef>
#include <vector>

#include "TextRange.h"
#include "tessera/platform/base/CString.h"

namespace Tool {

/// The reduced forms under which a phone book may hold a number as received, likeliest first: as the phone
/// book reduces it once its country calling code is separated from the rest, then with and without the
/// leading zero. Empty when the text holds nothing of a number.
std::vector<CString> formsOf(const CString& received);

/// Where the characters that count of a number, as the phone book reduces it, are these: from the first to the last of
/// them. Not of the 0 that a plus sign and a country calling code become, which stands nowhere in the number.
std::vector<TextRange> placesOf(WStringView sought, WStringView number);

/// Where a number that begins with a plus sign lacks the space behind its country calling code without which
/// the phone book would lose digits of it; npos for every other number.
std::size_t missingSeparator(WStringView number);

/// The number as typed, with that space.
CString withSeparatedCode(const CString& number);

}  // namespace Tool
