// A damaged store on a disk that does not give all that is on it: what it gives is saved, and what it does not is said.

#include <algorithm>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "tessera/platform/objectstore/ObjectStoreFile.h"
#include "tests/support/Builders.h"
#include "tests/support/FaultyDisk.h"
#include "tests/support/PlaceInMemory.h"
#include "tests/support/TemporaryStore.h"

namespace recovery {
namespace {

using testing_support::FaultyDisk;
using testing_support::quickOptions;
using testing_support::TemporaryFolder;

constexpr int contacts = 100;

void makeStore(const std::filesystem::path& file) {
    ASSERT_TRUE(ObjectStore::mount(file.string(), quickOptions())) << ObjectStore::errorText();
    {
        testing_support::OpenPhoneBook book;
        for (int i = 0; i < contacts; ++i)
            book.add(testing_support::contact().name(TEXT("Kim")).mobile(TEXT("010-1234")));
    }
    ObjectStore::unmount();
}

bool saysThatPagesAreMissing(const ObjectStoreFile::Recovery& recovery) {
    return std::ranges::any_of(recovery.losses,
                               [](const std::string& loss) { return loss.starts_with("the disk does not give"); });
}

TEST(RecoverFromABadDisk, SavesWhatItGivesOrSaysThatItCannot) {
    const TemporaryFolder folder(testing_support::placeInMemory());
    const auto damaged = folder / "store.db";
    const auto saved = folder / "saved.db";
    makeStore(damaged);
    int withPagesMissing = 0;
    int failed = 0;
    bool hasFailed = true;
    for (long call = 1; hasFailed; ++call) {
        SCOPED_TRACE("call " + std::to_string(call));
        ObjectStoreFile::Recovery recovery;
        BOOL done = FALSE;
        {
            FaultyDisk disk;
            disk.failAt(call, FaultyDisk::Trouble::error, FaultyDisk::Lasting::once);
            done = ObjectStoreFile::recover(damaged.string(), saved.string(), recovery, quickOptions());
            hasFailed = disk.hasFailed();
        }
        withPagesMissing += saysThatPagesAreMissing(recovery) ? 1 : 0;
        failed += done ? 0 : 1;
        EXPECT_EQ(done != FALSE, std::filesystem::exists(saved));
        EXPECT_LE(recovery.records, static_cast<std::uint64_t>(contacts));
        if (done && recovery.losses.empty()) {
            EXPECT_EQ(recovery.records, static_cast<std::uint64_t>(contacts));
        }
        std::filesystem::remove(saved);
    }
    EXPECT_GT(withPagesMissing, 0);
    EXPECT_GT(failed, 0);
}

}  // namespace
}  // namespace recovery
