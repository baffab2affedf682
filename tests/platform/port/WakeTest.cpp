#include <gtest/gtest.h>

#include "tessera/platform/port/WaitSet.h"
#include "tessera/platform/port/Wake.h"

using Platform::port::isReadable;
using Platform::port::Wake;

TEST(Wake, IsReadableWhileItIsUp) {
    Wake wake;
    EXPECT_FALSE(isReadable(wake.fd()));

    wake.wake();
    EXPECT_TRUE(isReadable(wake.fd()));

    wake.clear();
    EXPECT_FALSE(isReadable(wake.fd()));
}

TEST(Wake, IsAFlagAndNotACount) {
    Wake wake;
    wake.wake();
    wake.wake();

    wake.clear();
    wake.clear();

    EXPECT_FALSE(isReadable(wake.fd()));
}
