#include "tests/platform/objectstore/KilledWriter.h"
#include "tests/platform/objectstore/RecoveryFixture.h"

// What can be saved of a store whose program was killed.

namespace objectstore_test {
namespace {

TEST_F(Recovery, SavesWhatAKilledProgramLeftInItsLog) {
    makeRows(20);
    addRowsAndDie(file, 100);
    const auto files = filesButIndex(folder.path());
    EXPECT_EQ(recover().records, 120u);
    auto after = filesButIndex(folder.path());
    after.erase("saved.db");
    EXPECT_EQ(after, files);
    EXPECT_EQ(lost(rowsIn(file), rowsIn(saved)), 0u);
}

TEST_F(Recovery, TakesFromATornLogWhatWasCommittedBeforeTheTear) {
    makeRows(20);
    addRowsAndDie(file, 100);
    const fs::path log = folder / "store.db-wal";
    fs::resize_file(log, fs::file_size(log) - 1'000);
    EXPECT_EQ(recover().records, 119u);
}

}  // namespace
}  // namespace objectstore_test
