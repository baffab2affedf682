#include <cstdlib>
#include <sys/resource.h>

#include <gtest/gtest.h>

#include "tessera/platform/objectstore/ObjectStore.h"
#include "tests/platform/objectstore/StoreTest.h"
#include "tests/platform/port/ScopedVariable.h"

namespace objectstore_test {
namespace {

using testing_support::quickOptions;
using testing_support::TemporaryStore;

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

TEST(Mount, SaysWhyTheSystemDoesNotOpenTheFile) {
    const TemporaryStore store;
    ObjectStore::unmount();
    {
        const NoMoreFiles none;
        EXPECT_FALSE(ObjectStore::mount(store.path(), quickOptions()));
    }
    EXPECT_EQ(ObjectStore::errorText(), store.path() + ": it cannot be opened: Too many open files");
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

TEST(Mount, DataHomeIsNextAndThenTheHomeFolder) {
    const ScopedVariable unnamed("TESSERA_STORE", "");
    const ScopedVariable home("HOME", "/home/somebody");
    {
        const ScopedVariable data("XDG_DATA_HOME", "/data");
        EXPECT_EQ(ObjectStore::environmentPath(), "/data/tessera/store.db");
    }
    const ScopedVariable noData("XDG_DATA_HOME", "");
    EXPECT_EQ(ObjectStore::environmentPath(), "/home/somebody/.local/share/tessera/store.db");
}

}  // namespace
}  // namespace objectstore_test
