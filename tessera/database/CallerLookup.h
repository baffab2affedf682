#pragma once

#include "tessera/platform/base/CString.h"
#include "tessera/platform/base/Types.h"

namespace Database {

/// Among the contacts one of whose telephone numbers reduces to exactly `number`, the first in name order: the one that
/// a scan for the number would meet first. Found by the store's own table of numbers, without the others being
/// looked at. 0 when nobody has it, or the store cannot be read.
DWORD contactWithNumber(const CString& number);

}  // namespace Database
