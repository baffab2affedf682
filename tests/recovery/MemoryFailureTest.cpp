// Memory is short at places where an operation wants some. These go over them in strides; the long test takes each.

#include <gtest/gtest.h>

#include "tests/recovery/MemoryFailures.h"

namespace recovery {
namespace {

constexpr int stride = 40;

class MemoryFailure : public testing::TestWithParam<OperationFamily> {};

TEST_P(MemoryFailure, LeavesAllOrNothingAndIsTold) {
    failAllocations(GetParam().operations(), stride);
}

INSTANTIATE_TEST_SUITE_P(Operations, MemoryFailure, testing::ValuesIn(operationFamilies),
                         [](const auto& family) { return family.param.name; });

}  // namespace
}  // namespace recovery
