#include <chrono>

#include <gtest/gtest.h>

#include "tests/phonebook/ManagersInProcesses.h"

namespace PhoneBook {
namespace {

using namespace std::chrono_literals;

TEST(ManagersOfTwoProcesses, LeaveWhatTheySayTheyLeft) {
    testing_support::expectTwoProcessesLeaveWhatTheySay(1s);
}

}  // namespace
}  // namespace PhoneBook
