#include <gtest/gtest.h>

#include "tessera/database/CeDBIterator.h"
#include "tests/database/IteratorOverSample.h"

namespace Database {
namespace {

using testing_support::name;
using testing_support::nameIdent;
using testing_support::note;
using testing_support::OpenIterator;
using testing_support::rank;
using testing_support::recordOf;
using testing_support::SampleTable;
using testing_support::ThreeRecords;

TEST(CeDBIterator, ReadsTheCurrentRecord) {
    ThreeRecords table;
    OpenIterator records(&table, nullptr, nullptr);
    CCeDBRecord record;
    ASSERT_EQ(records.next(), S_OK);
    ASSERT_EQ(records.next(), S_OK);

    EXPECT_EQ(records.getRecord(&record), S_OK);
    EXPECT_EQ(record.findProp(nameIdent)->getText(), TEXT("b"));
    EXPECT_EQ(records.getProp(0), rank(2));
    EXPECT_EQ(records.getString(0), TEXT("2"));
    EXPECT_EQ(records.getString(1), TEXT("b"));
    EXPECT_EQ(records.curIdx, 1);
    EXPECT_EQ(records.getRecord(nullptr), E_POINTER);
}

TEST(CeDBIterator, ReadsTheRecordItStandsOnWhereverTheTableWasMoved) {
    ThreeRecords table;
    OpenIterator records(&table, nullptr, nullptr);
    CCeDBRecord record;
    ASSERT_EQ(records.next(), S_OK);
    table.getDB()->seekToEnd();

    EXPECT_EQ(records.getString(1), TEXT("a"));
    EXPECT_EQ(records.getRecord(&record), S_OK);
    EXPECT_EQ(record.findProp(nameIdent)->getText(), TEXT("a"));
}

TEST(CeDBIterator, WithoutAPositionReadsNothingAndFailsNot) {
    ThreeRecords table;
    OpenIterator records(&table, nullptr, nullptr);
    CCeDBRecord record = recordOf(note(TEXT("untouched")));

    EXPECT_EQ(records.getRecord(&record), S_OK);
    ASSERT_EQ(record.getNumProps(), 1);
    EXPECT_EQ(record.getPropAt(0), note(TEXT("untouched")));
    EXPECT_TRUE(records.getString(1).IsEmpty());
    EXPECT_TRUE(records.getProp(1).isEmpty());
}

TEST(CeDBIterator, ReadsNothingOfACurrentRecordThatIsGone) {
    ThreeRecords table;
    OpenIterator records(&table, nullptr, nullptr);
    CCeDBRecord record = recordOf(note(TEXT("untouched")));
    ASSERT_EQ(records.next(), S_OK);
    ASSERT_EQ(table.deleteRecord(table.first), S_OK);

    EXPECT_EQ(records.getRecord(&record), S_OK);
    EXPECT_EQ(record.getNumProps(), 1);
    EXPECT_TRUE(records.getString(1).IsEmpty());
}

TEST(CeDBIterator, AnAttributeOutsideTheSchemaIsEmpty) {
    ThreeRecords table;
    OpenIterator records(&table, nullptr, nullptr);
    ASSERT_EQ(records.next(), S_OK);

    for (const int attrIdx : {-1, 3, 1000}) {
        EXPECT_TRUE(records.getString(attrIdx).IsEmpty());
        EXPECT_TRUE(records.getProp(attrIdx).isEmpty());
        EXPECT_TRUE(records.getPropAt(0, attrIdx).isEmpty());
        EXPECT_TRUE(records.getStringAt(static_cast<int>(table.first), attrIdx).IsEmpty());
    }
}

TEST(CeDBIterator, AnAttributeThatTheRecordLacksIsEmpty) {
    SampleTable table;
    table.add(recordOf(rank(1), name(TEXT("a")), CCeDBProp::ofI4(0x777, 1)));
    OpenIterator records(&table, nullptr, nullptr);
    ASSERT_EQ(records.next(), S_OK);

    EXPECT_TRUE(records.getString(2).IsEmpty());
    EXPECT_TRUE(records.getProp(2).isEmpty());
}

TEST(CeDBIterator, AnAttributeBeyondTheNumberOfPropertiesIsEmptyThoughTheRecordHasIt) {
    SampleTable table;
    table.add(recordOf(rank(1), note(TEXT("there"))));
    OpenIterator records(&table, nullptr, nullptr);
    ASSERT_EQ(records.next(), S_OK);

    EXPECT_TRUE(records.getString(2).IsEmpty());
    EXPECT_TRUE(records.getProp(2).isEmpty());
    EXPECT_TRUE(records.getPropAt(0, 2).isEmpty());
    EXPECT_EQ(records.getString(0), TEXT("1"));
}

TEST(CeDBIterator, GoesToAnIndex) {
    ThreeRecords table;
    OpenIterator records(&table, nullptr, nullptr);

    EXPECT_EQ(records.getAt(2), table.third);
    EXPECT_EQ(records.curIdx, 2);
    EXPECT_EQ(records.getCur(), table.third);
    EXPECT_EQ(records.getAt(0), table.first);
    EXPECT_EQ(records.next(), S_OK);
    EXPECT_EQ(records.getCur(), table.second);
}

TEST(CeDBIterator, AnIndexOutsideIsNoRecordAndChangesNothing) {
    ThreeRecords table;
    OpenIterator records(&table, nullptr, nullptr);
    ASSERT_EQ(records.getAt(1), table.second);

    for (const int idx : {-1, 3, 4, 1000}) {
        EXPECT_EQ(records.getAt(idx), 0u) << idx;
        EXPECT_EQ(records.curIdx, 1);
        EXPECT_EQ(records.getCur(), table.second);
    }
}

TEST(CeDBIterator, TheCountItselfIsTriedAsAnIndex) {
    ThreeRecords table;
    OpenIterator records(&table, nullptr, nullptr);
    const DWORD fourth = table.add(4, TEXT("d"));  // not counted by the iterator, and reached all the same

    EXPECT_EQ(records.getNumItems(), 3);
    EXPECT_EQ(records.getAt(3), fourth);
    EXPECT_EQ(records.curIdx, 3);
}

TEST(CeDBIterator, ReadsTheRecordAtAnIndexAndGoesThere) {
    ThreeRecords table;
    OpenIterator records(&table, nullptr, nullptr);
    CCeDBRecord record;

    EXPECT_EQ(records.getRecordAt(1, &record), S_OK);

    EXPECT_EQ(record.findProp(nameIdent)->getText(), TEXT("b"));
    EXPECT_EQ(records.curIdx, 1);
    EXPECT_EQ(records.getCur(), table.second);
}

TEST(CeDBIterator, RefusesARecordAtAnIndexThatIsNotThere) {
    ThreeRecords table;
    OpenIterator records(&table, nullptr, nullptr);
    CCeDBRecord record;

    EXPECT_EQ(records.getRecordAt(0, nullptr), E_POINTER);
    for (const int idx : {-1, 3, 4})
        EXPECT_EQ(records.getRecordAt(idx, &record), E_FAIL) << idx;
    EXPECT_EQ(records.curIdx, -1);
}

TEST(CeDBIterator, ReadsAPropertyAtAnIndexAndGoesThere) {
    ThreeRecords table;
    OpenIterator records(&table, nullptr, nullptr);

    EXPECT_EQ(records.getPropAt(2, 1), name(TEXT("c")));
    EXPECT_EQ(records.curIdx, 2);
    EXPECT_EQ(records.getCur(), table.third);
    EXPECT_TRUE(records.getPropAt(3, 1).isEmpty());
    EXPECT_EQ(records.curIdx, 2);
}

TEST(CeDBIterator, TextAtTakesTheNumberForAnIdentifier) {
    ThreeRecords table;
    OpenIterator records(&table, nullptr, nullptr);
    ASSERT_NE(table.third, 2u);

    EXPECT_TRUE(records.getStringAt(2, 1).IsEmpty());

    EXPECT_EQ(records.curIdx, -1);
    EXPECT_EQ(records.getCur(), 0u);
}

TEST(CeDBIterator, TextAtFindsARecordWhoseIdentifierIsWithinTheCount) {
    SampleTable table;
    DWORD highest = 0;
    while (highest < 40)
        highest = table.add(static_cast<LONG>(highest), TEXT("row"));
    const DWORD wanted = table.oids().front();
    while (table.getNumRecords() < wanted)
        table.add(1000, TEXT("filler"));
    OpenIterator records(&table, nullptr, nullptr);
    const int idx = static_cast<int>(wanted);

    EXPECT_EQ(records.getStringAt(idx, 1), TEXT("row"));

    EXPECT_EQ(records.curIdx, idx);
    EXPECT_EQ(records.getCur(), wanted);
    EXPECT_TRUE(records.getStringAt(records.getNumItems() + 1, 1).IsEmpty());
    EXPECT_TRUE(records.getStringAt(-1, 1).IsEmpty());
}

TEST(CeDBIterator, TextAtFindsAnAttributeBeyondTheNumberOfPropertiesToo) {
    SampleTable table;
    const DWORD wanted = table.add(recordOf(rank(1), note(TEXT("there"))));
    while (table.getNumRecords() < wanted)
        table.add(1000, TEXT("filler"));
    OpenIterator records(&table, nullptr, nullptr);
    const int idx = static_cast<int>(wanted);

    EXPECT_EQ(records.getStringAt(idx, 2), TEXT("there"));
    EXPECT_EQ(records.curIdx, idx);
    EXPECT_TRUE(records.getStringAt(idx, 1).IsEmpty()) << "it has no name";
}

}  // namespace
}  // namespace Database
