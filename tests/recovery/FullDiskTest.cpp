// A store that is to be made where there is no room: what is said is of the file that was asked for, and nothing is
// left.

#include <algorithm>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tessera/platform/objectstore/ObjectStoreFile.h"
#include "tests/support/FaultyDisk.h"
#include "tests/support/TemporaryStore.h"

namespace recovery {
namespace {

using testing::Contains;
using testing::Each;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using testing_support::FaultyDisk;
using testing_support::quickOptions;
using testing_support::TemporaryFolder;

bool holdsUnfinished(const std::filesystem::path& folder) {
    const std::filesystem::directory_iterator entries(folder);
    return std::any_of(begin(entries), end(entries),
                       [](const auto& entry) { return entry.path().filename().string().starts_with(".tessera-"); });
}

/// What is said when the disk is full from each of the calls on that take room, in turn, until all have had it.
std::vector<std::string> saidOnAFullDisk(const std::function<BOOL()>& work) {
    std::vector<std::string> texts;
    for (long call = 1;; ++call) {
        FaultyDisk disk;
        disk.failAt(call, FaultyDisk::Trouble::full, FaultyDisk::Lasting::fromThenOn);
        const BOOL done = work();
        if (!disk.hasFailed()) return texts;
        if (done == FALSE) texts.push_back(ObjectStore::errorText());
    }
}

TEST(FullDisk, IsToldOfTheStoreThatWasToBeMade) {
    const TemporaryFolder folder;
    const auto store = folder / "store.db";
    const auto texts = saidOnAFullDisk([&] {
        const BOOL mounted = ObjectStore::mount(store.string(), quickOptions());
        ObjectStore::unmount();
        EXPECT_FALSE(holdsUnfinished(folder.path()));
        for (const char* suffix : {"", "-wal", "-shm"})
            std::filesystem::remove(store.string() + suffix);
        return mounted;
    });
    EXPECT_THAT(texts, Contains(store.string() + ": the disk is full"));
    EXPECT_THAT(texts, Each(StartsWith(store.string() + ": ")));
    EXPECT_THAT(texts, Each(Not(HasSubstr("damaged"))));
}

TEST(FullDisk, IsToldOfTheCopyThatHasNoRoom) {
    const TemporaryFolder folder;
    const auto store = folder / "store.db";
    const auto copy = folder / "copy.db";
    ASSERT_TRUE(ObjectStore::mount(store.string(), quickOptions())) << ObjectStore::errorText();
    ObjectStore::unmount();
    const auto texts = saidOnAFullDisk([&] {
        const BOOL copied = ObjectStoreFile::backUp(store.string(), copy.string(), quickOptions());
        EXPECT_EQ(copied != FALSE, std::filesystem::exists(copy));
        EXPECT_FALSE(holdsUnfinished(folder.path()));
        std::filesystem::remove(copy);
        return copied;
    });
    EXPECT_THAT(texts, Contains(copy.string() + ": the disk is full"));
    EXPECT_THAT(texts, Each(Not(HasSubstr(".tessera-"))));
}

}  // namespace
}  // namespace recovery
