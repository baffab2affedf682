#include <gtest/gtest.h>

#include "tests/phonebook/BusyStore.h"
#include "tests/phonebook/SpeedDialBuilders.h"
#include "tests/support/TemporaryStore.h"

// Slots that are moved or emptied.

namespace PhoneBook {
namespace {

using speed_dial::addRow;
using speed_dial::businessType;
using speed_dial::dial;
using speed_dial::dirtyMark;
using speed_dial::homeType;
using speed_dial::mobileType;
using speed_dial::Row;
using speed_dial::rows;
using speed_dial::wordOf;
using testing_support::contact;
using testing_support::MemoryStoreMount;
using testing_support::OpenPhoneBook;
using testing_support::TemporaryStore;

using Rows = std::vector<Row>;

void insert(OpenPhoneBook& book, SpeedDialInfo info) {
    ASSERT_EQ(S_OK, book->insertSpeedDialInfo(info.dwSDialID, &info));
}

TEST(DeleteSpeedDialInfo, OfTheEntrysContactEmptiesRowLinkAndCache) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD kim = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")).home(TEXT("02-2")));
    insert(book, dial(5).of(kim).mobile(TEXT("010-1")));
    insert(book, dial(6).of(kim).home(TEXT("02-2")));
    SpeedDialInfo info = dial(5).of(kim).mobile(TEXT("anything"));
    EXPECT_EQ(S_OK, book->deleteSpeedDialInfo(5, &info));
    EXPECT_EQ((Rows{{6, homeType, TEXT("022")}}), rows());
    EXPECT_EQ(0x0600u, wordOf(book.manager(), kim));
    EXPECT_EQ(SpeedDialInfo(), book->getSDialInfoCache(5));
    EXPECT_EQ(6u, book->getSDialInfoCache(6).dwSDialID);
}

TEST(DeleteSpeedDialInfo, OfAnEntryWithoutContactLeavesTheLink) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD kim = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")));
    insert(book, dial(5).of(kim).mobile(TEXT("010-1")));
    SpeedDialInfo info = dial(5).mobile(TEXT("010-1"));
    EXPECT_EQ(S_OK, book->deleteSpeedDialInfo(5, &info));
    EXPECT_TRUE(rows().empty());
    EXPECT_EQ(0x05u, wordOf(book.manager(), kim));
}

TEST(DeleteSpeedDialInfo, WithoutAnEntryFindsTheContactByTheRowsNumber) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD kim = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")).slots(0x0705));
    addRow({5, mobileType, TEXT("0101")});
    EXPECT_EQ(S_OK, book->deleteSpeedDialInfo(5, nullptr));
    EXPECT_EQ(0x0700u, wordOf(book.manager(), kim));
    addRow({7, homeType, TEXT("0999")});
    EXPECT_EQ(E_FAIL, book->deleteSpeedDialInfo(7, nullptr)) << "nobody has it";
    EXPECT_TRUE(rows().empty()) << "the row is gone all the same";
    EXPECT_EQ(0x0700u, wordOf(book.manager(), kim));
}

TEST(DeleteSpeedDialInfo, AnswersTheLinksFailureAndKeepsTheDeletion) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    addRow({5, mobileType, TEXT("0101")});
    SpeedDialInfo info = dial(5).of(99'999).mobile(TEXT("0101"));
    EXPECT_EQ(E_FAIL, book->deleteSpeedDialInfo(5, &info));
    EXPECT_TRUE(rows().empty());
}

TEST(DeleteSpeedDialInfo, OfASlotWithoutRowStillEmptiesTheCacheEntry) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    book->getSDialInfoCache(5) = dial(5).mobile(TEXT("010-1"));
    SpeedDialInfo info = dial(5).mobile(TEXT("010-1"));
    EXPECT_EQ(S_FALSE, book->deleteSpeedDialInfo(5, &info));
    EXPECT_EQ(SpeedDialInfo(), book->getSDialInfoCache(5));
    book->getSDialInfoCache(5) = dial(5).mobile(TEXT("010-1"));
    EXPECT_EQ(E_INVALIDARG, book->deleteSpeedDialInfo(5, nullptr)) << "an empty number was looked up";
    EXPECT_EQ(SpeedDialInfo(), book->getSDialInfoCache(5));
}

TEST(DeleteSpeedDialInfo, OfASlotWithoutRowStillClearsTheLinkOfTheEntrysContact) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD kim = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")).slots(0x05));
    SpeedDialInfo info = dial(5).of(kim).mobile(TEXT("010-1"));
    EXPECT_EQ(S_OK, book->deleteSpeedDialInfo(5, &info));
    EXPECT_EQ(0u, wordOf(book.manager(), kim));
}

TEST(DeleteSpeedDialInfo, TakesTheFirstOfTwoRows) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    addRow({5, mobileType, TEXT("0101")});
    addRow({5, homeType, TEXT("0102")});
    SpeedDialInfo info;
    EXPECT_EQ(S_OK, book->deleteSpeedDialInfo(5, &info));
    EXPECT_EQ((Rows{{5, homeType, TEXT("0102")}}), rows());
}

TEST(DeleteSpeedDialInfo, OfASlotThatTheCacheLacksTouchesTheTableAlone) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    addRow({100, mobileType, TEXT("0101")});
    SpeedDialInfo info;
    EXPECT_EQ(S_OK, book->deleteSpeedDialInfo(100, &info));
    EXPECT_EQ(S_FALSE, book->deleteSpeedDialInfo(0xFFFFFFFF, &info));
    EXPECT_TRUE(rows().empty());
}

TEST(MoveSpeedDialInfo, MovesRowLinkAndCacheEntryAndRefillsTheEntry) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD kim = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")));
    insert(book, dial(3).of(kim).name(TEXT("Kim")).mobile(TEXT("010-1")));
    SpeedDialInfo info = dial(3).of(kim).mobile(TEXT("x"));
    EXPECT_EQ(S_OK, book->moveSpeedDialInfo(3, 8, &info));
    EXPECT_EQ((Rows{{8, mobileType, TEXT("0101")}}), rows());
    EXPECT_EQ(0x08u, wordOf(book.manager(), kim));
    EXPECT_EQ(SpeedDialInfo(), book->getSDialInfoCache(3));
    EXPECT_EQ(SpeedDialInfo(dial(8).of(kim).name(TEXT("Kim")).mobile(TEXT("010-1")).flags(7)),
              book->getSDialInfoCache(8));
    EXPECT_EQ(SpeedDialInfo(dial(8).of(0).name(TEXT("Kim")).mobile(TEXT("010-1")).flags(7)), info);
}

TEST(MoveSpeedDialInfo, WithoutAContactFindsItByTheRowsNumber) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD kim = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")).slots(0x030000));
    addRow({3, businessType, TEXT("0101"), 1});
    EXPECT_EQ(S_OK, book->moveSpeedDialInfo(3, 8, nullptr));
    EXPECT_EQ((Rows{{8, businessType, TEXT("0101"), 7}}), rows());
    EXPECT_EQ(0x080000u, wordOf(book.manager(), kim)) << "the byte of the row's type";
    SpeedDialInfo unlinked = dial(8).mobile(TEXT("0999"));
    EXPECT_EQ(S_OK, book->moveSpeedDialInfo(8, 9, &unlinked));
    EXPECT_EQ(0x090000u, wordOf(book.manager(), kim));
}

TEST(MoveSpeedDialInfo, OntoATakenSlotLeavesTwoRows) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD kim = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")));
    const DWORD lee = book.add(contact().name(TEXT("Lee")).mobile(TEXT("010-2")));
    insert(book, dial(5).of(lee).name(TEXT("Lee")).mobile(TEXT("010-2")));
    insert(book, dial(3).of(kim).name(TEXT("Kim")).mobile(TEXT("010-1")));
    SpeedDialInfo info = dial(3).of(kim).mobile(TEXT("010-1"));
    EXPECT_EQ(S_OK, book->moveSpeedDialInfo(3, 5, &info));
    EXPECT_EQ((Rows{{5, mobileType, TEXT("0102")}, {5, mobileType, TEXT("0101")}}), rows());
    EXPECT_EQ(0x05u, wordOf(book.manager(), lee)) << "the old owner's word stays";
    EXPECT_EQ(0x05u, wordOf(book.manager(), kim));
    EXPECT_EQ(CString(TEXT("Kim")), book->getSDialInfoCache(5).strName);
    EXPECT_EQ(CString(TEXT("Lee")), info.strName) << "the slot is shown as it is found: its first row";
}

TEST(MoveSpeedDialInfo, FailsForAnEmptySlotAndChangesNothing) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    book->getSDialInfoCache(3) = dial(3).mobile(TEXT("0101"));
    SpeedDialInfo info = dial(3).name(TEXT("kept"));
    EXPECT_EQ(E_FAIL, book->moveSpeedDialInfo(3, 5, &info));
    EXPECT_EQ(3u, book->getSDialInfoCache(3).dwSDialID);
    EXPECT_EQ(SpeedDialInfo(dial(3).name(TEXT("kept"))), info);
}

TEST(MoveSpeedDialInfo, AnswersTheLinksFailureAndKeepsTheMove) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    addRow({3, mobileType, TEXT("0101")});
    EXPECT_EQ(E_FAIL, book->moveSpeedDialInfo(3, 5, nullptr));
    EXPECT_EQ((Rows{{5, mobileType, TEXT("0101")}}), rows());
}

TEST(MoveSpeedDialInfo, ToASlotThatTheCacheLacksEmptiesTheOldEntryAlone) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD kim = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")));
    insert(book, dial(3).of(kim).mobile(TEXT("010-1")));
    EXPECT_EQ(S_OK, book->moveSpeedDialInfo(3, 100, nullptr));
    EXPECT_EQ(SpeedDialInfo(), book->getSDialInfoCache(3));
    EXPECT_EQ(S_OK, book->moveSpeedDialInfo(100, 4, nullptr));
    EXPECT_EQ(SpeedDialInfo(), book->getSDialInfoCache(4));
    EXPECT_EQ((Rows{{4, mobileType, TEXT("0101")}}), rows());
}

TEST(DeleteAllSpeedDialInfos, EmptiesTheTableTheCacheAndEverySlotWord) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD kim = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")).group(TEXT("A")));
    const DWORD lee = book.add(contact().name(TEXT("Lee")).mobile(TEXT("010-2")).slots(0x44332211));
    insert(book, dial(5).of(kim).mobile(TEXT("010-1")));
    addRow({500, mobileType, TEXT("0102")});
    EXPECT_EQ(S_OK, book->deleteAllSpeedDialInfos());
    EXPECT_TRUE(rows().empty());
    EXPECT_EQ(SpeedDialInfo(), book->getSDialInfoCache(5));
    EXPECT_EQ(0u, wordOf(book.manager(), kim));
    EXPECT_EQ(0u, wordOf(book.manager(), lee));
    PBRecord read;
    read.dwCITypeMask = 0x10000;
    EXPECT_EQ(S_OK, book->queryCallerInfo(kim, &read));
    EXPECT_EQ(CString(TEXT("A")), read.strGroup) << "the rest of the row stays";
}

TEST(DeleteAllSpeedDialInfos, OfNothingIsNoFault) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    EXPECT_EQ(S_OK, book->deleteAllSpeedDialInfos());
}

TEST(DeleteAllSpeedDialInfos, LeavesAnExtensionRowWithoutSlotsUnwritten) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    book.add(contact().name(TEXT("Kim")).group(TEXT("Family")));
    const auto lastChange = [&book] {
        CEOIDINFOEX info{};
        EXPECT_TRUE(CeOidGetInfoEx2(book->getTable(PBDBTBL_PHONEBOOKEXT)->getCEOID(), &info));
        return ticksOf(info.ftLastModified);
    };
    const auto before = lastChange();
    EXPECT_EQ(S_OK, book->deleteAllSpeedDialInfos());
    EXPECT_EQ(before, lastChange());
}

TEST(DeleteAllSpeedDialInfos, WithoutTheExtensionTableStillEmptiesTheSlots) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    addRow({5, mobileType, TEXT("0101")});
    book->getSDialInfoCache(5) = dial(5).mobile(TEXT("0101"));
    book->getTable(PBDBTBL_PHONEBOOKEXT)->close();
    EXPECT_EQ(E_ACCESSDENIED, book->deleteAllSpeedDialInfos());
    EXPECT_TRUE(rows().empty());
    EXPECT_EQ(SpeedDialInfo(), book->getSDialInfoCache(5));
}

TEST(SpeedDialUnits, AnOperationThatCannotHaveTheStoreChangesNothing) {
    const TemporaryStore store(BusyStore::impatient());
    OpenPhoneBook setUp;
    const DWORD kim = setUp.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")));
    insert(setUp, dial(5).of(kim).mobile(TEXT("010-1")));
    BusyStore::during([&] {
        PhoneBookDBMgr manager;
        ASSERT_EQ(S_OK, manager.openDB(nullptr));
        ASSERT_EQ(S_OK, manager.fillSDialInfoCache());
        SpeedDialInfo info = dial(6).of(kim).mobile(TEXT("010-1"));
        EXPECT_EQ(E_FAIL, manager.insertSpeedDialInfo(6, &info));
        EXPECT_EQ(E_FAIL, manager.writeSpeedDialInfo(5, &info));
        EXPECT_EQ(E_FAIL, manager.deleteSpeedDialInfo(5, &info));
        EXPECT_EQ(E_FAIL, manager.moveSpeedDialInfo(5, 6, &info));
        EXPECT_EQ(E_FAIL, manager.deleteAllSpeedDialInfos());
        EXPECT_EQ(5u, manager.getSDialInfoCache(5).dwSDialID);
        EXPECT_EQ(0u, manager.getSDialInfoCache(6).dwSDialID);
        EXPECT_EQ(S_OK, manager.writeSDialInfoCache(6, &info));
        EXPECT_EQ(E_FAIL, manager.flushSDialInfoCache());
        EXPECT_EQ(dirtyMark, manager.getSDialInfoCache(6).dwFlags & dirtyMark);
        manager.closeDB();
    });
    EXPECT_EQ((Rows{{5, mobileType, TEXT("0101")}}), rows());
    EXPECT_EQ(0x05u, wordOf(setUp.manager(), kim));
}

}  // namespace
}  // namespace PhoneBook
