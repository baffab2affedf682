#include <array>
#include <string>

#include <gtest/gtest.h>

#include "tessera/platform/base/Results.h"
#include "tessera/platform/port/Descriptor.h"
#include "tessera/platform/port/Files.h"
#include "tests/platform/port/ScratchFolder.h"

using namespace Platform::port;

TEST(Files, AFileIsReadToItsEnd) {
    const ScratchFolder scratch;
    const auto file = scratch.withFile("numbers", "0123456789");
    int descriptor = -1;
    std::array<char, 16> buffer{};

    ASSERT_EQ(openForReading(file, descriptor), ERROR_SUCCESS);
    const Descriptor owner(descriptor);

    EXPECT_EQ(fileLength(descriptor), 10U);
    EXPECT_EQ(readFile(descriptor, buffer.data(), 4), 4U);
    EXPECT_EQ(std::string(buffer.data(), 4), "0123");
    EXPECT_EQ(readFile(descriptor, buffer.data(), buffer.size()), 6U);
    EXPECT_EQ(std::string(buffer.data(), 6), "456789");
    EXPECT_EQ(readFile(descriptor, buffer.data(), buffer.size()), 0U);
}

TEST(Files, AClosedDescriptorReadsNothing) {
    const ScratchFolder scratch;
    char byte = 0;
    int descriptor = -1;
    ASSERT_EQ(openForReading(scratch.withFile("a", "content"), descriptor), ERROR_SUCCESS);

    closeFile(descriptor);

    EXPECT_EQ(fileLength(descriptor), 0U);
    EXPECT_EQ(readFile(descriptor, &byte, 1), 0U);
}

TEST(Descriptor, ClosesWhatItOwns) {
    const ScratchFolder scratch;
    int descriptor = -1;
    ASSERT_EQ(openForReading(scratch.withFile("a", "content"), descriptor), ERROR_SUCCESS);

    {
        Descriptor first(descriptor);
        const Descriptor second(std::move(first));
        EXPECT_EQ(fileLength(second.get()), 7U);
    }

    EXPECT_EQ(fileLength(descriptor), 0U);
}
