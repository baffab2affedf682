#include <fstream>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

#include <gtest/gtest.h>

#include "tessera/platform/port/FileWatch.h"
#include "tessera/platform/port/WaitSet.h"
#include "tests/support/TemporaryStore.h"

using Platform::port::FileWatch;
using Platform::port::isReadable;
using Platform::port::touchFile;

namespace {

class FileWatchTest : public testing::Test {
protected:
    FileWatchTest() { std::ofstream(file()) << "contents"; }
    std::filesystem::path file() const { return folder_ / "watched"; }

private:
    testing_support::TemporaryFolder folder_;
};

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

TEST_F(FileWatchTest, SeesAnotherProcessTouchIt) {
    FileWatch watch(file());
    if (const pid_t child = ::fork(); child == 0) {
        touchFile(file());
        ::_exit(0);
    } else {
        ::waitpid(child, nullptr, 0);
    }
    EXPECT_TRUE(isReadable(watch.fd()));
}

TEST_F(FileWatchTest, SeesAWriterDieThatNeverTouchedIt) {
    FileWatch watch(file());
    if (const pid_t child = ::fork(); child == 0) {
        std::ofstream writer(file(), std::ios::app);
        ::raise(SIGKILL);
    } else {
        ::waitpid(child, nullptr, 0);
    }
    EXPECT_TRUE(isReadable(watch.fd()));
}

TEST_F(FileWatchTest, AFileThatIsNotThereCannotBeWatchedAndTouchingItMakesNone) {
    const std::filesystem::path missing = file().string() + "-missing";
    EXPECT_THROW(FileWatch watch(missing), std::system_error);
    touchFile(missing);
    EXPECT_FALSE(std::filesystem::exists(missing));
}

}  // namespace
