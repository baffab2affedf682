#include <sys/resource.h>

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
