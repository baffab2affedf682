#include <array>
#include <string>

#include <gtest/gtest.h>

#include "tessera/platform/base/CFile.h"
#include "tessera/platform/base/Results.h"
#include "tests/platform/port/ScratchFolder.h"

namespace {

constexpr UINT reading = CFile::modeRead | CFile::shareDenyWrite | CFile::typeBinary;

BOOL openPath(CFile& file, const std::filesystem::path& path) {
    return file.Open(path.string<WCHAR>().c_str(), reading);
}

}  // namespace

TEST(CFile, ReadsTheBytesOfAFile) {
    const ScratchFolder scratch;
    CFile file;
    std::array<char, 8> buffer{};

    ASSERT_TRUE(openPath(file, scratch.withFile("a.csv", std::string("a\r\n\0b", 5))));

    EXPECT_EQ(file.GetLength(), 5U);
    EXPECT_EQ(file.Read(buffer.data(), 3), 3U);
    EXPECT_EQ(std::string(buffer.data(), 3), "a\r\n");
    EXPECT_EQ(file.Read(buffer.data(), buffer.size()), 2U);
    EXPECT_EQ(file.Read(buffer.data(), buffer.size()), 0U);
}

TEST(CFile, ANameInAnyScriptIsFound) {
    const ScratchFolder scratch;
    CFile file;

    EXPECT_TRUE(
        openPath(file, scratch.withFile("\xEC\xA0\x84\xED\x99\x94\xEB\xB2\x88\xED\x98\xB8 \xF0\x9F\x93\x9E", "x")));
}

TEST(CFile, WhatIsMissingOrNoFileDoesNotOpen) {
    const ScratchFolder scratch;
    CFile file;

    EXPECT_FALSE(openPath(file, scratch / "missing"));
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
    EXPECT_FALSE(openPath(file, scratch.path()));
    EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
    EXPECT_FALSE(file.Open(TEXT(""), reading));
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
    EXPECT_FALSE(file.Open(TEXT("lone \xD800 half"), reading));
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
    EXPECT_FALSE(file.Open(nullptr, reading));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
}

TEST(CFile, OpensForReadingOnly) {
    const ScratchFolder scratch;
    const auto path = scratch.withFile("a", "content").string<WCHAR>();
    CFile file;

    EXPECT_FALSE(file.Open(path.c_str(), 0x0001));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
}

TEST(CFile, OpeningAnotherFileLeavesTheFirst) {
    const ScratchFolder scratch;
    CFile file;
    ASSERT_TRUE(openPath(file, scratch.withFile("a", "content")));

    ASSERT_TRUE(openPath(file, scratch.withFile("b", "other content")));

    EXPECT_EQ(file.GetLength(), 13U);
}

TEST(CFile, AfterAFailureToOpenNothingIsOpen) {
    const ScratchFolder scratch;
    CFile file;
    ASSERT_TRUE(openPath(file, scratch.withFile("a", "content")));

    EXPECT_FALSE(openPath(file, scratch / "missing"));

    EXPECT_EQ(file.GetLength(), 0U);
}

TEST(CFile, AClosedFileIsEmpty) {
    const ScratchFolder scratch;
    CFile file;
    char byte = 0;
    ASSERT_TRUE(openPath(file, scratch.withFile("a", "content")));

    file.Close();
    file.Close();

    EXPECT_EQ(file.GetLength(), 0U);
    EXPECT_EQ(file.Read(&byte, 1), 0U);
}
