#include "tessera/platform/base/Results.h"

namespace {
thread_local DWORD lastError_ = ERROR_SUCCESS;
}  // namespace

DWORD GetLastError() {
    return lastError_;
}

void SetLastError(DWORD error) {
    lastError_ = error;
}
