#pragma once

#include <compare>
#include <string>
#include <string_view>

#include "tessera/platform/base/CString.h"
#include "tessera/platform/base/Types.h"

namespace Platform {

// The values of a packed record: bytes, little-endian; texts are UTF-16 code units without a terminator.

FILETIME fileTimeOfPacked(std::string_view bytes);
std::string packedFileTime(const FILETIME& time);

/// How the text compares, in upper case and code unit by code unit, with one in upper case already.
std::strong_ordering compareInUpperCase(std::string_view bytes, WStringView upper);

}  // namespace Platform
