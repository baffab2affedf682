#include <iostream>

#include <gtest/gtest.h>

#include "tests/recovery/WorkKill.h"
#include "tests/support/TemporaryStore.h"

using work_test::expectOnlyWholeOperations;
using work_test::Killed;

TEST(WorkKillSoak, LeavesEveryOperationWholeOrAbsentThroughManyKills) {
    const Killed killed =
        expectOnlyWholeOperations({.kills = 1'600, .killsOfAStore = 20, .options = testing_support::quickOptions()});
    std::cout << killed << '\n';
    EXPECT_GT(killed.foundDone, 0u);
    EXPECT_GT(killed.foundAbsent, 0u);
}

TEST(WorkKillSoak, LeavesThemWholeOrAbsentWithFullDurabilityToo) {
    const Killed killed =
        expectOnlyWholeOperations({.kills = 400, .killsOfAStore = 20, .options = ObjectStore::Options()});
    std::cout << killed << '\n';
    EXPECT_GT(killed.foundDone, 0u);
    EXPECT_GT(killed.foundAbsent, 0u);
}
