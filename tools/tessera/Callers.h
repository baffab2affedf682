#pragma once

#include <optional>

#include "Records.h"

namespace Tool {

/// The first contact with just this reduced number, as the phone book itself identifies a caller.
std::optional<Contact> callerWith(PhoneBook::PhoneBookDBMgr& manager, const CString& reduced);

}  // namespace Tool
