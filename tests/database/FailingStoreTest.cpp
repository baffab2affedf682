// What tables answer when the store below them fails.

#include <gtest/gtest.h>

#include "tessera/database/CeDBTable.h"
#include "tests/database/SampleTable.h"
#include "tests/platform/objectstore/CountingStore.h"

namespace Database {
namespace {

using testing_support::name;
using testing_support::note;
using testing_support::noteIdent;
using testing_support::rank;
using testing_support::recordOf;

/// A table of two records, open in the order of rank, on a store that can be told to fail.
class OnAFailingStore : public testing::Test {
protected:
    OnAFailingStore() {
        table.create();
        table.open(0, 0, nullptr);
        for (CCeDBRecord record : {recordOf(rank(1), name(TEXT("a"))), recordOf(rank(2), name(TEXT("b")))})
            EXPECT_EQ(table.insertRecord(&record, second), S_OK);
    }

    objectstore_test::CountingMount store;
    CeDBTable table{TEXT("QZ_Sample"), &testing_support::sampleSchema};
    DWORD second = 0;
};

TEST_F(OnAFailingStore, DeletingAllEndsAtTheFirstRecordThatStays) {
    store.log.eraseError = ERROR_GEN_FAILURE;

    EXPECT_EQ(table.deleteAllRecords(), E_FAIL);

    EXPECT_EQ(store.log.erasures, 1);
}

TEST_F(OnAFailingStore, DeletingAllFailsWhenItIsNotKept) {
    store.log.loseNextUnit = true;

    EXPECT_EQ(table.deleteAllRecords(), E_FAIL);
}

TEST_F(OnAFailingStore, AQueryFindsARecordThatCannotBeReadAndLeavesTheCallersAsItIs) {
    CCeDBProp key = name(TEXT("b"));
    CCeDBRecord record = recordOf(note(TEXT("untouched")));
    DWORD found = 0;
    store.log.getError = ERROR_GEN_FAILURE;

    EXPECT_EQ(table.queryRecord(key, &found, &record), S_OK);

    EXPECT_EQ(found, second);
    EXPECT_EQ(record.getNumProps(), 1);
    EXPECT_EQ(record.findProp(noteIdent)->getText(), TEXT("untouched"));
}

}  // namespace
}  // namespace Database
