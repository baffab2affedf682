#pragma once

#include "tessera/platform/port/Descriptor.h"

// Events of the system as flags that one can sleep on, alone or several together: while one of a set's members is up,
// the event of the set is. The system itself can wait for several events, but has none that stands for several.

namespace Platform::port {

/// A new event, down. Throws std::system_error.
Descriptor makeEvent();

/// Both are safe on any thread. Of an event that is up already, or down, nothing changes.
void raise(int event) noexcept;
void lower(int event) noexcept;

/// Throws std::bad_alloc.
void addToSet(int set, int event);
void removeFromSet(int set, int event) noexcept;
/// To be called before the event of a set is closed.
void forgetSet(int set) noexcept;

/// Sleeps until it is up, for so long at most; false when it is not.
bool awaitEvent(int event, unsigned long milliseconds) noexcept;

}  // namespace Platform::port
