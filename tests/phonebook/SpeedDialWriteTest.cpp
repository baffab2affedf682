#include <gtest/gtest.h>

#include "tests/phonebook/SpeedDialBuilders.h"
#include "tests/support/TemporaryStore.h"

// What is written into the slots, and into the contacts. Slot words are written as 0xBBHHMM: the slots of the
// business, home and mobile number.

namespace PhoneBook {
namespace {

using speed_dial::addRow;
using speed_dial::businessType;
using speed_dial::dial;
using speed_dial::homeType;
using speed_dial::mobileType;
using speed_dial::Row;
using speed_dial::rows;
using speed_dial::storedRows;
using speed_dial::wordOf;
using testing_support::contact;
using testing_support::MemoryStoreMount;
using testing_support::OpenPhoneBook;

using Rows = std::vector<Row>;

TEST(InsertSpeedDialInfo, WritesRowLinkCacheAndTheCallersFlags) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD kim = book.add(contact().name(TEXT("Kim")).home(TEXT("02-123-4567")).group(TEXT("A")));
    SpeedDialInfo info = dial(7).of(kim).name(TEXT("Kim")).home(TEXT("02-123-4567")).flags(0x10);
    EXPECT_EQ(S_OK, book->insertSpeedDialInfo(7, &info));
    EXPECT_EQ(7u, info.dwFlags);
    EXPECT_EQ((Rows{{7, homeType, TEXT("021234567"), 7}}), rows());
    EXPECT_EQ(0x0700u, wordOf(book.manager(), kim));
    EXPECT_EQ(SpeedDialInfo(dial(7).of(kim).name(TEXT("Kim")).home(TEXT("02-123-4567")).flags(7)),
              book->getSDialInfoCache(7));
}

TEST(InsertSpeedDialInfo, GivesAContactItsFirstExtensionRow) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD kim = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")));
    SpeedDialInfo info = dial(7).of(kim).mobile(TEXT("010-1"));
    EXPECT_EQ(S_OK, book->insertSpeedDialInfo(7, &info)) << "found only in part, and written all the same";
    EXPECT_EQ(1u, book->getTable(PBDBTBL_PHONEBOOKEXT)->getNumRecords());
    EXPECT_EQ(0x07u, wordOf(book.manager(), kim));
}

TEST(InsertSpeedDialInfo, AnswersHowTheLinkWentAndKeepsTheRow) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    SpeedDialInfo info = dial(7).mobile(TEXT("010-1"));
    EXPECT_EQ(E_FAIL, book->insertSpeedDialInfo(7, &info)) << "of no contact";
    EXPECT_EQ((Rows{{7, mobileType, TEXT("0101"), 7}}), rows());
    EXPECT_EQ(info, book->getSDialInfoCache(7));
}

TEST(InsertSpeedDialInfo, TwiceLeavesTwoRows) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD kim = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")).home(TEXT("02-2")));
    SpeedDialInfo first = dial(7).of(kim).mobile(TEXT("010-1"));
    SpeedDialInfo second = dial(7).of(kim).home(TEXT("02-2"));
    EXPECT_EQ(S_OK, book->insertSpeedDialInfo(7, &first));
    EXPECT_EQ(S_OK, book->insertSpeedDialInfo(7, &second));
    EXPECT_EQ((Rows{{7, mobileType, TEXT("0101")}, {7, homeType, TEXT("022")}}), rows());
    SpeedDialInfo found;
    EXPECT_EQ(S_OK, book->querySpeedDialInfo(7, &found, false));
    EXPECT_EQ(CString(TEXT("0101")), found.strTelNo) << "the first of the two";
}

TEST(InsertSpeedDialInfo, TakesTheSlotFromItsArgumentAndNotFromTheEntry) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD kim = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")));
    SpeedDialInfo info = dial(3).of(kim).mobile(TEXT("010-1"));
    EXPECT_EQ(S_OK, book->insertSpeedDialInfo(7, &info));
    EXPECT_EQ(7, rows().at(0).slot);
    EXPECT_EQ(0x07u, wordOf(book.manager(), kim));
    EXPECT_EQ(3u, book->getSDialInfoCache(7).dwSDialID) << "copied as it is";
}

TEST(InsertSpeedDialInfo, ASlotThatTheCacheLacksIsWrittenToTheTableAlone) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD kim = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")));
    SpeedDialInfo info = dial(5).of(kim).mobile(TEXT("010-1"));
    for (const DWORD slot : {100u, 0x10005u, 0xFFFFFFFFu})
        EXPECT_EQ(S_OK, book->insertSpeedDialInfo(slot, &info));
    EXPECT_EQ((Rows{{100, mobileType, TEXT("0101")}, {5, mobileType, TEXT("0101")}, {-1, mobileType, TEXT("0101")}}),
              rows());
    EXPECT_EQ(0xFFu, wordOf(book.manager(), kim)) << "the low byte";
    for (DWORD slot = 0; slot < PhoneBookDBMgr::nSDialCacheSize_; ++slot)
        EXPECT_EQ(SpeedDialInfo(), book->getSDialInfoCache(slot));
}

TEST(UpdateSpeedDialInfo, RewritesARowUnderTheSlotThatTheEntrySays) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD kim = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")));
    addRow({5, homeType, TEXT("099"), 1});
    SpeedDialInfo info = dial(6).of(kim).mobile(TEXT("010-1"));
    EXPECT_EQ(S_OK, book->updateSpeedDialInfo(storedRows().at(0).oid, &info));
    EXPECT_EQ((Rows{{6, mobileType, TEXT("0101"), 7}}), rows());
    EXPECT_EQ(0x06u, wordOf(book.manager(), kim));
    EXPECT_EQ(SpeedDialInfo(dial(6).of(kim).mobile(TEXT("010-1")).flags(7)), book->getSDialInfoCache(6));
    EXPECT_EQ(SpeedDialInfo(), book->getSDialInfoCache(5));
}

TEST(UpdateSpeedDialInfo, SucceedsWhateverBecameOfTheLink) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    addRow({5, homeType, TEXT("099"), 1});
    SpeedDialInfo info = dial(5).of(99'999).mobile(TEXT("010-1"));
    EXPECT_EQ(S_OK, book->updateSpeedDialInfo(storedRows().at(0).oid, &info));
    EXPECT_EQ((Rows{{5, mobileType, TEXT("0101"), 7}}), rows());
}

TEST(UpdateSpeedDialInfo, FailsForARowThatIsNotThereAndLeavesTheCache) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD kim = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")));
    addRow({5, homeType, TEXT("099")});
    SpeedDialInfo info = dial(5).of(kim).mobile(TEXT("010-1"));
    EXPECT_EQ(E_FAIL, book->updateSpeedDialInfo(99'999, &info));
    EXPECT_EQ(E_FAIL, book->updateSpeedDialInfo(0, &info)) << "no row was reached";
    EXPECT_EQ((Rows{{5, homeType, TEXT("099")}}), rows());
    EXPECT_EQ(0u, wordOf(book.manager(), kim));
    EXPECT_EQ(SpeedDialInfo(), book->getSDialInfoCache(5));
}

TEST(WriteSpeedDialInfo, InsertsThenUpdates) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD kim = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")).home(TEXT("02-2")));
    SpeedDialInfo first = dial(5).of(kim).mobile(TEXT("010-1"));
    SpeedDialInfo second = dial(5).of(kim).home(TEXT("02-2"));
    EXPECT_EQ(S_OK, book->writeSpeedDialInfo(5, &first));
    const DWORD rowOid = storedRows().at(0).oid;
    EXPECT_EQ(S_OK, book->writeSpeedDialInfo(5, &second));
    EXPECT_EQ((Rows{{5, homeType, TEXT("022")}}), rows());
    EXPECT_EQ(rowOid, storedRows().at(0).oid);
    EXPECT_EQ(0x0505u, wordOf(book.manager(), kim)) << "the old number's byte stays";
}

TEST(WriteSpeedDialInfo, AnswersTheLinksResultOnlyWhenItInserts) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    SpeedDialInfo info = dial(5).mobile(TEXT("010-1"));
    EXPECT_EQ(E_FAIL, book->writeSpeedDialInfo(5, &info));
    EXPECT_EQ(S_OK, book->writeSpeedDialInfo(5, &info));
    EXPECT_EQ(1u, rows().size());
}

TEST(WriteSpeedDialInfo, UpdatesARowToTheSlotThatTheEntrySays) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    addRow({5, mobileType, TEXT("0101")});
    SpeedDialInfo info = dial(9).mobile(TEXT("0102"));
    EXPECT_EQ(S_OK, book->writeSpeedDialInfo(5, &info));
    EXPECT_EQ((Rows{{9, mobileType, TEXT("0102")}}), rows());
}

TEST(SetSDialIDInPBExt, WritesTheByteOfTheTypeAndNoOther) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    DWORD kim = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")).slots(0x44332211));
    EXPECT_EQ(S_OK, book->setSDialIDInPBExt(0x1AA, kim, mobileType)) << "the low byte of the slot";
    EXPECT_EQ(0x443322AAu, wordOf(book.manager(), kim));
    EXPECT_EQ(S_OK, book->setSDialIDInPBExt(0xBB, kim, homeType));
    EXPECT_EQ(0x4433BBAAu, wordOf(book.manager(), kim));
    EXPECT_EQ(S_OK, book->setSDialIDInPBExt(0xCC, kim, businessType));
    EXPECT_EQ(0x44CCBBAAu, wordOf(book.manager(), kim));
    for (const DWORD other : {0x400u, 0x800u, 0u, 0xCu, 0xFFu}) {
        EXPECT_EQ(S_OK, book->setSDialIDInPBExt(other | 1, kim, other));
        EXPECT_EQ(((other | 1) << 24) | 0xCCBBAAu, wordOf(book.manager(), kim)) << other;
    }
    EXPECT_EQ(S_OK, book->setSDialIDInPBExt(0, kim, homeType));
    EXPECT_EQ(0xCC00AAu, wordOf(book.manager(), kim) & 0xFFFFFF);
}

TEST(SetSDialIDInPBExt, LeavesTheRestOfTheContact) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    DWORD kim = book.add(contact()
                             .name(TEXT("Kim"))
                             .mobile(TEXT("010-1"))
                             .fax(TEXT("02-9"))
                             .email(TEXT("k@x.kr"))
                             .birthday(36'000.0)
                             .bell(TEXT("ding"))
                             .primary(0x800));
    EXPECT_EQ(S_OK, book->setSDialIDInPBExt(5, kim, mobileType));
    PBRecord read;
    read.dwCITypeMask = 0x007F0FFF;
    EXPECT_EQ(S_FALSE, book->queryCallerInfo(kim, &read));
    EXPECT_EQ(0x0070'0A25u, read.dwCITypeMask);
    EXPECT_EQ(CString(TEXT("Kim")), read.strName);
    EXPECT_EQ(CString(TEXT("010-1")), read.strMobileTelephoneNumber);
    EXPECT_EQ(CString(TEXT("02-9")), read.strBusinessFaxNumber);
    EXPECT_EQ(CString(TEXT("k@x.kr")), read.strEmail1Address);
    EXPECT_EQ(36'000.0, read.dtBirthday);
    EXPECT_EQ(CString(TEXT("ding")), read.strBell);
    EXPECT_EQ(0x800u, read.dwPrimaryTelephoneNumber);
}

TEST(SetSDialIDInPBExt, PutsTheGroupInFrontOfTheCategoriesAsAnyUpdateDoes) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    DWORD kim = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")).group(TEXT("A")));
    EXPECT_EQ(S_OK, book->setSDialIDInPBExt(5, kim, mobileType));
    PBRecord read;
    read.dwCITypeMask = 0x2;
    EXPECT_EQ(S_OK, book->queryCallerInfo(kim, &read));
    EXPECT_EQ(CString(TEXT("A, A")), read.strCategories);
}

TEST(SetSDialIDInPBExt, FindsTheContactByItsReducedNumber) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD lee = book.add(contact().name(TEXT("Lee")).business(TEXT("010-1")));
    const DWORD kim = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")));
    EXPECT_EQ(S_OK, book->setSDialIDInPBExt(5, TEXT("0101"), homeType));
    EXPECT_EQ(0x0500u, wordOf(book.manager(), kim)) << "the first by name, whichever of its numbers it is";
    EXPECT_EQ(0u, wordOf(book.manager(), lee));
}

TEST(SetSDialIDInPBExt, AnswersTheFailureOfTheLookup) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    DWORD nobody = 0;
    DWORD gone = 99'999;
    EXPECT_EQ(E_FAIL, book->setSDialIDInPBExt(5, nobody, mobileType));
    EXPECT_EQ(E_FAIL, book->setSDialIDInPBExt(5, gone, mobileType));
    EXPECT_EQ(E_INVALIDARG, book->setSDialIDInPBExt(5, TEXT(""), mobileType));
    EXPECT_EQ(E_FAIL, book->setSDialIDInPBExt(5, TEXT("0101"), mobileType));
    EXPECT_EQ(0u, book->getTable(PBDBTBL_PHONEBOOKEXT)->getNumRecords());
}

}  // namespace
}  // namespace PhoneBook
