#include <memory>

#include <gtest/gtest.h>

#include "tests/phonebook/SpeedDialBuilders.h"
#include "tests/support/TemporaryStore.h"

// The cache of the slots: how it is filled, edited and written back.

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

using Rows = std::vector<Row>;
using NamesBySlot = CMap<DWORD, DWORD&, CString, CString&>;

CString nameIn(const NamesBySlot& names, DWORD slot) {
    CString name = TEXT("(none)");
    names.Lookup(slot, name);
    return name;
}

TEST(FillSDialInfoCache, TakesNumberFromTheRowAndTypeAndNameFromTheContact) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD kim = book.add(
        contact().name(TEXT("Kim")).mobile(TEXT("010-1")).home(TEXT("02-2")).business(TEXT("031-3")).slots(0x070605));
    addRow({5, 0x400, TEXT("0101")});
    addRow({6, 0x400, TEXT("022")});
    addRow({7, 0x400, TEXT("0313")});
    EXPECT_EQ(S_OK, book->fillSDialInfoCache());
    EXPECT_EQ(SpeedDialInfo(dial(5).of(kim).name(TEXT("Kim")).mobile(TEXT("0101")).flags(0)),
              book->getSDialInfoCache(5));
    EXPECT_EQ(SpeedDialInfo(dial(6).of(kim).name(TEXT("Kim")).home(TEXT("022")).flags(0)), book->getSDialInfoCache(6));
    EXPECT_EQ(SpeedDialInfo(dial(7).of(kim).name(TEXT("Kim")).business(TEXT("0313")).flags(0)),
              book->getSDialInfoCache(7));
    EXPECT_EQ(SpeedDialInfo(), book->getSDialInfoCache(4));
}

TEST(FillSDialInfoCache, LeavesARowThatNoContactPointsAtWithoutTypeContactAndName) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")).slots(0x06));
    addRow({5, homeType, TEXT("0101")});
    EXPECT_EQ(S_OK, book->fillSDialInfoCache());
    EXPECT_EQ(SpeedDialInfo(dial(5).set(0, TEXT("0101"))), book->getSDialInfoCache(5));
    EXPECT_EQ(SpeedDialInfo(), book->getSDialInfoCache(6)) << "a slot without row is not in the cache";
}

TEST(FillSDialInfoCache, NeverReadsTheLastByteOfASlotWord) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")).slots(0x05000000));
    addRow({5, mobileType, TEXT("0101")});
    EXPECT_EQ(S_OK, book->fillSDialInfoCache());
    EXPECT_EQ(CString(TEXT("")), book->getSDialInfoCache(5).strName);
}

TEST(FillSDialInfoCache, ForgetsWhatWasThereBefore) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    SpeedDialInfo edited = dial(9).mobile(TEXT("0109"));
    EXPECT_EQ(S_OK, book->writeSDialInfoCache(9, &edited));
    EXPECT_EQ(S_OK, book->fillSDialInfoCache());
    EXPECT_EQ(SpeedDialInfo(), book->getSDialInfoCache(9));
}

TEST(FillSDialInfoCache, KeepsWithinTheHundredEntries) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")).slots(0xFF6463));
    for (const int slot : {-32768, -1, 99, 100, 255, 32767})
        addRow({slot, mobileType, TEXT("0101")});
    EXPECT_EQ(S_OK, book->fillSDialInfoCache());
    EXPECT_EQ(99u, book->getSDialInfoCache(99).dwSDialID);
    EXPECT_EQ(CString(TEXT("Kim")), book->getSDialInfoCache(99).strName);
    for (DWORD slot = 0; slot < 99; ++slot)
        EXPECT_EQ(SpeedDialInfo(), book->getSDialInfoCache(slot)) << slot;
}

TEST(FillSDialInfoCache, OfTwoRowsOfASlotShowsTheLast) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    addRow({5, mobileType, TEXT("0101")});
    addRow({5, mobileType, TEXT("0102")});
    EXPECT_EQ(S_OK, book->fillSDialInfoCache());
    EXPECT_EQ(CString(TEXT("0102")), book->getSDialInfoCache(5).strTelNo);
}

TEST(FillSDialInfoCache, OfAnotherArrayCompletesTheManagersOwn) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD kim = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")).slots(0x05));
    addRow({5, mobileType, TEXT("0101")});
    book->getSDialInfoCache(5) = dial(5).mobile(TEXT("010-1"));
    std::array<SpeedDialInfo, PhoneBookDBMgr::nSDialCacheSize_> other;
    other[9] = dial(9).mobile(TEXT("old"));
    EXPECT_EQ(S_OK, book->fillSDialInfoCache(other.data()));
    EXPECT_EQ(SpeedDialInfo(dial(5).set(0, TEXT("0101"))), other[5]);
    EXPECT_EQ(SpeedDialInfo(), other[9]);
    EXPECT_EQ(SpeedDialInfo(dial(5).of(kim).name(TEXT("Kim")).mobile(TEXT("010-1"))), book->getSDialInfoCache(5));
    EXPECT_EQ(S_OK, book->fillSDialInfoCacheInPBExt(other.data()));
    EXPECT_EQ(SpeedDialInfo(dial(5).of(kim).name(TEXT("Kim")).mobile(TEXT("0101"))), other[5]);
}

TEST(FillSDialInfoCache, NeedsBothTables) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    NamesBySlot names;
    addRow({5, mobileType, TEXT("0101")});
    book->getTable(PBDBTBL_PHONEBOOKEXT)->close();
    EXPECT_EQ(E_ACCESSDENIED, book->fillSDialInfoCache());
    EXPECT_EQ(CString(TEXT("0101")), book->getSDialInfoCache(5).strTelNo) << "loaded, but not completed";
    EXPECT_EQ(E_ACCESSDENIED, book->fillSDialInfoCacheInPBExt(&book->getSDialInfoCache(0)));
    EXPECT_EQ(E_ACCESSDENIED, book->fillSDialInfoCache(names));
    book->getTable(PBDBTBL_SPEEDDIALNO)->close();
    EXPECT_EQ(E_ACCESSDENIED, book->fillSDialInfoCache());
    EXPECT_EQ(CString(TEXT("0101")), book->getSDialInfoCache(5).strTelNo) << "nothing is forgotten";
}

TEST(FillSDialInfoCache, WantsAnArray) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    EXPECT_EQ(E_POINTER, book->fillSDialInfoCache(nullptr));
    book->closeDB();
    EXPECT_EQ(E_ACCESSDENIED, book->fillSDialInfoCache(nullptr)) << "not open comes first";
}

TEST(FillSDialInfoCache, OfEmptyTablesIsEmpty) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    EXPECT_EQ(S_OK, book->fillSDialInfoCache());
    NamesBySlot names;
    EXPECT_EQ(S_OK, book->fillSDialInfoCache(names));
    EXPECT_EQ(0, names.GetCount());
}

TEST(FillSDialInfoCache, OfNamesReadsTheContactsSlotWordsAlone) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")).slots(0x09070005));
    book.add(contact().name(TEXT("Lee")).mobile(TEXT("010-2")).slots(0xC800));
    addRow({6, mobileType, TEXT("0101")});
    NamesBySlot names;
    EXPECT_EQ(S_OK, book->fillSDialInfoCache(names));
    EXPECT_EQ(3, names.GetCount());
    EXPECT_EQ(CString(TEXT("Kim")), nameIn(names, 5));
    EXPECT_EQ(CString(TEXT("Kim")), nameIn(names, 7));
    EXPECT_EQ(CString(TEXT("Lee")), nameIn(names, 200)) << "whatever the byte says";
}

TEST(ClearSDialInfoCache, EmptiesEveryEntry) {
    const MemoryStoreMount store;
    PhoneBookDBMgr manager;
    std::array<SpeedDialInfo, PhoneBookDBMgr::nSDialCacheSize_> other;
    for (DWORD slot = 0; slot < other.size(); ++slot)
        manager.getSDialInfoCache(slot) = other[slot] = dial(slot + 1).mobile(TEXT("0101")).flags(dirtyMark);
    EXPECT_EQ(S_OK, manager.clearSDialInfoCache());
    EXPECT_EQ(S_OK, manager.clearSDialInfoCache(other.data()));
    for (DWORD slot = 0; slot < other.size(); ++slot) {
        EXPECT_EQ(SpeedDialInfo(), manager.getSDialInfoCache(slot));
        EXPECT_EQ(SpeedDialInfo(), other[slot]);
    }
}

TEST(ClearSDialInfoCache, WantsAnArray) {
    const MemoryStoreMount store;
    PhoneBookDBMgr manager;
    EXPECT_EQ(E_POINTER, manager.clearSDialInfoCache(nullptr));
}

TEST(WriteSDialInfoCache, MarksSlotsOneToNinetyNine) {
    const MemoryStoreMount store;
    PhoneBookDBMgr manager;
    SpeedDialInfo info = dial(7).of(3).name(TEXT("Kim")).mobile(TEXT("010-1")).flags(1);
    EXPECT_EQ(E_FAIL, manager.writeSDialInfoCache(0, &info));
    EXPECT_EQ(E_FAIL, manager.writeSDialInfoCache(100, &info));
    EXPECT_EQ(E_POINTER, manager.writeSDialInfoCache(100, nullptr)) << "the pointer comes first";
    EXPECT_EQ(S_OK, manager.writeSDialInfoCache(99, &info));
    EXPECT_EQ(SpeedDialInfo(dial(7).of(3).name(TEXT("Kim")).mobile(TEXT("010-1")).flags(0x11)),
              manager.getSDialInfoCache(99));
    EXPECT_EQ(S_OK, manager.writeSDialInfoCache(1, &info));
    EXPECT_EQ(1u, info.dwFlags) << "the caller's own is not marked";
}

TEST(DeleteSDialInfoCache, MarksTheEntryAndKeepsAllButItsSlot) {
    const MemoryStoreMount store;
    PhoneBookDBMgr manager;
    manager.getSDialInfoCache(99) = dial(99).of(3).name(TEXT("Kim")).mobile(TEXT("010-1")).flags(1);
    EXPECT_EQ(E_FAIL, manager.deleteSDialInfoCache(0, nullptr));
    EXPECT_EQ(E_FAIL, manager.deleteSDialInfoCache(100, nullptr));
    EXPECT_EQ(S_OK, manager.deleteSDialInfoCache(99, nullptr));
    EXPECT_EQ(SpeedDialInfo(dial(0).of(3).name(TEXT("Kim")).mobile(TEXT("010-1")).flags(0x11)),
              manager.getSDialInfoCache(99));
}

TEST(MoveSDialInfoCache, MovesTheEntryWithItsMark) {
    const MemoryStoreMount store;
    PhoneBookDBMgr manager;
    manager.getSDialInfoCache(3) = dial(3).of(3).name(TEXT("Kim")).mobile(TEXT("010-1")).flags(0x11);
    manager.getSDialInfoCache(5) = dial(5).name(TEXT("Lee"));
    EXPECT_EQ(S_OK, manager.moveSDialInfoCache(3, 5));
    EXPECT_EQ(SpeedDialInfo(), manager.getSDialInfoCache(3));
    EXPECT_EQ(SpeedDialInfo(dial(5).of(3).name(TEXT("Kim")).mobile(TEXT("010-1")).flags(0x11)),
              manager.getSDialInfoCache(5));
}

TEST(MoveSDialInfoCache, OntoItselfEmptiesTheEntry) {
    const MemoryStoreMount store;
    PhoneBookDBMgr manager;
    manager.getSDialInfoCache(3) = dial(3).name(TEXT("Kim"));
    EXPECT_EQ(S_OK, manager.moveSDialInfoCache(3, 3));
    EXPECT_EQ(SpeedDialInfo(), manager.getSDialInfoCache(3));
}

TEST(MoveSDialInfoCache, KeepsWithinTheHundredEntries) {
    const MemoryStoreMount store;
    PhoneBookDBMgr manager;
    manager.getSDialInfoCache(3) = dial(3).name(TEXT("Kim"));
    manager.getSDialInfoCache(4) = dial(4).name(TEXT("Lee"));
    EXPECT_EQ(S_OK, manager.moveSDialInfoCache(100, 4));
    EXPECT_EQ(SpeedDialInfo(dial(4).name(TEXT("Lee"))), manager.getSDialInfoCache(4));
    EXPECT_EQ(S_OK, manager.moveSDialInfoCache(3, 0xFFFFFFFF));
    EXPECT_EQ(SpeedDialInfo(), manager.getSDialInfoCache(3));
}

TEST(QuerySDialInfoCache, FindsTheExactTextInTheLowestOccupiedSlot) {
    const MemoryStoreMount store;
    PhoneBookDBMgr manager;
    manager.getSDialInfoCache(2) = dial(0).name(TEXT("empty")).mobile(TEXT("010-1"));
    manager.getSDialInfoCache(5) = dial(5).name(TEXT("five")).mobile(TEXT("010-1"));
    manager.getSDialInfoCache(9) = dial(9).name(TEXT("nine")).mobile(TEXT("010-1"));
    SpeedDialInfo info;
    EXPECT_EQ(S_OK, manager.querySDialInfoCache(TEXT("010-1"), &info));
    EXPECT_EQ(CString(TEXT("five")), info.strName);
    EXPECT_EQ(S_OK, manager.querySDialInfoCache(TEXT("010-1"), nullptr));
    EXPECT_EQ(E_FAIL, manager.querySDialInfoCache(TEXT("0101"), &info)) << "another spelling";
    EXPECT_EQ(E_FAIL, manager.querySDialInfoCache(TEXT(""), &info));
    EXPECT_EQ(CString(TEXT("five")), info.strName);
}

TEST(FlushSDialInfoCache, WritesAndDeletesWhatIsMarked) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD kim = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")).home(TEXT("02-2")));
    addRow({9, mobileType, TEXT("0109")});
    SpeedDialInfo mobile = dial(5).of(kim).mobile(TEXT("010-1"));
    SpeedDialInfo home = dial(6).of(kim).home(TEXT("02-2"));
    EXPECT_EQ(S_OK, book->writeSDialInfoCache(5, &mobile));
    EXPECT_EQ(S_OK, book->writeSDialInfoCache(6, &home));
    EXPECT_EQ(S_OK, book->deleteSDialInfoCache(9, nullptr));
    book->getSDialInfoCache(8) = dial(8).mobile(TEXT("unmarked"));
    EXPECT_EQ(S_OK, book->flushSDialInfoCache());
    EXPECT_EQ((Rows{{5, mobileType, TEXT("0101")}, {6, homeType, TEXT("022")}}), rows());
    EXPECT_EQ(0x0605u, wordOf(book.manager(), kim));
    EXPECT_EQ(SpeedDialInfo(dial(5).of(kim).mobile(TEXT("010-1")).flags(7)), book->getSDialInfoCache(5));
    EXPECT_EQ(SpeedDialInfo(), book->getSDialInfoCache(9));
    EXPECT_EQ(CString(TEXT("unmarked")), book->getSDialInfoCache(8).strTelNo);
}

TEST(FlushSDialInfoCache, OfADeletionAfterAFillClearsTheContactsLink) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD kim = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")).home(TEXT("02-2")).slots(0x0605));
    addRow({5, mobileType, TEXT("0101")});
    addRow({6, homeType, TEXT("022")});
    EXPECT_EQ(S_OK, book->fillSDialInfoCache());
    EXPECT_EQ(S_OK, book->deleteSDialInfoCache(6, nullptr));
    EXPECT_EQ(S_OK, book->flushSDialInfoCache());
    EXPECT_EQ((Rows{{5, mobileType, TEXT("0101")}}), rows());
    EXPECT_EQ(0x05u, wordOf(book.manager(), kim));
}

TEST(FlushSDialInfoCache, SucceedsWhateverBecameOfTheWrites) {
    const MemoryStoreMount store;
    PhoneBookDBMgr closed;
    SpeedDialInfo info = dial(5).mobile(TEXT("010-1"));
    EXPECT_EQ(S_OK, closed.writeSDialInfoCache(5, &info));
    EXPECT_EQ(S_OK, closed.flushSDialInfoCache());
    EXPECT_EQ(SpeedDialInfo(dial(5).mobile(TEXT("010-1"))), closed.getSDialInfoCache(5)) << "the mark is gone";
    EXPECT_EQ(S_OK, closed.flushSDialInfoCache()) << "nothing is marked";
}

TEST(RecordToSDialInfo, BringsSlotTypeAndNumberButNeverTheFlags) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    Database::Table* table = book->getTable(PBDBTBL_SPEEDDIALNO);
    CCeDBRecord row;
    row.addProp(CCeDBProp::ofUI2(515, 7));
    row.addProp(CCeDBProp::ofText(514, TEXT("0101")));
    row.addProp(CCeDBProp::ofI2(512, -2));
    SpeedDialInfo info = dial(9).of(3).name(TEXT("kept")).set(businessType, TEXT("old")).flags(1);
    book->RecordToSDialInfo(table, row, &info, 0);
    EXPECT_EQ(SpeedDialInfo(dial(0xFFFFFFFE).of(3).name(TEXT("kept")).set(businessType, TEXT("0101")).flags(1)), info);
}

TEST(RecordToSDialInfo, DoesNothingWithoutATableAnEntryOrProperties) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    Database::Table* table = book->getTable(PBDBTBL_SPEEDDIALNO);
    CCeDBRecord row;
    SpeedDialInfo info = dial(9);
    book->RecordToSDialInfo(table, row, &info, 0);
    row.addProp(CCeDBProp::ofI2(512, 5));
    book->RecordToSDialInfo(nullptr, row, &info, 0);
    book->RecordToSDialInfo(table, row, nullptr, 0);
    EXPECT_EQ(SpeedDialInfo(dial(9)), info);
}

}  // namespace
}  // namespace PhoneBook
