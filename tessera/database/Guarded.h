#pragma once

#include <utility>

#include "tessera/platform/objectstore/ObjectStore.h"

namespace Database {

/// Runs the body of an exported operation: what it throws (memory is short) ends here and becomes `failure`. What the
/// operation was to do is then missing, so nothing is kept of the batch that it belongs to.
template <class Answer, class Body>
Answer guarded(Answer failure, Body&& body) noexcept {
    try {
        return std::forward<Body>(body)();
    } catch (...) {
        ObjectStoreBatch::giveUp();
        return failure;
    }
}

/// Null when memory is short.
template <class Object, class... Arguments>
Object* newOrNull(Arguments&&... arguments) {
    return guarded<Object*>(nullptr, [&] { return new Object(std::forward<Arguments>(arguments)...); });
}

}  // namespace Database
