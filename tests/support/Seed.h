#pragma once

#include <random>

#include <gtest/gtest.h>

namespace testing_support {

/// What a random test begins with, to be shown when it fails: --gtest_random_seed=... repeats it.
inline unsigned seedOfTest() {
    const int told = testing::GTEST_FLAG(random_seed);
    constexpr unsigned most = 99'999;  // the largest that the flag takes
    return told > 0 ? static_cast<unsigned>(told) : 1 + std::random_device()() % most;
}

}  // namespace testing_support
