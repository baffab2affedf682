#pragma once

#include "tessera/platform/base/CString.h"
#include "tessera/platform/base/Results.h"
#include "tessera/platform/base/Types.h"

namespace Database {

/// Among the contacts one of whose telephone numbers reduces to exactly `number`, the first in name order: the one that
/// a scan for the number would meet first. Found by the store's own table of numbers, without the others being
/// looked at.
/// @return S_OK; S_FALSE when nobody has the number; E_FAIL when the store cannot be asked
[[nodiscard]] HRESULT contactWithNumber(const CString& number, DWORD& oid);

}  // namespace Database
