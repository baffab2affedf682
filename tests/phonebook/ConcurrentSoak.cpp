#include <gtest/gtest.h>

#include "tests/phonebook/ManagersAtWork.h"

namespace PhoneBook {
namespace {

using namespace std::chrono_literals;
using testing_support::MountKind;
using testing_support::mountKinds;

class ManagersForLong : public testing::TestWithParam<MountKind> {};

TEST_P(ManagersForLong, OfTwoThreadsLeaveWhatTheySayTheyLeft) {
    testing_support::expectTwoThreadsLeaveWhatTheySay(GetParam(), 10s);
}

INSTANTIATE_TEST_SUITE_P(EitherStore, ManagersForLong, testing::ValuesIn(mountKinds),
                         [](const auto& kind) { return std::string(kind.param.name); });

}  // namespace
}  // namespace PhoneBook
