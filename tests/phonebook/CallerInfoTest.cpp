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
                                   .name(TEXT("김민수"))
                                   .group(TEXT("친구"))
                                   .mobile(TEXT("+82 10-1111-2222"))
                                   .home(TEXT("(02) 333-4444"))
                                   .business(TEXT("031.555.6666"))
                                   .pager(TEXT("012-777"))
                                   .fax(TEXT("*23#")));
    for (const WCHAR* number :
         {TEXT("01011112222"), TEXT("023334444"), TEXT("0315556666"), TEXT("012777"), TEXT("*23#")}) {
        PBRecord record = wanting(nameMask | groupMask);
        DWORD found = 0;
        EXPECT_EQ(S_FALSE, book->queryCallerInfo(number, &record, &found)) << CString(number);
        EXPECT_EQ(oid, found);
        EXPECT_EQ(CString(TEXT("김민수")), record.strName);
        EXPECT_EQ(CString(TEXT("친구")), record.strGroup);
        EXPECT_EQ(nameMask | groupMask, record.dwCITypeMask);
    }
}

TEST(QueryCallerInfo, ReportsNoIdentifierUnlessAnExtensionFieldWasWanted) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    book.add(contact().name(TEXT("Kim")).mobile(TEXT("0101")));
    PBRecord record = wanting(nameMask);
    DWORD oid = 99;
    EXPECT_EQ(S_OK, book->queryCallerInfo(TEXT("0101"), &record, &oid));
    EXPECT_EQ(0u, oid);
    EXPECT_EQ(CString(TEXT("Kim")), record.strName);
    EXPECT_EQ(S_OK, book->queryCallerInfo(TEXT("0101"), &record, nullptr));
}

TEST(QueryCallerInfo, AContactWithoutAnExtensionRowIsFoundInPart) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD oid = book.add(contact().name(TEXT("Kim")).mobile(TEXT("0101")));
    PBRecord record = wanting(nameMask | groupMask);
    record.strGroup = TEXT("from before");
    DWORD found = 0;
    EXPECT_EQ(S_FALSE, book->queryCallerInfo(TEXT("0101"), &record, &found));
    EXPECT_EQ(oid, found);
    EXPECT_EQ(CString(TEXT("Kim")), record.strName);
    EXPECT_EQ(CString(TEXT("")), record.strGroup);
    EXPECT_EQ(nameMask, record.dwCITypeMask);
}

TEST(QueryCallerInfo, TheContactIsFoundWithoutTheExtensionTable) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD oid = book.add(contact().name(TEXT("Kim")).mobile(TEXT("0101")).group(TEXT("A")));
    book->getTable(PBDBTBL_PHONEBOOKEXT)->close();
    PBRecord record = wanting(nameMask | groupMask);
    DWORD found = 0;
    EXPECT_EQ(S_FALSE, book->queryCallerInfo(TEXT("0101"), &record, &found));
    EXPECT_EQ(oid, found);
    EXPECT_EQ(CString(TEXT("Kim")), record.strName);
    EXPECT_EQ(nameMask, record.dwCITypeMask);
}

TEST(QueryCallerInfo, ARowWithoutSlotsHasNoneAndThatIsAnAnswer) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD oid = book.add(contact().name(TEXT("Kim")));
    CCeDBRecord sparse;  // as another program may write it
    sparse.addProp(CCeDBProp::ofUI4(0x100, oid));
    DWORD rowOid = 0;
    ASSERT_EQ(S_OK, book->getTable(PBDBTBL_PHONEBOOKEXT)->insertRecord(&sparse, rowOid));
    PBRecord record = wanting(privateMask | groupMask);
    record.dwPrivate = 99;
    record.strGroup = TEXT("from before");
    EXPECT_EQ(S_FALSE, book->queryCallerInfo(oid, &record));
    EXPECT_EQ(privateMask, record.dwCITypeMask);
    EXPECT_EQ(0u, record.dwPrivate);
    EXPECT_EQ(CString(TEXT("")), record.strGroup);
}

TEST(QueryCallerInfo, ExtensionFieldsAloneAreFoundWhole) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    book.add(contact().name(TEXT("Kim")).mobile(TEXT("0101")).group(TEXT("Friends")));
    PBRecord record = wanting(groupMask | privateMask);
    EXPECT_EQ(S_OK, book->queryCallerInfo(TEXT("0101"), &record, nullptr));
    EXPECT_EQ(groupMask | privateMask, record.dwCITypeMask) << "no slots is an answer too";
    record = wanting(0x20000);
    EXPECT_EQ(S_FALSE, book->queryCallerInfo(TEXT("0101"), &record, nullptr)) << "there is no avatar";
    EXPECT_EQ(0u, record.dwCITypeMask);
}

TEST(QueryCallerInfo, TheFirstInNameOrderOfTwoHoldersIsTheCaller) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    book.add(contact().name(TEXT("Zoe")).mobile(TEXT("0101")));
    book.add(contact().name(TEXT("Ann")).home(TEXT("0101")));
    PBRecord record = wanting(nameMask);
    EXPECT_EQ(S_OK, book->queryCallerInfo(TEXT("0101"), &record, nullptr));
    EXPECT_EQ(CString(TEXT("Ann")), record.strName);
}

TEST(QueryCallerInfo, LooksAtEveryHolderWhenTheTableOfNumbersCannotBeRead) {
    objectstore_test::CountingMount store;
    OpenPhoneBook book;
    book.add(contact().name(TEXT("Ann")).mobile(TEXT("01012345678")));
    book.add(contact().name(TEXT("Bob")).mobile(TEXT("1234")));
    book.add(contact().name(TEXT("Zoe")).mobile(TEXT("01012345679")));
    store.log.numberError = ERROR_GEN_FAILURE;
    PBRecord record = wanting(nameMask);
    EXPECT_EQ(S_OK, book->queryCallerInfo(TEXT("1234"), &record, nullptr));
    EXPECT_EQ(CString(TEXT("Bob")), record.strName);
}

TEST(QueryCallerInfo, ComparesWholeNumbers) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    book.add(contact().name(TEXT("Ann")).mobile(TEXT("01012345678")));
    book.add(contact().name(TEXT("Bob")).mobile(TEXT("1234")));
    PBRecord record = wanting(nameMask);
    EXPECT_EQ(S_OK, book->queryCallerInfo(TEXT("1234"), &record, nullptr));
    EXPECT_EQ(CString(TEXT("Bob")), record.strName);
}

TEST(QueryCallerInfo, ANumberWithinALongerOneLeavesTheRecordUntouched) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    book.add(contact().name(TEXT("Ann")).mobile(TEXT("01012345678")));
    PBRecord record = wanting(nameMask);
    record.strName = TEXT("as it was");
    DWORD oid = 99;
    EXPECT_EQ(S_OK, book->queryCallerInfo(TEXT("1234"), &record, &oid));
    EXPECT_EQ(CString(TEXT("as it was")), record.strName);
    EXPECT_EQ(nameMask, record.dwCITypeMask);
}

TEST(QueryCallerInfo, ANumberThatNobodyHasResetsTheRecord) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    book.add(contact().name(TEXT("Ann")).mobile(TEXT("0101")));
    PBRecord record = wanting(nameMask);
    record.strName = TEXT("as it was");
    DWORD oid = 99;
    EXPECT_EQ(E_FAIL, book->queryCallerInfo(TEXT("555"), &record, &oid));
    EXPECT_EQ(CString(TEXT("")), record.strName);
    EXPECT_EQ(0u, record.dwCITypeMask);
    EXPECT_EQ(0u, oid);
}

TEST(QueryCallerInfo, AnswersForBadArguments) {
    const MemoryStoreMount store;
    PhoneBookDBMgr closed;
    PBRecord record = wanting(nameMask);
    DWORD oid = 99;
    EXPECT_EQ(E_FAIL, closed.queryCallerInfo(TEXT("1"), &record, &oid));
    EXPECT_EQ(E_FAIL, closed.queryCallerInfo(DWORD{1}, &record));

    OpenPhoneBook book;
    EXPECT_EQ(E_POINTER, book->queryCallerInfo(TEXT("1"), nullptr, &oid));
    EXPECT_EQ(99u, oid);
    EXPECT_EQ(E_INVALIDARG, book->queryCallerInfo(TEXT(""), &record, &oid));
    EXPECT_EQ(0u, oid);
    EXPECT_EQ(E_FAIL, book->queryCallerInfo(DWORD{0}, &record));
    EXPECT_EQ(E_FAIL, book->queryCallerInfo(DWORD{1}, nullptr));
    EXPECT_TRUE(FAILED(book->queryCallerInfo(DWORD{99'999}, &record)));
}

TEST(QueryCallerInfo, ReadsAContactByIdentifier) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD oid = book.add(
        contact().name(TEXT("Kim")).mobile(TEXT("0101")).birthday(32'937.0).group(TEXT("A")).primary(4).slots(5));
    PBRecord record = wanting(allFields);
    EXPECT_EQ(S_FALSE, book->queryCallerInfo(oid, &record));
    EXPECT_EQ(0x00610207u, record.dwCITypeMask) << "what was filled";
    EXPECT_EQ(32'937.0, record.dtBirthday);
    EXPECT_EQ(5u, record.dwPrivate);
    EXPECT_EQ(CString(TEXT("A")), record.strCategories);
}

TEST(QueryCallerInfo, FindsTheExtensionRowWhateverOrderItsTableIsIn) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    DWORD last = 0;
    for (const WCHAR* group : {TEXT("C"), TEXT("B"), TEXT("A"), TEXT("B")})
        last = book.add(contact().name(TEXT("Kim")).group(group));
    auto* extension = static_cast<Database::CeDBTable*>(book->getTable(PBDBTBL_PHONEBOOKEXT));
    extension->close();
    ASSERT_TRUE(extension->open(3, 0, nullptr));
    PBRecord record = wanting(groupMask);
    EXPECT_EQ(S_OK, book->queryCallerInfo(last, &record));
    EXPECT_EQ(CString(TEXT("B")), record.strGroup);
}

TEST(QueryCID, ReadsTheReducedNumberOfASlot) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    CString number(TEXT("as it was"));
    EXPECT_EQ(S_FALSE, book->queryCID(7, &number));
    EXPECT_EQ(CString(TEXT("as it was")), number);
    CCeDBProp row[] = {CCeDBProp::ofI2(512, 7), CCeDBProp::ofUI4(513, 4), CCeDBProp::ofText(514, TEXT("010-1234")),
                       CCeDBProp::ofUI2(515, 7)};
    DWORD oid = 0;
    ASSERT_EQ(S_OK, book->getTable(PBDBTBL_SPEEDDIALNO)->insertRecord(row, oid));
    EXPECT_EQ(S_OK, book->queryCID(7, &number));
    EXPECT_EQ(CString(TEXT("0101234")), number);
    EXPECT_EQ(S_OK, book->queryCID(0x10007, &number)) << "the low 16 bits count";
    EXPECT_EQ(E_FAIL, book->queryCID(7, nullptr));
    book->closeDB();
    EXPECT_EQ(E_FAIL, book->queryCID(7, &number));
}

}  // namespace
}  // namespace PhoneBook
