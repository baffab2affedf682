#include <memory>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tessera/database/POlDBTable.h"
#include "tessera/database/ScanIterator.h"
#include "tests/support/Builders.h"
#include "tests/support/TemporaryStore.h"
#include "tests/support/Values.h"

namespace Database {
namespace {

using testing_support::contact;
using testing_support::MemoryStoreMount;
using testing_support::OpenPhoneBook;

class Scans : public testing::Test {
protected:
    POlDBTable& contacts() { return *static_cast<POlDBTable*>(book->getTable(0)); }

    std::unique_ptr<Iterator> byName(const WCHAR* key) {
        return std::unique_ptr<Iterator>(contacts().getScanIterator(nullptr, 0, CString(key)));
    }
    std::unique_ptr<Iterator> byNumber(const WCHAR* key) {
        return std::unique_ptr<Iterator>(contacts().getScanIterator(nullptr, SCANATTR_TELNO, CString(key)));
    }
    static std::vector<CString> namesOf(const std::unique_ptr<Iterator>& found) {
        std::vector<CString> names;
        while (found != nullptr && found->next() == S_OK)
            names.push_back(found->getString(0));
        return names;
    }
    static std::vector<CString> names(std::initializer_list<const WCHAR*> list) { return {list.begin(), list.end()}; }

    MemoryStoreMount store;
    OpenPhoneBook book;
};

TEST_F(Scans, ANameIsFoundByAnyPartOfItInAnyCase) {
    for (const WCHAR* name : {u"Kim", u"KIM Su", u"Akim", u"Lee"})
        book.add(contact().name(name));
    EXPECT_EQ(names({u"Akim", u"Kim", u"KIM Su"}), namesOf(byName(u"kim")));
    EXPECT_EQ(names({u"Akim", u"Kim", u"KIM Su"}), namesOf(byName(u"KiM")));
    EXPECT_EQ(names({u"KIM Su"}), namesOf(byName(u"m s")));
}

TEST_F(Scans, InitialConsonantsFindTheBeginningOfAName) {
    for (const WCHAR* name : {u"김민수", u"까마귀", u"이김민", u"김 미경", u"김,미나", u"나무"}) {
        book.add(contact().name(name));
    }
    EXPECT_EQ(names({u"김 미경", u"김,미나", u"김민수", u"까마귀"}), namesOf(byName(u"ㄱㅁ")));
    EXPECT_EQ(names({u"나무"}), namesOf(byName(u"ㄴㅁ")));
    EXPECT_EQ(names({u"이김민"}), namesOf(byName(u"ㅇㄱㅁ")));
    EXPECT_EQ(names({u"김민수"}), namesOf(byName(u"\u1100\u1106\u1109"))) << "conjoining initials serve as well";
}

TEST_F(Scans, TheLastConsonantsAreInitialsToo) {
    for (const WCHAR* name : {u"하나", u"ㅎ", u"x\u1159", u"\u1159x"})
        book.add(contact().name(name));
    EXPECT_EQ(names({u"하나"}), namesOf(byName(u"ㅎㄴ")));
    EXPECT_EQ(names({u"\u1159x"}), namesOf(byName(u"\u1159"))) << "of a name's beginning, not anywhere in it";
    EXPECT_EQ(names({u"\u1159x"}), namesOf(byName(u"\u1159x")));
}

TEST_F(Scans, NoWhiteSpaceStandsBetweenInitials) {
    for (const WCHAR space : u"\t\n\r \u0085\u00A0\u1680\u2000\u200A\u2028\u2029\u202F\u205F\u3000") {
        if (space == u'\0') break;
        book.add(contact().name(std::u16string(u"김") + space + u"민"));
    }
    EXPECT_EQ(14u, namesOf(byName(u"ㄱㅁ")).size());
}

TEST_F(Scans, ATenseConsonantFindsOnlyItself) {
    for (const WCHAR* name : {u"가", u"까"})
        book.add(contact().name(name));
    EXPECT_EQ(names({u"까"}), namesOf(byName(u"ㄲ")));
    EXPECT_EQ(names({u"가", u"까"}), namesOf(byName(u"ㄱ")));
}

TEST_F(Scans, AConsonantWithoutAnInitialFindsEveryName) {
    for (const WCHAR* name : {u"Kim", u"김"})
        book.add(contact().name(name));
    EXPECT_EQ(2u, namesOf(byName(u"ㄳ")).size());
    EXPECT_EQ(names({u"김"}), namesOf(byName(u"ㄳㄱ"))) << "it is dropped from the key";
}

TEST_F(Scans, ALetterInANameIsItsOwnInitial) {
    book.add(contact().name(u"김A"));
    book.add(contact().name(u"김B"));
    EXPECT_EQ(names({u"김A"}), namesOf(byName(u"\u1100a")));
}

TEST_F(Scans, AnEmptyKeyFindsEveryContact) {
    book.add(contact().name(u"Kim"));
    book.add(contact().mobile(u"010-1"));
    EXPECT_EQ(names({u"Kim", u""}), namesOf(byName(u"")));
}

TEST_F(Scans, ANumberIsFoundByAnyPartOfItsReducedForm) {
    book.add(contact().name(u"Ann").business(u"(02) 512-3456"));
    book.add(contact().name(u"Bob").pager(u"+82-12-345-6"));
    book.add(contact().name(u"Carl").fax(u"99"));
    EXPECT_EQ(names({u"Ann", u"Bob"}), namesOf(byNumber(u"123456")));
    EXPECT_EQ(names({u"Ann"}), namesOf(byNumber(u"0251")));
    EXPECT_EQ(nullptr, byNumber(u"2-3")) << "the key is taken as given, and no reduced number has a dash";
    EXPECT_EQ(nullptr, byNumber(u"번호"));
}

TEST_F(Scans, NumbersDoNotRunIntoEachOther) {
    book.add(contact().name(u"Ann").mobile(u"12").home(u"34"));
    EXPECT_EQ(nullptr, byNumber(u"1234"));
    EXPECT_EQ(nullptr, byNumber(u"23"));
}

TEST_F(Scans, AnEmptyNumberKeyFindsWhoeverHasANumber) {
    book.add(contact().name(u"Ann").mobile(u"no digits"));
    book.add(contact().name(u"Bob"));
    book.add(contact().name(u"Carl").fax(u"1"));
    EXPECT_EQ(names({u"Ann", u"Carl"}), namesOf(byNumber(u"")));
}

TEST_F(Scans, AnEmptyNumberIsNone) {
    // The contacts model keeps no empty text: as another program writes it.
    CCeDBDatabase database;
    database.open(u"Contacts Database", nullptr, nullptr);
    CCeDBRecord withEmptyNumber;
    withEmptyNumber.addProp(CCeDBProp::ofText(0x4013, u"Kim"));
    withEmptyNumber.addProp(CCeDBProp::ofText(0x3A1C, u""));
    ASSERT_NE(0u, database.add(withEmptyNumber));

    EXPECT_EQ(nullptr, byNumber(u""));
}

TEST_F(Scans, AMatchHasNoNameWhenTheNumberStandsBeforeItInTheRecord) {
    // As a program would that writes the contacts database by itself.
    CCeDBDatabase database;
    database.open(u"Contacts Database", nullptr, nullptr);
    CCeDBRecord numberFirst;
    numberFirst.addProp(CCeDBProp::ofText(0x3A1C, u"111"));
    numberFirst.addProp(CCeDBProp::ofText(0x4013, u"Kim"));
    numberFirst.addProp(CCeDBProp::ofText(0x3A09, u"222"));
    ASSERT_NE(0u, database.add(numberFirst));

    EXPECT_EQ(names({u""}), namesOf(byNumber(u"11")));
    EXPECT_EQ(names({u"Kim"}), namesOf(byNumber(u"22")));
    EXPECT_EQ(names({u"Kim"}), namesOf(byName(u"k")));
}

TEST_F(Scans, ACursorSearchesOnlyWhenItIsToldTo) {
    book.add(contact().name(u"Kim 1").mobile(u"2"));
    const auto matches = [this](int attr, const WCHAR* key, bool run) {
        IPOutlookItemCollection* items = nullptr;
        EXPECT_EQ(S_OK, contacts().getItems(&items));
        return ScanIterator(&contacts(), items, attr, CString(key), run).getNumItems();
    };
    EXPECT_EQ(1, matches(0, u"kim", true));
    EXPECT_EQ(0, matches(0, u"kim", false));
    EXPECT_EQ(1, matches(SCANATTR_TELNO, u"2", true));
    EXPECT_EQ(1, matches(SCANATTR_TELNO + 1, u"1", true)) << "by name";
    EXPECT_FALSE(ScanIterator(&contacts(), nullptr, 0, CString(u"kim"), true).isOpened());
}

TEST_F(Scans, NothingFoundIsNoCursor) {
    EXPECT_EQ(nullptr, byName(u"kim"));
    EXPECT_EQ(nullptr, byName(u""));
    book.add(contact().name(u"Lee"));
    EXPECT_EQ(nullptr, byName(u"kim"));
}

TEST_F(Scans, ACursorStandsBeforeItsFirstMatchAndStaysOnItsLast) {
    const DWORD a = book.add(contact().name(u"Kim A"));
    const DWORD b = book.add(contact().name(u"Kim B"));
    const auto found = byName(u"kim");
    ASSERT_NE(nullptr, found);
    EXPECT_EQ(2, found->getNumItems());
    EXPECT_EQ(0u, found->getCur());
    EXPECT_EQ(CString(u""), found->getString(0));
    EXPECT_EQ(S_OK, found->next());
    EXPECT_EQ(a, found->getCur());
    EXPECT_EQ(S_OK, found->next());
    EXPECT_EQ(S_FALSE, found->next());
    EXPECT_EQ(b, found->getCur()) << "a failed step forward does not move";
    EXPECT_EQ(S_OK, found->prev());
    EXPECT_EQ(S_FALSE, found->prev());
    EXPECT_EQ(0u, found->getCur()) << "a failed step back stands before the first";
    EXPECT_EQ(S_OK, found->last());
    EXPECT_EQ(b, found->getCur());
    EXPECT_EQ(a, found->getAt(0));
    EXPECT_EQ(0u, found->getAt(2)) << "the count itself is accepted";
    EXPECT_EQ(0u, found->getAt(3));
    EXPECT_EQ(0u, found->getAt(-1));
}

TEST_F(Scans, OtherFieldsAreReadFromTheContact) {
    const DWORD oid = book.add(contact().name(u"Kim").mobile(u"010-1").email(u"k@example.com"));
    const auto found = byName(u"kim");
    EXPECT_EQ(CString(u"010-1"), found->getStringAt(0, 2));
    EXPECT_EQ(CString(u"k@example.com"), found->getString(5));
    EXPECT_EQ(CString(u""), found->getString(99));
    EXPECT_TRUE(found->getPropAt(0, 0).isEmpty());
    DWORD gone = oid;
    ASSERT_EQ(S_OK, contacts().deleteRecord(gone));
    EXPECT_EQ(CString(u"Kim"), found->getString(0)) << "the result is a snapshot";
    EXPECT_EQ(CString(u""), found->getString(2));
}

TEST_F(Scans, DeletingByPositionTakesTheMatchOutAndLeavesTheContact) {
    book.add(contact().name(u"Kim A"));
    const DWORD b = book.add(contact().name(u"Kim B"));
    const auto found = byName(u"kim");
    EXPECT_EQ(S_OK, found->deleteAt(0, true));
    EXPECT_EQ(1, found->getNumItems());
    EXPECT_EQ(b, found->getAt(0));
    EXPECT_EQ(2u, book->getNumRecords());

    EXPECT_EQ(S_OK, found->deleteAt(0, false));
    EXPECT_EQ(1u, book->getNumRecords());
    EXPECT_FALSE(found->isOpened());
    EXPECT_EQ(E_ACCESSDENIED, found->deleteAt(0, true));
    EXPECT_EQ(E_FAIL, found->next());
    EXPECT_EQ(E_ACCESSDENIED, found->prev());
    EXPECT_EQ(E_ACCESSDENIED, found->last());
}

TEST_F(Scans, DeletingOutsideTheResultFails) {
    book.add(contact().name(u"Kim"));
    const auto found = byName(u"kim");
    EXPECT_EQ(E_FAIL, found->deleteAt(2, false));
    EXPECT_EQ(E_FAIL, found->deleteAt(-1, false));
    EXPECT_EQ(S_OK, found->deleteAt(1, false)) << "the count itself is accepted";
    EXPECT_EQ(1, found->getNumItems());
    EXPECT_EQ(1u, book->getNumRecords());
}

TEST_F(Scans, DeletingTheCurrentContactLeavesTheMatch) {
    book.add(contact().name(u"Kim"));
    const auto found = byName(u"kim");
    EXPECT_EQ(S_OK, found->deleteCur()) << "before the first match there is nothing to delete";
    EXPECT_EQ(1u, book->getNumRecords());
    ASSERT_EQ(S_OK, found->next());
    EXPECT_EQ(S_OK, found->deleteCur());
    EXPECT_EQ(0u, book->getNumRecords());
    EXPECT_EQ(1, found->getNumItems());
    EXPECT_EQ(E_FAIL, found->deleteCur()) << "it is gone already";
}

TEST_F(Scans, ResultsAreNotJoined) {
    book.add(contact().name(u"Kim"));
    const auto found = byName(u"kim");
    EXPECT_EQ(E_NOTIMPL, static_cast<ScanIterator&>(*found).append(nullptr));
    EXPECT_NE(nullptr, static_cast<ScanIterator&>(*found).getItemCol());
}

TEST_F(Scans, AThreadSeesWhatAnotherThreadHasWritten) {
    book.add(contact().name(u"Kim A"));
    EXPECT_EQ(1u, namesOf(byName(u"kim")).size());
    std::thread([] {
        OpenPhoneBook other;
        other.add(contact().name(u"Kim B"));
    }).join();
    EXPECT_EQ(names({u"Kim A", u"Kim B"}), namesOf(byName(u"kim")));
}

TEST_F(Scans, ABatchSeesItsOwnContactsBeforeAnybodyElseDoes) {
    testing_support::TemporaryStore onDisk;
    OpenPhoneBook mine;
    const auto countInOtherThread = [] {
        std::size_t count = 0;
        std::thread([&] {
            PhoneBook::PhoneBookDBMgr other;
            EXPECT_EQ(S_OK, other.openDB(nullptr));
            const std::unique_ptr<Iterator> found(other.searchPBRecord(PhoneBook::PBDBATTR_NAME, CString(u"kim")));
            count = namesOf(found).size();
        }).join();
        return count;
    };
    const auto countHere = [&] {
        const std::unique_ptr<Iterator> found(mine->searchPBRecord(PhoneBook::PBDBATTR_NAME, CString(u"kim")));
        return namesOf(found).size();
    };
    mine.add(contact().name(u"Kim A"));
    EXPECT_EQ(1u, countHere());
    {
        ObjectStoreBatch batch;
        mine.add(contact().name(u"Kim B"));
        EXPECT_EQ(2u, countHere());
        EXPECT_EQ(1u, countInOtherThread());
    }
    EXPECT_EQ(2u, countHere());
    EXPECT_EQ(2u, countInOtherThread());
}

TEST_F(Scans, NoContactIsCurrentOnceItsMatchWasTakenOut) {
    book.add(contact().name(u"Kim A"));
    book.add(contact().name(u"Kim B"));
    const DWORD c = book.add(contact().name(u"Kim C"));
    const auto found = byName(u"kim");
    ASSERT_EQ(S_OK, found->next());
    EXPECT_EQ(S_OK, found->deleteAt(0, true));
    EXPECT_EQ(S_OK, found->deleteCur()) << "there is nothing to delete";
    EXPECT_EQ(3u, book->getNumRecords());

    ASSERT_EQ(S_OK, found->next());
    EXPECT_EQ(c, found->getCur());
    EXPECT_EQ(S_OK, found->deleteCur()) << "a move makes a contact current again";
    EXPECT_EQ(2u, book->getNumRecords());
}

TEST_F(Scans, AResultIsEmptiedFromItsFront) {
    std::vector<DWORD> expected;
    for (int i = 0; i < 300; ++i)
        expected.push_back(book.add(contact().name(u"Kim")));
    const auto found = byName(u"kim");
    std::vector<DWORD> taken;
    while (found->isOpened()) {
        taken.push_back(found->getAt(0));
        ASSERT_EQ(S_OK, found->deleteAt(0, true));
    }
    EXPECT_EQ(expected, taken);
    EXPECT_EQ(300u, book->getNumRecords());
}

}  // namespace
}  // namespace Database
