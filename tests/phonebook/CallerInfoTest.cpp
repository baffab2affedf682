#include <gtest/gtest.h>

#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tests/platform/objectstore/CountingStore.h"
#include "tests/support/Builders.h"
#include "tests/support/TemporaryStore.h"
#include "tests/support/Values.h"

namespace PhoneBook {
namespace {

using testing_support::contact;
using testing_support::MemoryStoreMount;
using testing_support::OpenPhoneBook;

constexpr DWORD nameMask = 0x1;
constexpr DWORD groupMask = 0x10000;
constexpr DWORD privateMask = 0x200000;
constexpr DWORD allFields = 0x007F0FFF;

PBRecord wanting(DWORD mask) {
    PBRecord record;
    record.dwCITypeMask = mask;
    return record;
}

TEST(QueryCallerInfo, IdentifiesACallerByAnyOfTheFiveNumbers) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD oid = book.add(contact()
                                   .name(u"김민수")
                                   .group(u"친구")
                                   .mobile(u"+82 10-1111-2222")
                                   .home(u"(02) 333-4444")
                                   .business(u"031.555.6666")
                                   .pager(u"012-777")
                                   .fax(u"*23#"));
    for (const WCHAR* number : {u"01011112222", u"023334444", u"0315556666", u"012777", u"*23#"}) {
        PBRecord record = wanting(nameMask | groupMask);
        DWORD found = 0;
        EXPECT_EQ(S_FALSE, book->queryCallerInfo(number, &record, &found)) << CString(number);
        EXPECT_EQ(oid, found);
        EXPECT_EQ(CString(u"김민수"), record.strName);
        EXPECT_EQ(CString(u"친구"), record.strGroup);
        EXPECT_EQ(nameMask | groupMask, record.dwCITypeMask);
    }
}

TEST(QueryCallerInfo, ReportsNoIdentifierUnlessAnExtensionFieldWasWanted) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    book.add(contact().name(u"Kim").mobile(u"0101"));
    PBRecord record = wanting(nameMask);
    DWORD oid = 99;
    EXPECT_EQ(S_OK, book->queryCallerInfo(u"0101", &record, &oid));
    EXPECT_EQ(0u, oid);
    EXPECT_EQ(CString(u"Kim"), record.strName);
    EXPECT_EQ(S_OK, book->queryCallerInfo(u"0101", &record, nullptr));
}

TEST(QueryCallerInfo, AContactWithoutAnExtensionRowIsFoundInPart) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD oid = book.add(contact().name(u"Kim").mobile(u"0101"));
    PBRecord record = wanting(nameMask | groupMask);
    record.strGroup = u"from before";
    DWORD found = 0;
    EXPECT_EQ(S_FALSE, book->queryCallerInfo(u"0101", &record, &found));
    EXPECT_EQ(oid, found);
    EXPECT_EQ(CString(u"Kim"), record.strName);
    EXPECT_EQ(CString(u""), record.strGroup);
    EXPECT_EQ(nameMask, record.dwCITypeMask);
}

TEST(QueryCallerInfo, TheContactIsFoundWithoutTheExtensionTable) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD oid = book.add(contact().name(u"Kim").mobile(u"0101").group(u"A"));
    book->getTable(PBDBTBL_PHONEBOOKEXT)->close();
    PBRecord record = wanting(nameMask | groupMask);
    DWORD found = 0;
    EXPECT_EQ(S_FALSE, book->queryCallerInfo(u"0101", &record, &found));
    EXPECT_EQ(oid, found);
    EXPECT_EQ(CString(u"Kim"), record.strName);
    EXPECT_EQ(nameMask, record.dwCITypeMask);
}

TEST(QueryCallerInfo, ARowWithoutSlotsHasNoneAndThatIsAnAnswer) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD oid = book.add(contact().name(u"Kim"));
    CCeDBRecord sparse;  // as another program may write it
    sparse.addProp(CCeDBProp::ofUI4(0x100, oid));
    DWORD rowOid = 0;
    ASSERT_EQ(S_OK, book->getTable(PBDBTBL_PHONEBOOKEXT)->insertRecord(&sparse, rowOid));
    PBRecord record = wanting(privateMask | groupMask);
    record.dwPrivate = 99;
    record.strGroup = u"from before";
    EXPECT_EQ(S_FALSE, book->queryCallerInfo(oid, &record));
    EXPECT_EQ(privateMask, record.dwCITypeMask);
    EXPECT_EQ(0u, record.dwPrivate);
    EXPECT_EQ(CString(u""), record.strGroup);
}

TEST(QueryCallerInfo, ExtensionFieldsAloneAreFoundWhole) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    book.add(contact().name(u"Kim").mobile(u"0101").group(u"Friends"));
    PBRecord record = wanting(groupMask | privateMask);
    EXPECT_EQ(S_OK, book->queryCallerInfo(u"0101", &record, nullptr));
    EXPECT_EQ(groupMask | privateMask, record.dwCITypeMask) << "no slots is an answer too";
    record = wanting(0x20000);
    EXPECT_EQ(S_FALSE, book->queryCallerInfo(u"0101", &record, nullptr)) << "there is no avatar";
    EXPECT_EQ(0u, record.dwCITypeMask);
}

TEST(QueryCallerInfo, TheFirstInNameOrderOfTwoHoldersIsTheCaller) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    book.add(contact().name(u"Zoe").mobile(u"0101"));
    book.add(contact().name(u"Ann").home(u"0101"));
    PBRecord record = wanting(nameMask);
    EXPECT_EQ(S_OK, book->queryCallerInfo(u"0101", &record, nullptr));
    EXPECT_EQ(CString(u"Ann"), record.strName);
}

TEST(QueryCallerInfo, LooksAtEveryHolderWhenTheTableOfNumbersCannotBeRead) {
    objectstore_test::CountingMount store;
    OpenPhoneBook book;
    book.add(contact().name(u"Ann").mobile(u"01012345678"));
    book.add(contact().name(u"Bob").mobile(u"1234"));
    book.add(contact().name(u"Zoe").mobile(u"01012345679"));
    store.log.numberError = ERROR_GEN_FAILURE;
    PBRecord record = wanting(nameMask);
    EXPECT_EQ(S_OK, book->queryCallerInfo(u"1234", &record, nullptr));
    EXPECT_EQ(CString(u"Bob"), record.strName);
}

TEST(QueryCallerInfo, ComparesWholeNumbers) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    book.add(contact().name(u"Ann").mobile(u"01012345678"));
    book.add(contact().name(u"Bob").mobile(u"1234"));
    PBRecord record = wanting(nameMask);
    EXPECT_EQ(S_OK, book->queryCallerInfo(u"1234", &record, nullptr));
    EXPECT_EQ(CString(u"Bob"), record.strName);
}

TEST(QueryCallerInfo, ANumberWithinALongerOneLeavesTheRecordUntouched) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    book.add(contact().name(u"Ann").mobile(u"01012345678"));
    PBRecord record = wanting(nameMask);
    record.strName = u"as it was";
    DWORD oid = 99;
    EXPECT_EQ(S_OK, book->queryCallerInfo(u"1234", &record, &oid));
    EXPECT_EQ(CString(u"as it was"), record.strName);
    EXPECT_EQ(nameMask, record.dwCITypeMask);
}

TEST(QueryCallerInfo, ANumberThatNobodyHasResetsTheRecord) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    book.add(contact().name(u"Ann").mobile(u"0101"));
    PBRecord record = wanting(nameMask);
    record.strName = u"as it was";
    DWORD oid = 99;
    EXPECT_EQ(E_FAIL, book->queryCallerInfo(u"555", &record, &oid));
    EXPECT_EQ(CString(u""), record.strName);
    EXPECT_EQ(0u, record.dwCITypeMask);
    EXPECT_EQ(0u, oid);
}

TEST(QueryCallerInfo, AnswersForBadArguments) {
    const MemoryStoreMount store;
    PhoneBookDBMgr closed;
    PBRecord record = wanting(nameMask);
    DWORD oid = 99;
    EXPECT_EQ(E_FAIL, closed.queryCallerInfo(u"1", &record, &oid));
    EXPECT_EQ(E_FAIL, closed.queryCallerInfo(DWORD{1}, &record));

    OpenPhoneBook book;
    EXPECT_EQ(E_POINTER, book->queryCallerInfo(u"1", nullptr, &oid));
    EXPECT_EQ(99u, oid);
    EXPECT_EQ(E_INVALIDARG, book->queryCallerInfo(u"", &record, &oid));
    EXPECT_EQ(0u, oid);
    EXPECT_EQ(E_FAIL, book->queryCallerInfo(DWORD{0}, &record));
    EXPECT_EQ(E_FAIL, book->queryCallerInfo(DWORD{1}, nullptr));
    EXPECT_TRUE(FAILED(book->queryCallerInfo(DWORD{99'999}, &record)));
}

TEST(QueryCallerInfo, ReadsAContactByIdentifier) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD oid =
        book.add(contact().name(u"Kim").mobile(u"0101").birthday(32'937.0).group(u"A").primary(4).slots(5));
    PBRecord record = wanting(allFields);
    EXPECT_EQ(S_FALSE, book->queryCallerInfo(oid, &record));
    EXPECT_EQ(0x00610207u, record.dwCITypeMask) << "what was filled";
    EXPECT_EQ(32'937.0, record.dtBirthday);
    EXPECT_EQ(5u, record.dwPrivate);
    EXPECT_EQ(CString(u"A"), record.strCategories);
}

TEST(QueryCallerInfo, FindsTheExtensionRowWhateverOrderItsTableIsIn) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    DWORD last = 0;
    for (const WCHAR* group : {u"C", u"B", u"A", u"B"})
        last = book.add(contact().name(u"Kim").group(group));
    auto* extension = static_cast<Database::CeDBTable*>(book->getTable(PBDBTBL_PHONEBOOKEXT));
    extension->close();
    ASSERT_TRUE(extension->open(3, 0, nullptr));
    PBRecord record = wanting(groupMask);
    EXPECT_EQ(S_OK, book->queryCallerInfo(last, &record));
    EXPECT_EQ(CString(u"B"), record.strGroup);
}

TEST(QueryCID, ReadsTheReducedNumberOfASlot) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    CString number(u"as it was");
    EXPECT_EQ(S_FALSE, book->queryCID(7, &number));
    EXPECT_EQ(CString(u"as it was"), number);
    CCeDBProp row[] = {CCeDBProp::ofI2(512, 7), CCeDBProp::ofUI4(513, 4), CCeDBProp::ofText(514, u"010-1234"),
                       CCeDBProp::ofUI2(515, 7)};
    DWORD oid = 0;
    ASSERT_EQ(S_OK, book->getTable(PBDBTBL_SPEEDDIALNO)->insertRecord(row, oid));
    EXPECT_EQ(S_OK, book->queryCID(7, &number));
    EXPECT_EQ(CString(u"0101234"), number);
    EXPECT_EQ(S_OK, book->queryCID(0x10007, &number)) << "the low 16 bits count";
    EXPECT_EQ(E_FAIL, book->queryCID(7, nullptr));
    book->closeDB();
    EXPECT_EQ(E_FAIL, book->queryCID(7, &number));
}

}  // namespace
}  // namespace PhoneBook
