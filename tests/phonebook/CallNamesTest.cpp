#include <gtest/gtest.h>

#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tests/phonebook/Calls.h"
#include "tests/support/Builders.h"
#include "tests/support/TemporaryStore.h"
#include "tests/support/Values.h"

// Whose call it was: what a logged call is given from the phone book.

namespace PhoneBook {
namespace {

using calls_test::call;
using testing_support::contact;
using testing_support::MemoryStoreMount;

constexpr DWORD ownTelType = 0x99;  // what the caller of the library set

/// Lets a test reach the step that derived managers may use, over an open phone book.
class CallBook : public PhoneBookDBMgr {
public:
    CallBook() {
        EXPECT_EQ(S_OK, initDB(false));
        EXPECT_EQ(S_OK, openDB(nullptr));
    }
    void add(const contact& builder) {
        PBRecord record = builder.record();
        EXPECT_EQ(S_OK, insertPBRecord(record, nullptr));
    }
    using PhoneBookDBMgr::getCallEntryData;
};

/// A name, a number type and what the lookup answered.
struct Told {
    HRESULT result;
    CString name;
    DWORD telType;

    friend bool operator==(const Told&, const Told&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Told& told) {
        return out << told.result << " " << told.name << " " << told.telType;
    }
};

Told told(CallBook& book, std::u16string_view cid, std::u16string_view name = {}) {
    CallEntry entry = call(1, cid, name);
    entry.dwTelType = ownTelType;
    const HRESULT result = book.getCallEntryData(&entry);
    EXPECT_EQ(CString(cid), entry.strCID);
    return {result, entry.strName, entry.dwTelType};
}

TEST(CallNames, ACallWithoutANumberSaysSo) {
    const MemoryStoreMount store;
    CallBook book;
    EXPECT_EQ((Told{S_OK, u"번호정보없음", ownTelType}), told(book, u""));
    EXPECT_EQ((Told{S_OK, u"번호정보없음", ownTelType}), told(book, u"", u"Kim")) << "whatever its name was";
    CallEntry entry = call(1, u"");
    EXPECT_EQ(S_OK, book.insertCallEntry(&entry));
    CallEntry logged;
    EXPECT_EQ(S_OK, book.getMRUCallEntry(&logged));
    EXPECT_EQ(CString(u"번호정보없음"), logged.strName);
}

TEST(CallNames, AWithheldNumberIsNotLookedUp) {
    const MemoryStoreMount store;
    CallBook book;
    book.add(contact().name(u"Kim").mobile(u"010-1234-5678"));
    EXPECT_EQ((Told{S_OK, u"", ownTelType}), told(book, u"발신번호표시제한"));
    EXPECT_EQ((Told{S_OK, u"kim", ownTelType}), told(book, u"발신번호표시제한", u"kim")) << "a lookup would say Kim";
    EXPECT_EQ((Told{S_FALSE, u"", ownTelType}), told(book, u"발신번호표시제한 ")) << "not that text exactly";
    CallEntry entry = call(1, u"발신번호표시제한", u"kim");
    EXPECT_EQ(S_OK, book.insertCallEntry(&entry));
    CallEntry logged;
    EXPECT_EQ(S_OK, book.getMRUCallEntry(&logged));
    EXPECT_EQ(CString(u"kim"), logged.strName);
}

TEST(CallNames, TheContactThatHoldsTheNumberGivesNameAndType) {
    const MemoryStoreMount store;
    CallBook book;
    book.add(contact()
                 .name(u"김민수")
                 .mobile(u"010-1234-5678")
                 .home(u"(02) 111-2222")
                 .business(u"02-333-4444")
                 .pager(u"012-555-6666")
                 .fax(u"+82 2-777-8888"));
    EXPECT_EQ((Told{S_OK, u"김민수", 0x4}), told(book, u"01012345678"));
    EXPECT_EQ((Told{S_OK, u"김민수", 0x8}), told(book, u"021112222"));
    EXPECT_EQ((Told{S_OK, u"김민수", 0x10}), told(book, u"023334444"));
    EXPECT_EQ((Told{S_OK, u"김민수", 0x400}), told(book, u"0125556666"));
    EXPECT_EQ((Told{S_OK, u"김민수", 0x800}), told(book, u"027778888"));
}

TEST(CallNames, OfANumberThatAContactHasTwiceTheFirstTypeCounts) {
    const MemoryStoreMount store;
    CallBook book;
    book.add(contact().name(u"Kim").fax(u"02-1").business(u"021").pager(u"0-2-1"));
    EXPECT_EQ((Told{S_OK, u"Kim", 0x10}), told(book, u"021"));
}

TEST(CallNames, AContactWithoutANameIsCalledByItsNumberAsItIsWritten) {
    const MemoryStoreMount store;
    CallBook book;
    book.add(contact().home(u"(02) 123-4567"));
    EXPECT_EQ((Told{S_OK, u"(02) 123-4567", 0x8}), told(book, u"021234567"));
}

TEST(CallNames, AnUnknownNumberLeavesNoNameAndTheTypeAsItWas) {
    const MemoryStoreMount store;
    CallBook book;
    book.add(contact().name(u"Kim").mobile(u"010-1234-5678"));
    EXPECT_EQ((Told{S_FALSE, u"", ownTelType}), told(book, u"0299999999"));
    EXPECT_EQ((Told{S_FALSE, u"", ownTelType}), told(book, u"0299999999", u"Nobody"));
    EXPECT_EQ((Told{S_FALSE, u"", ownTelType}), told(book, u"010-1234-5678")) << "numbers are looked up reduced";
    CallEntry entry = call(1, u"0299999999", u"Nobody");
    EXPECT_EQ(S_OK, book.insertCallEntry(&entry)) << "it is logged all the same";
    EXPECT_EQ(CString(u""), entry.strName);
}

TEST(CallNames, ANumberHeldOnlyWithinLongerOnesLeavesNoNameAndCountsAsFound) {
    const MemoryStoreMount store;
    CallBook book;
    book.add(contact().name(u"Kim").mobile(u"010-1234-5678"));
    EXPECT_EQ((Told{S_OK, u"", ownTelType}), told(book, u"12345678"));
    EXPECT_EQ((Told{S_OK, u"", ownTelType}), told(book, u"12345678", u"Nobody"));
}

TEST(CallNames, ANameFromTheNetworkIsLookedUpBeforeTheNumber) {
    const MemoryStoreMount store;
    CallBook book;
    book.add(contact().name(u"Kim").home(u"02-111-2222"));
    book.add(contact().name(u"박영희").mobile(u"010-1234-5678"));
    EXPECT_EQ((Told{S_OK, u"Kim", ownTelType}), told(book, u"01012345678", u"Kim")) << "whose number it is not";
    EXPECT_EQ((Told{S_OK, u"Kim", 0x8}), told(book, u"021112222", u"Kim"));
    EXPECT_EQ((Told{S_OK, u"Kim", 0x8}), told(book, u"021112222", u"kIM")) << "in any case";
    EXPECT_EQ((Told{S_OK, u"박영희", 0x4}), told(book, u"01012345678", u"박영희"));
    EXPECT_EQ((Told{S_OK, u"박영희", ownTelType}), told(book, u"5551234", u"박영희")) << "a number nobody has";
}

TEST(CallNames, ANameThatNoContactHasGivesWayToTheNumber) {
    const MemoryStoreMount store;
    CallBook book;
    book.add(contact().name(u"Kim").mobile(u"010-1234-5678"));
    EXPECT_EQ((Told{S_OK, u"Kim", 0x4}), told(book, u"01012345678", u"Nobody"));
    EXPECT_EQ((Told{S_OK, u"Kim", 0x4}), told(book, u"01012345678", u"Ki")) << "names are compared whole";
}

TEST(CallNames, ANameWithAQuoteIsNotLookedUp) {
    const MemoryStoreMount store;
    CallBook book;
    book.add(contact().name(u"K\"im").home(u"02-111-2222"));
    book.add(contact().name(u"Lee").mobile(u"010-1234-5678"));
    EXPECT_EQ((Told{S_OK, u"Lee", 0x4}), told(book, u"01012345678", u"K\"im")) << "its number is";
    EXPECT_EQ((Told{S_FALSE, u"", ownTelType}), told(book, u"5551234", u"K\"im"));
}

TEST(CallNames, OfTwoContactsOfOneNameTheFirstCounts) {
    const MemoryStoreMount store;
    CallBook book;
    book.add(contact().name(u"Kim").mobile(u"010-1111-1111"));
    book.add(contact().name(u"Kim").home(u"02-222-2222"));
    EXPECT_EQ((Told{S_OK, u"Kim", 0x4}), told(book, u"01011111111", u"Kim"));
    EXPECT_EQ((Told{S_OK, u"Kim", ownTelType}), told(book, u"022222222", u"Kim"))
        << "the second one's number is not looked at";
    EXPECT_EQ((Told{S_OK, u"Kim", 0x8}), told(book, u"022222222")) << "without a name it is";
}

TEST(CallNames, OfTwoContactsOfOneNumberTheFirstByNameCounts) {
    const MemoryStoreMount store;
    CallBook book;
    book.add(contact().name(u"Lee").mobile(u"010-1111-1111"));
    book.add(contact().name(u"Kim").home(u"010-1111-1111"));
    EXPECT_EQ((Told{S_OK, u"Kim", 0x8}), told(book, u"01011111111"));
}

TEST(CallNames, WithoutTheContactsACallIsLoggedWithoutAName) {
    const MemoryStoreMount store;
    CallBook book;
    book.add(contact().name(u"Kim").mobile(u"010-1234-5678"));
    book.getTable(PBDBTBL_POLCONTACTS)->close();
    EXPECT_EQ((Told{S_FALSE, u"", ownTelType}), told(book, u"01012345678", u"Kim"));
    CallEntry entry = call(1, u"01012345678", u"Kim");
    EXPECT_EQ(S_OK, book.insertCallEntry(&entry));
    CallEntry logged;
    EXPECT_EQ(S_OK, book.getMRUCallEntry(&logged));
    EXPECT_EQ(CString(u""), logged.strName);
}

}  // namespace
}  // namespace PhoneBook
