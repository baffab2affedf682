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

Told told(CallBook& book, WStringView cid, WStringView name = {}) {
    CallEntry entry = call(1, cid, name);
    entry.dwTelType = ownTelType;
    const HRESULT result = book.getCallEntryData(&entry);
    EXPECT_EQ(CString(cid), entry.strCID);
    return {result, entry.strName, entry.dwTelType};
}

TEST(CallNames, ACallWithoutANumberSaysSo) {
    const MemoryStoreMount store;
    CallBook book;
    EXPECT_EQ((Told{S_OK, TEXT("번호정보없음"), ownTelType}), told(book, TEXT("")));
    EXPECT_EQ((Told{S_OK, TEXT("번호정보없음"), ownTelType}), told(book, TEXT(""), TEXT("Kim")))
        << "whatever its name was";
    CallEntry entry = call(1, TEXT(""));
    EXPECT_EQ(S_OK, book.insertCallEntry(&entry));
    CallEntry logged;
    EXPECT_EQ(S_OK, book.getMRUCallEntry(&logged));
    EXPECT_EQ(CString(TEXT("번호정보없음")), logged.strName);
}

TEST(CallNames, AWithheldNumberIsNotLookedUp) {
    const MemoryStoreMount store;
    CallBook book;
    book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1234-5678")));
    EXPECT_EQ((Told{S_OK, TEXT(""), ownTelType}), told(book, TEXT("발신번호표시제한")));
    EXPECT_EQ((Told{S_OK, TEXT("kim"), ownTelType}), told(book, TEXT("발신번호표시제한"), TEXT("kim")))
        << "a lookup would say Kim";
    EXPECT_EQ((Told{S_FALSE, TEXT(""), ownTelType}), told(book, TEXT("발신번호표시제한 "))) << "not that text exactly";
    CallEntry entry = call(1, TEXT("발신번호표시제한"), TEXT("kim"));
    EXPECT_EQ(S_OK, book.insertCallEntry(&entry));
    CallEntry logged;
    EXPECT_EQ(S_OK, book.getMRUCallEntry(&logged));
    EXPECT_EQ(CString(TEXT("kim")), logged.strName);
}

TEST(CallNames, TheContactThatHoldsTheNumberGivesNameAndType) {
    const MemoryStoreMount store;
    CallBook book;
    book.add(contact()
                 .name(TEXT("김민수"))
                 .mobile(TEXT("010-1234-5678"))
                 .home(TEXT("(02) 111-2222"))
                 .business(TEXT("02-333-4444"))
                 .pager(TEXT("012-555-6666"))
                 .fax(TEXT("+82 2-777-8888")));
    EXPECT_EQ((Told{S_OK, TEXT("김민수"), 0x4}), told(book, TEXT("01012345678")));
    EXPECT_EQ((Told{S_OK, TEXT("김민수"), 0x8}), told(book, TEXT("021112222")));
    EXPECT_EQ((Told{S_OK, TEXT("김민수"), 0x10}), told(book, TEXT("023334444")));
    EXPECT_EQ((Told{S_OK, TEXT("김민수"), 0x400}), told(book, TEXT("0125556666")));
    EXPECT_EQ((Told{S_OK, TEXT("김민수"), 0x800}), told(book, TEXT("027778888")));
}

TEST(CallNames, OfANumberThatAContactHasTwiceTheFirstTypeCounts) {
    const MemoryStoreMount store;
    CallBook book;
    book.add(contact().name(TEXT("Kim")).fax(TEXT("02-1")).business(TEXT("021")).pager(TEXT("0-2-1")));
    EXPECT_EQ((Told{S_OK, TEXT("Kim"), 0x10}), told(book, TEXT("021")));
}

TEST(CallNames, AContactWithoutANameIsCalledByItsNumberAsItIsWritten) {
    const MemoryStoreMount store;
    CallBook book;
    book.add(contact().home(TEXT("(02) 123-4567")));
    EXPECT_EQ((Told{S_OK, TEXT("(02) 123-4567"), 0x8}), told(book, TEXT("021234567")));
}

TEST(CallNames, AnUnknownNumberLeavesNoNameAndTheTypeAsItWas) {
    const MemoryStoreMount store;
    CallBook book;
    book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1234-5678")));
    EXPECT_EQ((Told{S_FALSE, TEXT(""), ownTelType}), told(book, TEXT("0299999999")));
    EXPECT_EQ((Told{S_FALSE, TEXT(""), ownTelType}), told(book, TEXT("0299999999"), TEXT("Nobody")));
    EXPECT_EQ((Told{S_FALSE, TEXT(""), ownTelType}), told(book, TEXT("010-1234-5678")))
        << "numbers are looked up reduced";
    CallEntry entry = call(1, TEXT("0299999999"), TEXT("Nobody"));
    EXPECT_EQ(S_OK, book.insertCallEntry(&entry)) << "it is logged all the same";
    EXPECT_EQ(CString(TEXT("")), entry.strName);
}

TEST(CallNames, ANumberHeldOnlyWithinLongerOnesLeavesNoNameAndCountsAsFound) {
    const MemoryStoreMount store;
    CallBook book;
    book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1234-5678")));
    EXPECT_EQ((Told{S_OK, TEXT(""), ownTelType}), told(book, TEXT("12345678")));
    EXPECT_EQ((Told{S_OK, TEXT(""), ownTelType}), told(book, TEXT("12345678"), TEXT("Nobody")));
}

TEST(CallNames, ANameFromTheNetworkIsLookedUpBeforeTheNumber) {
    const MemoryStoreMount store;
    CallBook book;
    book.add(contact().name(TEXT("Kim")).home(TEXT("02-111-2222")));
    book.add(contact().name(TEXT("박영희")).mobile(TEXT("010-1234-5678")));
    EXPECT_EQ((Told{S_OK, TEXT("Kim"), ownTelType}), told(book, TEXT("01012345678"), TEXT("Kim")))
        << "whose number it is not";
    EXPECT_EQ((Told{S_OK, TEXT("Kim"), 0x8}), told(book, TEXT("021112222"), TEXT("Kim")));
    EXPECT_EQ((Told{S_OK, TEXT("Kim"), 0x8}), told(book, TEXT("021112222"), TEXT("kIM"))) << "in any case";
    EXPECT_EQ((Told{S_OK, TEXT("박영희"), 0x4}), told(book, TEXT("01012345678"), TEXT("박영희")));
    EXPECT_EQ((Told{S_OK, TEXT("박영희"), ownTelType}), told(book, TEXT("5551234"), TEXT("박영희")))
        << "a number nobody has";
}

TEST(CallNames, ANameThatNoContactHasGivesWayToTheNumber) {
    const MemoryStoreMount store;
    CallBook book;
    book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1234-5678")));
    EXPECT_EQ((Told{S_OK, TEXT("Kim"), 0x4}), told(book, TEXT("01012345678"), TEXT("Nobody")));
    EXPECT_EQ((Told{S_OK, TEXT("Kim"), 0x4}), told(book, TEXT("01012345678"), TEXT("Ki")))
        << "names are compared whole";
}

TEST(CallNames, ANameWithAQuoteIsNotLookedUp) {
    const MemoryStoreMount store;
    CallBook book;
    book.add(contact().name(TEXT("K\"im")).home(TEXT("02-111-2222")));
    book.add(contact().name(TEXT("Lee")).mobile(TEXT("010-1234-5678")));
    EXPECT_EQ((Told{S_OK, TEXT("Lee"), 0x4}), told(book, TEXT("01012345678"), TEXT("K\"im"))) << "its number is";
    EXPECT_EQ((Told{S_FALSE, TEXT(""), ownTelType}), told(book, TEXT("5551234"), TEXT("K\"im")));
}

TEST(CallNames, OfTwoContactsOfOneNameTheFirstCounts) {
    const MemoryStoreMount store;
    CallBook book;
    book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1111-1111")));
    book.add(contact().name(TEXT("Kim")).home(TEXT("02-222-2222")));
    EXPECT_EQ((Told{S_OK, TEXT("Kim"), 0x4}), told(book, TEXT("01011111111"), TEXT("Kim")));
    EXPECT_EQ((Told{S_OK, TEXT("Kim"), ownTelType}), told(book, TEXT("022222222"), TEXT("Kim")))
        << "the second one's number is not looked at";
    EXPECT_EQ((Told{S_OK, TEXT("Kim"), 0x8}), told(book, TEXT("022222222"))) << "without a name it is";
}

TEST(CallNames, OfTwoContactsOfOneNumberTheFirstByNameCounts) {
    const MemoryStoreMount store;
    CallBook book;
    book.add(contact().name(TEXT("Lee")).mobile(TEXT("010-1111-1111")));
    book.add(contact().name(TEXT("Kim")).home(TEXT("010-1111-1111")));
    EXPECT_EQ((Told{S_OK, TEXT("Kim"), 0x8}), told(book, TEXT("01011111111")));
}

TEST(CallNames, WithoutTheContactsACallIsLoggedWithoutAName) {
    const MemoryStoreMount store;
    CallBook book;
    book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1234-5678")));
    book.getTable(PBDBTBL_POLCONTACTS)->close();
    EXPECT_EQ((Told{S_FALSE, TEXT(""), ownTelType}), told(book, TEXT("01012345678"), TEXT("Kim")));
    CallEntry entry = call(1, TEXT("01012345678"), TEXT("Kim"));
    EXPECT_EQ(S_OK, book.insertCallEntry(&entry));
    CallEntry logged;
    EXPECT_EQ(S_OK, book.getMRUCallEntry(&logged));
    EXPECT_EQ(CString(TEXT("")), logged.strName);
}

}  // namespace
}  // namespace PhoneBook
