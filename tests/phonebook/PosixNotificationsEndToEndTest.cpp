#include <functional>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/phonebook/Following.h"
#include "tests/phonebook/SpeedDialBuilders.h"
#include "tests/support/Builders.h"
#include "tests/support/Forked.h"
#include "tests/support/TemporaryStore.h"

// A manager with a window, which waits for messages while other processes write.

namespace PhoneBook {
namespace {

using following::ExtensionRow;
using following::extensionRows;
using following::Group;
using following::groups;
using following::Manager;
using following::once;
using following::OtherProgram;
using following::pump;
using following::Receiver;
using groups_test::addCategory;
using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::contact;
using testing_support::Forked;
using testing_support::Line;
using testing_support::OpenPhoneBook;

/// Another process, which works on the store once it is told to.
Forked otherProcess(const std::string& path, const std::function<bool()>& work) {
    return Forked([=](Line& parent) {
        parent.hear<char>();
        if (!ObjectStore::mount(path, testing_support::quickOptions()) || !work()) throw std::runtime_error("failed");
        ObjectStore::unmount();
    });
}

/// The contact that was filed there, by its name.
CEOID contactNamed(WStringView name) {
    const OtherProgram program;
    const auto all = program.items();
    for (int i = 1; i <= testing_support::countOf(all); ++i) {
        const ComPtr<IContact> found = testing_support::itemOf(all, i);
        if (testing_support::nameOf(found) == name) return testing_support::oidOf(found);
    }
    return 0;
}

TEST(WatchingAnotherProcess, FollowsAllThatItDoes) {
    const testing_support::TemporaryFolder folder;
    const std::string path = (folder / "store.db").string();
    Forked adding = otherProcess(path, [] {
        const OtherProgram other;
        OpenPhoneBook book;
        return other.addFiled(TEXT("Kim"), TEXT("Family, Work"), TEXT("010-1")) != 0 &&
               other.addFiled(TEXT("Lee"), TEXT("Family")) != 0 &&
               book.add(contact().name(TEXT("Park")).group(TEXT("Work")).bell(TEXT("ding"))) != 0 &&
               addCategory(TEXT("Family"), 3) != 0;
    });
    Forked changing = otherProcess(path, [] {
        const OtherProgram other;
        other.file(contactNamed(TEXT("Kim")), TEXT("Work"));
        other.remove(contactNamed(TEXT("Lee")));
        const auto all = following::openBeside(PBDBTBL_CATEGORIES);
        CCeDBProp family = CCeDBProp::ofText(0x4001, TEXT("Family"));
        return all->deleteRecord(family) == S_OK;
    });
    ASSERT_TRUE(ObjectStore::mount(path, testing_support::quickOptions()));
    {
        Receiver receiver;
        Manager manager;
        ASSERT_EQ(S_OK, manager.initDB(true));
        manager.registerNotificationReceiver(&receiver);

        adding.line().say('g');
        pump(4);
        const CEOID kim = contactNamed(TEXT("Kim"));
        const CEOID lee = contactNamed(TEXT("Lee"));
        const CEOID park = contactNamed(TEXT("Park"));
        EXPECT_THAT(
            extensionRows(),
            testing::UnorderedElementsAre(
                ExtensionRow{.contact = kim, .name = TEXT("Kim"), .telNo = TEXT("0101"), .group = TEXT("Family")},
                ExtensionRow{.contact = lee, .name = TEXT("Lee"), .group = TEXT("Family")},
                ExtensionRow{.contact = park, .name = TEXT("Park"), .group = TEXT("Work"), .bell = TEXT("ding")}));
        EXPECT_THAT(groups(), ElementsAre(Group(3, TEXT("Family"))));
        EXPECT_EQ(once, receiver.heard());

        changing.line().say('g');
        pump(3);
        EXPECT_THAT(
            extensionRows(),
            testing::UnorderedElementsAre(
                ExtensionRow{.contact = kim, .name = TEXT("Kim"), .telNo = TEXT("0101"), .group = TEXT("")},
                ExtensionRow{.contact = park, .name = TEXT("Park"), .group = TEXT("Work"), .bell = TEXT("ding")}));
        EXPECT_THAT(groups(), IsEmpty());
        EXPECT_EQ(once, receiver.heard());
    }
    ObjectStore::unmount();
    EXPECT_EQ(0, adding.wait());
    EXPECT_EQ(0, changing.wait());
}

}  // namespace
}  // namespace PhoneBook
