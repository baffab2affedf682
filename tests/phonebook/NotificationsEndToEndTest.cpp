#include <functional>
#include <future>
#include <memory>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/phonebook/Following.h"
#include "tests/phonebook/SpeedDialBuilders.h"
#include "tests/support/Builders.h"
#include "tests/support/MountKinds.h"

// A manager with a window, which waits for messages while others write.

namespace PhoneBook {
namespace {

using following::ExtensionRow;
using following::extensionRowOf;
using following::extensionRows;
using following::Group;
using following::groups;
using following::Manager;
using following::nothing;
using following::once;
using following::OtherProgram;
using following::pump;
using following::pumpAll;
using following::Receiver;
using groups_test::addCategory;
using groups_test::deleteCategory;
using groups_test::writeCategory;
using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::contact;
using testing_support::MountKind;
using testing_support::mountKinds;
using testing_support::OpenPhoneBook;

/// Does something on another thread, while this one waits for the notifications that it leads to.
void elsewhere(int notifications, const std::function<void()>& work) {
    std::thread thread(work);
    pump(notifications);
    thread.join();
}

class Watching : public testing::TestWithParam<MountKind> {
protected:
    Watching() {
        EXPECT_EQ(S_OK, manager.initDB(true));
        EXPECT_EQ(S_OK, manager.openDB(nullptr));
        manager.registerNotificationReceiver(&receiver);
    }
    ~Watching() override {
        pumpAll();
        for (UINT table = 0; table < 5; ++table)
            EXPECT_TRUE(manager.isOpen(table)) << "table " << table;
    }

    const std::shared_ptr<void> store = GetParam().mount();
    Receiver receiver;
    Manager manager;
};
INSTANTIATE_TEST_SUITE_P(EitherStore, Watching, testing::ValuesIn(mountKinds),
                         [](const auto& kind) { return std::string(kind.param.name); });

TEST_P(Watching, GivesANewContactItsRow) {
    CEOID oid = 0;
    elsewhere(1, [&] { oid = OtherProgram().addFiled(TEXT("Kim"), TEXT("Family, Work"), TEXT("010-1234")); });
    EXPECT_THAT(extensionRows(),
                ElementsAre(ExtensionRow{
                    .contact = oid, .name = TEXT("Kim"), .telNo = TEXT("0101234"), .group = TEXT("Family")}));
}

TEST_P(Watching, LeavesTheRowThatAnotherManagerMakes) {
    DWORD oid = 0;
    elsewhere(2, [&] {
        OpenPhoneBook book;
        oid = book.add(contact().name(TEXT("Kim")).group(TEXT("Family")).bell(TEXT("ding")));
        OtherProgram().addFiled(TEXT("Lee"), TEXT(""));
    });
    EXPECT_THAT(
        extensionRows(),
        ElementsAre(ExtensionRow{.contact = oid, .name = TEXT("Kim"), .group = TEXT("Family"), .bell = TEXT("ding")}));
}

TEST_P(Watching, ClearsALostGroup) {
    CEOID loses = 0;
    CEOID keeps = 0;
    elsewhere(2, [&] {
        const OtherProgram other;
        loses = other.addFiled(TEXT("Kim"), TEXT("Family"));
        keeps = other.addFiled(TEXT("Lee"), TEXT("Family"));
    });
    elsewhere(2, [&] {
        const OtherProgram other;
        other.file(loses, TEXT("Work"));
        other.file(keeps, TEXT("Work, Family"));
    });
    EXPECT_EQ(CString(), extensionRowOf(loses)->group);
    EXPECT_EQ(CString(TEXT("Family")), extensionRowOf(keeps)->group);
}

TEST_P(Watching, FreesRowAndSlotsOfAContactThatIsDeleted) {
    OpenPhoneBook book;
    const DWORD oid = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")).group(TEXT("Family")));
    SpeedDialInfo entry = speed_dial::dial(5).of(oid).mobile(TEXT("010-1"));
    ASSERT_EQ(S_OK, manager.insertSpeedDialInfo(5, &entry));
    elsewhere(1, [&] { OtherProgram().remove(oid); });
    EXPECT_THAT(extensionRows(), IsEmpty());
    EXPECT_THAT(speed_dial::rows(), IsEmpty());
    EXPECT_EQ(SpeedDialInfo(), manager.getSDialInfoCache(5));
}

TEST_P(Watching, KeepsTheGroupsInStepWithTheCategories) {
    CEOID category = 0;
    elsewhere(1, [&] { category = addCategory(TEXT("Family"), 3); });
    EXPECT_THAT(groups(), ElementsAre(Group(3, TEXT("Family"))));
    EXPECT_EQ(once, receiver.heard());

    elsewhere(1, [&] { writeCategory(category, TEXT("Relatives"), 3); });
    EXPECT_THAT(groups(), ElementsAre(Group(3, TEXT("Family"))));
    EXPECT_EQ(nothing, receiver.heard());

    elsewhere(1, [&] { deleteCategory(category); });
    EXPECT_THAT(groups(), IsEmpty());
    EXPECT_EQ(once, receiver.heard());
}

TEST_P(Watching, DoesNotFollowWhatItsOwnThreadWrites) {
    const OtherProgram own;
    const CEOID oid = own.addFiled(TEXT("Kim"), TEXT("Family"));
    const CEOID category = addCategory(TEXT("Family"), 3);
    pumpAll();
    EXPECT_THAT(extensionRows(), IsEmpty());
    EXPECT_THAT(groups(), IsEmpty());
    own.remove(oid);
    deleteCategory(category);
    pumpAll();
    EXPECT_EQ(nothing, receiver.heard());
}

TEST_P(Watching, IsNotMisledByTheNotificationsOfItsOwnTables) {
    manager.closeDB();
    ASSERT_EQ(S_OK, manager.openDB(&manager)) << "whose window then hears of the extension rows as well";
    DWORD oid = 0;
    std::thread([&] {
        OpenPhoneBook book;
        oid = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")).group(TEXT("Family")));
        SpeedDialInfo entry = speed_dial::dial(5).of(oid).mobile(TEXT("010-1"));
        EXPECT_EQ(S_OK, book->insertSpeedDialInfo(5, &entry));
        PBGroupInfo group;
        group.strName = TEXT("Family");
        EXPECT_EQ(S_OK, book->insertAvailablePBGroup(&group, true));
    }).join();
    pumpAll();
    EXPECT_THAT(extensionRows(),
                ElementsAre(ExtensionRow{
                    .contact = oid, .name = TEXT("Kim"), .telNo = TEXT("0101"), .group = TEXT("Family"), .slots = 5}));
    EXPECT_THAT(speed_dial::rows(), ElementsAre(speed_dial::Row{5, speed_dial::mobileType, TEXT("0101")}));
    std::thread([&] {
        OpenPhoneBook book;
        EXPECT_EQ(S_OK, book->deletePBRecord(oid));
    }).join();
    pumpAll();
    EXPECT_THAT(extensionRows(), IsEmpty());
    EXPECT_THAT(groups(), ElementsAre(Group(1, TEXT("Family"))));
}

TEST_P(Watching, HearsThroughAReceiverOnAnotherThread) {
    std::unique_ptr<Receiver> theirs;
    std::promise<void> ready;
    std::thread listener([&] {
        theirs = std::make_unique<Receiver>();
        bool heard = false;
        theirs->whenHeard = [&] {
            heard = true;
            PostMessage(theirs->GetSafeHwnd(), WM_APP, 0, 0);
        };
        ready.set_value();
        MSG message;
        while (!heard && GetMessage(&message))
            DispatchMessage(&message);
        EXPECT_EQ(once, theirs->heard());
        theirs.reset();
    });
    ready.get_future().wait();
    manager.registerNotificationReceiver(theirs.get());
    elsewhere(1, [] { addCategory(TEXT("Family"), 3); });
    listener.join();
    manager.registerNotificationReceiver(nullptr);
}

}  // namespace
}  // namespace PhoneBook
