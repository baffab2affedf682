#include <gtest/gtest.h>

#include "tessera/database/CeDBIterator.h"
#include "tests/database/IteratorOverSample.h"

namespace Database {
namespace {

using testing_support::OpenIterator;
using testing_support::rank;
using testing_support::recordOf;
using testing_support::SampleTable;
using testing_support::ThreeRecords;

TEST(CeDBIterator, ComesFromTheTableWithTheGivenSortIndex) {
    ThreeRecords table;
    const std::unique_ptr<Iterator> plain(table.getIterator(nullptr, nullptr));
    const std::unique_ptr<Iterator> sorted(table.getIterator(1, nullptr, nullptr));

    EXPECT_NE(dynamic_cast<CeDBIterator*>(plain.get()), nullptr);
    EXPECT_NE(dynamic_cast<CeDBIterator*>(sorted.get()), nullptr);
    EXPECT_EQ(OpenIterator(&table, 2, nullptr, nullptr).sortIdx, 2);
    EXPECT_EQ(plain->getNumItems(), 3);
}

TEST(CeDBIterator, OverAnEmptyTableIsNeverOpened) {
    SampleTable table;
    OpenIterator records(&table, nullptr, nullptr);
    CCeDBRecord record;

    EXPECT_FALSE(records.isOpened());
    EXPECT_EQ(records.next(), E_ACCESSDENIED);
    EXPECT_EQ(records.prev(), E_ACCESSDENIED);
    EXPECT_EQ(records.last(), E_ACCESSDENIED);
    EXPECT_EQ(records.getCur(), 0u);
    EXPECT_EQ(records.getAt(0), 0u);
    EXPECT_EQ(records.getRecordAt(0, &record), E_ACCESSDENIED);
    EXPECT_EQ(records.deleteAt(0, false), E_ACCESSDENIED);
    EXPECT_EQ(records.init(), S_OK);
}

TEST(CeDBIterator, OverATableThatIsNotOpenIsDenied) {
    ThreeRecords table;
    table.close();
    OpenIterator records(&table, nullptr, nullptr);
    CCeDBRecord record;

    EXPECT_EQ(records.init(), E_ACCESSDENIED);
    EXPECT_FALSE(records.isOpened());
    EXPECT_EQ(records.getRecord(&record), E_ACCESSDENIED);
    EXPECT_TRUE(records.getString(0).IsEmpty());
    EXPECT_TRUE(records.getProp(0).isEmpty());
}

TEST(CeDBIterator, WithoutATableIsDenied) {
    OpenIterator records(nullptr, nullptr, nullptr);
    CCeDBRecord record;

    EXPECT_EQ(records.init(), E_ACCESSDENIED);
    EXPECT_FALSE(records.isOpened());
    EXPECT_EQ(records.next(), E_ACCESSDENIED);
    EXPECT_EQ(records.getRecord(&record), E_ACCESSDENIED);
    EXPECT_TRUE(records.getString(0).IsEmpty());
}

TEST(CeDBIterator, AfterItsTableWasClosedIsDenied) {
    ThreeRecords table;
    OpenIterator records(&table, nullptr, nullptr);
    CCeDBRecord record;
    ASSERT_EQ(records.next(), S_OK);

    table.close();

    EXPECT_EQ(records.next(), E_ACCESSDENIED);
    EXPECT_EQ(records.prev(), E_ACCESSDENIED);
    EXPECT_EQ(records.last(), E_ACCESSDENIED);
    EXPECT_EQ(records.getRecord(&record), E_ACCESSDENIED);
    EXPECT_EQ(records.getRecordAt(0, &record), E_ACCESSDENIED);
    EXPECT_EQ(records.getAt(0), 0u);
    EXPECT_TRUE(records.getStringAt(static_cast<int>(table.first), 1).IsEmpty());
}

TEST(CeDBIterator, AfterItsDatabaseWasRemovedFailsAndStaysWhereItWas) {
    ThreeRecords table;
    OpenIterator records(&table, nullptr, nullptr);
    CCeDBProp wanted = rank(1);
    OpenIterator equal(&table, &wanted, nullptr);
    CCeDBRecord record = recordOf(rank(9));
    ASSERT_EQ(records.next(), S_OK);
    ASSERT_TRUE(CeDeleteDatabaseEx(table.getCEOID()));

    EXPECT_EQ(records.next(), E_FAIL);
    EXPECT_EQ(records.prev(), E_FAIL);
    EXPECT_EQ(records.last(), E_FAIL);
    EXPECT_EQ(equal.next(), E_FAIL);
    EXPECT_EQ(records.getAt(1), 0u);
    EXPECT_EQ(records.getRecordAt(1, &record), E_FAIL);
    EXPECT_EQ(records.getRecord(&record), S_OK);  // a record that is not reached is no failure
    EXPECT_EQ(record.getPropAt(0), rank(9));
    EXPECT_EQ(records.curIdx, 0);
    EXPECT_EQ(records.getCur(), table.first);
}

TEST(CeDBIterator, StandsBeforeTheFirstRecordUntilItIsMoved) {
    ThreeRecords table;
    OpenIterator records(&table, nullptr, nullptr);

    EXPECT_TRUE(records.isOpened());
    EXPECT_EQ(records.curIdx, -1);
    EXPECT_EQ(records.getCur(), 0u);
    EXPECT_EQ(records.next(), S_OK);
    EXPECT_EQ(records.getCur(), table.first);
    EXPECT_EQ(records.curIdx, 0);
}

TEST(CeDBIterator, WalksForwardInTheTablesOrder) {
    SampleTable table;
    const DWORD second = table.add(2, TEXT("b"));
    const DWORD first = table.add(1, TEXT("a"));
    const DWORD third = table.add(3, TEXT("c"));
    OpenIterator records(&table, nullptr, nullptr);

    for (const DWORD expected : {first, second, third}) {
        EXPECT_EQ(records.next(), S_OK);
        EXPECT_EQ(records.getCur(), expected);
    }
    EXPECT_EQ(records.curIdx, 2);
}

TEST(CeDBIterator, PastTheLastRecordTheStepFailsAndChangesNothing) {
    ThreeRecords table;
    OpenIterator records(&table, nullptr, nullptr);
    while (records.next() == S_OK)
        continue;

    EXPECT_EQ(records.next(), S_FALSE);
    EXPECT_EQ(records.curIdx, 2);
    EXPECT_EQ(records.getCur(), table.third);
}

TEST(CeDBIterator, FirstStepBackLandsOnTheLastRecordAndLeavesMinusTwo) {
    ThreeRecords table;
    OpenIterator records(&table, nullptr, nullptr);

    EXPECT_EQ(records.prev(), S_OK);
    EXPECT_EQ(records.getCur(), table.third);
    EXPECT_EQ(records.curIdx, -2);
    EXPECT_EQ(records.prev(), S_OK);
    EXPECT_EQ(records.getCur(), table.second);
    EXPECT_EQ(records.curIdx, -3);
}

TEST(CeDBIterator, BeforeTheFirstRecordTheStepBackFailsAndChangesNothing) {
    ThreeRecords table;
    OpenIterator records(&table, nullptr, nullptr);
    ASSERT_EQ(records.next(), S_OK);

    EXPECT_EQ(records.prev(), S_FALSE);
    EXPECT_EQ(records.curIdx, 0);
    EXPECT_EQ(records.getCur(), table.first);
}

TEST(CeDBIterator, StepsBackToTheRecordBefore) {
    ThreeRecords table;
    OpenIterator records(&table, nullptr, nullptr);
    ASSERT_EQ(records.next(), S_OK);
    ASSERT_EQ(records.next(), S_OK);

    EXPECT_EQ(records.prev(), S_OK);
    EXPECT_EQ(records.getCur(), table.first);
    EXPECT_EQ(records.curIdx, 0);
}

TEST(CeDBIterator, StepBackToIndexMinusOneIsAFreshStart) {
    ThreeRecords table;
    OpenIterator records(&table, nullptr, nullptr);
    ASSERT_EQ(records.next(), S_OK);
    ASSERT_EQ(records.last(), S_OK);  // the index is -1 again

    EXPECT_EQ(records.curIdx, -1);
    EXPECT_EQ(records.next(), S_OK);
    EXPECT_EQ(records.getCur(), table.first);
}

TEST(CeDBIterator, LastCountsAsOneStepBack) {
    ThreeRecords table;
    OpenIterator records(&table, nullptr, nullptr);

    EXPECT_EQ(records.last(), S_OK);
    EXPECT_EQ(records.getCur(), table.third);
    EXPECT_EQ(records.curIdx, -2);
}

TEST(CeDBIterator, VisitsOnlyTheRecordsThatEqualTheLowerBound) {
    SampleTable table;
    table.add(1, TEXT("a"));
    const DWORD first = table.add(2, TEXT("b"));
    const DWORD second = table.add(2, TEXT("c"));
    table.add(3, TEXT("d"));
    CCeDBProp wanted = rank(2);
    CCeDBProp ignored = rank(3);
    OpenIterator records(&table, 0, &wanted, &ignored);

    EXPECT_EQ(records.next(), S_OK);
    EXPECT_EQ(records.getCur(), first);
    EXPECT_EQ(records.next(), S_OK);
    EXPECT_EQ(records.getCur(), second);
    EXPECT_NE(records.next(), S_OK);
    EXPECT_EQ(records.getCur(), second);
    EXPECT_EQ(records.curIdx, 1);
}

TEST(CeDBIterator, AnUpperBoundAloneBoundsNothing) {
    ThreeRecords table;
    CCeDBProp ignored = rank(1);
    OpenIterator records(&table, nullptr, &ignored);

    int visited = 0;
    while (records.next() == S_OK)
        ++visited;

    EXPECT_EQ(visited, 3);
}

TEST(CeDBIterator, ALowerBoundThatNoRecordHasLeavesNoPosition) {
    ThreeRecords table;
    CCeDBProp wanted = rank(9);
    OpenIterator records(&table, &wanted, nullptr);

    const HRESULT moved = records.next();

    EXPECT_TRUE(moved == S_FALSE || moved == E_FAIL) << moved;
    EXPECT_EQ(records.curIdx, -1);
    EXPECT_EQ(records.getCur(), 0u);
}

TEST(CeDBIterator, CountsOneLessForEachDeletedCurrent) {
    ThreeRecords table;
    OpenIterator records(&table, nullptr, nullptr);
    ASSERT_EQ(records.next(), S_OK);

    EXPECT_EQ(records.deleteCur(), S_OK);
    EXPECT_EQ(records.getCur(), table.first);
    EXPECT_EQ(records.getNumItems(), 2);
    EXPECT_EQ(table.getNumRecords(), 3u);
    EXPECT_EQ(records.deleteAt(1, false), S_OK);
    EXPECT_EQ(records.deleteAt(0, false), S_OK);
    EXPECT_FALSE(records.isOpened());
    EXPECT_EQ(records.getCur(), 0u);
}

TEST(CeDBIterator, DeletingTheCurrentRecordLeavesTheNextStepToTheOneBehindIt) {
    ThreeRecords table;
    OpenIterator records(&table, nullptr, nullptr);
    ASSERT_EQ(records.next(), S_OK);

    ASSERT_EQ(table.deleteRecord(table.first), S_OK);

    EXPECT_EQ(records.next(), S_OK);
    EXPECT_EQ(records.getCur(), table.second);
}

TEST(CeDBIterator, RewritingTheSortPropertyLeavesTheNextStepToTheOneBehindTheOldPlace) {
    ThreeRecords table;
    OpenIterator records(&table, nullptr, nullptr);
    CCeDBRecord change = recordOf(rank(100));
    ASSERT_EQ(records.next(), S_OK);

    ASSERT_EQ(table.updateRecord(0, &change, 0, nullptr), S_OK);

    EXPECT_EQ(records.next(), S_OK);
    EXPECT_EQ(records.getCur(), table.second);
}

}  // namespace
}  // namespace Database
