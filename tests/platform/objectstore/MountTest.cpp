#include <cstdlib>
#include <fstream>
#include <future>
#include <thread>

#include "tessera/platform/objectstore/ObjectStore.h"
#include "tests/platform/objectstore/StoreFiles.h"
#include "tests/platform/port/ScopedVariable.h"
#include "tests/support/Privacy.h"

namespace objectstore_test {
namespace {

using testing_support::MemoryStoreMount;
using testing_support::quickOptions;
using testing_support::TemporaryFolder;
using testing_support::TemporaryStore;

TEST(Mount, MakesTheStoreWhereThereIsNone) {
    const TemporaryFolder folder;
    const auto file = folder / "deep/er/store.db";
    ASSERT_TRUE(ObjectStore::mount(file.string(), quickOptions()));
    EXPECT_TRUE(std::filesystem::exists(file));
    EXPECT_TRUE(testing_support::isPrivate(file));
    EXPECT_TRUE(testing_support::isPrivate(file.parent_path()));
    ObjectStore::unmount();
}

TEST(Mount, KeepsWhatTheStoreHolds) {
    TemporaryStore store;
    makeDatabase(TEXT("Rows"));
    const CEOID oid = OpenDatabase(TEXT("Rows")).add(Row().name(TEXT("kept")));
    store.remount();
    OpenDatabase rows(TEXT("Rows"));
    EXPECT_EQ(rows.readRecord(oid).name(), TEXT("kept"));
}

TEST(Mount, TakesPathsInUtf8) {
    const TemporaryFolder folder;
    const std::filesystem::path file = folder.path() / u8"전화번호부 é.db";
    const std::u8string path = file.u8string();
    ASSERT_TRUE(ObjectStore::mount(std::string(path.begin(), path.end()), quickOptions())) << ObjectStore::errorText();
    EXPECT_TRUE(std::filesystem::exists(file));
    ObjectStore::unmount();
}

TEST(Mount, ReplacesTheStoreAndInvalidatesItsHandles) {
    const MemoryStoreMount first;
    makeDatabase(TEXT("Rows"));
    CEOID oid = 0;
    const HANDLE handle = CeOpenDatabaseEx2(&oid, TEXT("Rows"), 0, 0, 0, nullptr);
    ASSERT_NE(handle, INVALID_HANDLE_VALUE);

    ASSERT_TRUE(ObjectStore::mountMemory());

    EXPECT_EQ(CeSeekDatabaseEx(handle, CEDB_SEEK_BEGINNING, 0, nullptr), 0u);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    EXPECT_FALSE(CloseHandle(handle));
    EXPECT_EQ(CeOpenDatabaseEx2(nullptr, TEXT("Rows"), 0, 0, 0, nullptr), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
}

TEST(Mount, OtherThreadsFollowToTheNewStore) {
    const MemoryStoreMount first;
    makeDatabase(TEXT("First"));
    std::promise<void> firstOpened;
    std::promise<void> secondMounted;
    std::thread worker([&] {
        { const OpenDatabase rows(TEXT("First")); }
        firstOpened.set_value();
        secondMounted.get_future().wait();
        const OpenDatabase rows(TEXT("Second"));
        EXPECT_NE(rows.handle(), INVALID_HANDLE_VALUE);
    });
    firstOpened.get_future().wait();
    EXPECT_TRUE(ObjectStore::mountMemory());
    makeDatabase(TEXT("Second"));
    secondMounted.set_value();
    worker.join();
}

TEST(Mount, FailureKeepsTheStoreMountedSoFar) {
    const MemoryStoreMount store;
    makeDatabase(TEXT("Rows"));
    EXPECT_FALSE(ObjectStore::mount("", quickOptions()));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
    EXPECT_FALSE(ObjectStore::errorText().empty());
    const OpenDatabase rows(TEXT("Rows"));
    EXPECT_NE(rows.handle(), INVALID_HANDLE_VALUE);
}

TEST(Mount, FileThatIsNoStoreIsRefusedByNameAndLeftUntouched) {
    const TemporaryFolder folder;
    const auto file = folder / "notes.txt";
    const std::string content = "Buy milk.\n" + std::string(5000, 'x');
    std::ofstream(file, std::ios::binary) << content;
    EXPECT_FALSE(ObjectStore::mount(file.string(), quickOptions()));
    EXPECT_EQ(GetLastError(), ERROR_BAD_FORMAT);
    EXPECT_NE(ObjectStore::errorText().find("notes.txt"), std::string::npos) << ObjectStore::errorText();
    EXPECT_EQ(readFile(file), content);
}

TEST(Mount, FolderIsRefused) {
    const TemporaryFolder folder;
    EXPECT_FALSE(ObjectStore::mount(folder.path().string(), quickOptions()));
    EXPECT_FALSE(ObjectStore::errorText().empty());
}

TEST(Mount, FirstUseMountsWhatTheEnvironmentNames) {
    const TemporaryFolder folder;
    const ScopedVariable named("TESSERA_STORE", (folder / "named.db").string());
    ObjectStore::unmount();
    EXPECT_EQ(ObjectStore::environmentPath(), (folder / "named.db").string());
    { const OpenDatabase contacts(TEXT("Contacts Database")); }
    EXPECT_TRUE(std::filesystem::exists(folder / "named.db"));
    ObjectStore::unmount();
}

TEST(Mount, FirstUseThatCannotMountFailsWithTheReason) {
    const TemporaryFolder folder;
    const ScopedVariable named("TESSERA_STORE", folder.path().string());
    ObjectStore::unmount();
    EXPECT_EQ(CeOpenDatabaseEx2(nullptr, TEXT("Contacts Database"), 0, 0, 0, nullptr), INVALID_HANDLE_VALUE);
    EXPECT_NE(GetLastError(), ERROR_FILE_NOT_FOUND);
    const ObjectStoreBatch batch;
    EXPECT_FALSE(batch.begun());
}

TEST(Mount, DurabilityIsFullUnlessTheEnvironmentGivesItUp) {
    {
        const ScopedVariable unset("TESSERA_DURABILITY", "");
        EXPECT_TRUE(ObjectStore::environmentOptions().fullDurability);
    }
    const ScopedVariable normal("TESSERA_DURABILITY", "normal");
    EXPECT_FALSE(ObjectStore::environmentOptions().fullDurability);
}

TEST(Mount, EachMountInMemoryIsANewStore) {
    for (int i = 0; i < 3; ++i) {
        const MemoryStoreMount store;
        EXPECT_NE(makeDatabase(TEXT("Rows")), 0u);
    }
}

}  // namespace
}  // namespace objectstore_test
