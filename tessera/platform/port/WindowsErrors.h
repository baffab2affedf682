#pragma once

#include "tessera/platform/base/Types.h"

namespace Platform::port {

/// The platform error that stands for one of the system's; the only place where one becomes the other. Most are the
/// same numbers.
DWORD platformErrorOf(DWORD systemError);

/// The same for the error of the thread's last system call.
DWORD lastPlatformError();

}  // namespace Platform::port
