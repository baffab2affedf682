#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/phonebook/Following.h"
#include "tests/support/Builders.h"
#include "tests/support/TemporaryStore.h"

// What others did to a category, followed step by step.

namespace PhoneBook {
namespace {

using following::extensionRowOf;
using following::Group;
using following::groups;
using following::Manager;
using following::nothing;
using following::notificationOf;
using following::once;
using following::Receiver;
using groups_test::addCategory;
using groups_test::deleteCategory;
using groups_test::writeCategory;
using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::contact;
using testing_support::MemoryStoreMount;
using testing_support::OpenPhoneBook;

/// A manager with a receiver, and its tables closed, or open: as each test finds them it must leave them.
class FollowingCategories : public testing::TestWithParam<bool> {
protected:
    FollowingCategories() {
        setUp();
        manager.registerNotificationReceiver(&receiver);
        receiver.whenHeard = [this] { expectTablesAsFound(); };
    }
    ~FollowingCategories() override { expectTablesAsFound(); }

    /// Makes the group of each category that there is, as when a program starts.
    void setUp() {
        manager.closeDB();
        EXPECT_EQ(S_OK, manager.initDB(false));
        if (GetParam()) {
            EXPECT_EQ(S_OK, manager.openDB(nullptr));
        }
    }
    void expectTablesAsFound() {
        for (UINT table = 0; table < 5; ++table)
            EXPECT_EQ(GetParam(), manager.isOpen(table)) << "table " << table;
        EXPECT_FALSE(manager.isOpen(PBDBTBL_CATEGORIES));
    }

    HRESULT followCreated(CEOID oid) {
        const CENOTIFICATION notification = notificationOf(oid);
        return manager.onCEOIDCreatedCategories(&notification);
    }
    HRESULT followDeleted(CEOID oid) {
        const CENOTIFICATION notification = notificationOf(oid);
        return manager.onCEOIDRecordDeletedCategories(&notification);
    }

    const MemoryStoreMount store;
    Receiver receiver;
    Manager manager;
};
INSTANTIATE_TEST_SUITE_P(Tables, FollowingCategories, testing::Bool(),
                         [](const auto& open) { return std::string(open.param ? "Open" : "Closed"); });

// A new category

TEST_P(FollowingCategories, ANewOneMakesAGroupOfItsIdAndNameAndTheReceiverHears) {
    const CEOID category = addCategory(TEXT("가족"), 3);
    EXPECT_EQ(S_OK, followCreated(category));
    EXPECT_THAT(groups(), ElementsAre(Group(3, TEXT("가족"))));
    EXPECT_EQ(once, receiver.heard());
}

TEST_P(FollowingCategories, ANewOneRenamesTheGroupOfItsIdWhichKeepsItsSettings) {
    OpenPhoneBook book;
    PBGroupInfo group;
    group.dwID = 3;
    group.strName = TEXT("Family");
    group.bReject = TRUE;
    group.strBell = TEXT("ding");
    group.strSMSBell = TEXT("dong");
    group.strBellCategory = TEXT("bells");
    ASSERT_EQ(S_OK, book->insertAvailablePBGroup(&group, false));
    EXPECT_EQ(S_OK, followCreated(addCategory(TEXT("Relatives"), 3)));
    group.strName = TEXT("Relatives");
    PBGroupInfo found;
    EXPECT_EQ(S_OK, book->getAvailablePBGroup(3, &found));
    EXPECT_EQ(group, found);
    EXPECT_EQ(1u, groups().size());
    EXPECT_EQ(once, receiver.heard());
}

TEST_P(FollowingCategories, FollowedTwiceANewOneStillIsOneGroup) {
    const CEOID category = addCategory(TEXT("Family"), 3);
    EXPECT_EQ(S_OK, followCreated(category));
    EXPECT_EQ(S_OK, followCreated(category));
    EXPECT_THAT(groups(), ElementsAre(Group(3, TEXT("Family"))));
}

TEST_P(FollowingCategories, ANewOneThatIsGoneAlreadyIsNoFailureAndNobodyHears) {
    const CEOID category = addCategory(TEXT("Family"), 3);
    ASSERT_TRUE(deleteCategory(category));
    EXPECT_EQ(S_OK, followCreated(category));
    EXPECT_EQ(S_OK, followCreated(0));
    EXPECT_THAT(groups(), IsEmpty());
    EXPECT_EQ(nothing, receiver.heard());
    EXPECT_EQ(E_FAIL, followDeleted(category)) << "no group was made of it";
    EXPECT_EQ(nothing, receiver.heard());
}

TEST_P(FollowingCategories, ANewOneWithoutAnIdIsGroup0AndANegativeIdIsExtended) {
    const auto table = following::openBeside(PBDBTBL_CATEGORIES);
    CCeDBRecord idless;
    idless.addProp(CCeDBProp::ofText(0x4001, TEXT("Family")));
    DWORD category = 0;
    ASSERT_EQ(S_OK, table->insertRecord(&idless, category));
    EXPECT_EQ(S_OK, followCreated(category));
    EXPECT_EQ(S_OK, followCreated(addCategory(TEXT("Work"), -2)));
    EXPECT_THAT(groups(), ElementsAre(Group(0, TEXT("Family")), Group(0xFFFFFFFE, TEXT("Work"))));
}

TEST_P(FollowingCategories, ANewOneNeedsNoReceiver) {
    manager.registerNotificationReceiver(nullptr);
    EXPECT_EQ(S_OK, followCreated(addCategory(TEXT("Family"), 3)));
    manager.registerNotificationReceiver(&receiver);
    receiver.DestroyWindow();
    EXPECT_EQ(S_OK, followCreated(addCategory(TEXT("Work"), 4)));
    EXPECT_EQ(nothing, receiver.heard());
}

// A category that is gone

TEST_P(FollowingCategories, OneThatIsGoneTakesItsGroupAlongAndTheReceiverHears) {
    const CEOID category = addCategory(TEXT("Family"), 3);
    addCategory(TEXT("Work"), 4);
    setUp();
    OpenPhoneBook book;
    const DWORD member = book.add(contact().name(TEXT("Kim")).group(TEXT("Family")));
    const DWORD colleague = book.add(contact().name(TEXT("Lee")).group(TEXT("Work")));
    ASSERT_TRUE(deleteCategory(category));
    EXPECT_EQ(S_OK, followDeleted(category));
    EXPECT_THAT(groups(), ElementsAre(Group(4, TEXT("Work"))));
    EXPECT_EQ(CString(), extensionRowOf(member)->group);
    EXPECT_EQ(CString(TEXT("Work")), extensionRowOf(colleague)->group);
    EXPECT_EQ(once, receiver.heard());
}

TEST_P(FollowingCategories, OneThatCameAndWentLeavesNoGroup) {
    const CEOID category = addCategory(TEXT("Family"), 3);
    ASSERT_EQ(S_OK, followCreated(category));
    ASSERT_TRUE(deleteCategory(category));
    ASSERT_EQ(once, receiver.heard());
    EXPECT_EQ(S_OK, followDeleted(category));
    EXPECT_THAT(groups(), IsEmpty());
    EXPECT_EQ(once, receiver.heard());
    EXPECT_EQ(E_FAIL, followDeleted(category)) << "it is forgotten";
    EXPECT_EQ(nothing, receiver.heard());
}

TEST_P(FollowingCategories, OneThatThisManagerNeverMetIsNotFollowed) {
    const CEOID category = addCategory(TEXT("Family"), 3);
    {
        const OpenPhoneBook another;  // makes the group
    }
    ASSERT_TRUE(deleteCategory(category));
    EXPECT_EQ(E_FAIL, followDeleted(category));
    EXPECT_THAT(groups(), ElementsAre(Group(3, TEXT("Family"))));
    EXPECT_EQ(nothing, receiver.heard());
}

TEST_P(FollowingCategories, OneWhoseGroupIsGoneAlreadyFailsAndTheReceiverHears) {
    const CEOID category = addCategory(TEXT("Family"), 3);
    ASSERT_EQ(S_OK, followCreated(category));
    receiver.heard();
    OpenPhoneBook book;
    ASSERT_EQ(S_OK, book->deleteAvailablePBGroup(3));
    EXPECT_EQ(E_FAIL, followDeleted(category));
    EXPECT_EQ(once, receiver.heard());
    EXPECT_EQ(E_FAIL, followDeleted(category)) << "it is not forgotten";
    EXPECT_EQ(once, receiver.heard());
}

TEST_P(FollowingCategories, TheReceiverFindsTheGroupsAsTheyAreNow) {
    std::vector<std::vector<Group>> found;
    receiver.whenHeard = [&] { found.push_back(groups()); };
    const CEOID category = addCategory(TEXT("Family"), 3);
    EXPECT_EQ(S_OK, followCreated(category));
    EXPECT_EQ(S_OK, followDeleted(category));
    EXPECT_THAT(found, ElementsAre(ElementsAre(Group(3, TEXT("Family"))), IsEmpty()));
}

TEST(FollowingCategoriesWithoutGroups, FailsAndTheReceiverHearsOfANewOne) {
    const MemoryStoreMount store;
    Receiver receiver;
    Manager manager;
    ASSERT_EQ(S_OK, manager.initDB(false));
    manager.registerNotificationReceiver(&receiver);
    ASSERT_TRUE(manager.dropTable(PBDBTBL_AVAILABLEPBGROUP));
    const CEOID category = addCategory(TEXT("Family"), 3);
    const CENOTIFICATION notification = notificationOf(category);
    EXPECT_EQ(E_FAIL, manager.onCEOIDCreatedCategories(&notification));
    EXPECT_EQ(once, receiver.heard());
    EXPECT_EQ(E_FAIL, manager.onCEOIDRecordDeletedCategories(&notification));
    ASSERT_TRUE(manager.createTable(PBDBTBL_AVAILABLEPBGROUP));
    EXPECT_EQ(E_FAIL, manager.onCEOIDRecordDeletedCategories(&notification)) << "no group was made of it";
    EXPECT_EQ(nothing, receiver.heard());
}

TEST(FollowingWithoutCategories, FailsAndNobodyHears) {
    const MemoryStoreMount store;
    Receiver receiver;
    Manager manager;
    ASSERT_EQ(S_OK, manager.initDB(false));
    manager.registerNotificationReceiver(&receiver);
    const CEOID category = addCategory(TEXT("Family"), 3);
    ASSERT_TRUE(manager.dropTable(PBDBTBL_CATEGORIES));
    const CENOTIFICATION notification = notificationOf(category);
    EXPECT_EQ(E_FAIL, manager.onCEOIDCreatedCategories(&notification));
    EXPECT_EQ(nothing, receiver.heard());
}

}  // namespace
}  // namespace PhoneBook
