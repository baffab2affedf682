#include <sys/stat.h>

#include <gtest/gtest.h>

#include "tessera/platform/base/Results.h"
#include "tessera/platform/port/Files.h"
#include "tests/platform/port/ScratchFolder.h"

using namespace Platform::port;

TEST(Files, OnlyARegularFileIsOpened) {
    const ScratchFolder scratch;
    ASSERT_EQ(::mkfifo((scratch / "pipe").c_str(), 0600), 0);
    int descriptor = -1;

    EXPECT_EQ(openForReading(scratch.path(), descriptor), ERROR_ACCESS_DENIED);
    EXPECT_EQ(openForReading(scratch / "pipe", descriptor), ERROR_ACCESS_DENIED);
    EXPECT_EQ(openForReading("/dev/null", descriptor), ERROR_ACCESS_DENIED);
    EXPECT_EQ(openForReading(scratch / "missing", descriptor), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(descriptor, -1);
}
