#pragma once

#include "tessera/platform/port/Descriptor.h"

namespace Platform::port {

/// A flag that a thread can sleep on and that any thread can raise. Raising and clearing do not block.
class Wake {
public:
    /// Throws std::system_error when the system has no descriptor left.
    Wake();

    /// Readable while the flag is up.
    int fd() const { return descriptor_.get(); }
    void wake();
    void clear();

private:
    Descriptor descriptor_;
};

}  // namespace Platform::port
