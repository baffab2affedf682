#include <cstdlib>
#include <memory>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/phonebook/Following.h"
#include "tests/support/Builders.h"
#include "tests/support/MountKinds.h"

// Which notification leads to which step, and what becomes of the notifications themselves: each is freed once, which
// the address sanitizer checks.

namespace PhoneBook {
namespace {

using following::extensionRowOf;
using following::extensionRows;
using following::Group;
using following::groups;
using following::lastChangeOf;
using following::Manager;
using following::nothing;
using following::notificationOf;
using following::once;
using following::OtherProgram;
using following::Receiver;
using groups_test::addCategory;
using groups_test::deleteCategory;
using groups_test::writeCategory;
using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::contact;
using testing_support::MemoryStoreMount;
using testing_support::MountKind;
using testing_support::mountKinds;
using testing_support::OpenPhoneBook;

constexpr DWORD contacts = 0;
constexpr DWORD categories = 5;

class Dispatching : public testing::Test {
protected:
    Dispatching() {
        EXPECT_EQ(S_OK, manager.initDB(false));
        EXPECT_EQ(S_OK, manager.openDB(nullptr));
        manager.registerNotificationReceiver(&receiver);
    }

    /// Hands a notification of its own to the manager, as its window procedure does.
    LRESULT dispatch(DWORD database, UINT event, CEOID oid) {
        auto notification = std::make_unique<CENOTIFICATION>(notificationOf(oid, database, event));
        return manager.onDBNotification(0, reinterpret_cast<LPARAM>(notification.release()));
    }

    const MemoryStoreMount store;
    Receiver receiver;
    Manager manager;
    OtherProgram other;
};

TEST_F(Dispatching, LeadsAChangeOfContactsToItsStep) {
    const CEOID oid = other.addFiled(TEXT("Kim"), TEXT("Family"));
    EXPECT_EQ(0, dispatch(contacts, following::created, oid));
    EXPECT_EQ(CString(TEXT("Family")), extensionRowOf(oid)->group);
    other.file(oid, TEXT("Work"));
    EXPECT_EQ(0, dispatch(contacts, following::changed, oid));
    EXPECT_EQ(CString(), extensionRowOf(oid)->group);
    other.remove(oid);
    EXPECT_EQ(0, dispatch(contacts, following::deleted, oid));
    EXPECT_THAT(extensionRows(), IsEmpty());
    EXPECT_EQ(nothing, receiver.heard()) << "the groups are the same";
}

TEST_F(Dispatching, LeadsAChangeOfCategoriesToItsStep) {
    const CEOID category = addCategory(TEXT("Family"), 3);
    EXPECT_EQ(0, dispatch(categories, following::created, category));
    EXPECT_THAT(groups(), ElementsAre(Group(3, TEXT("Family"))));
    EXPECT_EQ(once, receiver.heard());
    ASSERT_TRUE(deleteCategory(category));
    EXPECT_EQ(0, dispatch(categories, following::deleted, category));
    EXPECT_THAT(groups(), IsEmpty());
    EXPECT_EQ(once, receiver.heard());
}

TEST_F(Dispatching, DoesNotFollowARenamedCategory) {
    const CEOID category = addCategory(TEXT("Family"), 3);
    dispatch(categories, following::created, category);
    receiver.heard();
    ASSERT_TRUE(writeCategory(category, TEXT("Relatives"), 3));
    const auto before = lastChangeOf(PBDBTBL_AVAILABLEPBGROUP);
    EXPECT_EQ(0, dispatch(categories, following::changed, category));
    EXPECT_EQ(before, lastChangeOf(PBDBTBL_AVAILABLEPBGROUP));
    EXPECT_EQ(nothing, receiver.heard());
}

TEST_F(Dispatching, PassesOverWhatIsNeitherContactNorCategoryNorKnown) {
    const CEOID oid = other.addFiled(TEXT("Kim"), TEXT("Family"));
    const CEOID category = addCategory(TEXT("Family"), 3);
    for (const DWORD database : {1u, 2u, 3u, 4u, 6u, 0xFFFFFFFFu}) {
        for (const UINT event : {following::created, following::changed, following::deleted}) {
            EXPECT_EQ(0, dispatch(database, event, oid));
            EXPECT_EQ(0, dispatch(database, event, category));
        }
    }
    for (const UINT event : {0u, 0x400u, 0x402u, 0x404u, 0x405u, 0x407u}) {
        EXPECT_EQ(0, dispatch(contacts, event, oid));
        EXPECT_EQ(0, dispatch(categories, event, category));
    }
    EXPECT_THAT(extensionRows(), IsEmpty());
    EXPECT_THAT(groups(), IsEmpty());
    EXPECT_EQ(nothing, receiver.heard());
}

TEST_F(Dispatching, TakesAStepThatFailsForDone) {
    EXPECT_EQ(0, dispatch(contacts, following::created, 12'345));
    EXPECT_EQ(0, dispatch(contacts, following::changed, 12'345));
    EXPECT_EQ(0, dispatch(contacts, following::deleted, 12'345));
    EXPECT_EQ(0, dispatch(categories, following::deleted, 12'345));
}

TEST_F(Dispatching, RefusesNoNotification) {
    EXPECT_EQ(-1, manager.onDBNotification(0, 0));
    EXPECT_EQ(-1, manager.onDBNotification(7, 0));
}

// What becomes of notifications that wait

class WaitingNotifications : public testing::TestWithParam<MountKind> {};
INSTANTIATE_TEST_SUITE_P(EitherStore, WaitingNotifications, testing::ValuesIn(mountKinds),
                         [](const auto& kind) { return std::string(kind.param.name); });

void addContactsElsewhere(int count) {
    std::thread([&] {
        const OtherProgram other;
        for (int i = 0; i < count; ++i)
            other.addFiled(TEXT("Kim"), TEXT("Family"));
    }).join();
}

/// Takes what has been written out of the store and into the queue, and follows the first of it.
void followTheFirst() {
    MSG message;
    ASSERT_TRUE(PeekMessage(&message));
    DispatchMessage(&message);
}

TEST_P(WaitingNotifications, EndWithTheWindow) {
    const std::shared_ptr<void> store = GetParam().mount();
    Manager manager;
    ASSERT_EQ(S_OK, manager.initDB(true));
    addContactsElsewhere(5);
    followTheFirst();
    EXPECT_TRUE(manager.DestroyWindow());
    following::pumpAll();
    EXPECT_EQ(1u, extensionRows().size());
}

TEST_P(WaitingNotifications, EndWithTheManager) {
    const std::shared_ptr<void> store = GetParam().mount();
    auto manager = std::make_unique<Manager>();
    ASSERT_EQ(S_OK, manager->initDB(true));
    addContactsElsewhere(5);
    followTheFirst();
    manager.reset();
    following::pumpAll();
    EXPECT_EQ(1u, extensionRows().size());
}

TEST_P(WaitingNotifications, EndWithTheirThread) {
    const std::shared_ptr<void> store = GetParam().mount();
    std::unique_ptr<Manager> manager;
    std::thread([&] {
        manager = std::make_unique<Manager>();
        ASSERT_EQ(S_OK, manager->initDB(true));
        addContactsElsewhere(5);
        followTheFirst();
    }).join();
    EXPECT_FALSE(IsWindow(manager->GetSafeHwnd()));
    following::pumpAll();
    EXPECT_EQ(1u, extensionRows().size());
}

TEST_P(WaitingNotifications, AreFollowedByAWindowThatIsMadeAgain) {
    const std::shared_ptr<void> store = GetParam().mount();
    Manager manager;
    ASSERT_EQ(S_OK, manager.initDB(true));
    addContactsElsewhere(2);
    ASSERT_TRUE(manager.DestroyWindow());
    addContactsElsewhere(3);
    ASSERT_TRUE(manager.Create());
    addContactsElsewhere(4);
    following::pumpAll();
    EXPECT_EQ(4u, extensionRows().size()) << "from the making of the second window on";
}

TEST(WaitingNotificationsOfAProcess, EndWithIt) {
    const testing_support::TemporaryFolder folder;
    const auto endWaiting = [path = (folder / "store.db").string()] {
        static Manager manager;  // goes when the thread's queue has gone
        if (!ObjectStore::mount(path, testing_support::quickOptions()) || FAILED(manager.initDB(true)) ||
            FAILED(manager.openDB(&manager)))
            std::exit(1);
        addContactsElsewhere(5);
        followTheFirst();
        std::exit(extensionRows().size() == 1 ? 0 : 2);
    };
    EXPECT_EXIT(endWaiting(), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace PhoneBook
