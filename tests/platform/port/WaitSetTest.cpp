#include <thread>

#include <gtest/gtest.h>

#include "tessera/platform/port/WaitSet.h"
#include "tessera/platform/port/Wake.h"

using Platform::port::isReadable;
using Platform::port::WaitSet;
using Platform::port::Wake;

TEST(WaitSet, IsReadableWhileOneOfThemIs) {
    Wake first;
    Wake second;
    WaitSet both;
    both.add(first.fd());
    both.add(second.fd());
    EXPECT_FALSE(isReadable(both.fd()));

    second.wake();
    EXPECT_TRUE(isReadable(both.fd()));
    EXPECT_TRUE(both.wait());

    second.clear();
    EXPECT_FALSE(isReadable(both.fd()));
}

TEST(WaitSet, ForgetsWhatIsRemoved) {
    Wake wake;
    WaitSet set;
    set.add(wake.fd());
    set.remove(wake.fd());
    set.remove(wake.fd());  // harmless

    wake.wake();

    EXPECT_FALSE(isReadable(set.fd()));
}

TEST(WaitSet, AnotherThreadEndsTheSleep) {
    Wake wake;
    WaitSet set;
    set.add(wake.fd());
    std::thread other([&] { wake.wake(); });

    EXPECT_TRUE(set.wait());

    other.join();
}

TEST(WaitSet, TakesWhatIsAddedWhileAThreadSleeps) {
    WaitSet set;
    Wake wake;
    wake.wake();
    std::thread other([&] { set.add(wake.fd()); });

    EXPECT_TRUE(set.wait());

    other.join();
}
