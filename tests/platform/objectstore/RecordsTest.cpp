#include <cstdlib>

#include "tests/platform/objectstore/StoreTest.h"
#include "tests/support/Sql.h"

namespace objectstore_test {
namespace {

using testing_support::TemporaryStore;

class Records : public StoreTest {
protected:
    Records() { makeDatabase(TEXT("Rows")); }
};
INSTANTIATE_TEST_SUITE_P(BothStores, Records, bothStores, nameOfKind);

TEST_P(Records, EveryKindOfValueComesBackAsWritten) {
    OpenDatabase rows(TEXT("Rows"));
    const std::string bytes("\0\x01\xFF", 3);
    const CEOID oid = rows.add(Row()
                                   .i2(-2)
                                   .number(-70000)
                                   .real(-0.25)
                                   .boolean(7)
                                   .ui2(65535)
                                   .ui4(4000000000u)
                                   .name(TEXT("김민수"))
                                   .time(0x0123456789ABCDEF)
                                   .blob(bytes));
    const ReadRecord record = rows.readRecord(oid);
    EXPECT_EQ(record.values.at(shortId).val.iVal, -2);
    EXPECT_EQ(record.number(), -70000);
    EXPECT_EQ(record.values.at(realId).val.dblVal, -0.25);
    EXPECT_EQ(record.values.at(boolId).val.boolVal, TRUE);
    EXPECT_EQ(record.values.at(wordId).val.uiVal, 65535);
    EXPECT_EQ(record.values.at(dwordId).val.ulVal, 4000000000u);
    EXPECT_EQ(record.name(), TEXT("김민수"));
    EXPECT_EQ(ticksOf(record.values.at(timeId).val.filetime), 0x0123456789ABCDEFu);
    EXPECT_EQ(record.blobs.at(blobId), bytes);
}

TEST_P(Records, EmptyTextAndEmptyBlobAreValues) {
    OpenDatabase rows(TEXT("Rows"));
    const ReadRecord record = rows.readRecord(rows.add(Row().name(TEXT("")).blob("").boolean(FALSE)));
    EXPECT_EQ(record.ids, (std::vector<CEPROPID>{nameId, blobId, boolId}));
    EXPECT_EQ(record.texts.at(nameId), TEXT(""));
    EXPECT_EQ(record.blobs.at(blobId), "");
    EXPECT_EQ(record.values.at(boolId).val.boolVal, FALSE);
}

TEST_P(Records, WriteReplacesTheNamedPropertiesAndKeepsTheOthers) {
    OpenDatabase rows(TEXT("Rows"));
    const CEOID oid = rows.add(Row().name(TEXT("before")).number(1).ui4(9));
    EXPECT_EQ(rows.write(oid, Row().number(2)), oid);
    const ReadRecord record = rows.readRecord(oid);
    EXPECT_EQ(record.name(), TEXT("before"));
    EXPECT_EQ(record.number(), 2);
    EXPECT_EQ(record.values.at(dwordId).val.ulVal, 9u);
}

TEST_P(Records, PropertiesComeBackInTheOrderInWhichTheyWereFirstWritten) {
    OpenDatabase rows(TEXT("Rows"));
    const CEOID oid = rows.add(Row().ui4(1).name(TEXT("n")));
    rows.write(oid, Row().number(3).name(TEXT("m")).ui4(2));
    EXPECT_EQ(rows.readRecord(oid).ids, (std::vector<CEPROPID>{dwordId, nameId, numberId}));
}

TEST_P(Records, PropDeleteTakesOnePropertyAway) {
    OpenDatabase rows(TEXT("Rows"));
    const CEOID oid = rows.add(Row().name(TEXT("n")).number(1).ui4(2));
    EXPECT_EQ(rows.write(oid, Row().without(numberId)), oid);
    EXPECT_EQ(rows.readRecord(oid).ids, (std::vector<CEPROPID>{nameId, dwordId}));
    EXPECT_EQ(rows.write(oid, Row().without(numberId)), oid) << "what is not there can be taken away";
    rows.write(oid, Row().number(5));
    EXPECT_EQ(rows.readRecord(oid).ids, (std::vector<CEPROPID>{nameId, dwordId, numberId}));
}

TEST_P(Records, PropertiesOfOneIdentAndDifferentKindsAreDifferent) {
    OpenDatabase rows(TEXT("Rows"));
    const CEPROPID asText = makePropId(identOf(numberId), CEVT_LPWSTR);
    const ReadRecord record = rows.readRecord(rows.add(Row().number(1).text(asText, TEXT("one"))));
    EXPECT_EQ(record.ids, (std::vector<CEPROPID>{numberId, asText}));
}

TEST_P(Records, RecordWithoutPropertiesIsARecord) {
    OpenDatabase rows(TEXT("Rows"));
    const CEOID oid = rows.add(Row());
    ASSERT_NE(oid, 0u);
    EXPECT_TRUE(rows.readRecord(oid).ids.empty());
    EXPECT_EQ(rows.walk(), Oids{oid});
}

TEST_P(Records, PropertyOf65471BytesIsTheLargest) {
    OpenDatabase rows(TEXT("Rows"));
    const CEOID oid = rows.add(Row().blob(std::string(65'471, 'b')));
    EXPECT_EQ(rows.readRecord(oid).blobs.at(blobId).size(), 65'471u);
    EXPECT_EQ(rows.add(Row().blob(std::string(65'472, 'b'))), 0u);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(rows.write(oid, Row().number(1).blob(std::string(65'472, 'b'))), 0u);
    EXPECT_EQ(rows.readRecord(oid).ids, std::vector<CEPROPID>{blobId}) << "nothing of it was written";
    EXPECT_EQ(rows.info().dwNumRecords, 1u);
}

TEST_P(Records, TextIsMeasuredWithoutItsTerminator) {
    OpenDatabase rows(TEXT("Rows"));
    const WString largest(32'735, u'x');
    EXPECT_EQ(rows.readRecord(rows.add(Row().name(largest))).name(), largest);
    EXPECT_EQ(rows.add(Row().name(largest + TEXT("x"))), 0u);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
}

TEST_P(Records, RecordBeyond131072BytesIsRefusedWhole) {
    OpenDatabase rows(TEXT("Rows"));
    const CEPROPID second = makePropId(20, CEVT_BLOB);
    const CEPROPID third = makePropId(21, CEVT_BLOB);
    const CEOID oid = rows.add(Row().blob(std::string(65'000, 'a')).blob(second, std::string(65'000, 'b')));
    ASSERT_NE(oid, 0u);
    EXPECT_EQ(rows.write(oid, Row().blob(third, std::string(2'000, 'c'))), 0u);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(rows.readRecord(oid).ids, (std::vector<CEPROPID>{blobId, second}));
    EXPECT_EQ(rows.write(oid, Row().without(second).blob(third, std::string(60'000, 'c'))), oid);
}

TEST_P(Records, KindThatDoesNotExistIsRefused) {
    OpenDatabase rows(TEXT("Rows"));
    for (const WORD kind : {WORD{0}, WORD{1}, WORD{8}, WORD{30}, WORD{66}}) {
        CEPROPVAL value;
        value.propid = makePropId(1, kind);
        EXPECT_EQ(CeWriteRecordProps(rows.handle(), 0, 1, &value), 0u) << kind;
        EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
    }
    EXPECT_EQ(rows.info().dwNumRecords, 0u);
}

TEST_P(Records, ValueThatPointsNowhereIsRefused) {
    OpenDatabase rows(TEXT("Rows"));
    CEPROPVAL text;
    text.propid = nameId;
    text.val.lpwstr = nullptr;
    EXPECT_EQ(CeWriteRecordProps(rows.handle(), 0, 1, &text), 0u);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
    CEPROPVAL blob;
    blob.propid = blobId;
    blob.val.blob = {3, nullptr};
    EXPECT_EQ(CeWriteRecordProps(rows.handle(), 0, 1, &blob), 0u);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(CeWriteRecordProps(rows.handle(), 0, 1, nullptr), 0u);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
}

TEST_P(Records, WritingOrDeletingWhatIsGoneFails) {
    OpenDatabase rows(TEXT("Rows"));
    const CEOID oid = rows.add(Row().number(1));
    EXPECT_TRUE(rows.erase(oid));
    EXPECT_FALSE(rows.erase(oid));
    EXPECT_EQ(GetLastError(), ERROR_KEY_DELETED);
    EXPECT_EQ(rows.write(oid, Row().number(2)), 0u);
    EXPECT_EQ(GetLastError(), ERROR_KEY_DELETED);
}

TEST_P(Records, RecordOfAnotherDatabaseIsNotReachedThroughThisOne) {
    makeDatabase(TEXT("Other"));
    OpenDatabase rows(TEXT("Rows"));
    OpenDatabase other(TEXT("Other"));
    const CEOID foreign = other.add(Row().number(1));
    EXPECT_EQ(rows.toRecord(foreign), 0u);
    EXPECT_EQ(GetLastError(), ERROR_KEY_DELETED);
    EXPECT_EQ(rows.write(foreign, Row().number(2)), 0u);
    EXPECT_FALSE(rows.erase(foreign));
    EXPECT_EQ(other.readRecord(foreign).number(), 1);
}

TEST_P(Records, BufferOfTheCallersIsFilledWhenItIsLargeEnough) {
    OpenDatabase rows(TEXT("Rows"));
    const CEOID oid = rows.add(Row().name(TEXT("abc")).number(5));
    alignas(CEPROPVAL) BYTE room[256];
    BYTE* buffer = room;
    DWORD size = 8;
    WORD count = 0;
    EXPECT_EQ(CeReadRecordPropsEx(rows.handle(), 0, &count, &buffer, &size), 0u);
    EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
    EXPECT_EQ(size, 2 * sizeof(CEPROPVAL) + 4 * sizeof(WCHAR));
    EXPECT_EQ(CeReadRecordPropsEx(rows.handle(), 0, &count, &buffer, &size), oid);
    EXPECT_EQ(buffer, room);
    EXPECT_EQ(count, 2);
    const auto* props = reinterpret_cast<const CEPROPVAL*>(room);
    EXPECT_EQ(props[0].val.lpwstr, WString(TEXT("abc")));
    EXPECT_EQ(props[1].val.lVal, 5);
}

TEST_P(Records, OneReallocatingBufferServesManyReads) {
    OpenDatabase rows(TEXT("Rows"));
    for (int i = 0; i < 50; ++i) {
        rows.add(Row().name(WString(static_cast<std::size_t>(i * 37 % 50), u'x')));
    }
    OpenDatabase walk(TEXT("Rows"), 0, 0, CEDB_AUTOINCREMENT);
    BYTE* buffer = nullptr;
    DWORD size = 0;
    WORD count = 0;
    for (int i = 0; i < 50; ++i) {
        ASSERT_NE(CeReadRecordPropsEx(walk.handle(), CEDB_ALLOWREALLOC, &count, &buffer, &size), 0u);
        const WStringView text = reinterpret_cast<const CEPROPVAL*>(buffer)->val.lpwstr;
        EXPECT_EQ(text.size(), static_cast<std::size_t>(i * 37 % 50));
    }
    CeFreeBuffer(buffer);
}

TEST_P(Records, ReadWithoutAPlaceForTheBufferIsRefused) {
    OpenDatabase rows(TEXT("Rows"));
    rows.add(Row().number(1));
    DWORD size = 0;
    BYTE* buffer = nullptr;
    EXPECT_EQ(CeReadRecordPropsEx(rows.handle(), CEDB_ALLOWREALLOC, nullptr, nullptr, &size), 0u);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(CeReadRecordPropsEx(rows.handle(), CEDB_ALLOWREALLOC, nullptr, &buffer, nullptr), 0u);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
}

TEST_P(Records, ReadsOfAnEmptyDatabaseFindNothingUntilThereIsSomething) {
    OpenDatabase rows(TEXT("Rows"));
    EXPECT_FALSE(rows.read());
    EXPECT_EQ(GetLastError(), ERROR_NO_MORE_ITEMS);
    const CEOID oid = rows.add(Row().number(1));
    EXPECT_EQ(rows.read()->oid, oid) << "a fresh handle stands on the first record";
}

TEST_P(Records, AutoincrementingReadsMoveOnByOne) {
    OpenDatabase rows(TEXT("Rows"));
    const CEOID a = rows.add(Row().number(3));
    const CEOID b = rows.add(Row().number(2));
    const CEOID c = rows.add(Row().number(1));
    OpenDatabase walk(TEXT("Rows"), numberId, 0, CEDB_AUTOINCREMENT);
    EXPECT_EQ(walk.read()->oid, c);
    EXPECT_EQ(walk.read()->oid, b);
    EXPECT_EQ(walk.read()->oid, a);
    EXPECT_FALSE(walk.read());
    EXPECT_EQ(GetLastError(), ERROR_NO_MORE_ITEMS);
    EXPECT_EQ(walk.to(1), b);
    EXPECT_EQ(walk.read()->oid, b);
    EXPECT_EQ(walk.by(0), a) << "the seek sees where the read left the position";
}

TEST_P(Records, AutoincrementPassesARecordThatIsGone) {
    OpenDatabase rows(TEXT("Rows"));
    const CEOID a = rows.add(Row().number(1));
    const CEOID b = rows.add(Row().number(2));
    const CEOID c = rows.add(Row().number(3));
    OpenDatabase walk(TEXT("Rows"), numberId, 0, CEDB_AUTOINCREMENT);
    EXPECT_EQ(walk.read()->oid, a);
    rows.erase(b);
    EXPECT_FALSE(walk.read());
    EXPECT_EQ(GetLastError(), ERROR_KEY_DELETED);
    EXPECT_EQ(walk.read()->oid, c);
}

TEST_P(Records, AutoincrementStaysWhenTheBufferIsTooSmall) {
    OpenDatabase rows(TEXT("Rows"));
    const CEOID a = rows.add(Row().number(1));
    rows.add(Row().number(2));
    OpenDatabase walk(TEXT("Rows"), 0, 0, CEDB_AUTOINCREMENT);
    BYTE* none = nullptr;
    DWORD size = 0;
    EXPECT_EQ(CeReadRecordPropsEx(walk.handle(), 0, nullptr, &none, &size), 0u);
    EXPECT_EQ(walk.read()->oid, a);
}

TEST_P(Records, OtherHandlesReadTheSameRecordAgainAndAgain) {
    OpenDatabase rows(TEXT("Rows"));
    const CEOID a = rows.add(Row().number(1));
    rows.add(Row().number(2));
    EXPECT_EQ(rows.to(0), a);
    EXPECT_EQ(rows.read()->oid, a);
    EXPECT_EQ(rows.read()->oid, a);
}

TEST(RecordsOnDisk, AreNoMoreThanThereAreIdentifiers) {
    TemporaryStore store;
    makeDatabase(TEXT("Rows"));
    ObjectStore::unmount();
    testing_support::runSql(store.path(), "UPDATE store SET next_id = 4294967294");
    store.remount();
    OpenDatabase rows(TEXT("Rows"));
    EXPECT_EQ(rows.add(Row().number(1)), 4'294'967'294u);
    EXPECT_EQ(rows.add(Row().number(2)), 0u);
    EXPECT_EQ(GetLastError(), ERROR_DISK_FULL);
    EXPECT_EQ(rows.info().dwNumRecords, 1u);
}

}  // namespace
}  // namespace objectstore_test
