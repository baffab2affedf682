#include <iostream>

#include <gtest/gtest.h>

#include "tests/recovery/PowerLoss.h"
#include "tests/support/TemporaryStore.h"

using power_loss::expectWholeOperationsAfterCuts;
using power_loss::Outcome;

TEST(PowerLossSoak, TakesNothingThatWasAcknowledgedWithFullDurability) {
    const Outcome outcome = expectWholeOperationsAfterCuts({.cuts = 600, .cutsOfAStore = 20, .options = {}});
    std::cout << outcome << '\n';
    EXPECT_GT(outcome.foundDone, 0u);
}

TEST(PowerLossSoak, TakesNothingThatWasAcknowledgedInACheckpoint) {
    const Outcome outcome =
        expectWholeOperationsAfterCuts({.cuts = 100, .cutsOfAStore = 10, .options = {}, .inCheckpoints = true});
    std::cout << outcome << '\n';
    EXPECT_GE(outcome.inCheckpoint, 80u);
}

TEST(PowerLossSoak, TakesTheLastOperationsAtMostWithNormalDurability) {
    const Outcome outcome =
        expectWholeOperationsAfterCuts({.cuts = 600, .cutsOfAStore = 20, .options = testing_support::quickOptions()});
    std::cout << outcome << '\n';
    EXPECT_GT(outcome.foundOlder, 0u);
}

TEST(PowerLossSoak, TakesTheLastOperationsAtMostInACheckpoint) {
    const Outcome outcome = expectWholeOperationsAfterCuts(
        {.cuts = 100, .cutsOfAStore = 10, .options = testing_support::quickOptions(), .inCheckpoints = true});
    std::cout << outcome << '\n';
    EXPECT_GE(outcome.inCheckpoint, 80u);
}
