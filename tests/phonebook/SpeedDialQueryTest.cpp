#include <gtest/gtest.h>

#include "tests/phonebook/SpeedDialBuilders.h"
#include "tests/support/TemporaryStore.h"

// What is asked of the slots.

namespace PhoneBook {
namespace {

using speed_dial::addRow;
using speed_dial::businessType;
using speed_dial::dial;
using speed_dial::homeType;
using speed_dial::mobileType;
using speed_dial::storedRows;
using testing_support::contact;
using testing_support::MemoryStoreMount;
using testing_support::OpenPhoneBook;

TEST(SpeedDialClosed, EveryTableOperationSaysThatTheTableIsNotOpen) {
    const MemoryStoreMount store;
    PhoneBookDBMgr closed;
    SpeedDialInfo info = dial(5).mobile(TEXT("010-1"));
    DWORD id = 0;
    EXPECT_EQ(E_FAIL, closed.querySpeedDialInfo(5, &info, false));
    EXPECT_EQ(E_FAIL, closed.querySpeedDialInfo(5, nullptr, true));
    EXPECT_EQ(E_FAIL, closed.insertSpeedDialInfo(5, &info));
    EXPECT_EQ(E_FAIL, closed.updateSpeedDialInfo(5, &info));
    EXPECT_EQ(E_FAIL, closed.writeSpeedDialInfo(5, &info));
    EXPECT_EQ(E_FAIL, closed.moveSpeedDialInfo(5, 6, &info));
    EXPECT_EQ(E_FAIL, closed.findFirstEmptySDialID(5, &id));
    EXPECT_EQ(E_ACCESSDENIED, closed.deleteSpeedDialInfo(5, &info));
    EXPECT_EQ(E_ACCESSDENIED, closed.deleteAllSpeedDialInfos());
    EXPECT_EQ(E_FAIL, closed.setSDialIDInPBExt(5, TEXT("0101"), mobileType));
    DWORD contactOid = 1;
    EXPECT_EQ(E_FAIL, closed.setSDialIDInPBExt(5, contactOid, mobileType));
    EXPECT_EQ(0u, info.dwFlags) << "nothing is written into the caller's entry";
}

TEST(SpeedDialClosed, ANullEntryIsFoundOutOnlyWhenTheTableIsOpen) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    EXPECT_EQ(E_POINTER, book->querySpeedDialInfo(5, nullptr, false));
    EXPECT_EQ(E_POINTER, book->insertSpeedDialInfo(5, nullptr));
    EXPECT_EQ(E_POINTER, book->updateSpeedDialInfo(5, nullptr));
    EXPECT_EQ(E_POINTER, book->writeSpeedDialInfo(5, nullptr));
    EXPECT_EQ(E_POINTER, book->findFirstEmptySDialID(5, nullptr));
    book->closeDB();
    EXPECT_EQ(E_FAIL, book->insertSpeedDialInfo(5, nullptr));
    EXPECT_EQ(E_FAIL, book->updateSpeedDialInfo(5, nullptr));
    EXPECT_EQ(E_FAIL, book->writeSpeedDialInfo(5, nullptr));
    EXPECT_EQ(E_FAIL, book->findFirstEmptySDialID(5, nullptr));
}

TEST(QuerySpeedDialInfo, ReadsTheRowAndLeavesContactAndName) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    addRow({5, homeType, TEXT("0212345678"), 3});
    SpeedDialInfo info = dial(9).of(77).name(TEXT("kept")).flags(0xFFFF0000);
    EXPECT_EQ(S_OK, book->querySpeedDialInfo(5, &info, false));
    EXPECT_EQ(SpeedDialInfo(dial(5).of(77).name(TEXT("kept")).home(TEXT("0212345678")).flags(3)), info);
}

TEST(QuerySpeedDialInfo, FailsForAnEmptySlotAndLeavesTheEntry) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    addRow({5, mobileType, TEXT("0101")});
    SpeedDialInfo info = dial(9).name(TEXT("kept"));
    EXPECT_EQ(E_FAIL, book->querySpeedDialInfo(6, &info, true));
    EXPECT_EQ(SpeedDialInfo(dial(9).name(TEXT("kept"))), info);
}

TEST(QuerySpeedDialInfo, ARowWithoutFlagsLeavesThoseOfTheEntry) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    CCeDBRecord row;
    row.addProp(CCeDBProp::ofI2(512, 5));
    DWORD oid = 0;
    ASSERT_EQ(S_OK, book->getTable(PBDBTBL_SPEEDDIALNO)->insertRecord(&row, oid));
    SpeedDialInfo info = dial(5).mobile(TEXT("gone")).flags(0x12345);
    EXPECT_EQ(S_OK, book->querySpeedDialInfo(5, &info, false));
    EXPECT_EQ(SpeedDialInfo(dial(5).flags(0x12345)), info);
}

TEST(QuerySpeedDialInfo, SeeksTheLowSixteenBitsAndKeepsTheWholeNumber) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    addRow({5, mobileType, TEXT("0101")});
    SpeedDialInfo info;
    EXPECT_EQ(S_OK, book->querySpeedDialInfo(0x10005, &info, false));
    EXPECT_EQ(0x10005u, info.dwSDialID);
}

TEST(QuerySpeedDialInfo, WithContactShowsItsSpellingAndNameButNotWhichItIs) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1234-5678")).group(TEXT("A")));
    addRow({5, mobileType, TEXT("01012345678")});
    SpeedDialInfo info = dial(9).of(77).name(TEXT("old"));
    EXPECT_EQ(S_OK, book->querySpeedDialInfo(5, &info, true));
    EXPECT_EQ(SpeedDialInfo(dial(5).of(0).name(TEXT("Kim")).mobile(TEXT("010-1234-5678")).flags(7)), info);
}

TEST(QuerySpeedDialInfo, WithContactShowsTheNumberOfTheRowsTypeWhicheverMatched) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")).home(TEXT("02-2")));
    addRow({5, homeType, TEXT("0101")});
    addRow({6, businessType, TEXT("0101")});
    SpeedDialInfo info;
    EXPECT_EQ(S_OK, book->querySpeedDialInfo(5, &info, true));
    EXPECT_EQ(CString(TEXT("02-2")), info.strTelNo);
    EXPECT_EQ(S_OK, book->querySpeedDialInfo(6, &info, true));
    EXPECT_EQ(CString(TEXT("")), info.strTelNo) << "it has no business number";
}

TEST(QuerySpeedDialInfo, WithContactKeepsTheNumberThatNobodyHas) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    addRow({5, mobileType, TEXT("0101")});
    SpeedDialInfo info = dial(9).of(77).name(TEXT("old"));
    EXPECT_EQ(S_FALSE, book->querySpeedDialInfo(5, &info, true));
    EXPECT_EQ(SpeedDialInfo(dial(5).mobile(TEXT("0101")).flags(7)), info);
}

TEST(QuerySpeedDialInfoByNumber, FindsAnySpellingOfTheNumber) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD kim = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1234-5678")));
    SpeedDialInfo written = dial(5).of(kim).name(TEXT("Kim")).mobile(TEXT("010-1234-5678"));
    EXPECT_EQ(S_OK, book->insertSpeedDialInfo(5, &written));
    for (const WCHAR* spelling :
         {TEXT("01012345678"), TEXT("(010) 1234-5678"), TEXT("+82 10-1234-5678"), TEXT("010.1234.5678")}) {
        DWORD rowOid = 0;
        SpeedDialInfo info = dial(9).of(77).name(TEXT("kept"));
        EXPECT_EQ(S_OK, book->querySpeedDialInfo(spelling, rowOid, &info)) << CString(spelling);
        EXPECT_EQ(storedRows().at(0).oid, rowOid);
        EXPECT_EQ(SpeedDialInfo(dial(5).of(0).name(TEXT("kept")).mobile(TEXT("01012345678")).flags(7)), info);
        EXPECT_EQ(S_OK, book->querySpeedDialInfo(spelling, rowOid, nullptr));
    }
}

TEST(QuerySpeedDialInfoByNumber, FailsForANumberThatNoSlotHolds) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    addRow({5, mobileType, TEXT("0101")});
    DWORD rowOid = 77;
    SpeedDialInfo info = dial(9).name(TEXT("kept"));
    EXPECT_EQ(E_FAIL, book->querySpeedDialInfo(TEXT("010"), rowOid, &info)) << "the whole number counts";
    EXPECT_EQ(0u, rowOid);
    EXPECT_EQ(SpeedDialInfo(dial(9).name(TEXT("kept"))), info);
}

TEST(QuerySpeedDialInfoByNumber, ShowsAnySlotThatTheRowSays) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    addRow({-1, mobileType, TEXT("0101")});
    DWORD rowOid = 0;
    SpeedDialInfo info;
    EXPECT_EQ(S_OK, book->querySpeedDialInfo(TEXT("010-1"), rowOid, &info));
    EXPECT_EQ(0xFFFFu, info.dwSDialID);
}

TEST(QuerySpeedDialInfoByNumber, OpensATableThatIsNotOpen) {
    const MemoryStoreMount store;
    { const OpenPhoneBook setUp; }
    addRow({5, mobileType, TEXT("0101")});
    PhoneBookDBMgr manager;
    DWORD rowOid = 0;
    EXPECT_EQ(S_OK, manager.querySpeedDialInfo(TEXT("0101"), rowOid, nullptr));
    EXPECT_NE(0u, rowOid);
    EXPECT_TRUE(manager.getTable(PBDBTBL_SPEEDDIALNO)->isOpen());
    EXPECT_EQ(E_FAIL, manager.querySpeedDialInfo(TEXT("0102"), rowOid, nullptr));
}

TEST(QuerySpeedDialInfoByNumber, FailsWhenThereIsNoSuchTable) {
    const MemoryStoreMount store;
    PhoneBookDBMgr manager;
    DWORD rowOid = 77;
    EXPECT_EQ(E_FAIL, manager.querySpeedDialInfo(TEXT("0101"), rowOid, nullptr));
    EXPECT_EQ(0u, rowOid);
}

TEST(QuerySpeedDialInfoByNumber, LeavesTheTableInAnOrderInWhichSlotsAreStillFound) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    addRow({9, mobileType, TEXT("0101")});
    addRow({5, mobileType, TEXT("0102")});
    addRow({7, mobileType, TEXT("0100")});
    DWORD rowOid = 0;
    EXPECT_EQ(S_OK, book->querySpeedDialInfo(TEXT("0102"), rowOid, nullptr));
    CString number;
    EXPECT_EQ(S_OK, book->queryCID(9, &number));
    EXPECT_EQ(CString(TEXT("0101")), number);
}

TEST(FindFirstEmptySDialID, ProposesTheSlotItselfWhenItIsFree) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const auto proposed = [&](DWORD start) {
        DWORD id = 77;
        EXPECT_EQ(S_OK, book->findFirstEmptySDialID(start, &id));
        return id;
    };
    EXPECT_EQ(5u, proposed(5)) << "an empty table";
    EXPECT_EQ(1u, proposed(1));
    addRow({4, mobileType, TEXT("0101")});
    EXPECT_EQ(5u, proposed(5));
    EXPECT_EQ(1u, proposed(1));
}

TEST(FindFirstEmptySDialID, ProposesSlotOneForATakenSlotWhetherOneIsFreeOrNot) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const auto proposed = [&](DWORD start) {
        DWORD id = 77;
        EXPECT_EQ(S_OK, book->findFirstEmptySDialID(start, &id));
        return id;
    };
    addRow({5, mobileType, TEXT("0101")});
    EXPECT_EQ(1u, proposed(5));
    EXPECT_EQ(1u, proposed(0x10005)) << "the low sixteen bits are looked for";
    addRow({1, mobileType, TEXT("0102")});
    EXPECT_EQ(1u, proposed(5));
    EXPECT_EQ(1u, proposed(1));
    addRow({1, mobileType, TEXT("0103")});
    EXPECT_EQ(2u, proposed(1)) << "two rows with slot 1";
    EXPECT_EQ(1u, proposed(5));
}

}  // namespace
}  // namespace PhoneBook
