#include <gtest/gtest.h>

#include "tests/recovery/WorkKill.h"
#include "tests/support/TemporaryStore.h"

using work_test::expectOnlyWholeOperations;

TEST(WorkKill, LeavesEveryOperationWholeOrAbsentAndLosesNoneThatWasAcknowledged) {
    expectOnlyWholeOperations({.kills = 50, .killsOfAStore = 4, .options = testing_support::quickOptions()});
}

TEST(WorkKill, LeavesThemWholeOrAbsentWithFullDurabilityToo) {
    expectOnlyWholeOperations({.kills = 10, .killsOfAStore = 4, .options = ObjectStore::Options()});
}
