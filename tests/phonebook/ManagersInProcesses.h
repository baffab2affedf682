#pragma once

#include <chrono>

namespace testing_support {

/// The work of ManagersAtWork.h by two processes. No store may be mounted in this one, since it forks.
void expectTwoProcessesLeaveWhatTheySay(std::chrono::seconds howLong);

}  // namespace testing_support
