#include <gtest/gtest.h>

#include "tests/phonebook/ManagersAtWork.h"

namespace PhoneBook {
namespace {

using namespace std::chrono_literals;
using testing_support::MountKind;
using testing_support::mountKinds;

class Managers : public testing::TestWithParam<MountKind> {};

TEST_P(Managers, OfTwoThreadsLeaveWhatTheySayTheyLeft) {
    testing_support::expectTwoThreadsLeaveWhatTheySay(GetParam(), 1s);
}

INSTANTIATE_TEST_SUITE_P(EitherStore, Managers, testing::ValuesIn(mountKinds),
                         [](const auto& kind) { return std::string(kind.param.name); });

}  // namespace
}  // namespace PhoneBook
