#include <cerrno>
#include <filesystem>
#include <optional>
#include <string>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include "tessera/platform/base/Results.h"
#include "tessera/platform/port/Paths.h"
#include "tessera/platform/port/PosixErrors.h"
#include "tests/platform/port/NewFile.h"
#include "tests/platform/port/ScopedVariable.h"
#include "tests/platform/port/ScratchFolder.h"
#include "tests/support/Files.h"
#include "tests/support/ScopedUmask.h"

// Where POSIX has the user's files, who may use them by its modes, and what its errors mean.

namespace fs = std::filesystem;
using namespace Platform::port;

namespace {

constexpr fs::perms ownerFolder = fs::perms::owner_all;
constexpr fs::perms ownerFile = fs::perms::owner_read | fs::perms::owner_write;

fs::perms modeOf(const fs::path& path) {
    return fs::status(path).permissions();
}

}  // namespace

TEST(DefaultStorePath, IsInTheDataHome) {
    const ScopedVariable data("XDG_DATA_HOME", "/somewhere/data");

    EXPECT_EQ(defaultStorePath(), "/somewhere/data/tessera/store.db");
}

TEST(DefaultStorePath, IsInTheHomeFolderWhenNoDataHomeIsNamed) {
    const ScopedVariable home("HOME", "/home/someone");
    for (const std::optional<std::string>& noDataHome :
         {std::optional<std::string>(), std::optional<std::string>("")}) {
        const ScopedVariable data("XDG_DATA_HOME", noDataHome);
        EXPECT_EQ(defaultStorePath(), "/home/someone/.local/share/tessera/store.db");
    }
}

TEST(DefaultStorePath, ARelativeDataHomeIsIgnored) {
    const ScopedVariable home("HOME", "/home/someone");
    const ScopedVariable data("XDG_DATA_HOME", "data");

    EXPECT_EQ(defaultStorePath(), "/home/someone/.local/share/tessera/store.db");
}

TEST(DefaultStorePath, WithoutAHomeVariableTheUserDatabaseKnows) {
    const ScopedVariable home("HOME", std::nullopt);
    const ScopedVariable data("XDG_DATA_HOME", std::nullopt);

    EXPECT_TRUE(defaultStorePath().is_absolute());
    EXPECT_EQ(defaultStorePath().filename(), "store.db");
}

TEST(MakePrivateFolder, MakesWhatIsMissingForTheOwnerOnlyWhateverTheUmask) {
    for (const mode_t mask : {mode_t{0}, mode_t{022}, mode_t{0777}}) {
        const ScratchFolder scratch;
        const testing_support::ScopedUmask umask(mask);

        ASSERT_EQ(makePrivateFolder(scratch / "a" / "b" / "c"), ERROR_SUCCESS);

        EXPECT_EQ(modeOf(scratch / "a"), ownerFolder);
        EXPECT_EQ(modeOf(scratch / "a" / "b"), ownerFolder);
        EXPECT_EQ(modeOf(scratch / "a" / "b" / "c"), ownerFolder);
    }
}

TEST(MakePrivateFolder, LeavesAFolderThatExistsAsItIs) {
    const ScratchFolder scratch;
    fs::create_directory(scratch / "a");
    fs::permissions(scratch / "a", fs::perms(0755));

    EXPECT_EQ(makePrivateFolder(scratch / "a"), ERROR_SUCCESS);

    EXPECT_EQ(modeOf(scratch / "a"), fs::perms(0755));
}

TEST(MakePrivateFileBeside, MakesAnEmptyFileForTheOwnerOnlyWhateverTheUmask) {
    for (const mode_t mask : {mode_t{0}, mode_t{022}, mode_t{0777}}) {
        const ScratchFolder scratch;
        const testing_support::ScopedUmask umask(mask);
        fs::path made;

        ASSERT_EQ(makePrivateFileBeside(scratch / "store.db", made), ERROR_SUCCESS);

        EXPECT_EQ(made.parent_path(), scratch.path());
        EXPECT_NE(made, scratch / "store.db");
        EXPECT_EQ(fs::file_size(made), 0U);
        EXPECT_EQ(modeOf(made), ownerFile);
    }
}

TEST(PublishFile, GivesTheFileItsNameAndTakesTheOldOneAway) {
    const ScratchFolder scratch;
    const fs::path made = newFileBeside(scratch / "store.db", "content");

    ASSERT_EQ(publishFile(made, scratch / "store.db"), ERROR_SUCCESS);

    EXPECT_EQ(testing_support::readFile(scratch / "store.db"), "content");
    EXPECT_EQ(modeOf(scratch / "store.db"), ownerFile);
    EXPECT_FALSE(fs::exists(made));
}

TEST(PublishFile, ALinkThatLeadsNowhereIsANameInUse) {
    const ScratchFolder scratch;
    fs::create_symlink(scratch / "nowhere", scratch / "store.db");
    const fs::path made = newFileBeside(scratch / "store.db", "new");

    EXPECT_EQ(publishFile(made, scratch / "store.db"), ERROR_ALREADY_EXISTS);
}

TEST(PlatformErrorOf, NamesWhatTheSystemSaid) {
    EXPECT_EQ(platformErrorOf(0), ERROR_SUCCESS);
    EXPECT_EQ(platformErrorOf(ENOENT), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(platformErrorOf(ENOTDIR), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(platformErrorOf(EACCES), ERROR_ACCESS_DENIED);
    EXPECT_EQ(platformErrorOf(EROFS), ERROR_ACCESS_DENIED);
    EXPECT_EQ(platformErrorOf(EEXIST), ERROR_ALREADY_EXISTS);
    EXPECT_EQ(platformErrorOf(ENOSPC), ERROR_DISK_FULL);
    EXPECT_EQ(platformErrorOf(ENOMEM), ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_EQ(platformErrorOf(ENAMETOOLONG), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(platformErrorOf(EBADF), ERROR_INVALID_HANDLE);
    EXPECT_EQ(platformErrorOf(EIO), ERROR_GEN_FAILURE);
}
