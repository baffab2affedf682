#pragma once

#include <new>
#include <utility>

#include "tessera/platform/base/Results.h"
#include "tessera/platform/objectstore/ObjectStore.h"

namespace PhoneBook {

/// Runs an operation of the manager: memory that is short becomes a result code, and nothing is kept of the unit that
/// the operation belongs to.
template <class Body>
HRESULT operation(Body&& body) noexcept {
    try {
        return std::forward<Body>(body)();
    } catch (const std::bad_alloc&) {
        ObjectStoreBatch::giveUp();
        return E_OUTOFMEMORY;
    } catch (...) {
        ObjectStoreBatch::giveUp();
        return E_FAIL;
    }
}

/// The same for an operation that writes: all that it writes becomes durable, and visible to others, at
/// its end. E_FAIL when the store cannot be had for writing, or cannot keep what was written: `forget` then
/// takes back what the caller was told of it. So it does when memory is short.
template <class Body, class Forget>
HRESULT writingOperation(Body&& body, Forget&& forget) noexcept {
    ObjectStoreBatch batch;
    if (!batch.begun()) return E_FAIL;
    const HRESULT result = operation(std::forward<Body>(body));
    if (batch.end()) return result;
    std::forward<Forget>(forget)();
    return result == E_OUTOFMEMORY ? result : E_FAIL;
}

template <class Body>
HRESULT writingOperation(Body&& body) noexcept {
    return writingOperation(std::forward<Body>(body), [] {});
}

/// The same for an operation that keeps `state` in memory in step with what it writes: when that is not kept, the
/// state is as before.
template <class State, class Body>
HRESULT writingOperationOn(State& state, Body&& body) noexcept {
    return operation([&] {
        State before = state;
        return writingOperation(std::forward<Body>(body), [&] { state = std::move(before); });
    });
}

}  // namespace PhoneBook
