#include <gmock/gmock.h>

#include "tests/platform/objectstore/KilledWriter.h"
#include "tests/platform/objectstore/StoreFileFixture.h"

// The file of a store whose program was killed, and links where a copy is to be.

namespace objectstore_test {
namespace {

using testing::IsEmpty;
using testing_support::quickOptions;

TEST_F(StoreFileCheck, ChangesNothing) {
    addRowsAndDie(file, 30);
    const auto before = filesButIndex(folder.path());
    ASSERT_EQ(before.size(), 2u) << "the store and the log of the killed program";

    EXPECT_THAT(check(Depth::full), IsEmpty());

    EXPECT_EQ(filesButIndex(folder.path()), before);
    EXPECT_EQ(rowsIn(file).size(), someRows - 20u + 30u);
}

TEST_F(StoreFileBackUp, HoldsWhatAKilledProgramLeftInItsLog) {
    addRowsAndDie(file, 30);
    const auto before = filesButIndex(folder.path());
    ASSERT_TRUE(ObjectStoreFile::backUp(file.string(), (folder / "copy.db").string(), quickOptions()));
    auto after = filesButIndex(folder.path());
    after.erase("copy.db");
    EXPECT_EQ(after, before);
    EXPECT_EQ(rowsIn(folder / "copy.db").size(), someRows - 20u + 30u);
}

TEST_F(StoreFileBackUp, NeverWritesThroughALinkThatLeadsNowhere) {
    const fs::path link = folder / "link";
    fs::create_symlink(folder / "nowhere", link);
    EXPECT_FALSE(ObjectStoreFile::backUp(file.string(), link.string(), quickOptions()));
    EXPECT_EQ(GetLastError(), ERROR_ALREADY_EXISTS);
    EXPECT_FALSE(fs::exists(folder / "nowhere"));
}

TEST_F(StoreFileBackUp, LeavesNothingUnderANameThatNoFileCanHave) {
    EXPECT_FALSE(ObjectStoreFile::backUp(file.string(), (folder / std::string(300, 'x')).string(), quickOptions()));
    EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED) << "no file can have this name, so there is none";
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 1);
}

}  // namespace
}  // namespace objectstore_test
