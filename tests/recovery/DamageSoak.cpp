#include <iostream>

#include "tests/recovery/Damage.h"
#include "tests/support/Seed.h"

namespace damage_test {
namespace {

TEST(DamageSoak, IsLivedWithOrSaidToBeThereAtTenThousandPlaces) {
    const unsigned seed = testing_support::seedOfTest();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    DamagedStore store(seed);
    std::cout << "bytes: " << changeBytes(store, 10'000, random) << '\n'
              << "cut: " << cutShort(store, 1'000, random) << '\n'
              << "pages: " << replacePages(store, 1'000, random) << '\n';
}

}  // namespace
}  // namespace damage_test
