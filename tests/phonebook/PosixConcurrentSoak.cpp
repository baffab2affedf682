#include <chrono>

#include <gtest/gtest.h>

#include "tests/phonebook/ManagersInProcesses.h"

namespace PhoneBook {
namespace {

using namespace std::chrono_literals;

TEST(ManagersOfTwoProcessesForLong, LeaveWhatTheySayTheyLeft) {
    testing_support::expectTwoProcessesLeaveWhatTheySay(10s);
}

}  // namespace
}  // namespace PhoneBook
