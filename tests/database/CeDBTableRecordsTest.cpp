#include <cstring>

#include <gtest/gtest.h>

#include "tessera/database/CeDBTable.h"
#include "tessera/platform/base/COleDateTime.h"
#include "tests/database/SampleTable.h"

namespace Database {
namespace {

using testing_support::MemoryStoreMount;
using testing_support::name;
using testing_support::nameIdent;
using testing_support::note;
using testing_support::noteIdent;
using testing_support::rank;
using testing_support::rankIdent;
using testing_support::recordOf;
using testing_support::sampleSchema;
using testing_support::SampleTable;
using testing_support::TemporaryStore;

TEST(CeDBTable, NotOpenFailsEveryRecordOperation) {
    SampleTable opened;
    opened.add(1, TEXT("a"));
    CeDBTable table(TEXT("QZ_Sample"), &sampleSchema);
    CCeDBRecord record = recordOf(rank(1));
    CCeDBProp props[] = {rank(1), name(TEXT("a")), note(TEXT("b"))};
    CObArray array;
    CCeDBProp key = rank(1);
    DWORD oid = 1;

    EXPECT_EQ(table.insertRecord(&record, oid), E_FAIL);
    EXPECT_EQ(table.insertRecord(props, oid), E_FAIL);
    EXPECT_EQ(table.insertRecord(array, oid), E_FAIL);
    EXPECT_EQ(table.insertRecord(), E_FAIL);
    EXPECT_EQ(table.insertRecord(&record), E_FAIL);
    EXPECT_EQ(table.deleteRecord(key), E_FAIL);
    EXPECT_EQ(table.deleteRecord(oid), E_FAIL);
    EXPECT_EQ(table.deleteAllRecords(), E_FAIL);
    EXPECT_EQ(table.updateRecord(oid, &record, 0, nullptr), E_FAIL);
    EXPECT_EQ(table.getRecord(oid, &record), E_FAIL);
    EXPECT_EQ(table.queryRecord(key, &oid, &record), E_FAIL);
    EXPECT_EQ(table.queryRecord(key, nullptr, &record), E_FAIL);
    EXPECT_EQ(table.queryRecord(key, &record), E_FAIL);
    EXPECT_EQ(table.getSize(), 0u);
    EXPECT_EQ(table.getNumRecords(), 0u);
    EXPECT_EQ(table.getCEOID(), 0u);
    EXPECT_EQ(opened.getNumRecords(), 1u);
}

TEST(CeDBTable, WhoseDatabaseIsGoneFailsInsteadOfFindingNothing) {
    SampleTable table;
    DWORD oid = table.add(1, TEXT("a"));
    CCeDBRecord record = recordOf(note(TEXT("untouched")));
    CCeDBProp key = rank(1);
    DWORD found = 99;
    ASSERT_TRUE(CeDeleteDatabaseEx(table.getCEOID()));

    EXPECT_EQ(table.queryRecord(key, &found, &record), E_FAIL);
    EXPECT_EQ(found, 0u);
    EXPECT_EQ(table.queryRecord(key, &record), E_FAIL);
    EXPECT_EQ(table.deleteRecord(key), E_FAIL);
    EXPECT_EQ(table.deleteRecord(oid), E_FAIL);
    EXPECT_EQ(table.deleteAllRecords(), E_FAIL);
    EXPECT_EQ(table.updateRecord(oid, &record, 0, nullptr), E_FAIL);
    EXPECT_EQ(table.insertRecord(&record), E_FAIL);
    EXPECT_EQ(table.getRecord(oid, &record), S_OK);
    ASSERT_EQ(record.getNumProps(), 1);
    EXPECT_EQ(record.getPropAt(0), note(TEXT("untouched")));
}

TEST(CeDBTableInsert, AnswersTheIdentifierOfTheNewRecord) {
    SampleTable table;
    CCeDBRecord record = recordOf(rank(7), name(TEXT("김민수")));
    DWORD oid = 0;

    EXPECT_EQ(table.insertRecord(&record, oid), S_OK);

    CCeDBRecord stored;
    ASSERT_NE(oid, 0u);
    EXPECT_EQ(table.getRecord(oid, &stored), S_OK);
    EXPECT_EQ(stored.getNumProps(), 2);
    EXPECT_EQ(stored.findProp(nameIdent)->getText(), TEXT("김민수"));
    EXPECT_EQ(table.getNumRecords(), 1u);
    EXPECT_GT(table.getSize(), 0u);
}

TEST(CeDBTableInsert, OfNothingFails) {
    SampleTable table;
    CCeDBRecord* const noRecord = nullptr;
    CCeDBProp* const noProps = nullptr;
    DWORD oid = 0;

    EXPECT_EQ(table.insertRecord(noRecord, oid), E_FAIL);
    EXPECT_EQ(table.insertRecord(noProps, oid), E_FAIL);
    EXPECT_EQ(table.getNumRecords(), 0u);
}

TEST(CeDBTableInsert, OfWhatTheStoreRefusesFails) {
    SampleTable table;
    CCeDBRecord record = recordOf(name(CString(u'x', 40000)));
    DWORD oid = 5;

    EXPECT_EQ(table.insertRecord(&record, oid), E_FAIL);

    EXPECT_EQ(oid, 0u);
    EXPECT_EQ(table.getNumRecords(), 0u);
}

TEST(CeDBTableInsert, TakesAsManyPropertiesOfAnArrayAsThereAreAttributes) {
    SampleTable table;
    CCeDBProp props[] = {rank(1), name(TEXT("a")), note(TEXT("b")), CCeDBProp::ofI4(0x777, 9)};
    DWORD oid = 0;

    EXPECT_EQ(table.insertRecord(props, oid), S_OK);

    CCeDBRecord stored;
    EXPECT_EQ(table.getRecord(oid, &stored), S_OK);
    EXPECT_EQ(stored.getNumProps(), 3);
    EXPECT_EQ(stored.findProp(0x777), nullptr);
}

TEST(CeDBTableInsert, OfAnObjectArrayPassesOverNullAndSurplusElements) {
    SampleTable table;
    CCeDBProp first = rank(1);
    CCeDBProp third = note(TEXT("b"));
    CCeDBProp surplus = CCeDBProp::ofI4(0x777, 9);
    CObArray props;
    for (CCeDBProp* prop : {&first, static_cast<CCeDBProp*>(nullptr), &third, &surplus})
        props.Add(prop);
    DWORD oid = 0;

    EXPECT_EQ(table.insertRecord(props, oid), S_OK);

    CCeDBRecord stored;
    EXPECT_EQ(table.getRecord(oid, &stored), S_OK);
    ASSERT_EQ(stored.getNumProps(), 2);
    EXPECT_EQ(stored.getPropAt(0), first);
    EXPECT_EQ(stored.getPropAt(1), third);
}

TEST(CeDBTableInsert, WithoutArgumentsAddsASampleOfEveryType) {
    const MemoryStoreMount store;
    AttrDef columns[] = {
        {TEXT("I2"), CCeDBProp::typeI2, 1},         {TEXT("UI2"), CCeDBProp::typeUI2, 2},
        {TEXT("I4"), CCeDBProp::typeI4, 3},         {TEXT("UI4"), CCeDBProp::typeUI4, 4},
        {TEXT("Time"), CCeDBProp::typeFileTime, 5}, {TEXT("Text"), CCeDBProp::typeText, 6},
        {TEXT("Blob"), CCeDBProp::typeBlob, 7},     {TEXT("Bool"), CCeDBProp::typeBool, 8},
        {TEXT("R8"), CCeDBProp::typeR8, 9},
    };
    const RecordDef schema(9, columns);
    CeDBTable table(TEXT("QZ_Types"), &schema);
    ASSERT_NE(table.create(), 0u);
    ASSERT_TRUE(table.open(nullptr));
    const FILETIME before = currentFileTime();

    EXPECT_EQ(table.insertRecord(), S_OK);

    const FILETIME after = currentFileTime();
    const std::unique_ptr<Iterator> records(table.getIterator(nullptr, nullptr));
    ASSERT_EQ(records->next(), S_OK);
    EXPECT_EQ(records->getProp(0).getI2(), 11);
    EXPECT_EQ(records->getProp(1).getUI2(), 291);
    EXPECT_EQ(records->getProp(2).getI4(), 11);
    EXPECT_EQ(records->getProp(3).getUI4(), table.getCEOID());
    EXPECT_GE(ticksOf(records->getProp(4).getFileTime()), ticksOf(before));
    EXPECT_LE(ticksOf(records->getProp(4).getFileTime()), ticksOf(after));
    EXPECT_EQ(records->getProp(5).getText(), TEXT("한글 테스트."));
    const CCeDBProp blob = records->getProp(6);
    ASSERT_EQ(blob.getBlob().size(), 12u);
    EXPECT_EQ(std::memcmp(blob.getBlob().data(), TEXT("한글이다. "), 12), 0);
    EXPECT_TRUE(records->getProp(7).getBool());
    EXPECT_EQ(records->getProp(8).getR8(), 1.11);
    EXPECT_EQ(table.getNumRecords(), 1u);
}

TEST(CeDBTableDelete, TakesTheNamedRecordAndLeavesTheCallersIdentifier) {
    SampleTable table;
    const DWORD kept = table.add(1, TEXT("a"));
    DWORD doomed = table.add(2, TEXT("b"));
    const DWORD given = doomed;

    EXPECT_EQ(table.deleteRecord(doomed), S_OK);

    EXPECT_EQ(doomed, given);
    EXPECT_EQ(table.oids(), std::vector<DWORD>{kept});
    EXPECT_EQ(table.deleteRecord(doomed), E_FAIL);
}

TEST(CeDBTableDelete, OfIdentifierZeroTakesTheRecordAtThePosition) {
    SampleTable table;
    const DWORD first = table.add(1, TEXT("a"));
    const DWORD second = table.add(2, TEXT("b"));
    DWORD current = 0;
    ASSERT_EQ(table.getDB()->seekToRecord(second), second);

    EXPECT_EQ(table.deleteRecord(current), S_OK);

    EXPECT_EQ(current, 0u);
    EXPECT_EQ(table.oids(), std::vector<DWORD>{first});
}

TEST(CeDBTableDelete, OfIdentifierZeroWithoutAPositionFails) {
    SampleTable table;
    table.add(1, TEXT("a"));
    table.close();
    ASSERT_TRUE(table.openByRank());
    DWORD current = 0;

    EXPECT_EQ(table.deleteRecord(current), E_FAIL);

    EXPECT_EQ(table.getNumRecords(), 1u);
}

TEST(CeDBTableDelete, ByKeyTakesTheFirstThatEqualsIt) {
    SampleTable table;
    const DWORD other = table.add(1, TEXT("a"));
    table.add(2, TEXT("b"));
    const DWORD second = table.add(2, TEXT("c"));
    CCeDBProp key = rank(2);

    EXPECT_EQ(table.deleteRecord(key), S_OK);

    EXPECT_EQ(table.oids(), (std::vector<DWORD>{other, second}));
}

TEST(CeDBTableDelete, ByAKeyThatNothingHasFindsNothing) {
    SampleTable table;
    table.add(1, TEXT("a"));
    CCeDBProp key = rank(2);

    EXPECT_EQ(table.deleteRecord(key), S_FALSE);

    EXPECT_EQ(table.getNumRecords(), 1u);
}

TEST(CeDBTableDeleteAll, LeavesAnEmptyTableOpen) {
    SampleTable table;
    for (LONG i = 0; i < 300; ++i)
        table.add(i % 7, TEXT("a"));

    EXPECT_EQ(table.deleteAllRecords(), S_OK);

    EXPECT_EQ(table.getNumRecords(), 0u);
    EXPECT_TRUE(table.isOpen());
    EXPECT_NE(table.add(1, TEXT("a")), 0u);
}

TEST(CeDBTableDeleteAll, OnAnEmptyTableSucceeds) {
    SampleTable table;

    EXPECT_EQ(table.deleteAllRecords(), S_OK);
}

TEST(CeDBTableUpdate, WritesTheNamedPropertiesAndKeepsTheOthers) {
    SampleTable table;
    const DWORD oid = table.add(recordOf(rank(1), name(TEXT("a")), note(TEXT("kept"))));
    table.add(2, TEXT("other"));
    CCeDBRecord change = recordOf(name(TEXT("b")), rank(9));

    EXPECT_EQ(table.updateRecord(oid, &change, 0, nullptr), S_OK);

    CCeDBRecord stored;
    DWORD asked = oid;
    EXPECT_EQ(table.getRecord(asked, &stored), S_OK);
    EXPECT_EQ(stored.findProp(rankIdent)->getI4(), 9);
    EXPECT_EQ(stored.findProp(nameIdent)->getText(), TEXT("b"));
    EXPECT_EQ(stored.findProp(noteIdent)->getText(), TEXT("kept"));
}

TEST(CeDBTableUpdate, WritesAnExtraPropertyAlong) {
    SampleTable table;
    const DWORD oid = table.add(1, TEXT("a"));
    CCeDBRecord change = recordOf(name(TEXT("b")));
    CCeDBProp extra = note(TEXT("extra"));

    EXPECT_EQ(table.updateRecord(oid, &change, 2, &extra), S_OK);

    CCeDBRecord stored;
    DWORD asked = oid;
    EXPECT_EQ(table.getRecord(asked, &stored), S_OK);
    EXPECT_EQ(stored.findProp(nameIdent)->getText(), TEXT("b"));
    EXPECT_EQ(stored.findProp(noteIdent)->getText(), TEXT("extra"));
}

TEST(CeDBTableUpdate, OfIdentifierZeroWritesTheRecordAtThePosition) {
    SampleTable table;
    table.add(1, TEXT("a"));
    DWORD second = table.add(2, TEXT("b"));
    CCeDBRecord change = recordOf(name(TEXT("changed")));
    ASSERT_EQ(table.getDB()->seekToRecord(second), second);

    EXPECT_EQ(table.updateRecord(0, &change, 0, nullptr), S_OK);

    CCeDBRecord stored;
    EXPECT_EQ(table.getRecord(second, &stored), S_OK);
    EXPECT_EQ(stored.findProp(nameIdent)->getText(), TEXT("changed"));
    EXPECT_EQ(table.getNumRecords(), 2u);
}

TEST(CeDBTableUpdate, WithoutARecordToWriteFailsAndAddsNone) {
    SampleTable table;
    DWORD gone = table.add(1, TEXT("a"));
    ASSERT_EQ(table.deleteRecord(gone), S_OK);
    table.close();
    ASSERT_TRUE(table.openByRank());
    CCeDBRecord change = recordOf(name(TEXT("b")));

    EXPECT_EQ(table.updateRecord(gone, &change, 0, nullptr), E_FAIL);
    EXPECT_EQ(table.updateRecord(0, &change, 0, nullptr), E_FAIL);
    EXPECT_EQ(table.updateRecord(gone, nullptr, 0, nullptr), E_FAIL);
    EXPECT_EQ(table.getNumRecords(), 0u);
}

TEST(CeDBTableGetRecord, OfAnIdentifierThatIsGoneLeavesTheRecordAlone) {
    SampleTable table;
    DWORD gone = table.add(1, TEXT("a"));
    table.add(2, TEXT("b"));
    ASSERT_EQ(table.deleteRecord(gone), S_OK);
    DWORD none = 0;
    CCeDBRecord record = recordOf(note(TEXT("untouched")));

    EXPECT_EQ(table.getRecord(gone, &record), S_OK);
    EXPECT_EQ(table.getRecord(none, &record), S_OK);

    ASSERT_EQ(record.getNumProps(), 1);
    EXPECT_EQ(record.getPropAt(0), note(TEXT("untouched")));
}

TEST(CeDBTableGetRecord, WithoutARecordToFillFails) {
    SampleTable table;
    DWORD oid = table.add(1, TEXT("a"));

    EXPECT_EQ(table.getRecord(oid, nullptr), E_FAIL);
}

TEST(CeDBTableQuery, FindsAndReadsTheFirstEqualRecord) {
    SampleTable table;
    table.add(1, TEXT("a"));
    const DWORD first = table.add(2, TEXT("b"));
    table.add(2, TEXT("c"));
    CCeDBProp key = rank(2);
    CCeDBRecord record;
    DWORD oid = 0;

    EXPECT_EQ(table.queryRecord(key, &oid, &record), S_OK);

    EXPECT_EQ(oid, first);
    EXPECT_EQ(record.findProp(nameIdent)->getText(), TEXT("b"));
    EXPECT_EQ(table.queryRecord(key, &oid, nullptr), S_OK);
}

TEST(CeDBTableQuery, WithoutTheIdentifierReportsTheRecordAlone) {
    SampleTable table;
    table.add(2, TEXT("b"));
    CCeDBProp key = rank(2);
    CCeDBRecord record;

    EXPECT_EQ(table.queryRecord(key, &record), S_OK);

    EXPECT_EQ(record.findProp(nameIdent)->getText(), TEXT("b"));
}

TEST(CeDBTableQuery, ThatMatchesNothingZeroesTheIdentifierAndLeavesTheRecord) {
    SampleTable table;
    table.add(1, TEXT("a"));
    CCeDBProp key = rank(2);
    CCeDBRecord record = recordOf(note(TEXT("untouched")));
    DWORD oid = 99;

    EXPECT_EQ(table.queryRecord(key, &oid, &record), S_FALSE);

    EXPECT_EQ(oid, 0u);
    EXPECT_EQ(record.getNumProps(), 1);
}

TEST(CeDBTableQuery, WithoutAPlaceForTheIdentifierIsRefused) {
    SampleTable table;
    CCeDBProp key = rank(2);

    EXPECT_EQ(table.queryRecord(key, nullptr, nullptr), E_POINTER);
}

TEST(CeDBTableQuery, ForAValueThatNoOrderHasFails) {
    SampleTable table;
    table.add(1, TEXT("a"));
    CCeDBProp key = CCeDBProp::ofBlob(noteIdent, "x", 1);
    DWORD oid = 99;

    EXPECT_EQ(table.queryRecord(key, &oid, nullptr), E_FAIL);

    EXPECT_EQ(oid, 0u);
}

TEST(CeDBTableQuery, FindsByAnotherPropertyThanTheOrders) {
    SampleTable table;
    table.add(1, TEXT("a"));
    const DWORD wanted = table.add(2, TEXT("b"));
    CCeDBProp key = name(TEXT("b"));
    DWORD oid = 0;

    EXPECT_EQ(table.queryRecord(key, &oid, nullptr), S_OK);

    EXPECT_EQ(oid, wanted);
}

TEST(CeDBTable, CountsTheLowSixteenBitsOfItsRecords) {
    SampleTable table;
    {
        ObjectStoreBatch batch;
        CCeDBRecord record = recordOf(rank(1));
        for (int i = 0; i < 65'538; ++i)
            ASSERT_EQ(table.insertRecord(&record), S_OK);
        ASSERT_TRUE(batch.end());
    }

    EXPECT_EQ(table.getDB()->getNumRecords(), 65'538u);
    EXPECT_EQ(table.getNumRecords(), 2u);
}

TEST(CeDBTable, RecordsOutliveTheStoresClosing) {
    TemporaryStore store;
    {
        CeDBTable table(TEXT("QZ_Sample"), &sampleSchema);
        ASSERT_NE(table.create(), 0u);
        ASSERT_TRUE(table.open(nullptr));
        CCeDBRecord record = recordOf(rank(7), name(TEXT("김민수")));
        ASSERT_EQ(table.insertRecord(&record), S_OK);
    }

    store.remount();

    CeDBTable table(TEXT("QZ_Sample"), &sampleSchema);
    ASSERT_TRUE(table.open(nullptr));
    CCeDBProp key = name(TEXT("김민수"));
    CCeDBRecord stored;
    EXPECT_EQ(table.queryRecord(key, &stored), S_OK);
    EXPECT_EQ(stored.findProp(rankIdent)->getI4(), 7);
}

}  // namespace
}  // namespace Database
