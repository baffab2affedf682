// The disk fails at calls that an operation makes. These go over them in strides; the long test takes each.

#include <gtest/gtest.h>

#include "tests/recovery/IoFailures.h"

namespace recovery {
namespace {

constexpr int stride = 9;

class IoFailure : public testing::TestWithParam<OperationFamily> {};

TEST_P(IoFailure, LeavesAllOrNothingAndIsTold) {
    failCallsToDisk(GetParam().operations(), stride);
}

INSTANTIATE_TEST_SUITE_P(Operations, IoFailure, testing::ValuesIn(operationFamilies),
                         [](const auto& family) { return family.param.name; });

}  // namespace
}  // namespace recovery
