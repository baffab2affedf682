#pragma once

#include <string>
#include <string_view>

#include "tessera/platform/base/CString.h"
#include "tessera/platform/base/Types.h"

namespace Tool {

/// A group as the phone book writes it into the categories.
CString asCategory(const CString& group);

/// A contact's categories once its group has changed from one to another (the same, or an empty one, as may
/// be): the group first, then its other categories in their order, none of them twice.
CString shortestCategories(std::u16string_view categories, const CString& oldGroup, const CString& newGroup);

/// Writes a contact's categories through the contacts model. False when the store failed.
[[nodiscard]] bool writeCategories(DWORD oid, const CString& categories);

}  // namespace Tool
