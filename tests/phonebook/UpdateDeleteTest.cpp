#include <memory>

#include <gtest/gtest.h>

#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tests/support/Builders.h"
#include "tests/support/TemporaryStore.h"
#include "tests/support/Values.h"

namespace PhoneBook {
namespace {

using testing_support::contact;
using testing_support::MemoryStoreMount;
using testing_support::OpenPhoneBook;

PBRecord recordOf(OpenPhoneBook& book, DWORD oid) {
    PBRecord record;
    record.dwCITypeMask = 0x007F0FFF;
    static_cast<void>(book->queryCallerInfo(oid, &record));
    return record;
}

DWORD extensionRows(OpenPhoneBook& book) {
    return book->getTable(PBDBTBL_PHONEBOOKEXT)->getNumRecords();
}

void fillSlot(OpenPhoneBook& book, std::int16_t slot, const WCHAR* number) {
    CCeDBProp row[] = {CCeDBProp::ofI2(512, slot), CCeDBProp::ofUI4(513, 4), CCeDBProp::ofText(514, number),
                       CCeDBProp::ofUI2(515, 7)};
    DWORD oid = 0;
    ASSERT_EQ(S_OK, book->getTable(PBDBTBL_SPEEDDIALNO)->insertRecord(row, oid));
}

bool slotIsFilled(OpenPhoneBook& book, DWORD slot) {
    CString number;
    return book->queryCID(slot, &number) == S_OK;
}

TEST(UpdatePBRecord, ClearsWhatTheMaskLacks) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD oid = book.add(
        contact().name(TEXT("Kim")).mobile(TEXT("010-1")).email(TEXT("k@x.kr")).group(TEXT("A")).bell(TEXT("ding")));
    PBRecord changed = contact().name(TEXT("Lee")).group(TEXT("A")).record();
    EXPECT_EQ(S_OK, book->updatePBRecord(oid, changed));
    const PBRecord read = recordOf(book, oid);
    EXPECT_EQ(CString(TEXT("Lee")), read.strName);
    EXPECT_EQ(CString(TEXT("")), read.strMobileTelephoneNumber);
    EXPECT_EQ(CString(TEXT("")), read.strEmail1Address);
    EXPECT_EQ(CString(TEXT("")), read.strBell);
    EXPECT_EQ(1u, extensionRows(book));
}

TEST(UpdatePBRecord, LeavesTheExtensionRowAloneWithoutExtensionFields) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD oid = book.add(contact().name(TEXT("Kim")).group(TEXT("A")).bell(TEXT("ding")));
    PBRecord changed = contact().name(TEXT("Lee")).record();
    EXPECT_EQ(S_OK, book->updatePBRecord(oid, changed));
    const PBRecord read = recordOf(book, oid);
    EXPECT_EQ(CString(TEXT("A")), read.strGroup);
    EXPECT_EQ(CString(TEXT("ding")), read.strBell);
    EXPECT_EQ(CString(TEXT(", A")), read.strCategories) << "the empty group in front of what was there";
}

TEST(UpdatePBRecord, MakesAnExtensionRowWhenThereWasNone) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD oid = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")));
    PBRecord changed = contact().name(TEXT("Kim")).mobile(TEXT("010-1")).group(TEXT("A")).record();
    EXPECT_EQ(S_OK, book->updatePBRecord(oid, changed));
    EXPECT_EQ(1u, extensionRows(book));
    EXPECT_EQ(CString(TEXT("A")), recordOf(book, oid).strGroup);
}

TEST(UpdatePBRecord, TwiceWithOneGroupPutsItInFrontTwice) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD oid = book.add(contact().name(TEXT("Kim")));
    for (int i = 0; i < 2; ++i) {
        PBRecord changed = contact().name(TEXT("Kim")).group(TEXT("A")).record();
        EXPECT_EQ(S_OK, book->updatePBRecord(oid, changed));
    }
    EXPECT_EQ(CString(TEXT("A, A")), recordOf(book, oid).strCategories);
}

TEST(UpdatePBRecord, NeedsTheContactsTableAndTheContact) {
    const MemoryStoreMount store;
    PhoneBookDBMgr closed;
    PBRecord record = contact().name(TEXT("Kim")).record();
    EXPECT_EQ(E_FAIL, closed.updatePBRecord(7, record));
    OpenPhoneBook book;
    EXPECT_TRUE(FAILED(book->updatePBRecord(99'999, record)));
}

TEST(DeletePBRecord, TakesTheContactAndItsExtensionRow) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD kim = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")).group(TEXT("A")));
    const DWORD lee = book.add(contact().name(TEXT("Lee")).mobile(TEXT("010-2")));
    EXPECT_EQ(S_OK, book->deletePBRecord(kim));
    EXPECT_EQ(1u, book->getNumRecords());
    EXPECT_EQ(0u, extensionRows(book));
    EXPECT_EQ(S_OK, book->deletePBRecord(lee)) << "one without an extension row too";
    EXPECT_TRUE(FAILED(book->deletePBRecord(lee))) << "it is gone";
}

TEST(DeletePBRecord, FreesTheSlotsThatStillHoldItsNumbers) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD oid = book.add(
        contact().name(TEXT("Kim")).mobile(TEXT("010-1")).home(TEXT("02-2")).business(TEXT("031-3")).slots(0x070605));
    fillSlot(book, 5, TEXT("0101"));
    fillSlot(book, 6, TEXT("0999"));  // reassigned since
    fillSlot(book, 7, TEXT("0313"));
    EXPECT_EQ(S_OK, book->deletePBRecord(oid));
    EXPECT_FALSE(slotIsFilled(book, 5));
    EXPECT_TRUE(slotIsFilled(book, 6));
    EXPECT_FALSE(slotIsFilled(book, 7));
}

TEST(DeletePBRecord, EmptiesTheCacheEntryOfASlotThatItFrees) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD oid = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")).home(TEXT("02-2")).slots(0x0605));
    fillSlot(book, 5, TEXT("0101"));
    fillSlot(book, 6, TEXT("0999"));
    EXPECT_EQ(S_OK, book->fillSDialInfoCache());
    EXPECT_EQ(S_OK, book->deletePBRecord(oid));
    EXPECT_EQ(0u, book->getSDialInfoCache(5).dwSDialID);
    EXPECT_EQ(6u, book->getSDialInfoCache(6).dwSDialID);
}

TEST(DeletePBRecord, AnswersThatTheLastOfItsSlotsHasNoRow) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD oid = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")).slots(0x05));
    EXPECT_EQ(E_FAIL, book->deletePBRecord(oid));
    EXPECT_EQ(0u, book->getNumRecords()) << "the contact is gone all the same";
}

TEST(DeletePBRecord, ASlotOfANumberThatTheContactLacksIsNotItsOwn) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD oid = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")).slots(0x0605));
    fillSlot(book, 5, TEXT("0101"));
    EXPECT_EQ(S_OK, book->deletePBRecord(oid)) << "slot 6, which has no row, is not looked up";
    EXPECT_FALSE(slotIsFilled(book, 5));
}

TEST(DeletePBRecord, NeedsTheExtensionTable) {
    const MemoryStoreMount store;
    PhoneBookDBMgr closed;
    DWORD oid = 7;
    EXPECT_EQ(E_FAIL, closed.deletePBRecord(oid));
    EXPECT_EQ(E_FAIL, closed.deleteRecord(PBDBTBL_POLCONTACTS, oid));
    EXPECT_EQ(E_FAIL, closed.deleteAllPBRecords());
}

TEST(DeleteRecord, TakesOneRowOfATable) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    DWORD oid = book.add(contact().name(TEXT("Kim")).group(TEXT("A")));
    EXPECT_EQ(S_OK, book->deleteRecord(PBDBTBL_POLCONTACTS, oid));
    EXPECT_EQ(0u, book->getNumRecords());
    EXPECT_EQ(1u, extensionRows(book)) << "of that table only";
}

TEST(DeleteAllPBRecords, EmptiesContactsExtensionRowsAndSlots) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    for (const WCHAR* name : {TEXT("Ann"), TEXT("Bob"), TEXT("Carl")})
        book.add(contact().name(name).group(TEXT("A")));
    fillSlot(book, 5, TEXT("0101"));
    EXPECT_EQ(S_OK, book->fillSDialInfoCache());
    EXPECT_EQ(S_OK, book->deleteAllPBRecords());
    EXPECT_EQ(0u, book->getNumRecords());
    EXPECT_EQ(0u, extensionRows(book));
    EXPECT_FALSE(slotIsFilled(book, 5));
    EXPECT_EQ(0u, book->getSDialInfoCache(5).dwSDialID);
    EXPECT_EQ(S_OK, book->deleteAllPBRecords()) << "nothing to delete is no fault";
}

TEST(DeleteAllPBRecords, AnswersThatTheSlotsCannotBeEmptied) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    book.add(contact().name(TEXT("Ann")));
    book->getTable(PBDBTBL_SPEEDDIALNO)->close();
    EXPECT_EQ(E_ACCESSDENIED, book->deleteAllPBRecords());
    EXPECT_EQ(0u, book->getNumRecords());
}

TEST(QSearchPBRecord, FindsNamesThatBeginWithThePrefix) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    for (const WCHAR* name : {TEXT("Ki"), TEXT("kim"), TEXT("KIT"), TEXT("Kj"), TEXT("Aki"), TEXT("김민수"),
                              TEXT("김미경"), TEXT("깁스")}) {
        book.add(contact().name(name));
    }
    const auto count = [&](const WCHAR* prefix, int attribute = PBDBATTR_NAME) {
        const std::unique_ptr<Database::Iterator> found(book->qSearchPBRecord(attribute, prefix));
        return found == nullptr ? 0 : found->getNumItems();
    };
    EXPECT_EQ(3, count(TEXT("Ki")));
    EXPECT_EQ(3, count(TEXT("Ki"), PBDBATTR_MOBILETEL)) << "by name whatever the attribute";
    EXPECT_EQ(2, count(TEXT("김")));
    EXPECT_EQ(8, count(TEXT("")));
    EXPECT_EQ(0, count(TEXT("Z")));
    EXPECT_EQ(0, count(TEXT("Ki\" or [FileAs] >= \""))) << "a quote finds nobody and widens nothing";
}

TEST(QSearchPBRecord, TheCursorOwnsItsBounds) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    book.add(contact().name(TEXT("Kim")));
    book.add(contact().name(TEXT("Kit")));
    const std::unique_ptr<Database::Iterator> found(book->qSearchPBRecord(PBDBATTR_NAME, TEXT("Ki")));
    ASSERT_NE(nullptr, found);
    EXPECT_EQ(S_OK, found->deleteAt(1, false)) << "reads its result anew";
    EXPECT_EQ(1, found->getNumItems());
}

}  // namespace
}  // namespace PhoneBook
