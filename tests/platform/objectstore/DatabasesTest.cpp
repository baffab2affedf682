#include <set>

#include "tests/platform/objectstore/StoreTest.h"

namespace objectstore_test {
namespace {

class Databases : public StoreTest {};
INSTANTIATE_TEST_SUITE_P(BothStores, Databases, bothStores, nameOfKind);

TEST_P(Databases, NewStoreHoldsTheSystemDatabases) {
    const OpenDatabase contacts(TEXT("Contacts Database"));
    const OpenDatabase categories(TEXT("\\Categories Database"));
    EXPECT_EQ(contacts.info().dwNumRecords, 0u);
    EXPECT_EQ(categories.info().dwNumRecords, 0u);
}

TEST_P(Databases, IdentifiersOfDatabasesAndRecordsAreUniqueInTheStore) {
    std::set<CEOID> seen = {makeDatabase(TEXT("One")), makeDatabase(TEXT("Two"))};
    OpenDatabase one(TEXT("One"));
    OpenDatabase two(TEXT("Two"));
    for (int i = 0; i < 5; ++i) {
        seen.insert(one.add(Row().number(i)));
        seen.insert(two.add(Row().number(i)));
    }
    EXPECT_EQ(seen.size(), 12u);
    EXPECT_EQ(seen.count(0), 0u);
}

TEST_P(Databases, IdentifiersAreNeverReused) {
    std::set<CEOID> seen;
    CEOID database = makeDatabase(TEXT("Rows"));
    for (int round = 0; round < 3; ++round) {
        EXPECT_TRUE(seen.insert(database).second);
        OpenDatabase rows(TEXT("Rows"));
        for (int i = 0; i < 3; ++i) {
            const CEOID record = rows.add(Row().number(i));
            EXPECT_TRUE(seen.insert(record).second);
            EXPECT_TRUE(rows.erase(record));
        }
        ASSERT_TRUE(CeDeleteDatabaseEx(database));
        database = makeDatabase(TEXT("Rows"));
    }
}

TEST_P(Databases, OpenByNameIgnoresCaseAndTellsTheIdentifier) {
    const CEOID made = makeDatabase(TEXT("Phone Book"));
    const OpenDatabase opened(TEXT("pHONE bOOK"));
    EXPECT_EQ(opened.oid(), made);
}

TEST_P(Databases, OpenByIdentifierNeedsNoName) {
    CEOID made = makeDatabase(TEXT("Rows"));
    const HANDLE handle = CeOpenDatabaseEx2(&made, nullptr, 0, 0, 0, nullptr);
    EXPECT_NE(handle, INVALID_HANDLE_VALUE);
    EXPECT_TRUE(CloseHandle(handle));
}

TEST_P(Databases, OpenWithoutAPlaceForTheIdentifierGoesByName) {
    makeDatabase(TEXT("Rows"));
    const HANDLE handle = CeOpenDatabaseEx2(nullptr, TEXT("Rows"), 0, 0, 0, nullptr);
    EXPECT_NE(handle, INVALID_HANDLE_VALUE);
    EXPECT_TRUE(CloseHandle(handle));
}

TEST_P(Databases, OpeningWhatIsNotThereFails) {
    CEOID none = 0;
    EXPECT_EQ(CeOpenDatabaseEx2(&none, TEXT("Nowhere"), 0, 0, 0, nullptr), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
    CEOID unknown = 0x7FFFFFFF;
    EXPECT_EQ(CeOpenDatabaseEx2(&unknown, nullptr, 0, 0, 0, nullptr), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(CeOpenDatabaseEx2(&none, nullptr, 0, 0, 0, nullptr), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
}

TEST_P(Databases, OpeningInAnOrderOnABlobFails) {
    makeDatabase(TEXT("Rows"));
    CEOID oid = 0;
    EXPECT_EQ(CeOpenDatabaseEx2(&oid, TEXT("Rows"), blobId, 0, 0, nullptr), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
}

TEST_P(Databases, NameIsTakenWhateverItsCase) {
    makeDatabase(TEXT("Rows"));
    EXPECT_EQ(CeCreateDatabaseEx2(TEXT("ROWS"), 0, 0, nullptr), 0u);
    EXPECT_EQ(GetLastError(), ERROR_ALREADY_EXISTS);
}

TEST_P(Databases, LongNameIsCutTo31Characters) {
    const WString kept(31, u'n');
    const CEOID made = makeDatabase((kept + TEXT("xyz")).c_str());
    const OpenDatabase opened((kept + TEXT("other ending")).c_str());
    EXPECT_EQ(opened.oid(), made);
    EXPECT_EQ(opened.info().szDbaseName, kept);
}

TEST_P(Databases, NameOfNoCharactersIsRefused) {
    EXPECT_EQ(CeCreateDatabaseEx2(TEXT(""), 0, 0, nullptr), 0u);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(CeCreateDatabaseEx2(nullptr, 0, 0, nullptr), 0u);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
}

TEST_P(Databases, FourOrdersCanBeDeclaredAndNotFive) {
    const std::vector<SORTORDERSPEC> orders = {
        {nameId, CEDB_SORT_CASEINSENSITIVE}, {numberId, CEDB_SORT_DESCENDING}, {timeId, 0}, {wordId, 0}, {dwordId, 0}};
    EXPECT_EQ(CeCreateDatabaseEx2(TEXT("Five"), 0, 5, orders.data()), 0u);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);

    const CEOID made = CeCreateDatabaseEx2(TEXT("Four"), 77, 4, orders.data());
    CEOIDINFOEX info = {};
    ASSERT_TRUE(CeOidGetInfoEx2(made, &info));
    EXPECT_EQ(info.dwDbaseType, 77u);
    ASSERT_EQ(info.wNumSortOrder, 4);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(info.rgSortSpecs[i].propid, orders[i].propid);
        EXPECT_EQ(info.rgSortSpecs[i].dwFlags, orders[i].dwFlags);
    }
}

TEST_P(Databases, OrderOnABlobCannotBeDeclared) {
    const SORTORDERSPEC order = {blobId, 0};
    EXPECT_EQ(CeCreateDatabaseEx2(TEXT("Rows"), 0, 1, &order), 0u);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(CeCreateDatabaseEx2(TEXT("Rows"), 0, 1, nullptr), 0u);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
}

TEST_P(Databases, InformationTellsNameCountAndSize) {
    makeDatabase(TEXT("Rows"));
    OpenDatabase rows(TEXT("Rows"));
    EXPECT_EQ(rows.info().dwNumRecords, 0u);
    EXPECT_EQ(rows.info().dwSize, 0u);
    rows.add(Row().name(TEXT("one")));
    const DWORD small = rows.info().dwSize;
    const CEOID second = rows.add(Row().name(WString(500, u'x')));
    EXPECT_EQ(rows.info().dwNumRecords, 2u);
    EXPECT_GE(rows.info().dwSize, small + 1000);
    rows.erase(second);
    EXPECT_EQ(rows.info().dwNumRecords, 1u);
    EXPECT_EQ(rows.info().dwSize, small);
    EXPECT_EQ(rows.info().szDbaseName, WString(TEXT("Rows")));
}

TEST_P(Databases, InformationOfAnUnknownDatabaseFails) {
    CEOIDINFOEX info = {};
    EXPECT_FALSE(CeOidGetInfoEx2(0x7FFFFFFF, &info));
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
    EXPECT_FALSE(CeOidGetInfoEx2(makeDatabase(TEXT("Rows")), nullptr));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
}

TEST_P(Databases, TimeOfModificationGrowsStrictlyWithEveryChange) {
    makeDatabase(TEXT("Rows"));
    OpenDatabase rows(TEXT("Rows"));
    std::uint64_t last = ticksOf(rows.info().ftLastModified);
    const auto grew = [&] {
        const std::uint64_t before = std::exchange(last, ticksOf(rows.info().ftLastModified));
        return last > before;
    };
    for (int i = 0; i < 20; ++i) {
        const CEOID record = rows.add(Row().number(i));
        EXPECT_TRUE(grew());
        rows.write(record, Row().number(-i));
        EXPECT_TRUE(grew());
        rows.erase(record);
        EXPECT_TRUE(grew());
    }
}

TEST_P(Databases, TimeOfModificationStandsStillForReadsAndForOtherDatabases) {
    makeDatabase(TEXT("Rows"));
    makeDatabase(TEXT("Other"));
    OpenDatabase rows(TEXT("Rows"));
    OpenDatabase other(TEXT("Other"));
    rows.add(Row().number(1));
    const FILETIME before = rows.info().ftLastModified;
    rows.to(0);
    rows.read();
    other.add(Row().number(1));
    EXPECT_EQ(rows.info().ftLastModified, before);
}

TEST_P(Databases, DeletedDatabaseIsGoneWithItsRecords) {
    const CEOID made = makeDatabase(TEXT("Rows"));
    {
        OpenDatabase rows(TEXT("Rows"));
        rows.add(Row().number(1));
    }
    EXPECT_TRUE(CeDeleteDatabaseEx(made));
    EXPECT_FALSE(CeDeleteDatabaseEx(made));
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
    makeDatabase(TEXT("Rows"));
    const OpenDatabase again(TEXT("Rows"));
    EXPECT_EQ(again.info().dwNumRecords, 0u);
}

TEST_P(Databases, HandlesOfADeletedDatabaseTurnInvalid) {
    const CEOID made = makeDatabase(TEXT("Rows"));
    OpenDatabase rows(TEXT("Rows"));
    const CEOID record = rows.add(Row().number(1));
    rows.to(0);
    ASSERT_TRUE(CeDeleteDatabaseEx(made));

    EXPECT_EQ(rows.next(), 0u);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    EXPECT_FALSE(rows.read());
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    EXPECT_EQ(rows.add(Row().number(2)), 0u);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    EXPECT_FALSE(rows.erase(record));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    EXPECT_TRUE(CloseHandle(rows.handle()));
}

TEST_P(Databases, UnknownHandleIsInvalidForEveryCall) {
    for (const HANDLE handle : {HANDLE{0}, HANDLE{9999}, INVALID_HANDLE_VALUE}) {
        SetLastError(0);
        EXPECT_FALSE(CloseHandle(handle));
        EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
        EXPECT_EQ(CeSeekDatabaseEx(handle, CEDB_SEEK_BEGINNING, 0, nullptr), 0u);
        EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
        EXPECT_EQ(CeWriteRecordProps(handle, 0, 0, nullptr), 0u);
        EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
        EXPECT_FALSE(CeDeleteRecord(handle, 1));
        EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    }
}

TEST_P(Databases, ClosedHandleIsInvalidAndItsNumberNotUsedAgain) {
    makeDatabase(TEXT("Rows"));
    CEOID oid = 0;
    const HANDLE first = CeOpenDatabaseEx2(&oid, TEXT("Rows"), 0, 0, 0, nullptr);
    EXPECT_TRUE(CloseHandle(first));
    EXPECT_FALSE(CloseHandle(first));
    const HANDLE second = CeOpenDatabaseEx2(&oid, TEXT("Rows"), 0, 0, 0, nullptr);
    EXPECT_NE(first, second);
    CloseHandle(second);
}

TEST_P(Databases, HandlesAreIndependent) {
    makeDatabase(TEXT("Rows"));
    OpenDatabase rows(TEXT("Rows"));
    const CEOID a = rows.add(Row().number(2));
    const CEOID b = rows.add(Row().number(1));
    OpenDatabase sorted(TEXT("Rows"), numberId);
    EXPECT_EQ(rows.to(0), a);
    EXPECT_EQ(sorted.to(0), b);
    EXPECT_EQ(sorted.next(), a);
    EXPECT_EQ(rows.read()->oid, a);
    EXPECT_EQ(rows.next(), b);
}

TEST_P(Databases, OpenAcceptsANotificationRequestAndFreesWhatItIsGiven) {
    makeDatabase(TEXT("Rows"));
    const CENOTIFYREQUEST request = {sizeof(CENOTIFYREQUEST), 5, CEDB_EXNOTIFICATION, 0, 6};
    CEOID oid = 0;
    const HANDLE handle = CeOpenDatabaseEx2(&oid, TEXT("Rows"), 0, 0, 0, &request);
    EXPECT_NE(handle, INVALID_HANDLE_VALUE);
    EXPECT_TRUE(CloseHandle(handle));
    EXPECT_TRUE(CeFreeNotification(&request, new CENOTIFICATION{}));
    EXPECT_FALSE(CeFreeNotification(&request, nullptr));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
}

}  // namespace
}  // namespace objectstore_test
