#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "tessera/database/PBGroupIterator.h"
#include "tests/support/Builders.h"
#include "tests/support/TemporaryStore.h"
#include "tests/support/Values.h"

namespace Database {
namespace {

using testing_support::contact;
using testing_support::MemoryStoreMount;
using testing_support::OpenPhoneBook;

class Groups : public testing::Test {
protected:
    std::vector<CString> membersOf(const WCHAR* group) {
        std::vector<CString> names;
        const std::unique_ptr<Iterator> found(book->searchPBRecordOfPBGroup(CString(group)));
        while (found != nullptr && found->next() == S_OK)
            names.push_back(found->getString(0));
        return names;
    }
    static std::vector<CString> names(std::initializer_list<const WCHAR*> list) { return {list.begin(), list.end()}; }

    MemoryStoreMount store;
    OpenPhoneBook book;
};

TEST_F(Groups, HoldTheContactsWhoseCategoriesAreTheirName) {
    book.add(contact().name(TEXT("Zoe")).group(TEXT("Family")));
    book.add(contact().name(TEXT("Ann")).group(TEXT("Family")));
    book.add(contact().name(TEXT("Bob")).group(TEXT("Work")));
    EXPECT_EQ(names({TEXT("Ann"), TEXT("Zoe")}), membersOf(TEXT("Family")));
    EXPECT_EQ(names({}), membersOf(TEXT("family"))) << "case counts";
    EXPECT_EQ(names({}), membersOf(TEXT("Friends")));
}

TEST_F(Groups, OneThatNobodyIsInIsNoCursor) {
    EXPECT_EQ(nullptr, book->searchPBRecordOfPBGroup(CString(TEXT(""))));
    book.add(contact().name(TEXT("Ann")).group(TEXT("Family")));
    EXPECT_EQ(nullptr, book->searchPBRecordOfPBGroup(CString(TEXT("Friends"))));
    EXPECT_EQ(nullptr, book->searchPBRecordOfPBGroup(CString(TEXT(""))));
}

TEST_F(Groups, AContactOfTwoCategoriesIsInNeitherGroup) {
    const DWORD oid = book.add(contact().name(TEXT("Ann")).group(TEXT("Family")));
    PhoneBook::PBRecord both = contact().name(TEXT("Ann")).group(TEXT("Work")).record();
    ASSERT_EQ(S_OK, book->updatePBRecord(oid, both));
    EXPECT_EQ(names({}), membersOf(TEXT("Family")));
    EXPECT_EQ(names({}), membersOf(TEXT("Work")));
    EXPECT_EQ(names({TEXT("Ann")}), membersOf(TEXT("Work, Family")));
}

TEST_F(Groups, TheEmptyNameHoldsWhoHasNoCategories) {
    book.add(contact().name(TEXT("Ann")).group(TEXT("Family")));
    book.add(contact().name(TEXT("Bob")));
    // As a program would that writes the contacts database by itself: the property is there, and empty.
    CCeDBDatabase database;
    database.open(TEXT("Contacts Database"), nullptr, nullptr);
    CCeDBRecord filed;
    filed.addProp(CCeDBProp::ofText(0x4013, TEXT("Carl")));
    filed.addProp(CCeDBProp::ofText(0x0016, TEXT("")));
    ASSERT_NE(0u, database.add(filed));
    EXPECT_EQ(names({TEXT("Bob")}), membersOf(TEXT("")));
}

TEST_F(Groups, StepAndDeleteLikeAScan) {
    const DWORD ann = book.add(contact().name(TEXT("Ann")).group(TEXT("Family")));
    book.add(contact().name(TEXT("Bob")).group(TEXT("Family")));
    const std::unique_ptr<Iterator> found(book->searchPBRecordOfPBGroup(CString(TEXT("Family"))));
    ASSERT_NE(nullptr, found);
    EXPECT_EQ(2, found->getNumItems());
    EXPECT_EQ(ann, found->getAt(0));
    EXPECT_EQ(CString(TEXT("Family")), found->getString(1));
    EXPECT_EQ(S_OK, found->deleteAt(0, false));
    EXPECT_EQ(1, found->getNumItems());
    EXPECT_EQ(1u, book->getNumRecords());
}

TEST_F(Groups, OpenTheExtensionTable) {
    book.add(contact().name(TEXT("Ann")).group(TEXT("Family")));
    Table* extension = book->getTable(PhoneBook::PBDBTBL_PHONEBOOKEXT);
    extension->close();
    EXPECT_EQ(names({TEXT("Ann")}), membersOf(TEXT("Family")));
    EXPECT_TRUE(extension->isOpen());
}

/// Lets the scans be run.
class OpenGroup : public PBGroupIterator {
public:
    using PBGroupIterator::PBGroupIterator;
    using PBGroupIterator::scan;
    using PBGroupIterator::scanTelNo;
};

TEST_F(Groups, AreEmptyWithoutAnExtensionTable) {
    book.add(contact().name(TEXT("Ann")).group(TEXT("Family")));
    OpenGroup group(book->getTable(0), nullptr, PhoneBook::PBDBATTR_CATEGORIES, CString(TEXT("Family")));
    EXPECT_EQ(0, group.getNumItems());
    EXPECT_FALSE(group.isOpened());
}

TEST_F(Groups, AreScannedInACollectionAndNeverByNumber) {
    OpenGroup group(book->getTable(0), book->getTable(PhoneBook::PBDBTBL_PHONEBOOKEXT), PhoneBook::PBDBATTR_CATEGORIES,
                    CString(TEXT("Family")));
    EXPECT_EQ(E_POINTER, group.scan(nullptr, CString(TEXT("Family"))));
    EXPECT_EQ(E_POINTER, group.scan(nullptr, CString()));
    EXPECT_EQ(E_NOTIMPL, group.scanTelNo(group.getItemCol(), CString(TEXT("1"))));
}

TEST_F(Groups, AreEmptyWithoutOpenContacts) {
    book.add(contact().name(TEXT("Ann")).group(TEXT("Family")));
    book->closeDB();
    EXPECT_EQ(names({}), membersOf(TEXT("Family")));
    PhoneBook::PhoneBookDBMgr fresh;
    EXPECT_EQ(nullptr, fresh.searchPBRecordOfPBGroup(CString(TEXT("Family"))));
}

}  // namespace
}  // namespace Database
