// The disk fails at every call that any operation makes, in each way.

#include <gtest/gtest.h>

#include "tests/recovery/IoFailures.h"

namespace recovery {
namespace {

TEST(IoFailureSoak, AtEveryCallLeavesAllOrNothing) {
    for (const OperationFamily& family : operationFamilies)
        failCallsToDisk(family.operations(), 1);
}

}  // namespace
}  // namespace recovery
