#include "tessera/platform/objectstore/CCeDBDatabase.h"
#include "tests/platform/objectstore/StoreTest.h"

namespace objectstore_test {
namespace {

constexpr WORD number = 2;
constexpr WORD text = 1;

CCeDBRecord recordOf(LONG value) {
    CCeDBRecord record;
    record.addProp(CCeDBProp::ofI4(number, value));
    record.addProp(CCeDBProp::ofText(text, TEXT("row")));
    return record;
}

/// Opened in the order of the number, holding 10, 20 and 30.
class Wrapper : public StoreTest {
protected:
    Wrapper() {
        EXPECT_NE(database.create(TEXT("Rows"), 0, 0, nullptr), 0u);
        const CCeDBProp sort(CCeDBProp::typeI4, number);
        EXPECT_TRUE(database.open(TEXT("Rows"), &sort, nullptr));
        for (const LONG value : {30, 10, 20}) {
            oids[value] = database.add(recordOf(value));
        }
    }
    CCeDBDatabase database;
    std::map<LONG, CEOID> oids;
};
INSTANTIATE_TEST_SUITE_P(BothStores, Wrapper, bothStores, nameOfKind);

TEST_P(Wrapper, ExistsTellsWhetherTheStoreHasTheName) {
    EXPECT_TRUE(CCeDBDatabase::exists(TEXT("rows")));
    EXPECT_FALSE(CCeDBDatabase::exists(TEXT("No such")));
    EXPECT_FALSE(CCeDBDatabase::exists(nullptr));
}

TEST_P(Wrapper, CreateAnswersTheIdentifierAndOpensNothing) {
    CCeDBDatabase made;
    const CEOID oid = made.create(TEXT("Other"), 0, 0, nullptr);
    EXPECT_NE(oid, 0u);
    EXPECT_EQ(made.getOid(), oid);
    EXPECT_FALSE(made.isOpen());
    EXPECT_EQ(made.create(TEXT("Other"), 0, 0, nullptr), 0u);
    EXPECT_EQ(GetLastError(), ERROR_ALREADY_EXISTS);
}

TEST_P(Wrapper, OpenAndCloseSayWhetherTheyDid) {
    EXPECT_TRUE(database.isOpen());
    EXPECT_NE(database.getHandle(), INVALID_HANDLE_VALUE);
    EXPECT_TRUE(database.close());
    EXPECT_FALSE(database.isOpen());
    EXPECT_FALSE(database.close());
    EXPECT_FALSE(database.open(TEXT("No such"), nullptr, nullptr));
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
    EXPECT_TRUE(database.open(TEXT("Rows"), nullptr, nullptr));
}

TEST_P(Wrapper, SortPropertyGivesOrderAndFlags) {
    const CCeDBProp descending(CCeDBProp::typeI4, number, CEDB_SORT_DESCENDING);
    EXPECT_TRUE(database.open(TEXT("Rows"), &descending, nullptr));
    EXPECT_EQ(database.seekToIndex(0), oids[30]);
    EXPECT_TRUE(database.open(TEXT("Rows"), nullptr, nullptr));
    EXPECT_EQ(database.seekToIndex(0), oids[30]) << "the order of creation";
    EXPECT_EQ(database.seekNext(), oids[10]);
}

TEST_P(Wrapper, SizeAndCountAreThoseOfTheStore) {
    EXPECT_EQ(database.getNumRecords(), 3u);
    const DWORD size = database.getSize();
    EXPECT_GT(size, 0u);
    database.add(recordOf(40));
    EXPECT_EQ(database.getNumRecords(), 4u);
    EXPECT_GT(database.getSize(), size);
    const CCeDBDatabase closed;
    EXPECT_EQ(closed.getSize(), 0u);
    EXPECT_EQ(closed.getNumRecords(), 0u);
}

TEST_P(Wrapper, SeeksAnswerTheRecordReachedAndKeepIt) {
    EXPECT_EQ(database.getCurrent(), 0u);
    EXPECT_EQ(database.seekToIndex(0), oids[10]);
    EXPECT_EQ(database.seekNext(), oids[20]);
    EXPECT_EQ(database.getCurrent(), oids[20]);
    EXPECT_EQ(database.seekPrev(), oids[10]);
    EXPECT_EQ(database.seekToEnd(), oids[30]);
    EXPECT_EQ(database.seekToRecord(oids[20]), oids[20]);
    EXPECT_EQ(database.seekFirstEqual(CCeDBProp::ofI4(number, 30)), oids[30]);
    EXPECT_EQ(database.seekFirstEqual(CCeDBProp::ofText(text, TEXT("row"))), oids[10]);
    EXPECT_EQ(database.seekNextEqual(CCeDBProp::ofText(text, TEXT("row"))), oids[20]);
    EXPECT_FALSE(database.isEof());
}

TEST_P(Wrapper, EndOfFileTellsRunningOffFromAnError) {
    database.seekToEnd();
    EXPECT_EQ(database.seekNext(), 0u);
    EXPECT_TRUE(database.isEof());
    EXPECT_EQ(database.getCurrent(), 0u) << "no record is at the end";
    EXPECT_EQ(database.seekToIndex(1), oids[20]);
    EXPECT_FALSE(database.isEof());
    EXPECT_EQ(database.seekToRecord(0x7FFFFFFF), 0u);
    EXPECT_FALSE(database.isEof());
    EXPECT_EQ(database.getCurrent(), oids[20]) << "an error leaves the position";
    EXPECT_EQ(database.seekToIndex(3), 0u);
    EXPECT_TRUE(database.isEof());
    EXPECT_EQ(database.seekToIndex(-1), 0u);
    EXPECT_TRUE(database.isEof());
    EXPECT_EQ(database.seekFirstEqual(CCeDBProp::ofI4(number, 11)), 0u);
    EXPECT_TRUE(database.isEof());
    database.seekToIndex(0);
    EXPECT_EQ(database.seekPrev(), 0u);
    EXPECT_TRUE(database.isEof());
    database.close();
    EXPECT_EQ(database.seekNext(), 0u);
    EXPECT_FALSE(database.isEof()) << "a closed database is an error";
}

TEST_P(Wrapper, ReadGivesAllPropertiesInPlaceOfTheRecordsOwn) {
    CCeDBRecord record = recordOf(99);
    database.seekToRecord(oids[20]);
    EXPECT_TRUE(database.readCurrent(record));
    ASSERT_EQ(record.getNumProps(), 2);
    EXPECT_EQ(record.getPropAt(0), CCeDBProp::ofI4(number, 20));
    EXPECT_EQ(record.getPropAt(1), CCeDBProp::ofText(text, TEXT("row")));
}

TEST_P(Wrapper, FailedReadLeavesTheRecord) {
    CCeDBRecord record = recordOf(99);
    database.seekToEnd();
    database.seekNext();
    EXPECT_FALSE(database.readCurrent(record));
    EXPECT_EQ(record.getPropAt(0), CCeDBProp::ofI4(number, 99));
}

TEST_P(Wrapper, WriteGoesToTheRecordLastReached) {
    database.seekToRecord(oids[20]);
    const CCeDBProp extra = CCeDBProp::ofUI4(7, 70);
    CCeDBRecord change;
    change.addProp(CCeDBProp::ofI4(number, 25));
    EXPECT_TRUE(database.writeCurrent(change, &extra));
    CCeDBRecord record;
    EXPECT_TRUE(database.readCurrent(record));
    EXPECT_EQ(record.findProp(number)->getI4(), 25);
    EXPECT_EQ(record.findProp(text)->getText(), TEXT("row"));
    EXPECT_EQ(record.findProp(7)->getUI4(), 70u);
    EXPECT_EQ(database.seekNext(), oids[20]) << "the place was left at 20, and 25 comes behind it";
    EXPECT_EQ(database.seekNext(), oids[30]);
}

TEST_P(Wrapper, WriteWithoutARecordReachedFails) {
    EXPECT_FALSE(database.writeCurrent(recordOf(1)));
    EXPECT_EQ(GetLastError(), ERROR_NO_MORE_ITEMS);
    database.seekToEnd();
    database.seekNext();
    EXPECT_FALSE(database.writeCurrent(recordOf(1)));
    EXPECT_EQ(database.getNumRecords(), 3u);
}

TEST_P(Wrapper, WriteOverADeletedRecordFails) {
    database.seekToRecord(oids[20]);
    CeDeleteRecord(database.getHandle(), oids[20]);
    EXPECT_FALSE(database.writeCurrent(recordOf(1)));
    EXPECT_EQ(GetLastError(), ERROR_KEY_DELETED);
    EXPECT_EQ(database.seekNext(), oids[30]);
}

TEST_P(Wrapper, EmptyPropertyCannotBeWritten) {
    CCeDBRecord record;
    record.addProp(CCeDBProp());
    EXPECT_EQ(database.add(record), 0u);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
}

TEST_P(Wrapper, RemoveTakesTheDatabaseOutOfTheStore) {
    EXPECT_TRUE(database.remove());
    EXPECT_FALSE(database.isOpen());
    EXPECT_FALSE(CCeDBDatabase::exists(TEXT("Rows")));
    EXPECT_FALSE(database.remove());
}

}  // namespace
}  // namespace objectstore_test
