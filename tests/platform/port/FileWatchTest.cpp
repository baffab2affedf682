#include <fstream>
#include <system_error>

#include <gtest/gtest.h>

#include "tessera/platform/port/FileWatch.h"
#include "tessera/platform/port/WaitSet.h"
#include "tests/platform/port/WatchedFile.h"

using Platform::port::FileWatch;
using Platform::port::isReadable;
using Platform::port::touchFile;

namespace {

TEST_F(FileWatchTest, IsReadableFromATouchUntilItIsCleared) {
    FileWatch watch(file());
    EXPECT_FALSE(isReadable(watch.fd()));

    touchFile(file());
    touchFile(file());
    EXPECT_TRUE(isReadable(watch.fd()));

    watch.clear();
    EXPECT_FALSE(isReadable(watch.fd()));
    touchFile(file());
    EXPECT_TRUE(isReadable(watch.fd()));
}

TEST_F(FileWatchTest, ATouchLeavesTheContents) {
    touchFile(file());

    std::string contents;
    std::ifstream(file()) >> contents;
    EXPECT_EQ(contents, "contents");
}

TEST_F(FileWatchTest, ReadingTheFileIsNoTouch) {
    FileWatch watch(file());
    std::string contents;
    std::ifstream(file()) >> contents;
    EXPECT_FALSE(isReadable(watch.fd()));
}

TEST_F(FileWatchTest, AFileThatIsNotThereCannotBeWatchedAndTouchingItMakesNone) {
    const std::filesystem::path missing = file().string() + "-missing";
    EXPECT_THROW(FileWatch watch(missing), std::system_error);
    touchFile(missing);
    EXPECT_FALSE(std::filesystem::exists(missing));
}

}  // namespace
