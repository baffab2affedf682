#include <algorithm>
#include <filesystem>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tessera/platform/base/Results.h"
#include "tessera/platform/port/Paths.h"
#include "tests/platform/port/NewFile.h"
#include "tests/platform/port/ScopedVariable.h"
#include "tests/platform/port/ScratchFolder.h"
#include "tests/support/Files.h"

namespace fs = std::filesystem;
using namespace Platform::port;

TEST(EnvironmentValue, IsEmptyForAVariableThatIsNotSet) {
    const ScopedVariable set("TESSERA_TEST_VARIABLE", "value");
    EXPECT_EQ(environmentValue("TESSERA_TEST_VARIABLE"), "value");

    const ScopedVariable unset("TESSERA_TEST_VARIABLE", std::nullopt);
    EXPECT_EQ(environmentValue("TESSERA_TEST_VARIABLE"), "");
}

TEST(MakePrivateFolder, ASlashAtTheEndMeansNothing) {
    const ScratchFolder scratch;

    EXPECT_EQ(makePrivateFolder(scratch / "a/b/"), ERROR_SUCCESS);

    EXPECT_TRUE(fs::is_directory(scratch / "a" / "b"));
}

TEST(MakePrivateFolder, TheFolderOfABareFileNameIsThere) {
    EXPECT_EQ(makePrivateFolder(fs::path("store.db").parent_path()), ERROR_SUCCESS);
}

TEST(MakePrivateFolder, AFileInTheWayIsAnErrorAndStays) {
    const ScratchFolder scratch;
    const fs::path file = scratch.withFile("a", "content");

    EXPECT_EQ(makePrivateFolder(file), ERROR_ALREADY_EXISTS);
    EXPECT_EQ(makePrivateFolder(file / "b"), ERROR_ALREADY_EXISTS);

    EXPECT_EQ(testing_support::readFile(file), "content");
}

TEST(MakePrivateFolder, ManyThreadsMayMakeTheSameOne) {
    const ScratchFolder scratch;
    std::vector<DWORD> errors(8, ERROR_GEN_FAILURE);
    std::vector<std::thread> threads;

    for (DWORD& error : errors) {
        threads.emplace_back([&] { error = makePrivateFolder(scratch / "a" / "b" / "c"); });
    }
    for (std::thread& thread : threads)
        thread.join();

    EXPECT_THAT(errors, testing::Each(ERROR_SUCCESS));
}

TEST(MakePrivateFileBeside, EveryFileHasItsOwnName) {
    const ScratchFolder scratch;
    fs::path first, second;

    ASSERT_EQ(makePrivateFileBeside(scratch / "store.db", first), ERROR_SUCCESS);
    ASSERT_EQ(makePrivateFileBeside(scratch / "store.db", second), ERROR_SUCCESS);

    EXPECT_NE(first, second);
}

TEST(MakePrivateFileBeside, ANameOfFullLengthIsNoHindrance) {
    const ScratchFolder scratch;
    fs::path made;

    EXPECT_EQ(makePrivateFileBeside(scratch / std::string(255, 'x').c_str(), made), ERROR_SUCCESS);
}

TEST(MakePrivateFileBeside, WantsTheFolder) {
    const ScratchFolder scratch;
    fs::path made;

    EXPECT_EQ(makePrivateFileBeside(scratch / "missing" / "store.db", made), ERROR_FILE_NOT_FOUND);
}

TEST(PublishFile, NeverTakesANameThatIsInUse) {
    const ScratchFolder scratch;
    const fs::path file = scratch.withFile("store.db", "old");
    const fs::path made = newFileBeside(file, "new");

    EXPECT_EQ(publishFile(made, file), ERROR_ALREADY_EXISTS);

    EXPECT_EQ(testing_support::readFile(file), "old");
    EXPECT_FALSE(fs::exists(made));
}

TEST(PublishFile, OfManyAtOnceExactlyOneWins) {
    const ScratchFolder scratch;
    std::vector<DWORD> errors(8, ERROR_GEN_FAILURE);
    std::vector<std::thread> threads;

    for (DWORD& error : errors) {
        const fs::path made = newFileBeside(scratch / "store.db", "content");
        threads.emplace_back([&error, &scratch, made] { error = publishFile(made, scratch / "store.db"); });
    }
    for (std::thread& thread : threads)
        thread.join();

    EXPECT_EQ(std::count(errors.begin(), errors.end(), ERROR_SUCCESS), 1);
    EXPECT_EQ(std::count(errors.begin(), errors.end(), ERROR_ALREADY_EXISTS), 7);
    EXPECT_EQ(std::distance(fs::directory_iterator(scratch.path()), fs::directory_iterator()), 1);
}

TEST(PublishFile, AFileThatIsGoneIsNotFound) {
    const ScratchFolder scratch;

    EXPECT_EQ(publishFile(scratch / "gone", scratch / "store.db"), ERROR_FILE_NOT_FOUND);

    EXPECT_FALSE(fs::exists(scratch / "store.db"));
}
