#include <gtest/gtest.h>

#include "tests/recovery/FollowWork.h"

namespace follow_test {
namespace {

TEST(WatchersForLong, OneMakesOfAllChangesWhatTheyDetermine) {
    expectFollowed(10'000, 1);
}

TEST(WatchersForLong, TwoAtOnceAgreeAndMakeNothingTwice) {
    expectFollowed(10'000, 2);
}

TEST(WatchersForLong, OneThatIsKilledAndStartedAgainMissesAtMostWhatHappenedMeanwhile) {
    expectFollowedByOneThatIsKilled(10'000);
}

}  // namespace
}  // namespace follow_test
