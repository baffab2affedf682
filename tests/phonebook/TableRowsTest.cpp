#include <memory>

#include <gtest/gtest.h>

#include "tessera/phonebook/TableRows.h"
#include "tessera/phonebook/model/Schemas.h"
#include "tests/platform/objectstore/CountingStore.h"
#include "tests/support/Values.h"

// What tables and iterators keep to themselves: rows that are there and cannot be read, and those that are gone.

namespace PhoneBook {
namespace {

/// A row of a table in the order of creation, and an iterator on it; `read` has something in it.
class OneRow : public testing::Test {
protected:
    OneRow() {
        table.create();
        table.open(nullptr);
        CCeDBRecord row;
        row.addProp(key);
        EXPECT_EQ(S_OK, table.insertRecord(&row, oid));
        rows.reset(table.getIterator(nullptr, nullptr));
        EXPECT_EQ(S_OK, rows->next());
        read = row;
    }

    objectstore_test::CountingMount store;
    Database::CeDBTable table{aszTableName_[PBDBTBL_PHONEBOOKEXT], &aRecDef_[PBDBTBL_PHONEBOOKEXT]};
    const CCeDBProp key = CCeDBProp::ofUI4(0x100, 7);
    DWORD oid = 0;
    std::unique_ptr<Database::Iterator> rows;
    CCeDBRecord read;
};

TEST_F(OneRow, IsThereToWalk) {
    EXPECT_EQ(S_OK, anyRows(table, rows.get()));
}

TEST_F(OneRow, OnceItIsGoneThereIsNoneToWalk) {
    ASSERT_EQ(S_OK, table.deleteRecord(oid));
    rows.reset(table.getIterator(nullptr, nullptr));
    EXPECT_EQ(S_FALSE, anyRows(table, rows.get()));
}

TEST_F(OneRow, ThatCannotBeCountedIsNotNone) {
    store.log.infoError = ERROR_GEN_FAILURE;
    rows.reset(table.getIterator(nullptr, nullptr));
    EXPECT_EQ(E_FAIL, anyRows(table, rows.get()));
    EXPECT_EQ(E_FAIL, anyRows(table, nullptr)) << "nor is one without an iterator";
}

TEST_F(OneRow, IsFoundByAValueThatItHas) {
    DWORD found = 0;
    EXPECT_EQ(S_OK, seekRow(table, key, found, &read));
    EXPECT_EQ(oid, found);
    EXPECT_EQ(S_OK, seekRow(table, key, found, nullptr));
    EXPECT_EQ(S_FALSE, seekRow(table, CCeDBProp::ofUI4(0x100, 8), found, &read));
    EXPECT_EQ(0, read.getNumProps());
}

TEST_F(OneRow, ThatIsFoundAndCannotBeReadFails) {
    DWORD found = 0;
    store.log.getError = ERROR_GEN_FAILURE;
    EXPECT_EQ(E_FAIL, seekRow(table, key, found, &read));
    EXPECT_EQ(0, read.getNumProps());
}

TEST_F(OneRow, IsReadWhereTheIteratorIs) {
    read.removeAll();
    EXPECT_EQ(S_OK, readRow(*rows, read));
    ASSERT_EQ(1, read.getNumProps());
    EXPECT_EQ(7u, read.findProp(0x100)->getUI4());
}

TEST_F(OneRow, ThatIsGoneSinceTheStepToItIsEmpty) {
    ASSERT_EQ(S_OK, table.deleteRecord(oid));
    EXPECT_EQ(S_FALSE, readRow(*rows, read));
    EXPECT_EQ(0, read.getNumProps());
}

TEST_F(OneRow, ThatCannotBeReadAfterTheStepToItFails) {
    ASSERT_EQ(S_OK, table.insertRecord());  // so that the row is asked for again
    store.log.getError = ERROR_GEN_FAILURE;
    EXPECT_EQ(E_FAIL, readRow(*rows, read));
    EXPECT_EQ(0, read.getNumProps());
}

}  // namespace
}  // namespace PhoneBook
