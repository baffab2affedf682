#include <grp.h>
#include <optional>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include "tessera/platform/objectstore/ObjectStoreFile.h"
#include "tests/platform/objectstore/StoreFiles.h"
#include "tests/support/ScopedUmask.h"

// Who else may write where a store is, and links put in the way.

namespace objectstore_test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing_support::quickOptions;
using testing_support::TemporaryFolder;

constexpr auto ownerOnly = fs::perms::owner_read | fs::perms::owner_write;

class SharedFolder : public testing::Test {
protected:
    ~SharedFolder() override { ObjectStore::unmount(); }

    BOOL mount(const fs::path& path, bool sharedFolder = false) {
        ObjectStore::Options options = quickOptions();
        options.sharedFolder = sharedFolder;
        return ObjectStore::mount(path.string(), options);
    }
    void expectRefused(const fs::path& path) {
        EXPECT_FALSE(mount(path));
        EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
        EXPECT_THAT(ObjectStore::errorText(), HasSubstr("others may write to this folder"));
    }

    const TemporaryFolder folder;
    const fs::path file = folder / "store.db";
};

TEST_F(SharedFolder, IsRefusedAndLeftAsItWas) {
    fs::permissions(folder.path(), fs::perms::others_write, fs::perm_options::add);
    expectRefused(file);
    EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST_F(SharedFolder, IsRefusedAlsoWhereOthersMayOnlyAddFiles) {
    fs::permissions(folder.path(), fs::perms::all | fs::perms::sticky_bit);
    expectRefused(file);
}

TEST_F(SharedFolder, IsRefusedForAStoreThatIsThere) {
    ASSERT_TRUE(mount(file));
    ObjectStore::unmount();
    fs::permissions(folder.path(), fs::perms::all);
    const auto before = filesButIndex(folder.path());
    expectRefused(file);
    std::vector<std::string> findings;
    EXPECT_FALSE(ObjectStoreFile::check(file.string(), ObjectStoreFile::Depth::quick, findings, quickOptions()));
    EXPECT_FALSE(ObjectStoreFile::backUp(file.string(), (folder / "copy.db").string(), quickOptions()));
    EXPECT_EQ(filesButIndex(folder.path()), before);
}

TEST_F(SharedFolder, IsRefusedWhenItIsAnothersOrOfAGroup) {
    if (::geteuid() != 0) GTEST_SKIP() << "only the administrator can give a folder away";
    constexpr uid_t nobody = 65'534;
    ASSERT_EQ(::chown(folder.path().c_str(), nobody, nobody), 0);
    expectRefused(file);
    ASSERT_EQ(::chown(folder.path().c_str(), ::geteuid(), nobody), 0);
    fs::permissions(folder.path(), fs::perms::group_write, fs::perm_options::add);
    expectRefused(file);
    fs::permissions(folder.path(), fs::perms::group_write, fs::perm_options::remove);
    EXPECT_TRUE(mount(file));
}

/// The group of the user's name, which systems make for each user alone; nothing where they do not.
std::optional<gid_t> groupOfTheUserAlone() {
    const passwd* user = ::getpwuid(::geteuid());
    const group* own = user == nullptr ? nullptr : ::getgrnam(user->pw_name);
    const bool isAlone = own != nullptr && own->gr_gid == user->pw_gid && own->gr_mem[0] == nullptr;
    return isAlone ? std::optional(own->gr_gid) : std::nullopt;
}

TEST_F(SharedFolder, IsNoneWhenItsGroupIsTheUsersOwn) {
    const auto own = groupOfTheUserAlone();
    if (!own) GTEST_SKIP() << "the user shares a group with others";
    ASSERT_EQ(::chown(folder.path().c_str(), ::geteuid(), *own), 0);
    fs::permissions(folder.path(), fs::perms::group_write, fs::perm_options::add);
    EXPECT_TRUE(mount(file)) << ObjectStore::errorText();
}

TEST_F(SharedFolder, IsUsedWhenTheProgramSaysSo) {
    fs::permissions(folder.path(), fs::perms::all);
    EXPECT_TRUE(mount(file, true)) << ObjectStore::errorText();
    EXPECT_EQ(fs::status(file).permissions(), ownerOnly);
}

TEST_F(SharedFolder, IsRefusedBehindALink) {
    const fs::path open = folder / "open";
    fs::create_directory(open);
    fs::permissions(open, fs::perms::all);
    const fs::path closed = folder / "closed";
    fs::create_directory(closed);
    fs::create_symlink(open / "store.db", closed / "leads-out.db");
    fs::create_symlink(closed / "store.db", open / "leads-in.db");
    ASSERT_TRUE(mount(open / "store.db", true));
    ASSERT_TRUE(mount(closed / "store.db"));
    ObjectStore::unmount();

    expectRefused(closed / "leads-out.db");
    expectRefused(open / "leads-in.db");
}

TEST_F(SharedFolder, TakesALinkInAFolderOfOnesOwn) {
    fs::create_directory(folder / "real");
    ASSERT_TRUE(mount(folder / "real" / "store.db"));
    makeDatabase(TEXT("Rows"));
    ObjectStore::unmount();
    fs::create_symlink(folder / "real" / "store.db", folder / "link.db");
    fs::create_directory_symlink(folder / "real", folder / "way");

    ASSERT_TRUE(mount(folder / "link.db")) << ObjectStore::errorText();
    OpenDatabase throughTheLink(TEXT("Rows"));
    ASSERT_TRUE(mount(folder / "way" / "store.db")) << ObjectStore::errorText();
    OpenDatabase throughTheFolder(TEXT("Rows"));
    EXPECT_FALSE(fs::exists(folder / "link.db-wal")) << "the log is beside the file itself";
}

TEST_F(SharedFolder, MakesNothingThroughALinkThatLeadsNowhere) {
    fs::create_symlink(folder / "nowhere.db", file);
    EXPECT_FALSE(mount(file));
    EXPECT_TRUE(fs::is_symlink(file));
    EXPECT_FALSE(fs::exists(folder / "nowhere.db"));
}

TEST_F(SharedFolder, RefusesWhatIsNoFile) {
    ASSERT_EQ(::mkfifo(file.c_str(), S_IRUSR | S_IWUSR), 0);
    EXPECT_FALSE(mount(file));
    EXPECT_EQ(GetLastError(), ERROR_BAD_FORMAT);
    EXPECT_THAT(ObjectStore::errorText(), HasSubstr("it is no file"));
}

class StoreModes : public SharedFolder, public testing::WithParamInterface<mode_t> {};

TEST_P(StoreModes, AreForTheOwnerOnlyWhateverTheUmask) {
    const testing_support::ScopedUmask mask(GetParam());
    const fs::path deep = folder / "made" / "for it";
    ASSERT_TRUE(mount(deep / "store.db")) << ObjectStore::errorText();
    makeDatabase(TEXT("Rows"));
    ASSERT_TRUE(ObjectStoreFile::backUp((deep / "store.db").string(), (deep / "copy.db").string(), quickOptions()));

    EXPECT_EQ(fs::status(deep).permissions(), fs::perms::owner_all);
    EXPECT_EQ(fs::status(deep.parent_path()).permissions(), fs::perms::owner_all);
    for (const char* name : {"store.db", "store.db-wal", "store.db-shm", "copy.db"})
        EXPECT_EQ(fs::status(deep / name).permissions(), ownerOnly) << name;
}

INSTANTIATE_TEST_SUITE_P(Umasks, StoreModes, testing::Values(0, 0022, 0077, 0177, 0777));

}  // namespace
}  // namespace objectstore_test
