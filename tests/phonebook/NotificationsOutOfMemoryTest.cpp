#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "tests/database/FailingAllocation.h"
#include "tests/phonebook/Following.h"
#include "tests/support/Builders.h"
#include "tests/support/TemporaryStore.h"

// Memory fails at each place where following a change wants some.

namespace PhoneBook {
namespace {

using following::ExtensionRow;
using following::extensionRows;
using following::Manager;
using following::notificationOf;
using following::OtherProgram;
using groups_test::addCategory;
using groups_test::deleteCategory;
using testing_support::FailingAllocation;

constexpr const WCHAR* longName = TEXT("Kim with a name that needs memory of its own");
constexpr const WCHAR* longGroup = TEXT("Friends and family, all of them");

class FollowingOutOfMemory : public testing::Test {
protected:
    FollowingOutOfMemory() { EXPECT_EQ(S_OK, manager.initDB(false)); }

    /// Follows a change with the first allocation failing, then with the second, and so on until none fails.
    /// @param prepare makes the change before each run, and answers its record
    /// @param check judges the tables after each run
    void failEachAllocation(HRESULT (PhoneBookDBMgr::*handler)(const CENOTIFICATION*),
                            const std::function<CEOID()>& prepare, const std::function<void(CEOID)>& check) {
        for (long n = 1;; ++n) {
            SCOPED_TRACE("allocation " + std::to_string(n));
            const CENOTIFICATION notification = notificationOf(prepare());
            HRESULT result = S_OK;
            bool failed = false;
            {
                const FailingAllocation failing(n);
                ASSERT_NO_THROW(result = (manager.*handler)(&notification));
                failed = failing.happened();
            }
            for (UINT table = 0; table < 6; ++table)
                EXPECT_FALSE(manager.isOpen(table)) << "table " << table;
            check(notification.oid);
            if (HasFailure()) return;
            if (failed) continue;
            EXPECT_EQ(S_OK, result) << "with all the memory that it wanted";
            EXPECT_GT(n, 1) << "nothing was allocated";
            return;
        }
    }

    const testing_support::TemporaryStore store;
    Manager manager;
    OtherProgram other;
};

TEST_F(FollowingOutOfMemory, ANewContactGetsAWholeRowOrNone) {
    failEachAllocation(
        &PhoneBookDBMgr::onCEOIDCreatedContacts,
        [&] { return other.addFiled(longName, longGroup, TEXT("010-1234-5678-9012-3456")); },
        [](CEOID oid) {
            for (const ExtensionRow& row : extensionRows()) {
                if (row.contact != oid) continue;
                EXPECT_EQ((ExtensionRow{.contact = oid,
                                        .name = longName,
                                        .telNo = TEXT("0101234567890123456"),
                                        .group = TEXT("Friends and family")}),
                          row);
            }
        });
    EXPECT_FALSE(extensionRows().empty());
}

TEST_F(FollowingOutOfMemory, AChangedContactKeepsItsRowOrLosesItsGroup) {
    failEachAllocation(
        &PhoneBookDBMgr::onCEOIDChangedContacts,
        [&] {
            const CEOID oid = other.addFiled(longName, longGroup);
            const CENOTIFICATION created = notificationOf(oid);
            EXPECT_EQ(S_OK, manager.onCEOIDCreatedContacts(&created));
            other.file(oid, TEXT("Work and other things that take memory"));
            return oid;
        },
        [](CEOID oid) {
            const auto row = following::extensionRowOf(oid);
            ASSERT_TRUE(row.has_value());
            EXPECT_EQ(CString(longName), row->name);
            EXPECT_TRUE(row->group.IsEmpty() || row->group == CString(TEXT("Friends and family"))) << *row;
        });
}

TEST_F(FollowingOutOfMemory, ACategoryComesAndGoesWithoutAnythingThrown) {
    CEOID category = 0;
    const auto followsGroup = [](CEOID) { EXPECT_LE(following::groups().size(), 1u); };
    failEachAllocation(
        &PhoneBookDBMgr::onCEOIDCreatedCategories, [&] { return category = addCategory(longGroup, 3); }, followsGroup);
    EXPECT_EQ(1u, following::groups().size());
    failEachAllocation(
        &PhoneBookDBMgr::onCEOIDRecordDeletedCategories,
        [&] {
            category = addCategory(longGroup, 3);
            const CENOTIFICATION created = notificationOf(category);
            EXPECT_EQ(S_OK, manager.onCEOIDCreatedCategories(&created));
            EXPECT_TRUE(deleteCategory(category));
            return category;
        },
        followsGroup);
    EXPECT_TRUE(following::groups().empty());
}

}  // namespace
}  // namespace PhoneBook
