#include <cerrno>
#include <fcntl.h>
#include <string>
#include <unistd.h>

#include <gtest/gtest.h>

#include "tessera/platform/port/LockHolder.h"
#include "tests/platform/port/ScratchFolder.h"
#include "tests/support/Forked.h"

namespace Platform::port {
namespace {

constexpr std::uint64_t lockedByte = 120;

/// Locks the byte of a file, which is made, and keeps it locked until the process ends or the answer is closed.
int lock(const std::filesystem::path& file) {
    const int descriptor = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    struct flock range {};
    range.l_type = F_WRLCK;
    range.l_whence = SEEK_SET;
    range.l_start = lockedByte;
    range.l_len = 1;
    return ::fcntl(descriptor, F_SETLK, &range) == 0 ? descriptor : -1;
}

TEST(LockHolder, IsTheProcessThatHasTheByte) {
    const ScratchFolder folder;
    const auto file = folder.path() / "file";
    testing_support::Forked other([&](testing_support::Line& parent) {
        parent.say(lock(file));
        parent.hear<bool>();
    });
    ASSERT_GE(other.line().hear<int>(), 0);

    const auto holder = lockHolder(file, lockedByte);

    ASSERT_TRUE(holder.has_value());
    EXPECT_EQ(holder->id, other.process());
    EXPECT_EQ(holder->program, std::string(::program_invocation_short_name).substr(0, 15));  // as much as is kept
    EXPECT_FALSE(holder->self);
    EXPECT_FALSE(lockHolder(file, lockedByte + 1).has_value());
    EXPECT_FALSE(lockHolder(file, lockedByte - 1).has_value());
}

TEST(LockHolder, MayBeThisProcess) {
    const ScratchFolder folder;
    const auto file = folder.path() / "file";
    const int locked = lock(file);
    ASSERT_GE(locked, 0);
    const auto holder = lockHolder(file, lockedByte);
    ASSERT_TRUE(holder.has_value());
    EXPECT_TRUE(holder->self);
    ::close(locked);
    EXPECT_FALSE(lockHolder(file, lockedByte).has_value());
}

TEST(LockHolder, IsNobodyForAFileThatIsNotThere) {
    const ScratchFolder folder;
    EXPECT_FALSE(lockHolder(folder.path() / "none", lockedByte).has_value());
}

}  // namespace
}  // namespace Platform::port
