#include <memory>

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

class Manager : public PhoneBookDBMgr {
public:
    using PhoneBookDBMgr::getPBGroupName;
    using PhoneBookDBMgr::makeCategories;
    using PhoneBookDBMgr::openTable;
};

constexpr DWORD allFields = 0x007F0FFF;

PBRecord recordOf(OpenPhoneBook& book, DWORD oid) {
    PBRecord record;
    record.dwCITypeMask = allFields;
    EXPECT_GE(book->queryCallerInfo(oid, &record), 0);
    return record;
}

/// The one row of the extension table.
CCeDBRecord onlyExtensionRow(OpenPhoneBook& book) {
    EXPECT_EQ(1u, book->getTable(PBDBTBL_PHONEBOOKEXT)->getNumRecords());
    const std::unique_ptr<Database::Iterator> rows(book->getIterator(UINT{PBDBTBL_PHONEBOOKEXT}, 0, nullptr, nullptr));
    CCeDBRecord row;
    EXPECT_EQ(S_OK, rows->getRecordAt(0, &row));
    return row;
}

TEST(InsertPBRecord, WritesNoExtensionRowWithoutExtensionFields) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    PBRecord record = contact().name(TEXT("Kim")).mobile(TEXT("010-1234-5678")).record();
    DWORD oid = 0;
    EXPECT_EQ(S_OK, book->insertPBRecord(record, &oid));
    EXPECT_NE(0u, oid);
    EXPECT_EQ(0u, book->getTable(PBDBTBL_PHONEBOOKEXT)->getNumRecords());
    EXPECT_EQ(1u, book->getNumRecords());
    EXPECT_EQ(0x7u, record.dwCITypeMask) << "the categories are always written";
}

TEST(InsertPBRecord, AGroupAloneMakesCategoriesAndAnExtensionRow) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD oid = book.add(contact().group(TEXT("Friends")));
    const CCeDBRecord row = onlyExtensionRow(book);
    EXPECT_EQ(oid, row.findProp(0x100)->getUI4());
    EXPECT_EQ(CString(TEXT("")), row.findProp(0x101)->getText());
    EXPECT_EQ(CString(TEXT("")), row.findProp(0x102)->getText()) << "no number, so none is primary";
    EXPECT_EQ(CString(TEXT("Friends")), row.findProp(0x103)->getText());
    EXPECT_EQ(7u, row.findProp(0x10A)->getUI2());
    EXPECT_EQ(CString(TEXT("Friends")), recordOf(book, oid).strCategories);
}

TEST(InsertPBRecord, TheExtensionRowPointsBackAtTheContact) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD oid = book.add(contact()
                                   .name(TEXT("Kim"))
                                   .home(TEXT("(02) 123-4567"))
                                   .business(TEXT("031-1"))
                                   .bell(TEXT("ding"))
                                   .primary(0x10)
                                   .slots(0x0203));
    const CCeDBRecord row = onlyExtensionRow(book);
    EXPECT_EQ(11, row.getNumProps());
    EXPECT_EQ(oid, row.findProp(0x100)->getUI4());
    EXPECT_EQ(CString(TEXT("Kim")), row.findProp(0x101)->getText());
    EXPECT_EQ(CString(TEXT("0311")), row.findProp(0x102)->getText()) << "the primary number, reduced";
    EXPECT_EQ(CString(TEXT("ding")), row.findProp(0x106)->getText());
    EXPECT_EQ(0x0203u, row.findProp(0x108)->getUI4());
    EXPECT_EQ(0x10u, row.findProp(0x109)->getUI4());
}

TEST(InsertPBRecord, GivenCategoriesGiveWayToTheGroup) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD oid = book.add(contact().name(TEXT("Kim")).categories(TEXT("Work")).group(TEXT("Friends")));
    EXPECT_EQ(CString(TEXT("Friends")), recordOf(book, oid).strCategories);
    const DWORD other = book.add(contact().name(TEXT("Lee")).categories(TEXT("Work")));
    EXPECT_EQ(CString(TEXT("")), recordOf(book, other).strCategories);
}

TEST(InsertPBRecord, NeedsTheContactsTable) {
    const MemoryStoreMount store;
    PhoneBookDBMgr manager;
    PBRecord record = contact().name(TEXT("Kim")).record();
    DWORD oid = 7;
    EXPECT_EQ(E_FAIL, manager.insertPBRecord(record, &oid));
    EXPECT_EQ(E_FAIL, manager.insertRecord());
    EXPECT_EQ(0x1u, record.dwCITypeMask);
    EXPECT_EQ(7u, oid);
}

TEST(InsertPBRecord, WithoutAnExtensionTableTheContactStaysAndItsGroupFails) {
    const MemoryStoreMount store;
    Manager manager;
    ASSERT_EQ(TRUE, manager.openTable(PBDBTBL_POLCONTACTS, nullptr));
    PBRecord record = contact().name(TEXT("Kim")).group(TEXT("Friends")).record();
    EXPECT_EQ(E_FAIL, manager.insertPBRecord(record, nullptr));
    EXPECT_EQ(1u, manager.getNumRecords());
}

TEST(InsertPBRecord, AContactThatFailsStillGetsItsExtensionRowUnderZero) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    PBRecord record = contact().name(WString(40'000, u'x')).group(TEXT("Friends")).record();
    record.strGroup = TEXT("Friends");
    DWORD oid = 9;
    // The extension row carries the name as well, and is refused for the same reason.
    EXPECT_TRUE(FAILED(book->insertPBRecord(record, &oid)));
    EXPECT_EQ(0u, oid);
    PBRecord longMail = contact().email(WString(40'000, u'x')).group(TEXT("Friends")).record();
    EXPECT_EQ(S_OK, book->insertPBRecord(longMail, &oid)) << "the last insert's result";
    EXPECT_EQ(0u, oid);
    EXPECT_EQ(0u, onlyExtensionRow(book).findProp(0x100)->getUI4());
    EXPECT_EQ(0u, book->getNumRecords());
}

TEST(InsertPBRecord, AUnitThatIsLostLeavesNoIdentifier) {
    objectstore_test::CountingMount store;
    OpenPhoneBook book;
    PBRecord record = contact().name(TEXT("Kim")).group(TEXT("Friends")).record();
    DWORD oid = 9;
    store.log.loseNextUnit = true;
    EXPECT_EQ(E_FAIL, book->insertPBRecord(record, &oid));
    EXPECT_EQ(0u, oid);
    EXPECT_EQ(0u, book->getNumRecords());

    store.log.loseNextUnit = true;
    EXPECT_EQ(E_FAIL, book->insertPBRecord(record, nullptr));
    EXPECT_EQ(S_OK, book->insertPBRecord(record, &oid));
    EXPECT_NE(0u, oid);
}

TEST(InsertPBRecord, TheSampleRowGoesIntoTheExtensionTable) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    EXPECT_EQ(S_OK, book->insertRecord());
    EXPECT_EQ(CString(TEXT("한글 테스트.")), onlyExtensionRow(book).findProp(0x101)->getText());
}

TEST(GetTableAttrs, GivesZeroForWhatTheMaskLacks) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    PBRecord record = contact().name(TEXT("Kim")).record();
    record.strMobileTelephoneNumber = TEXT("not in the mask");
    CObArray props;
    EXPECT_EQ(S_OK, book->getTableAttrsFromPBRecord(PBDBTBL_POLCONTACTS, 0, record, props));
    ASSERT_EQ(10, props.GetSize());
    const CCeDBRecord row(props);
    EXPECT_EQ(CString(TEXT("Kim")), row.getPropAt(0).getText());
    EXPECT_EQ(CString(TEXT("")), row.getPropAt(2).getText());
    EXPECT_EQ(0.0, row.getPropAt(7).getR8());
    EXPECT_EQ(CCeDBProp::typeR8, row.getPropAt(7).getType());
    EXPECT_EQ(S_OK, book->clearObArray(props));
    EXPECT_TRUE(props.IsEmpty());
}

TEST(GetTableAttrs, PutsTheGroupInFrontOfTheContactsCategories) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD oid = book.add(contact().name(TEXT("Kim")).group(TEXT("Friends")));
    PBRecord record = contact().categories(TEXT("ignored")).group(TEXT("Friends")).record();
    CObArray props;
    book->getTableAttrsFromPBRecord(PBDBTBL_POLCONTACTS, oid, record, props);
    EXPECT_EQ(CString(TEXT("Friends, Friends")), record.strCategories) << "a group that is there comes in front again";
    book->clearObArray(props);
}

TEST(MakeCategories, IsTheGroupAloneForNoContact) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    Manager manager;
    auto* contacts = static_cast<Database::POlDBTable*>(book->getTable(0));
    const DWORD none = book.add(contact().name(TEXT("Kim")));
    const DWORD work = book.add(contact().name(TEXT("Lee")).group(TEXT("Work")));
    EXPECT_EQ(CString(TEXT("A")), manager.makeCategories(contacts, 0, TEXT("A")));
    EXPECT_EQ(CString(TEXT("A")), manager.makeCategories(contacts, 99'999, TEXT("A")));
    EXPECT_EQ(CString(TEXT("A")), manager.makeCategories(contacts, none, TEXT("A")));
    EXPECT_EQ(CString(TEXT("A, Work")), manager.makeCategories(contacts, work, TEXT("A")));
    EXPECT_EQ(CString(TEXT(", Work")), manager.makeCategories(contacts, work, TEXT("")));
}

TEST(GetPBGroupName, IsTheGroupWhenItIsOneOfTheCategories) {
    Manager manager;
    EXPECT_EQ(CString(TEXT("Work")), manager.getPBGroupName(TEXT("Family, Work"), TEXT("Work")));
    EXPECT_EQ(CString(TEXT("")), manager.getPBGroupName(TEXT("Family, Work"), TEXT("work")));
    EXPECT_EQ(CString(TEXT("")), manager.getPBGroupName(TEXT("Family, Work"), TEXT("Wo")));
    EXPECT_EQ(CString(TEXT("")), manager.getPBGroupName(TEXT(""), TEXT("Work")));
}

TEST(Search, FindsByAttributeTextRestrictionAndNumber) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1234")));
    book.add(contact().name(TEXT("Lee")).home(TEXT("02-12345")));
    const auto count = [](Database::Iterator* found) {
        const std::unique_ptr<Database::Iterator> owned(found);
        return found == nullptr ? 0 : found->getNumItems();
    };
    EXPECT_EQ(1, count(book->searchPBRecord(PBDBATTR_NAME, TEXT("ki"))));
    EXPECT_EQ(1, count(book->searchPBRecord(TEXT("[FileAs] > \"Kim\""))));
    EXPECT_EQ(2, count(book->searchPBRecordOfTelNo(nullptr, TEXT("1234"))));
    EXPECT_EQ(2, count(book->getIterator(UINT{PBDBATTR_NAME}, nullptr, nullptr)));
    EXPECT_EQ(0, count(book->searchPBRecord(nullptr, 0, nullptr, nullptr))) << "no earlier result to narrow";
}

TEST(Search, AGroupThatNobodyIsInIsNoCursor) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    book.add(contact().name(TEXT("Kim")).group(TEXT("Friends")));
    const std::unique_ptr<Database::Iterator> friends(book->searchPBRecordOfPBGroup(TEXT("Friends")));
    ASSERT_NE(nullptr, friends);
    EXPECT_EQ(1, friends->getNumItems());
    EXPECT_EQ(nullptr, book->searchPBRecordOfPBGroup(TEXT("Family")));
}

TEST(Search, FindsNothingBeforeTheTablesAreMade) {
    const MemoryStoreMount store;
    PhoneBookDBMgr manager;
    EXPECT_EQ(nullptr, manager.searchPBRecord(PBDBATTR_NAME, TEXT("x")));
    EXPECT_EQ(nullptr, manager.searchPBRecord(TEXT("[FileAs] > \"A\"")));
    EXPECT_EQ(nullptr, manager.searchPBRecord(nullptr, 0, nullptr, nullptr));
    EXPECT_EQ(nullptr, manager.searchPBRecordOfTelNo(nullptr, TEXT("1")));
}

}  // namespace
}  // namespace PhoneBook
