#include <cstdlib>
#include <fstream>
#include <sys/resource.h>
#include <thread>

#include "tessera/platform/objectstore/ObjectStore.h"
#include "tests/platform/objectstore/StoreFiles.h"

namespace objectstore_test {
namespace {

using testing_support::MemoryStoreMount;
using testing_support::quickOptions;
using testing_support::TemporaryFolder;
using testing_support::TemporaryStore;

/// A variable of the environment that is set while this lives.
class EnvironmentVariable {
public:
    EnvironmentVariable(const char* name, const std::string& value) : name_(name) {
        if (const char* before = std::getenv(name)) before_ = before;
        setenv(name, value.c_str(), 1);
    }
    ~EnvironmentVariable() {
        if (before_) {
            setenv(name_, before_->c_str(), 1);
        } else {
            unsetenv(name_);
        }
    }
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

private:
    const char* name_;
    std::optional<std::string> before_;
};

/// While this lives the process can open no file.
class NoMoreFiles {
public:
    NoMoreFiles() {
        getrlimit(RLIMIT_NOFILE, &former_);
        const rlimit none{0, former_.rlim_max};
        setrlimit(RLIMIT_NOFILE, &none);
    }
    ~NoMoreFiles() { setrlimit(RLIMIT_NOFILE, &former_); }
    NoMoreFiles(const NoMoreFiles&) = delete;
    NoMoreFiles& operator=(const NoMoreFiles&) = delete;

private:
    rlimit former_{};
};

TEST(Mount, MakesTheStoreWhereThereIsNone) {
    const TemporaryFolder folder;
    const auto file = folder / "deep/er/store.db";
    ASSERT_TRUE(ObjectStore::mount(file.string(), quickOptions()));
    EXPECT_TRUE(std::filesystem::exists(file));
    using std::filesystem::perms;
    EXPECT_EQ(std::filesystem::status(file).permissions(), perms::owner_read | perms::owner_write);
    EXPECT_EQ(std::filesystem::status(file.parent_path()).permissions(), perms::owner_all);
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
    const std::string path = (folder / "전화번호부 é.db").string();
    ASSERT_TRUE(ObjectStore::mount(path, quickOptions())) << ObjectStore::errorText();
    EXPECT_TRUE(std::filesystem::exists(path));
    ObjectStore::unmount();
}

/// A program's own object that outlives all threads.
struct StaticObject {
    ~StaticObject() {
        CEOID oid = 0;
        if (CeOpenDatabaseEx2(&oid, TEXT("Rows"), 0, 0, 0, nullptr) != INVALID_HANDLE_VALUE) std::_Exit(1);
        if (GetLastError() != ERROR_NOT_READY) std::_Exit(2);
        ObjectStore::unmount();
    }
};

TEST(MountDeathTest, MayBeEndedByAStaticObject) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            static const StaticObject object;
            ObjectStore::mountMemory();
            makeDatabase(TEXT("Rows"));
            std::exit(0);
        },
        testing::ExitedWithCode(0), "");
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
    std::thread worker;
    std::atomic<int> step = 0;
    const auto waitFor = [&step](int wanted) {
        for (int seen = step; seen != wanted; seen = step) {
            step.wait(seen);
        }
    };
    const auto advance = [&step](int to) {
        step = to;
        step.notify_all();
    };
    worker = std::thread([&] {
        { const OpenDatabase rows(TEXT("First")); }
        advance(1);
        waitFor(2);
        const OpenDatabase rows(TEXT("Second"));
        EXPECT_NE(rows.handle(), INVALID_HANDLE_VALUE);
    });
    waitFor(1);
    ASSERT_TRUE(ObjectStore::mountMemory());
    makeDatabase(TEXT("Second"));
    advance(2);
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

TEST(Mount, SaysWhyTheSystemDoesNotOpenTheFile) {
    const TemporaryStore store;
    ObjectStore::unmount();
    {
        const NoMoreFiles none;
        EXPECT_FALSE(ObjectStore::mount(store.path(), quickOptions()));
    }
    EXPECT_EQ(ObjectStore::errorText(), store.path() + ": it cannot be opened: Too many open files");
}

TEST(Mount, FolderIsRefused) {
    const TemporaryFolder folder;
    EXPECT_FALSE(ObjectStore::mount(folder.path().string(), quickOptions()));
    EXPECT_FALSE(ObjectStore::errorText().empty());
}

TEST(Mount, FirstUseMountsWhatTheEnvironmentNames) {
    const TemporaryFolder folder;
    const EnvironmentVariable named("TESSERA_STORE", (folder / "named.db").string());
    ObjectStore::unmount();
    EXPECT_EQ(ObjectStore::environmentPath(), (folder / "named.db").string());
    { const OpenDatabase contacts(TEXT("Contacts Database")); }
    EXPECT_TRUE(std::filesystem::exists(folder / "named.db"));
    ObjectStore::unmount();
}

TEST(Mount, DataHomeIsNextAndThenTheHomeFolder) {
    const EnvironmentVariable unnamed("TESSERA_STORE", "");
    const EnvironmentVariable home("HOME", "/home/somebody");
    {
        const EnvironmentVariable data("XDG_DATA_HOME", "/data");
        EXPECT_EQ(ObjectStore::environmentPath(), "/data/tessera/store.db");
    }
    const EnvironmentVariable noData("XDG_DATA_HOME", "");
    EXPECT_EQ(ObjectStore::environmentPath(), "/home/somebody/.local/share/tessera/store.db");
}

TEST(Mount, FirstUseThatCannotMountFailsWithTheReason) {
    const TemporaryFolder folder;
    const EnvironmentVariable named("TESSERA_STORE", folder.path().string());
    ObjectStore::unmount();
    EXPECT_EQ(CeOpenDatabaseEx2(nullptr, TEXT("Contacts Database"), 0, 0, 0, nullptr), INVALID_HANDLE_VALUE);
    EXPECT_NE(GetLastError(), ERROR_FILE_NOT_FOUND);
    const ObjectStoreBatch batch;
    EXPECT_FALSE(batch.begun());
}

TEST(Mount, DurabilityIsFullUnlessTheEnvironmentGivesItUp) {
    {
        const EnvironmentVariable unset("TESSERA_DURABILITY", "");
        EXPECT_TRUE(ObjectStore::environmentOptions().fullDurability);
    }
    const EnvironmentVariable normal("TESSERA_DURABILITY", "normal");
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
