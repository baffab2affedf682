#include <gtest/gtest.h>

#include "tests/recovery/PowerLoss.h"
#include "tests/support/TemporaryStore.h"

using power_loss::expectWholeOperationsAfterCuts;
using power_loss::Outcome;

TEST(PowerLoss, TakesNothingThatWasAcknowledgedWithFullDurability) {
    expectWholeOperationsAfterCuts({.cuts = 20, .cutsOfAStore = 5, .options = {}});
}

TEST(PowerLoss, TakesNothingThatWasAcknowledgedInACheckpoint) {
    const Outcome outcome =
        expectWholeOperationsAfterCuts({.cuts = 5, .cutsOfAStore = 5, .options = {}, .inCheckpoints = true});
    EXPECT_GE(outcome.inCheckpoint, 3u) << outcome;
}

TEST(PowerLoss, TakesTheLastOperationsAtMostWithNormalDurability) {
    const Outcome outcome =
        expectWholeOperationsAfterCuts({.cuts = 20, .cutsOfAStore = 5, .options = testing_support::quickOptions()});
    EXPECT_GT(outcome.foundOlder, 0u) << "the disk has to lose what nobody wrote through: " << outcome;
}

TEST(PowerLoss, TakesTheLastOperationsAtMostInACheckpoint) {
    const Outcome outcome = expectWholeOperationsAfterCuts(
        {.cuts = 5, .cutsOfAStore = 5, .options = testing_support::quickOptions(), .inCheckpoints = true});
    EXPECT_GE(outcome.inCheckpoint, 3u) << outcome;
}
