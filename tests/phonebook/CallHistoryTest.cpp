#include <algorithm>
#include <cstdint>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tests/phonebook/Calls.h"
#include "tests/platform/objectstore/CountingStore.h"
#include "tests/support/Builders.h"
#include "tests/support/TemporaryStore.h"
#include "tests/support/Values.h"

namespace PhoneBook {
namespace {

using calls_test::addRow;
using calls_test::call;
using calls_test::loggedCalls;
using calls_test::rowOf;
using testing::ElementsAre;
using testing_support::MemoryStoreMount;
using testing_support::OpenPhoneBook;
using testing_support::TemporaryStore;

std::vector<std::uint64_t> loggedTimes(OpenPhoneBook& book) {
    std::vector<std::uint64_t> times;
    for (const auto& [oid, entry] : loggedCalls(book.manager()))
        times.push_back(ticksOf(entry.ftTimestamp));
    return times;
}

void fill(OpenPhoneBook& book, std::uint64_t first, std::uint64_t last) {
    for (std::uint64_t ticks = first; ticks <= last; ++ticks)
        ASSERT_NE(0u, addRow(book.manager(), rowOf(call(ticks))));
}

CallEntry completeCall() {
    CallEntry entry = call(0x01C5'0000'0000'0007, TEXT("01012345678"));
    entry.strCNAP = TEXT("KIM MINSU");
    entry.strCDNIP = TEXT("0212345678 \"둘\"");
    entry.dwCallingTime = 0xFFFFFFFF;
    entry.dwCallType = 3;
    entry.dwTelType = 0x800;
    return entry;
}

TEST(CallHistory, StoresWhatIsLoggedWithFlags7AndHint0) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    CallEntry entry = completeCall();
    entry.dwFlags = 0x12340001;
    ASSERT_EQ(S_OK, book->insertCallEntry(&entry));
    EXPECT_EQ(7u, entry.dwFlags);

    const auto calls = loggedCalls(book.manager());
    ASSERT_EQ(1u, calls.size());
    CallEntry expected = completeCall();
    expected.dwFlags = 7;
    EXPECT_EQ(expected, calls[0].second);
    EXPECT_EQ(expected, entry);

    CCeDBRecord row;
    DWORD oid = calls[0].first;
    ASSERT_EQ(S_OK, static_cast<Database::CeDBTable*>(book->getTable(PBDBTBL_CALLHISTORY))->getRecord(oid, &row));
    EXPECT_EQ(10, row.getNumProps());
    ASSERT_NE(nullptr, row.findProp(0x408));
    EXPECT_EQ(CCeDBProp::ofUI4(0x408, 0), *row.findProp(0x408));
}

TEST(CallHistory, ReadsACallByIdentifierAndAsTheNewestAndTheOldest) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    CallEntry logged = completeCall();
    ASSERT_EQ(S_OK, book->insertCallEntry(&logged));
    DWORD oid = 0;
    CallEntry oldest;
    EXPECT_EQ(S_OK, book->getLRUCallEntry(&oid, &oldest));
    EXPECT_EQ(logged, oldest);
    CallEntry newest;
    EXPECT_EQ(S_OK, book->getMRUCallEntry(&newest));
    EXPECT_EQ(logged, newest);
    CallEntry queried;
    EXPECT_EQ(S_OK, book->queryCallEntry(oid, &queried));
    EXPECT_EQ(logged, queried);
}

TEST(CallHistory, NewestAndOldestGoByTimeWhateverTheOrderOfLogging) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    // The last has the highest bit set: times have no sign.
    for (const std::uint64_t ticks : {std::uint64_t{5}, std::uint64_t{0}, ~std::uint64_t{0}, std::uint64_t{1} << 32}) {
        CallEntry entry = call(ticks);
        ASSERT_EQ(S_OK, book->insertCallEntry(&entry));
    }
    CallEntry read;
    EXPECT_EQ(S_OK, book->getMRUCallEntry(&read));
    EXPECT_EQ(~std::uint64_t{0}, ticksOf(read.ftTimestamp));
    DWORD oid = 0;
    EXPECT_EQ(S_OK, book->getLRUCallEntry(&oid, &read));
    EXPECT_EQ(0u, ticksOf(read.ftTimestamp));
    EXPECT_EQ(loggedCalls(book.manager()).back().first, oid);
}

TEST(CallHistory, OfTwoCallsAtOneTimeTheLaterLoggedIsTheNewer) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    for (const WCHAR* cid : {TEXT("1"), TEXT("2"), TEXT("3")}) {
        CallEntry entry = call(9, cid);
        ASSERT_EQ(S_OK, book->insertCallEntry(&entry));
    }
    CallEntry read;
    EXPECT_EQ(S_OK, book->getMRUCallEntry(&read));
    EXPECT_EQ(CString(TEXT("3")), read.strCID);
    DWORD oid = 0;
    EXPECT_EQ(S_OK, book->getLRUCallEntry(&oid, &read));
    EXPECT_EQ(CString(TEXT("1")), read.strCID);
}

TEST(CallHistory, The101stCallTakesThePlaceOfTheOldest) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    fill(book, 60, 110);
    fill(book, 11, 59);
    CallEntry entry = call(200);
    ASSERT_EQ(S_OK, book->insertCallEntry(&entry));
    std::vector<std::uint64_t> expected{200};
    for (std::uint64_t ticks = 110; ticks > 11; --ticks)
        expected.push_back(ticks);
    EXPECT_EQ(expected, loggedTimes(book));
}

TEST(CallHistory, ACallOlderThanAllIsLoggedIntoAFullHistoryAllTheSame) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    fill(book, 11, 110);
    CallEntry entry = call(1);
    ASSERT_EQ(S_OK, book->insertCallEntry(&entry));
    const auto times = loggedTimes(book);
    EXPECT_EQ(100u, times.size());
    EXPECT_EQ(1u, times.back());
    EXPECT_EQ(12u, times[98]) << "the oldest before it is gone";
}

TEST(CallHistory, The100thCallTakesNobodysPlace) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    fill(book, 1, 99);
    CallEntry entry = call(200);
    ASSERT_EQ(S_OK, book->insertCallEntry(&entry));
    EXPECT_EQ(100u, loggedTimes(book).size());
}

TEST(CallHistory, LosesOneCallPerInsertionHoweverManyItHolds) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    fill(book, 1, 103);
    CallEntry entry = call(200);
    ASSERT_EQ(S_OK, book->insertCallEntry(&entry));
    const auto times = loggedTimes(book);
    EXPECT_EQ(103u, times.size());
    EXPECT_EQ(2u, times.back());
}

TEST(CallHistory, ACallThatCannotBeStoredStillCostsTheOldest) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    fill(book, 1, 100);
    CallEntry entry = call(200);
    entry.strCNAP = CString(u'x', 40'000);  // more than a property takes
    EXPECT_EQ(E_FAIL, book->insertCallEntry(&entry));
    const auto times = loggedTimes(book);
    EXPECT_EQ(99u, times.size());
    EXPECT_EQ(2u, times.back());
}

TEST(CallHistory, AnEmptyHistoryHasNeitherANewestNorAnOldestCall) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    CallEntry entry = completeCall();
    DWORD oid = 12;
    EXPECT_EQ(S_FALSE, book->getMRUCallEntry(&entry));
    EXPECT_EQ(S_FALSE, book->getLRUCallEntry(&oid, &entry));
    EXPECT_EQ(S_FALSE, book->getLRUCallEntry(&oid, nullptr));
    EXPECT_EQ(12u, oid);
    EXPECT_EQ(completeCall(), entry);
}

TEST(CallHistory, AnswersForNullArguments) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    fill(book, 1, 2);
    EXPECT_EQ(E_FAIL, book->insertCallEntry(nullptr)) << "not E_POINTER";
    EXPECT_EQ(E_POINTER, book->queryCallEntry(loggedCalls(book.manager())[0].first, nullptr));
    EXPECT_EQ(E_POINTER, book->getMRUCallEntry(nullptr));
    CallEntry entry;
    EXPECT_EQ(E_POINTER, book->getLRUCallEntry(nullptr, &entry));
    EXPECT_EQ(CallEntry(), entry);
    DWORD oid = 0;
    EXPECT_EQ(S_OK, book->getLRUCallEntry(&oid, nullptr));
    EXPECT_EQ(loggedCalls(book.manager())[1].first, oid);
}

TEST(CallHistory, FailsWhenItIsNotOpen) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    fill(book, 1, 1);
    DWORD oid = loggedCalls(book.manager())[0].first;
    book->closeDB();
    CallEntry entry = completeCall();
    EXPECT_EQ(E_FAIL, book->insertCallEntry(&entry));
    EXPECT_EQ(E_FAIL, book->queryCallEntry(oid, &entry));
    EXPECT_EQ(E_FAIL, book->queryCallEntry(oid, nullptr));
    EXPECT_EQ(E_FAIL, book->getMRUCallEntry(&entry));
    EXPECT_EQ(E_FAIL, book->getMRUCallEntry(nullptr));
    EXPECT_EQ(E_FAIL, book->getLRUCallEntry(&oid, &entry));
    EXPECT_EQ(E_FAIL, book->getLRUCallEntry(nullptr, nullptr));
    EXPECT_EQ(E_FAIL, book->deleteCallEntry(oid));
    EXPECT_EQ(E_FAIL, book->deleteCallEntry(0));
    EXPECT_EQ(E_FAIL, book->deleteAllCallEntries());
    EXPECT_EQ(completeCall(), entry);
    ASSERT_EQ(S_OK, book->openDB(nullptr));
    EXPECT_THAT(loggedTimes(book), ElementsAre(1u));
}

TEST(CallHistory, FailsBeforeItsTableWasMade) {
    const MemoryStoreMount store;
    PhoneBookDBMgr manager;
    CallEntry entry;
    DWORD oid = 0;
    EXPECT_EQ(E_FAIL, manager.insertCallEntry(&entry));
    EXPECT_EQ(E_FAIL, manager.queryCallEntry(1, &entry));
    EXPECT_EQ(E_FAIL, manager.getMRUCallEntry(&entry));
    EXPECT_EQ(E_FAIL, manager.getLRUCallEntry(&oid, &entry));
    EXPECT_EQ(E_FAIL, manager.deleteCallEntry(1));
    EXPECT_EQ(E_FAIL, manager.deleteAllCallEntries());
}

TEST(CallHistory, ThatCannotBeCountedIsNoEmptyOne) {
    objectstore_test::CountingMount store;
    OpenPhoneBook book;
    fill(book, 1, 3);
    CallEntry entry;
    DWORD oid = 0;
    store.log.infoError = ERROR_GEN_FAILURE;
    EXPECT_EQ(E_FAIL, book->getMRUCallEntry(&entry));
    EXPECT_EQ(E_FAIL, book->getLRUCallEntry(&oid, &entry));
    EXPECT_EQ(0u, oid);
}

TEST(CallHistory, DoesNotLookUpByTimeOrNumber) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    fill(book, 1, 1);
    CallEntry entry = completeCall();
    EXPECT_EQ(E_NOTIMPL, book->queryCallEntry(fileTimeOf(1), &entry));
    EXPECT_EQ(E_NOTIMPL, book->queryCallEntry(CString(TEXT("5550000")), &entry));
    EXPECT_EQ(E_NOTIMPL, book->deleteCallEntry(fileTimeOf(1)));
    EXPECT_EQ(completeCall(), entry);
    EXPECT_THAT(loggedTimes(book), ElementsAre(1u));
    book->closeDB();
    EXPECT_EQ(E_NOTIMPL, book->queryCallEntry(fileTimeOf(1), nullptr));
    EXPECT_EQ(E_NOTIMPL, book->queryCallEntry(CString(), nullptr));
    EXPECT_EQ(E_NOTIMPL, book->deleteCallEntry(fileTimeOf(1)));
}

TEST(CallHistory, DeletesOneCallByIdentifier) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    fill(book, 1, 3);
    const DWORD middle = loggedCalls(book.manager())[1].first;
    EXPECT_EQ(E_INVALIDARG, book->deleteCallEntry(0));
    EXPECT_EQ(S_OK, book->deleteCallEntry(middle));
    EXPECT_THAT(loggedTimes(book), ElementsAre(3u, 1u));
    EXPECT_EQ(E_FAIL, book->deleteCallEntry(middle)) << "it is gone";
    EXPECT_THAT(loggedTimes(book), ElementsAre(3u, 1u));
}

TEST(CallHistory, TakesNoRowOfAnotherTableForACall) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD contact = book.add(testing_support::contact().name(TEXT("Kim")));
    CallEntry entry;
    EXPECT_EQ(E_FAIL, book->deleteCallEntry(contact));
    EXPECT_EQ(S_OK, book->queryCallEntry(contact, &entry));
    EXPECT_EQ(CallEntry(), entry);
    EXPECT_EQ(1u, book->getNumRecords());
}

TEST(CallHistory, ACallThatIsNotThereReadsAsAnEmptyOneOfTheFlagsItWasGiven) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    fill(book, 1, 1);
    const DWORD gone = loggedCalls(book.manager())[0].first;
    ASSERT_EQ(S_OK, book->deleteCallEntry(gone));
    CallEntry entry = completeCall();
    entry.dwFlags = 0x10002;
    EXPECT_EQ(S_OK, book->queryCallEntry(gone, &entry));
    CallEntry expected;
    expected.dwFlags = 0x10002;
    EXPECT_EQ(expected, entry);
}

TEST(CallHistory, TheFlagsOfARowWithoutAnyStayInAQueryAndAre0OtherwiseRead) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    CCeDBRecord row;
    row.addProp(CCeDBProp::ofFileTime(0x400, fileTimeOf(5)));
    row.addProp(CCeDBProp::ofText(0x401, TEXT("119")));
    const DWORD oid = addRow(book.manager(), row);
    CallEntry entry = completeCall();
    entry.dwFlags = 4;
    EXPECT_EQ(S_OK, book->queryCallEntry(oid, &entry));
    CallEntry expected = call(5, TEXT("119"));
    expected.dwFlags = 4;
    EXPECT_EQ(expected, entry);
    expected.dwFlags = 0;
    EXPECT_EQ(S_OK, book->getMRUCallEntry(&entry));
    EXPECT_EQ(expected, entry);
    DWORD oldest = 0;
    entry.dwFlags = 4;
    EXPECT_EQ(S_OK, book->getLRUCallEntry(&oldest, &entry));
    EXPECT_EQ(expected, entry);
}

TEST(CallHistory, DeletesAll) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    fill(book, 1, 100);
    EXPECT_EQ(S_OK, book->deleteAllCallEntries());
    EXPECT_THAT(loggedTimes(book), ElementsAre());
    EXPECT_EQ(S_OK, book->deleteAllCallEntries()) << "there is none";
    CallEntry entry = call(5);
    EXPECT_EQ(S_OK, book->insertCallEntry(&entry)) << "and it is still open";
    EXPECT_THAT(loggedTimes(book), ElementsAre(5u));
}

TEST(CallHistory, IsUsedInTheOrderThatItsTableIsOpenIn) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    for (const auto& [ticks, cid] : {std::pair{1u, TEXT("A")}, std::pair{9u, TEXT("B")}, std::pair{5u, TEXT("C")}})
        ASSERT_NE(0u, addRow(book.manager(), rowOf(call(ticks, cid))));
    auto* table = static_cast<Database::CeDBTable*>(book->getTable(PBDBTBL_CALLHISTORY));
    table->close();
    ASSERT_TRUE(table->open(WORD{1}, WORD{0}, nullptr));
    CallEntry entry = call(7, TEXT("D"));
    ASSERT_EQ(S_OK, book->insertCallEntry(&entry));
    EXPECT_EQ(S_OK, book->getMRUCallEntry(&entry));
    EXPECT_EQ(CString(TEXT("A")), entry.strCID) << "the first row in the order of the numbers";
    DWORD oid = 0;
    EXPECT_EQ(S_OK, book->getLRUCallEntry(&oid, &entry));
    EXPECT_EQ(CString(TEXT("D")), entry.strCID);
}

TEST(CallHistory, OutlivesTheProcess) {
    TemporaryStore store;
    CallEntry logged = completeCall();
    {
        OpenPhoneBook book;
        ASSERT_EQ(S_OK, book->insertCallEntry(&logged));
    }
    store.remount();
    OpenPhoneBook again;
    CallEntry entry;
    EXPECT_EQ(S_OK, again->getMRUCallEntry(&entry));
    EXPECT_EQ(logged, entry);
}

}  // namespace
}  // namespace PhoneBook
