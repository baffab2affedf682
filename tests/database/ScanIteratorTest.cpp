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
    for (const WCHAR* name : {TEXT("Kim"), TEXT("KIM Su"), TEXT("Akim"), TEXT("Lee")})
        book.add(contact().name(name));
    EXPECT_EQ(names({TEXT("Akim"), TEXT("Kim"), TEXT("KIM Su")}), namesOf(byName(TEXT("kim"))));
    EXPECT_EQ(names({TEXT("Akim"), TEXT("Kim"), TEXT("KIM Su")}), namesOf(byName(TEXT("KiM"))));
    EXPECT_EQ(names({TEXT("KIM Su")}), namesOf(byName(TEXT("m s"))));
}

TEST_F(Scans, InitialConsonantsFindTheBeginningOfAName) {
    for (const WCHAR* name :
         {TEXT("김민수"), TEXT("까마귀"), TEXT("이김민"), TEXT("김 미경"), TEXT("김,미나"), TEXT("나무")}) {
        book.add(contact().name(name));
    }
    EXPECT_EQ(names({TEXT("김 미경"), TEXT("김,미나"), TEXT("김민수"), TEXT("까마귀")}), namesOf(byName(TEXT("ㄱㅁ"))));
    EXPECT_EQ(names({TEXT("나무")}), namesOf(byName(TEXT("ㄴㅁ"))));
    EXPECT_EQ(names({TEXT("이김민")}), namesOf(byName(TEXT("ㅇㄱㅁ"))));
    EXPECT_EQ(names({TEXT("김민수")}), namesOf(byName(TEXT("\u1100\u1106\u1109"))))
        << "conjoining initials serve as well";
}

TEST_F(Scans, TheLastConsonantsAreInitialsToo) {
    for (const WCHAR* name : {TEXT("하나"), TEXT("ㅎ"), TEXT("x\u1159"), TEXT("\u1159x")})
        book.add(contact().name(name));
    EXPECT_EQ(names({TEXT("하나")}), namesOf(byName(TEXT("ㅎㄴ"))));
    EXPECT_EQ(names({TEXT("\u1159x")}), namesOf(byName(TEXT("\u1159")))) << "of a name's beginning, not anywhere in it";
    EXPECT_EQ(names({TEXT("\u1159x")}), namesOf(byName(TEXT("\u1159x"))));
}

TEST_F(Scans, NoWhiteSpaceStandsBetweenInitials) {
    for (const WCHAR space : TEXT("\t\n\r \u0085\u00A0\u1680\u2000\u200A\u2028\u2029\u202F\u205F\u3000")) {
        if (space == u'\0') break;
        book.add(contact().name(WString(TEXT("김")) + space + TEXT("민")));
    }
    EXPECT_EQ(14u, namesOf(byName(TEXT("ㄱㅁ"))).size());
}

TEST_F(Scans, ATenseConsonantFindsOnlyItself) {
    for (const WCHAR* name : {TEXT("가"), TEXT("까")})
        book.add(contact().name(name));
    EXPECT_EQ(names({TEXT("까")}), namesOf(byName(TEXT("ㄲ"))));
    EXPECT_EQ(names({TEXT("가"), TEXT("까")}), namesOf(byName(TEXT("ㄱ"))));
}

TEST_F(Scans, AConsonantWithoutAnInitialFindsEveryName) {
    for (const WCHAR* name : {TEXT("Kim"), TEXT("김")})
        book.add(contact().name(name));
    EXPECT_EQ(2u, namesOf(byName(TEXT("ㄳ"))).size());
    EXPECT_EQ(names({TEXT("김")}), namesOf(byName(TEXT("ㄳㄱ")))) << "it is dropped from the key";
}

TEST_F(Scans, ALetterInANameIsItsOwnInitial) {
    book.add(contact().name(TEXT("김A")));
    book.add(contact().name(TEXT("김B")));
    EXPECT_EQ(names({TEXT("김A")}), namesOf(byName(TEXT("\u1100a"))));
}

TEST_F(Scans, AnEmptyKeyFindsEveryContact) {
    book.add(contact().name(TEXT("Kim")));
    book.add(contact().mobile(TEXT("010-1")));
    EXPECT_EQ(names({TEXT("Kim"), TEXT("")}), namesOf(byName(TEXT(""))));
}

TEST_F(Scans, ANumberIsFoundByAnyPartOfItsReducedForm) {
    book.add(contact().name(TEXT("Ann")).business(TEXT("(02) 512-3456")));
    book.add(contact().name(TEXT("Bob")).pager(TEXT("+82-12-345-6")));
    book.add(contact().name(TEXT("Carl")).fax(TEXT("99")));
    EXPECT_EQ(names({TEXT("Ann"), TEXT("Bob")}), namesOf(byNumber(TEXT("123456"))));
    EXPECT_EQ(names({TEXT("Ann")}), namesOf(byNumber(TEXT("0251"))));
    EXPECT_EQ(nullptr, byNumber(TEXT("2-3"))) << "the key is taken as given, and no reduced number has a dash";
    EXPECT_EQ(nullptr, byNumber(TEXT("번호")));
}

TEST_F(Scans, NumbersDoNotRunIntoEachOther) {
    book.add(contact().name(TEXT("Ann")).mobile(TEXT("12")).home(TEXT("34")));
    EXPECT_EQ(nullptr, byNumber(TEXT("1234")));
    EXPECT_EQ(nullptr, byNumber(TEXT("23")));
}

TEST_F(Scans, AnEmptyNumberKeyFindsWhoeverHasANumber) {
    book.add(contact().name(TEXT("Ann")).mobile(TEXT("no digits")));
    book.add(contact().name(TEXT("Bob")));
    book.add(contact().name(TEXT("Carl")).fax(TEXT("1")));
    EXPECT_EQ(names({TEXT("Ann"), TEXT("Carl")}), namesOf(byNumber(TEXT(""))));
}

TEST_F(Scans, AnEmptyNumberIsNone) {
    // The contacts model keeps no empty text: as another program writes it.
    CCeDBDatabase database;
    database.open(TEXT("Contacts Database"), nullptr, nullptr);
    CCeDBRecord withEmptyNumber;
    withEmptyNumber.addProp(CCeDBProp::ofText(0x4013, TEXT("Kim")));
    withEmptyNumber.addProp(CCeDBProp::ofText(0x3A1C, TEXT("")));
    ASSERT_NE(0u, database.add(withEmptyNumber));

    EXPECT_EQ(nullptr, byNumber(TEXT("")));
}

TEST_F(Scans, AMatchHasNoNameWhenTheNumberStandsBeforeItInTheRecord) {
    // As a program would that writes the contacts database by itself.
    CCeDBDatabase database;
    database.open(TEXT("Contacts Database"), nullptr, nullptr);
    CCeDBRecord numberFirst;
    numberFirst.addProp(CCeDBProp::ofText(0x3A1C, TEXT("111")));
    numberFirst.addProp(CCeDBProp::ofText(0x4013, TEXT("Kim")));
    numberFirst.addProp(CCeDBProp::ofText(0x3A09, TEXT("222")));
    ASSERT_NE(0u, database.add(numberFirst));

    EXPECT_EQ(names({TEXT("")}), namesOf(byNumber(TEXT("11"))));
    EXPECT_EQ(names({TEXT("Kim")}), namesOf(byNumber(TEXT("22"))));
    EXPECT_EQ(names({TEXT("Kim")}), namesOf(byName(TEXT("k"))));
}

TEST_F(Scans, ACursorSearchesOnlyWhenItIsToldTo) {
    book.add(contact().name(TEXT("Kim 1")).mobile(TEXT("2")));
    const auto matches = [this](int attr, const WCHAR* key, bool run) {
        IPOutlookItemCollection* items = nullptr;
        EXPECT_EQ(S_OK, contacts().getItems(&items));
        return ScanIterator(&contacts(), items, attr, CString(key), run).getNumItems();
    };
    EXPECT_EQ(1, matches(0, TEXT("kim"), true));
    EXPECT_EQ(0, matches(0, TEXT("kim"), false));
    EXPECT_EQ(1, matches(SCANATTR_TELNO, TEXT("2"), true));
    EXPECT_EQ(1, matches(SCANATTR_TELNO + 1, TEXT("1"), true)) << "by name";
    EXPECT_FALSE(ScanIterator(&contacts(), nullptr, 0, CString(TEXT("kim")), true).isOpened());
}

TEST_F(Scans, NothingFoundIsNoCursor) {
    EXPECT_EQ(nullptr, byName(TEXT("kim")));
    EXPECT_EQ(nullptr, byName(TEXT("")));
    book.add(contact().name(TEXT("Lee")));
    EXPECT_EQ(nullptr, byName(TEXT("kim")));
}

TEST_F(Scans, ACursorStandsBeforeItsFirstMatchAndStaysOnItsLast) {
    const DWORD a = book.add(contact().name(TEXT("Kim A")));
    const DWORD b = book.add(contact().name(TEXT("Kim B")));
    const auto found = byName(TEXT("kim"));
    ASSERT_NE(nullptr, found);
    EXPECT_EQ(2, found->getNumItems());
    EXPECT_EQ(0u, found->getCur());
    EXPECT_EQ(CString(TEXT("")), found->getString(0));
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
    const DWORD oid = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")).email(TEXT("k@example.com")));
    const auto found = byName(TEXT("kim"));
    EXPECT_EQ(CString(TEXT("010-1")), found->getStringAt(0, 2));
    EXPECT_EQ(CString(TEXT("k@example.com")), found->getString(5));
    EXPECT_EQ(CString(TEXT("")), found->getString(99));
    EXPECT_TRUE(found->getPropAt(0, 0).isEmpty());
    DWORD gone = oid;
    ASSERT_EQ(S_OK, contacts().deleteRecord(gone));
    EXPECT_EQ(CString(TEXT("Kim")), found->getString(0)) << "the result is a snapshot";
    EXPECT_EQ(CString(TEXT("")), found->getString(2));
}

TEST_F(Scans, DeletingByPositionTakesTheMatchOutAndLeavesTheContact) {
    book.add(contact().name(TEXT("Kim A")));
    const DWORD b = book.add(contact().name(TEXT("Kim B")));
    const auto found = byName(TEXT("kim"));
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
    book.add(contact().name(TEXT("Kim")));
    const auto found = byName(TEXT("kim"));
    EXPECT_EQ(E_FAIL, found->deleteAt(2, false));
    EXPECT_EQ(E_FAIL, found->deleteAt(-1, false));
    EXPECT_EQ(S_OK, found->deleteAt(1, false)) << "the count itself is accepted";
    EXPECT_EQ(1, found->getNumItems());
    EXPECT_EQ(1u, book->getNumRecords());
}

TEST_F(Scans, DeletingTheCurrentContactLeavesTheMatch) {
    book.add(contact().name(TEXT("Kim")));
    const auto found = byName(TEXT("kim"));
    EXPECT_EQ(S_OK, found->deleteCur()) << "before the first match there is nothing to delete";
    EXPECT_EQ(1u, book->getNumRecords());
    ASSERT_EQ(S_OK, found->next());
    EXPECT_EQ(S_OK, found->deleteCur());
    EXPECT_EQ(0u, book->getNumRecords());
    EXPECT_EQ(1, found->getNumItems());
    EXPECT_EQ(E_FAIL, found->deleteCur()) << "it is gone already";
}

TEST_F(Scans, ResultsAreNotJoined) {
    book.add(contact().name(TEXT("Kim")));
    const auto found = byName(TEXT("kim"));
    EXPECT_EQ(E_NOTIMPL, static_cast<ScanIterator&>(*found).append(nullptr));
    EXPECT_NE(nullptr, static_cast<ScanIterator&>(*found).getItemCol());
}

TEST_F(Scans, AThreadSeesWhatAnotherThreadHasWritten) {
    book.add(contact().name(TEXT("Kim A")));
    EXPECT_EQ(1u, namesOf(byName(TEXT("kim"))).size());
    std::thread([] {
        OpenPhoneBook other;
        other.add(contact().name(TEXT("Kim B")));
    }).join();
    EXPECT_EQ(names({TEXT("Kim A"), TEXT("Kim B")}), namesOf(byName(TEXT("kim"))));
}

TEST_F(Scans, ABatchSeesItsOwnContactsBeforeAnybodyElseDoes) {
    testing_support::TemporaryStore onDisk;
    OpenPhoneBook mine;
    const auto countInOtherThread = [] {
        std::size_t count = 0;
        std::thread([&] {
            PhoneBook::PhoneBookDBMgr other;
            EXPECT_EQ(S_OK, other.openDB(nullptr));
            const std::unique_ptr<Iterator> found(other.searchPBRecord(PhoneBook::PBDBATTR_NAME, CString(TEXT("kim"))));
            count = namesOf(found).size();
        }).join();
        return count;
    };
    const auto countHere = [&] {
        const std::unique_ptr<Iterator> found(mine->searchPBRecord(PhoneBook::PBDBATTR_NAME, CString(TEXT("kim"))));
        return namesOf(found).size();
    };
    mine.add(contact().name(TEXT("Kim A")));
    EXPECT_EQ(1u, countHere());
    {
        ObjectStoreBatch batch;
        mine.add(contact().name(TEXT("Kim B")));
        EXPECT_EQ(2u, countHere());
        EXPECT_EQ(1u, countInOtherThread());
    }
    EXPECT_EQ(2u, countHere());
    EXPECT_EQ(2u, countInOtherThread());
}

TEST_F(Scans, NoContactIsCurrentOnceItsMatchWasTakenOut) {
    book.add(contact().name(TEXT("Kim A")));
    book.add(contact().name(TEXT("Kim B")));
    const DWORD c = book.add(contact().name(TEXT("Kim C")));
    const auto found = byName(TEXT("kim"));
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
        expected.push_back(book.add(contact().name(TEXT("Kim"))));
    const auto found = byName(TEXT("kim"));
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
