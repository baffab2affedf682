#include <gtest/gtest.h>

#include "tests/recovery/FollowWork.h"

namespace follow_test {
namespace {

TEST(Watchers, OneMakesOfAllChangesWhatTheyDetermine) {
    expectFollowed(500, 1);
}

TEST(Watchers, TwoAtOnceAgreeAndMakeNothingTwice) {
    expectFollowed(500, 2);
}

TEST(Watchers, OneThatIsKilledAndStartedAgainMissesAtMostWhatHappenedMeanwhile) {
    expectFollowedByOneThatIsKilled(500);
}

}  // namespace
}  // namespace follow_test
