#include <csignal>
#include <fstream>
#include <sys/wait.h>
#include <unistd.h>

#include "tessera/platform/port/FileWatch.h"
#include "tessera/platform/port/WaitSet.h"
#include "tests/platform/port/WatchedFile.h"

using Platform::port::FileWatch;
using Platform::port::isReadable;
using Platform::port::touchFile;

namespace {

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

}  // namespace
