#include <poll.h>
#include <thread>

#include <gtest/gtest.h>

#include "tessera/platform/port/Wake.h"

using Platform::port::Wake;

namespace {

bool isReadable(const Wake& wake) {
    pollfd watched{wake.fd(), POLLIN, 0};
    return ::poll(&watched, 1, 0) == 1;
}

}  // namespace

TEST(Wake, IsReadableWhileItIsUp) {
    Wake wake;
    EXPECT_FALSE(isReadable(wake));

    wake.wake();
    EXPECT_TRUE(isReadable(wake));

    wake.clear();
    EXPECT_FALSE(isReadable(wake));
}

TEST(Wake, IsAFlagAndNotACount) {
    Wake wake;
    wake.wake();
    wake.wake();

    wake.clear();
    wake.clear();

    EXPECT_FALSE(isReadable(wake));
}

TEST(Wake, WaitingLeavesItUp) {
    Wake wake;
    wake.wake();

    EXPECT_TRUE(wake.wait());
    EXPECT_TRUE(wake.wait());
    EXPECT_TRUE(isReadable(wake));
}

TEST(Wake, AnotherThreadEndsTheSleep) {
    Wake wake;
    std::thread other([&] { wake.wake(); });

    EXPECT_TRUE(wake.wait());

    other.join();
}
