#pragma once

#include <string>

#include "tessera/Export.h"
#include "tessera/platform/base/Types.h"

namespace Platform {

inline constexpr int reducedNumberBuffer = 33;  ///< 32 characters of a reduced number and the terminator.

/// Reduces a telephone number, as typed or received, to the text in which numbers are compared: at most 32
/// characters of digits and P, T, *, #. A leading + and the country code that follows it, up to a space or a
/// dash, become a single 0; without either, the whole text does. `out` holds reducedNumberBuffer characters.
/// A null `in` is the empty text.
TESSERA_API void reduceNumber(const WCHAR* in, WCHAR* out);

/// The same as a text of its own, which is ASCII.
std::string reducedNumber(const WCHAR* number);

}  // namespace Platform
