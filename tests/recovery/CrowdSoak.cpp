#include <iostream>

#include <gtest/gtest.h>

#include "tests/recovery/Crowd.h"
#include "tests/support/TemporaryStore.h"

using crowd_test::expectNothingLostInTheCrowd;
using crowd_test::Figures;

TEST(CrowdSoak, LosesNothingOfWhatEightProgramsWereToldInTwoThousandCallsEach) {
    const Figures figures = expectNothingLostInTheCrowd(
        {.programs = 8, .operationsOfEach = 2'000, .options = testing_support::quickOptions()});
    std::cout << figures << '\n';
    EXPECT_EQ(16'000u, figures.calls);
    EXPECT_EQ(0u, figures.refused) << "ten seconds are enough for a turn: " << figures;
}
