// The disk fails at every call that any operation makes, in each way.

#include <gtest/gtest.h>

#include "tests/recovery/IoFailures.h"

namespace recovery {
namespace {

TEST(IoFailureSoak, AtEveryCallLeavesAllOrNothing) {
    for (const auto operations : allOperations)
        failCallsToDisk(operations(), 1);
}

}  // namespace
}  // namespace recovery
