// Memory is short at every place where any operation wants some.

#include <gtest/gtest.h>

#include "tests/recovery/MemoryFailures.h"

namespace recovery {
namespace {

TEST(MemoryFailureSoak, AtEveryAllocationLeavesAllOrNothing) {
    for (const OperationFamily& family : operationFamilies)
        failAllocations(family.operations(), 1);
}

}  // namespace
}  // namespace recovery
