#pragma once

#include <new>

#include "tessera/platform/base/Results.h"

namespace Platform {

/// Makes `error` the thread's last one and answers `failure`, so that a call can fail in one step.
template <class Answer>
Answer failWith(DWORD error, Answer failure) {
    SetLastError(error);
    return failure;
}

/// Runs the body of an exported call: no exception passes, it becomes `failure` and a last error.
template <class Answer, class Body>
Answer guarded(Answer failure, Body&& body) noexcept {
    try {
        return body();
    } catch (const std::bad_alloc&) {
        return failWith(ERROR_NOT_ENOUGH_MEMORY, failure);
    } catch (...) {
        return failWith(ERROR_GEN_FAILURE, failure);
    }
}

}  // namespace Platform
