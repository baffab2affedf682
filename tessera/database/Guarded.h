#pragma once

#include <utility>

namespace Database {

/// Runs the body of an exported operation: what it throws (memory is short) ends here and becomes `failure`.
template <class Answer, class Body>
Answer guarded(Answer failure, Body&& body) noexcept {
    try {
        return std::forward<Body>(body)();
    } catch (...) {
        return failure;
    }
}

}  // namespace Database
