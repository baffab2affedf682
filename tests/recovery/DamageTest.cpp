#include <iostream>

#include "tests/recovery/Damage.h"
#include "tests/support/Seed.h"

namespace damage_test {
namespace {

class Damage : public testing::Test {
protected:
    const unsigned seed = testing_support::seedOfTest();
    const testing::ScopedTrace trace{__FILE__, __LINE__, "seed " + std::to_string(seed)};
    std::mt19937 random{seed};
    DamagedStore store{seed};
};

TEST_F(Damage, OfOneByteIsLivedWithOrSaidToBeThere) {
    const Outcomes outcomes = changeBytes(store, 250, random);
    std::cout << outcomes << '\n';
    // What is in no use, and a text that is sorted by nothing, may be anything.
    EXPECT_GT(outcomes.found, 0u);
    EXPECT_EQ(outcomes.recovered, outcomes.tried);
}

TEST_F(Damage, OfAFileCutShortIsFound) {
    const Outcomes outcomes = cutShort(store, 40, random);
    std::cout << outcomes << '\n';
    EXPECT_GT(outcomes.recovered, 0u);
}

TEST_F(Damage, OfAPageIsFound) {
    const Outcomes outcomes = replacePages(store, 60, random);
    std::cout << outcomes << '\n';
    // A page that is in no use may be anything, and some stores have many.
    EXPECT_GT(outcomes.found, 0u);
    EXPECT_GT(outcomes.recovered, 0u);
}

}  // namespace
}  // namespace damage_test
