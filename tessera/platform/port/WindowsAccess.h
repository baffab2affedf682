#pragma once

#include "tessera/platform/port/WindowsSystem.h"

// Who may use a file: the system's rules of access.

namespace Platform::port {

/// For the user, the system and its administrators only, and so for what is made inside. Null when that cannot be said.
SECURITY_ATTRIBUTES* privateAttributes();

/// Whether a folder of that owner and with these rules lets anybody else make, rename, remove or write files in it;
/// true as well when that cannot be told.
bool letsOthersWrite(PSECURITY_DESCRIPTOR descriptor);

}  // namespace Platform::port
