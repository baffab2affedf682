#pragma once

#include <chrono>

#include "tests/support/MountKinds.h"

// Two managers at work on one store at once: until the time is up each inserts, updates and deletes contacts of its
// own. At the end the store must hold, contact by contact, what each of them says it has left there.

namespace testing_support {

/// Each of two threads works with its own manager.
void expectTwoThreadsLeaveWhatTheySay(const MountKind& kind, std::chrono::seconds howLong);

/// The same by two processes. No store may be mounted in this one, since it forks.
void expectTwoProcessesLeaveWhatTheySay(std::chrono::seconds howLong);

}  // namespace testing_support
