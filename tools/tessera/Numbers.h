#pragma once

#include <vector>

#include "tessera/platform/base/CString.h"

namespace Tool {

/// The reduced forms under which a phone book may hold a number as received, likeliest first: as the phone
/// book reduces it once its country calling code is separated from the rest, then with and without the
/// leading zero. Empty when the text holds nothing of a number.
std::vector<CString> formsOf(const CString& received);

}  // namespace Tool
