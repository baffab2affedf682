// Memory is short at places where an operation wants some. These go over them in strides; the long test takes each.

#include <gtest/gtest.h>

#include "tests/recovery/MemoryFailures.h"

namespace recovery {
namespace {

constexpr int stride = 40;

TEST(MemoryFailure, OfTheLifecycleLeavesAllOrNothing) {
    failAllocations(lifecycleOperations(), stride);
}

TEST(MemoryFailure, OfRecordsLeavesAllOrNothing) {
    failAllocations(recordOperations(), stride);
}

TEST(MemoryFailure, OfSearchesIsTold) {
    failAllocations(searchOperations(), stride);
}

TEST(MemoryFailure, OfCallersIsTold) {
    failAllocations(callerOperations(), stride);
}

TEST(MemoryFailure, OfSpeedDialLeavesAllOrNothing) {
    failAllocations(speedDialOperations(), stride);
}

TEST(MemoryFailure, OfTheSpeedDialCacheLeavesAllOrNothing) {
    failAllocations(speedDialCacheOperations(), stride);
}

TEST(MemoryFailure, OfGroupsLeavesAllOrNothing) {
    failAllocations(groupOperations(), stride);
}

TEST(MemoryFailure, OfCallsLeavesAllOrNothing) {
    failAllocations(callOperations(), stride);
}

TEST(MemoryFailure, OfFollowingLeavesAllOrNothing) {
    failAllocations(followingOperations(), stride);
}

TEST(MemoryFailure, OfImportsLeavesAllOrNothing) {
    failAllocations(importOperations(), stride);
}

}  // namespace
}  // namespace recovery
