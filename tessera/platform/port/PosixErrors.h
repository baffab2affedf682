#pragma once

#include "tessera/platform/base/Types.h"

namespace Platform::port {

/// The platform error that stands for a value of errno; the only place where one becomes the other.
DWORD platformErrorOf(int systemError);

}  // namespace Platform::port
