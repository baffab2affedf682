#pragma once

#include <optional>

#include "tessera/phonebook/model/PBRecord.h"
#include "tessera/platform/base/CString.h"
#include "tessera/platform/base/Types.h"

namespace Tool {

/// A contact's categories once its group has changed from one to another (the same, or an empty one, as may
/// be): the group first, then its other categories in their order, none of them twice.
CString shortestCategories(WStringView categories, const CString& oldGroup, const CString& newGroup);

/// A contact's categories with one of them renamed, or taken out when `newName` is empty, in their shortest
/// form; nothing when the contact does not carry it.
std::optional<CString> renamedCategory(WStringView categories, const CString& oldName, const CString& newName);

/// Writes a contact's categories through the contacts model, and its notes unless they are null. False when the store
/// failed.
[[nodiscard]] bool writeCategories(DWORD oid, const CString& categories, const CString* notes = nullptr);

/// An update by the phone book puts the group in front of the categories that there are: whether that fits.
bool hasRoomForUpdate(const PhoneBook::PBRecord& before, const CString& newGroup);

/// Behind such an update: brings the categories that the contact had before into their shortest form again. False
/// when the store failed.
[[nodiscard]] bool restoreCategories(DWORD oid, const PhoneBook::PBRecord& before, const CString& newGroup);

}  // namespace Tool
