// The disk fails at calls that an operation makes. These go over them in strides; the long test takes each.

#include <gtest/gtest.h>

#include "tests/recovery/IoFailures.h"

namespace recovery {
namespace {

constexpr int stride = 9;

TEST(IoFailure, OfTheLifecycleLeavesAllOrNothing) {
    failCallsToDisk(lifecycleOperations(), stride);
}

TEST(IoFailure, OfRecordsLeavesAllOrNothing) {
    failCallsToDisk(recordOperations(), stride);
}

TEST(IoFailure, OfSearchesIsTold) {
    failCallsToDisk(searchOperations(), stride);
}

TEST(IoFailure, OfCallersIsTold) {
    failCallsToDisk(callerOperations(), stride);
}

TEST(IoFailure, OfSpeedDialLeavesAllOrNothing) {
    failCallsToDisk(speedDialOperations(), stride);
}

TEST(IoFailure, OfTheSpeedDialCacheLeavesAllOrNothing) {
    failCallsToDisk(speedDialCacheOperations(), stride);
}

TEST(IoFailure, OfGroupsLeavesAllOrNothing) {
    failCallsToDisk(groupOperations(), stride);
}

TEST(IoFailure, OfCallsLeavesAllOrNothing) {
    failCallsToDisk(callOperations(), stride);
}

TEST(IoFailure, OfFollowingLeavesAllOrNothing) {
    failCallsToDisk(followingOperations(), stride);
}

TEST(IoFailure, OfImportsLeavesAllOrNothing) {
    failCallsToDisk(importOperations(), stride);
}

}  // namespace
}  // namespace recovery
