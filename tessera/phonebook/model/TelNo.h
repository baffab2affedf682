#pragma once

#include "tessera/platform/base/CString.h"
#include "tessera/platform/base/Types.h"

namespace PhoneBook {

inline constexpr int nCNIPBufferLength_ = 33;  ///< 32 characters of a canonical number and the terminator.

/// Reduces a telephone number, as typed or received, to the canonical text in which numbers are stored and
/// compared: at most 32 characters of digits and P, T, *, #. A leading + and the country code that follows
/// it, up to a space or a dash, become a single 0; without either, the whole text does. `out` holds nCNIPBufferLength_
/// characters. A null `in` is the empty text.
void makeCNIP(const WCHAR* in, WCHAR* out);
[[nodiscard]] CString makeCNIP(const WCHAR* in);

/// Puts dashes into a canonical number: behind the area code, which is 02 or three digits that begin with
/// 0, and before the last group. A number of fewer than five characters stays as it is.
[[nodiscard]] CString makeTelNoStrFromCID(const WCHAR* cid);

}  // namespace PhoneBook
