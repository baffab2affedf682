#pragma once

#include <new>

#include "tessera/platform/base/Results.h"
#include "tessera/platform/objectstore/Session.h"

namespace Platform {

/// Makes `error` the thread's last one and answers `failure`, so that a call can fail in one step.
template <class Answer>
Answer failWith(DWORD error, Answer failure) {
    SetLastError(error);
    return failure;
}

/// Runs the body of an exported call: no exception passes, it becomes `failure` and a last error. What the call was
/// to do is then missing, so nothing is kept of the batch that it belongs to.
template <class Answer, class Body>
Answer guarded(Answer failure, Body&& body) noexcept {
    try {
        return body();
    } catch (const std::bad_alloc&) {
        Session::giveUpBatch(ERROR_NOT_ENOUGH_MEMORY);
        return failWith(ERROR_NOT_ENOUGH_MEMORY, failure);
    } catch (...) {
        Session::giveUpBatch(ERROR_GEN_FAILURE);
        return failWith(ERROR_GEN_FAILURE, failure);
    }
}

}  // namespace Platform
