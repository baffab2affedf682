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
    book.add(contact().name(u"Zoe").group(u"Family"));
    book.add(contact().name(u"Ann").group(u"Family"));
    book.add(contact().name(u"Bob").group(u"Work"));
    EXPECT_EQ(names({u"Ann", u"Zoe"}), membersOf(u"Family"));
    EXPECT_EQ(names({}), membersOf(u"family")) << "case counts";
    EXPECT_EQ(names({}), membersOf(u"Friends"));
}

TEST_F(Groups, OneThatNobodyIsInIsNoCursor) {
    EXPECT_EQ(nullptr, book->searchPBRecordOfPBGroup(CString(u"")));
    book.add(contact().name(u"Ann").group(u"Family"));
    EXPECT_EQ(nullptr, book->searchPBRecordOfPBGroup(CString(u"Friends")));
    EXPECT_EQ(nullptr, book->searchPBRecordOfPBGroup(CString(u"")));
}

TEST_F(Groups, AContactOfTwoCategoriesIsInNeitherGroup) {
    const DWORD oid = book.add(contact().name(u"Ann").group(u"Family"));
    PhoneBook::PBRecord both = contact().name(u"Ann").group(u"Work").record();
    ASSERT_EQ(S_OK, book->updatePBRecord(oid, both));
    EXPECT_EQ(names({}), membersOf(u"Family"));
    EXPECT_EQ(names({}), membersOf(u"Work"));
    EXPECT_EQ(names({u"Ann"}), membersOf(u"Work, Family"));
}

TEST_F(Groups, TheEmptyNameHoldsWhoHasNoCategories) {
    book.add(contact().name(u"Ann").group(u"Family"));
    book.add(contact().name(u"Bob"));
    // As a program would that writes the contacts database by itself: the property is there, and empty.
    CCeDBDatabase database;
    database.open(u"Contacts Database", nullptr, nullptr);
    CCeDBRecord filed;
    filed.addProp(CCeDBProp::ofText(0x4013, u"Carl"));
    filed.addProp(CCeDBProp::ofText(0x0016, u""));
    ASSERT_NE(0u, database.add(filed));
    EXPECT_EQ(names({u"Bob"}), membersOf(u""));
}

TEST_F(Groups, StepAndDeleteLikeAScan) {
    const DWORD ann = book.add(contact().name(u"Ann").group(u"Family"));
    book.add(contact().name(u"Bob").group(u"Family"));
    const std::unique_ptr<Iterator> found(book->searchPBRecordOfPBGroup(CString(u"Family")));
    ASSERT_NE(nullptr, found);
    EXPECT_EQ(2, found->getNumItems());
    EXPECT_EQ(ann, found->getAt(0));
    EXPECT_EQ(CString(u"Family"), found->getString(1));
    EXPECT_EQ(S_OK, found->deleteAt(0, false));
    EXPECT_EQ(1, found->getNumItems());
    EXPECT_EQ(1u, book->getNumRecords());
}

TEST_F(Groups, OpenTheExtensionTable) {
    book.add(contact().name(u"Ann").group(u"Family"));
    Table* extension = book->getTable(PhoneBook::PBDBTBL_PHONEBOOKEXT);
    extension->close();
    EXPECT_EQ(names({u"Ann"}), membersOf(u"Family"));
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
    book.add(contact().name(u"Ann").group(u"Family"));
    OpenGroup group(book->getTable(0), nullptr, PhoneBook::PBDBATTR_CATEGORIES, CString(u"Family"));
    EXPECT_EQ(0, group.getNumItems());
    EXPECT_FALSE(group.isOpened());
}

TEST_F(Groups, AreScannedInACollectionAndNeverByNumber) {
    OpenGroup group(book->getTable(0), book->getTable(PhoneBook::PBDBTBL_PHONEBOOKEXT), PhoneBook::PBDBATTR_CATEGORIES,
                    CString(u"Family"));
    EXPECT_EQ(E_POINTER, group.scan(nullptr, CString(u"Family")));
    EXPECT_EQ(E_POINTER, group.scan(nullptr, CString()));
    EXPECT_EQ(E_NOTIMPL, group.scanTelNo(group.getItemCol(), CString(u"1")));
}

TEST_F(Groups, AreEmptyWithoutOpenContacts) {
    book.add(contact().name(u"Ann").group(u"Family"));
    book->closeDB();
    EXPECT_EQ(names({}), membersOf(u"Family"));
    PhoneBook::PhoneBookDBMgr fresh;
    EXPECT_EQ(nullptr, fresh.searchPBRecordOfPBGroup(CString(u"Family")));
}

}  // namespace
}  // namespace Database
