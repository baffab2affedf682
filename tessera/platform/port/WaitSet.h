#pragma once

#include "tessera/platform/port/Descriptor.h"

namespace Platform::port {

/// Descriptors that a thread sleeps on together. Any thread may add and remove.
class WaitSet {
public:
    /// Throws std::system_error when the system has no descriptor left.
    WaitSet();
    ~WaitSet();
    WaitSet(const WaitSet&) = delete;
    WaitSet& operator=(const WaitSet&) = delete;

    /// Readable while one of them is.
    int fd() const { return descriptor_.get(); }
    /// The descriptor is borrowed: remove it before it is closed. Throws std::system_error.
    void add(int fd);
    void remove(int fd);
    /// Sleeps until one of them is readable. False when the system cannot wait.
    [[nodiscard]] bool wait() const;

private:
    Descriptor descriptor_;
};

/// Whether something can be read from a descriptor now.
bool isReadable(int fd);

}  // namespace Platform::port
