#pragma once

#include "tessera/platform/base/Types.h"

namespace Platform {

/// The count of references to an object, which begins with the one that its maker holds. Not atomic: an
/// object belongs to one thread.
class ReferenceCount {
public:
    ULONG add() { return ++count_; }

    /// Deletes the object, which `this` is a part of, with the last reference.
    template <class Object>
    ULONG release(Object* object) {
        const ULONG left = --count_;
        if (left == 0) delete object;
        return left;
    }

private:
    ULONG count_ = 1;
};

}  // namespace Platform
