#include <memory>

#include <gtest/gtest.h>

#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tests/phonebook/BusyStore.h"
#include "tests/support/Builders.h"
#include "tests/support/TemporaryStore.h"
#include "tests/support/Values.h"

namespace PhoneBook {
namespace {

using testing_support::contact;
using testing_support::MemoryStoreMount;
using testing_support::OpenPhoneBook;
using testing_support::TemporaryStore;

/// Lets a test reach the steps that derived managers may use.
class Manager : public PhoneBookDBMgr {
public:
    using PhoneBookDBMgr::addSHNotification;
    using PhoneBookDBMgr::closeTable;
    using PhoneBookDBMgr::createTable;
    using PhoneBookDBMgr::dropTable;
    using PhoneBookDBMgr::initTableObj;
    using PhoneBookDBMgr::openTable;
};

TEST(PhoneBookDBMgr, OpensNothingWhenItIsMade) {
    const MemoryStoreMount store;
    Manager manager;
    for (UINT id = 0; id < 6; ++id)
        EXPECT_EQ(nullptr, manager.getTable(id));
    EXPECT_EQ(5, manager.getNumTables());
    EXPECT_EQ(CString(TEXT("PhoneBookDB")), CString(PhoneBookDBMgr::getDBName()));
    EXPECT_EQ(0u, manager.getNumRecords());
    EXPECT_EQ(0u, manager.GetSafeHwnd());
    EXPECT_EQ(nullptr, manager.getIterator(UINT{0}, 0, nullptr, nullptr));
}

TEST(PhoneBookDBMgr, ClosingWhatWasNeverOpenedFails) {
    const MemoryStoreMount store;
    Manager manager;
    EXPECT_EQ(FALSE, manager.closeTable(1));
    EXPECT_EQ(E_FAIL, manager.closeDB());
}

TEST(PhoneBookDBMgr, ATableObjectIsMadeOnce) {
    const MemoryStoreMount store;
    Manager manager;
    for (UINT id = 0; id < 6; ++id) {
        ASSERT_EQ(TRUE, manager.initTableObj(id));
        const Database::Table* made = manager.getTable(id);
        EXPECT_EQ(TRUE, manager.initTableObj(id));
        EXPECT_EQ(made, manager.getTable(id)) << id;
    }
}

TEST(PhoneBookDBMgr, SetsUpOpensAndClosesTheDatabases) {
    const MemoryStoreMount store;
    Manager manager;
    EXPECT_EQ(S_OK, manager.initDB(false));
    EXPECT_EQ(0u, manager.GetSafeHwnd()) << "no window was asked for";
    EXPECT_FALSE(manager.getTable(3)->isOpen()) << "setting up leaves nothing open";
    EXPECT_EQ(S_OK, manager.openDB(nullptr));
    for (UINT id = 0; id < 5; ++id)
        EXPECT_TRUE(manager.getTable(id)->isOpen()) << id;
    EXPECT_FALSE(manager.getTable(5)->isOpen());
    EXPECT_EQ(S_OK, manager.closeDB());
    for (UINT id = 0; id < 5; ++id)
        EXPECT_FALSE(manager.getTable(id)->isOpen()) << id;
}

TEST(PhoneBookDBMgr, SettingUpTwiceKeepsWhatIsThere) {
    const MemoryStoreMount store;
    {
        OpenPhoneBook book;
        book.add(contact().name(TEXT("Kim")).group(TEXT("Friends")));
    }
    OpenPhoneBook again;
    EXPECT_EQ(1u, again->getNumRecords());
    EXPECT_EQ(1u, again->getTable(1)->getNumRecords());
    EXPECT_EQ(E_FAIL, again->createDB()) << "none can be made a second time";
}

TEST(PhoneBookDBMgr, OneTableThatCannotBeOpenedDoesNotStopTheOthers) {
    const MemoryStoreMount store;
    Manager manager;
    ASSERT_EQ(S_OK, manager.initDB(false));
    ASSERT_EQ(TRUE, manager.dropTable(2));
    EXPECT_EQ(E_FAIL, manager.openDB(nullptr));
    EXPECT_TRUE(manager.getTable(0)->isOpen());
    EXPECT_TRUE(manager.getTable(1)->isOpen());
    EXPECT_FALSE(manager.getTable(2)->isOpen());
    EXPECT_TRUE(manager.getTable(3)->isOpen());
    EXPECT_TRUE(manager.getTable(4)->isOpen());
}

TEST(PhoneBookDBMgr, DoesNothingAtAllWhenTheStoreCannotBeHadForWriting) {
    const TemporaryStore store(BusyStore::impatient());
    BusyStore::during([] {
        Manager manager;
        EXPECT_EQ(E_FAIL, manager.createDB());
        EXPECT_EQ(ERROR_LOCK_VIOLATION, GetLastError());
        EXPECT_EQ(nullptr, manager.getTable(1)) << "not even the objects of the tables are made";
    });
}

TEST(PhoneBookDBMgr, TheContactsAreNeitherMadeNorDropped) {
    const MemoryStoreMount store;
    Manager manager;
    EXPECT_EQ(TRUE, manager.createTable(0));
    EXPECT_EQ(TRUE, manager.dropTable(0));
    ASSERT_EQ(S_OK, manager.initDB(false));
    ASSERT_EQ(S_OK, manager.openDB(nullptr));
    PBRecord record = contact().name(TEXT("Kim")).record();
    ASSERT_EQ(S_OK, manager.insertPBRecord(record, nullptr));

    EXPECT_EQ(S_OK, manager.destroyDB());

    EXPECT_FALSE(manager.getTable(0)->isOpen()) << "what stays is closed too";
    EXPECT_EQ(E_FAIL, manager.openDB(nullptr)) << "four databases are gone";
    EXPECT_EQ(1u, manager.getNumRecords());
}

TEST(PhoneBookDBMgr, TheCallHistoryHasOneDescendingOrder) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    CEOIDINFOEX info{};
    ASSERT_TRUE(CeOidGetInfoEx2(book->getTable(4)->getCEOID(), &info));
    EXPECT_EQ(1, info.wNumSortOrder);
    EXPECT_EQ(makePropId(1024, CEVT_FILETIME), info.rgSortSpecs[0].propid);
    EXPECT_EQ(CEDB_SORT_DESCENDING, info.rgSortSpecs[0].dwFlags);
    for (UINT id = 1; id < 4; ++id) {
        ASSERT_TRUE(CeOidGetInfoEx2(book->getTable(id)->getCEOID(), &info));
        EXPECT_EQ(0, info.wNumSortOrder) << id;
    }
}

TEST(PhoneBookDBMgr, SettingUpMakesTheWindowWhenAsked) {
    const MemoryStoreMount store;
    Manager manager;
    EXPECT_EQ(S_OK, manager.initDB(true));
    EXPECT_NE(0u, manager.GetSafeHwnd());
    EXPECT_EQ(FALSE, manager.Create()) << "it has its window already";
}

TEST(PhoneBookDBMgr, DestroyingTheWindowClosesTheDatabases) {
    const MemoryStoreMount store;
    Manager manager;
    ASSERT_EQ(S_OK, manager.initDB(true));
    ASSERT_EQ(S_OK, manager.openDB(&manager));
    EXPECT_EQ(TRUE, manager.DestroyWindow());
    EXPECT_FALSE(manager.getTable(1)->isOpen());
    EXPECT_EQ(0u, manager.GetSafeHwnd());
    EXPECT_EQ(S_OK, manager.addSHNotification());
}

TEST(PhoneBookDBMgr, IteratorsAreAskedOfTheTableOfAnAttribute) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    book.add(contact().name(TEXT("Ann")).mobile(TEXT("02")));
    book.add(contact().name(TEXT("Bob")).mobile(TEXT("01")));
    CCeDBProp from = CCeDBProp::ofText(4, TEXT("015"));
    const std::unique_ptr<Database::Iterator> found(book->getIterator(UINT{PBDBATTR_MOBILETEL}, &from, nullptr));
    ASSERT_NE(nullptr, found);
    EXPECT_EQ(1, found->getNumItems());
    EXPECT_EQ(CString(TEXT("Ann")), found->getStringAt(0, 0));
    EXPECT_EQ(nullptr, book->getIterator(UINT{PBDBATTR_NONE}, nullptr, nullptr));
}

TEST(PhoneBookDBMgr, LooksAttributesUp) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    EXPECT_EQ(2, PhoneBookDBMgr::getPBDBAttrID(1, 3));
    EXPECT_EQ(18, PhoneBookDBMgr::getPBDBAttrID(0, 10));
    EXPECT_EQ(0, PhoneBookDBMgr::getPBDBAttrID(-1, -1));
    EXPECT_EQ(18, PhoneBookDBMgr::getPBDBAttrIDFromCITypeFlag(0x4 | 0x8));
    EXPECT_EQ(5, PhoneBookDBMgr::getTelNoAttrIdx(0x20));
    EXPECT_EQ(0x8u, PhoneBookDBMgr::getTelNoAttrFlag(1));
    EXPECT_TRUE(PhoneBookDBMgr::isTelNoAttr(PBDBATTR_PAGER));
    EXPECT_FALSE(PhoneBookDBMgr::isTelNoAttr(PBDBATTR_EMAIL));
    EXPECT_TRUE(PhoneBookDBMgr::isSDialNoAttr(PBDBATTR_HOMETEL));
    EXPECT_FALSE(PhoneBookDBMgr::isSDialNoAttr(PBDBATTR_PAGER));
    EXPECT_EQ(CString(TEXT("Birtyday")), book->getDBAttrName(PBDBATTR_BIRTHDAY));
    EXPECT_EQ(CString(TEXT("Group")), book->getDBAttrName(PBDBATTR_GROUP));
    EXPECT_EQ(10, PhoneBookDBMgr::aRecDef_[0].getNumAttrs());
    EXPECT_EQ(10, PhoneBookDBMgr::recdefPOlCRaw_.getNumAttrs());
    EXPECT_EQ(0u, PhoneBookDBMgr::nullSDialInfo.dwSDialID);
    EXPECT_EQ(CString(TEXT("가족")), CString(PhoneBookDBMgr::aszDefPBGroupName_[0]));
}

}  // namespace
}  // namespace PhoneBook
