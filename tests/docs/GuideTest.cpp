#include <thread>

#include <gmock/gmock.h>

#include "GuideProgram.h"
#include "tests/phonebook/GroupRows.h"
#include "tests/platform/contacts/ContactsFixture.h"
#include "tests/support/Builders.h"
#include "tests/support/TemporaryStore.h"

// The code of the guide does what the guide says of it.

namespace {

using groups_test::addCategory;
using groups_test::deleteCategory;
using groups_test::storedGroups;
using testing::IsEmpty;
using testing::SizeIs;
using testing_support::bstr;
using testing_support::contact;
using testing_support::ContactsSession;
using testing_support::MemoryStoreMount;
using testing_support::OpenPhoneBook;
using testing_support::require;

PBRecord everythingOf(PhoneBookDBMgr& phoneBook, DWORD oid) {
    PBRecord record;
    record.dwCITypeMask = ciTypeMaskOfTable(PBDBTBL_POLCONTACTS) | ciTypeMaskOfTable(PBDBTBL_PHONEBOOKEXT);
    static_cast<void>(phoneBook.queryCallerInfo(oid, &record));
    return record;
}

CString ringToneOfGroup(PhoneBookDBMgr& phoneBook, const WCHAR* name) {
    PBGroupInfo group;
    require(phoneBook.queryAvailablePBGroup(name, &group));
    return group.strBell;
}

void elsewhere(const std::function<void()>& work) {
    std::thread(work).join();
}

/// A manager that follows, beside which another thread works.
struct FollowingPhoneBook {
    FollowingPhoneBook() {
        require(phoneBook.initDB(true));
        require(phoneBook.openDB(nullptr));
    }

    MemoryStoreMount store;
    PhoneBookDBMgr phoneBook;
};

}  // namespace

TEST(Guide, OpensAStoreThatDoesNotExistYetAndAgain) {
    const testing_support::TemporaryFolder folder;
    const std::string file = (folder / "store.db").string();
    DWORD kim = 0;
    {
        PhoneBookDBMgr phoneBook;
        ASSERT_TRUE(openPhoneBook(phoneBook, file));
        ASSERT_EQ(addKim(phoneBook, kim), S_OK);
    }
    PhoneBookDBMgr phoneBook;
    EXPECT_TRUE(openPhoneBook(phoneBook, file));
    EXPECT_EQ(phoneBook.getNumRecords(), 1u);
    phoneBook.closeDB();
    ObjectStore::unmount();
}

TEST(Guide, DoesNotOpenWhatIsNoStore) {
    const testing_support::TemporaryFolder folder;
    PhoneBookDBMgr phoneBook;

    EXPECT_FALSE(openPhoneBook(phoneBook, folder.path().string()));
    EXPECT_NE(ObjectStore::errorText(), "");
}

TEST(Guide, ChangesOneFieldAndKeepsTheOthers) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    DWORD kim = 0;
    ASSERT_EQ(addKim(book.manager(), kim), S_OK);

    ASSERT_EQ(giveRingTone(book.manager(), kim, u"waltz.mid"), S_OK);

    const PBRecord record = everythingOf(book.manager(), kim);
    EXPECT_EQ(record.strName, u"김민수");
    EXPECT_EQ(record.strMobileTelephoneNumber, u"010-2345-6789");
    EXPECT_EQ(record.strGroup, u"친구");
    EXPECT_EQ(record.strBell, u"waltz.mid");
    EXPECT_EQ(record.strCategories, u"친구, 친구") << "the group is put in front once more";
}

TEST(Guide, UpdateEmptiesWhatTheMaskLacksButTheNotes) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD oid = book.add(contact().name(u"name").mobile(u"010-1").bell(u"tone"));
    const auto item = ContactsSession().contact(oid);
    require(item->put_Body(bstr(u"notes").get()));
    require(item->Save());
    PBRecord named = contact().name(u"other").group(u"g").record();
    ASSERT_EQ(book->updatePBRecord(oid, named), S_OK);

    const PBRecord record = everythingOf(book.manager(), oid);
    EXPECT_EQ(record.strName, u"other");
    EXPECT_EQ(record.strMobileTelephoneNumber, u"");
    EXPECT_EQ(record.strBell, u"");
    EXPECT_EQ(record.strBody, u"notes");
}

TEST(Guide, KnowsTheCallerByTheReducedNumberAlone) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    DWORD kim = 0;
    ASSERT_EQ(addKim(book.manager(), kim), S_OK);

    EXPECT_EQ(callerOf(book.manager(), u"+82 10-2345-6789"), u"김민수");
    EXPECT_EQ(callerOf(book.manager(), u"2345"), u"");
    EXPECT_EQ(callerOf(book.manager(), u"010-9"), u"");
}

TEST(Guide, FindsTheCallerOfANumberAsANetworkGivesIt) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    DWORD kim = 0;
    ASSERT_EQ(addKim(book.manager(), kim), S_OK);

    EXPECT_EQ(callerOf(book.manager(), u"+821023456789"), u"");
    EXPECT_EQ(callerOf(book.manager(), asReceived(u"+821023456789", u"82")), u"김민수");
    EXPECT_EQ(asReceived(u"+4420", u"82"), u"+4420");
    EXPECT_EQ(asReceived(u"0104+82", u"82"), u"0104+82");
}

TEST(Guide, SetsTheRingToneOfAGroupAndKeepsTheRest) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    ASSERT_EQ(setRingToneOfGroup(book.manager(), u"친구", u"one"), S_OK);
    require(book->rejectPBGroup(u"친구", true));

    ASSERT_EQ(setRingToneOfGroup(book.manager(), u"친구", u"two"), S_OK);

    PBGroupInfo group;
    require(book->queryAvailablePBGroup(u"친구", &group));
    EXPECT_EQ(group.strBell, u"two");
    EXPECT_TRUE(group.bReject);
    EXPECT_EQ(ringToneOfGroup(book.manager(), u"친구"), u"two");
    EXPECT_THAT(storedGroups(book.manager()), SizeIs(1));
}

TEST(Guide, ARenamedGroupIsClearedWhenSomebodyElseChangesAMember) {
    FollowingPhoneBook own;
    DWORD kim = 0;
    ASSERT_EQ(addKim(own.phoneBook, kim), S_OK);
    ASSERT_EQ(setRingToneOfGroup(own.phoneBook, u"친구", u"tone"), S_OK);
    PBGroupInfo group;
    require(own.phoneBook.queryAvailablePBGroup(u"친구", &group));
    group.strName = u"동무";
    CString before = u"친구";
    require(own.phoneBook.writeAvailablePBGroup(before, &group));
    ASSERT_EQ(everythingOf(own.phoneBook, kim).strGroup, u"동무");

    elsewhere([&] { ContactsSession().rename(kim, u"김 민수"); });
    pump();

    EXPECT_EQ(everythingOf(own.phoneBook, kim).strGroup, u"");
}

TEST(Guide, DialsFromASlotAndExchangesTwo) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    DWORD kim = 0;
    ASSERT_EQ(addKim(book.manager(), kim), S_OK);
    const DWORD lee = book.add(contact().name(u"Lee").home(u"02-1"));
    ASSERT_EQ(dialKimWith(book.manager(), 5, kim), S_OK);
    SpeedDialInfo ofLee;
    ofLee.dwOID = lee;
    ofLee.dwTelType = bit(PBDBATTR_HOMETEL);
    ofLee.strTelNo = u"02-1";
    ofLee.dwSDialID = 3;
    require(book->writeSpeedDialInfo(3, &ofLee));

    ASSERT_EQ(exchangeSlots(book.manager(), 3, 5), S_OK);

    EXPECT_EQ(nameInSlot(book.manager(), 3), u"김민수");
    EXPECT_EQ(nameInSlot(book.manager(), 5), u"Lee");
    EXPECT_EQ(everythingOf(book.manager(), kim).dwPrivate, 0x03u);
    EXPECT_EQ(everythingOf(book.manager(), lee).dwPrivate, 0x0500u);
}

TEST(Guide, LogsACallWithTheCallersName) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    DWORD kim = 0;
    ASSERT_EQ(addKim(book.manager(), kim), S_OK);

    ASSERT_EQ(logCall(book.manager(), u"+82 10-2345-6789"), S_OK);

    CallEntry newest;
    require(book->getMRUCallEntry(&newest));
    EXPECT_EQ(newest.strName, u"김민수");
    EXPECT_EQ(newest.dwTelType, bit(PBDBATTR_MOBILETEL));
}

TEST(Guide, FollowsOthersOnlyWhenPumped) {
    FollowingPhoneBook own;
    GroupList list;
    own.phoneBook.registerNotificationReceiver(&list);
    elsewhere([] { addCategory(u"choir", 40); });
    EXPECT_THAT(storedGroups(own.phoneBook), IsEmpty());

    pump();

    EXPECT_THAT(storedGroups(own.phoneBook), SizeIs(1));
    EXPECT_TRUE(list.isOutdated);
    own.phoneBook.registerNotificationReceiver(nullptr);
}

TEST(Guide, IsToldOfContactsThatOthersWriteAndNotOfItsOwn) {
    FollowingPhoneBook own;
    ContactWatch watch;
    DWORD kim = 0;
    ASSERT_EQ(addKim(own.phoneBook, kim), S_OK);
    elsewhere([&] { ContactsSession().rename(kim, u"김민서"); });

    pump();

    EXPECT_THAT(watch.changed, testing::ElementsAre(kim));
    EXPECT_EQ(callerOf(own.phoneBook, u"010-2345-6789"), u"김민서");

    watch.changed.clear();
    ASSERT_EQ(addKim(own.phoneBook, kim), S_OK);
    pump();
    EXPECT_THAT(watch.changed, IsEmpty());
}

TEST(Guide, FollowsInALoopOfItsOwnUntilToldToEnd) {
    const MemoryStoreMount store;
    constexpr UINT goodbye = WM_APP + 1;
    PhoneBookDBMgr phoneBook;
    require(phoneBook.initDB(true));
    std::thread other([&] {
        addCategory(u"choir", 40);
        PostMessage(phoneBook.GetSafeHwnd(), goodbye, 0, 0);
    });

    followUntil(goodbye);
    other.join();
    pump();  // the farewell may have overtaken the category

    require(phoneBook.openDB(nullptr));
    EXPECT_THAT(storedGroups(phoneBook), SizeIs(1));
}

TEST(Guide, ADeletedCategoryTakesItsGroupWithItOnlyWhereItIsKnown) {
    const MemoryStoreMount store;
    PhoneBookDBMgr follower;
    require(follower.createDB());
    require(follower.openDB(nullptr));
    CEOID category = 0;
    elsewhere([&] {
        category = addCategory(u"choir", 40);
        OpenPhoneBook makesTheGroup;
    });
    ASSERT_TRUE(follower.Create());  // without initDB

    elsewhere([&] { deleteCategory(category); });
    pump();

    EXPECT_THAT(storedGroups(follower), SizeIs(1));
}

TEST(Guide, AddsManyAsOneUnit) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    std::vector<PBRecord> people(3, contact().name(u"one of many").record());

    EXPECT_TRUE(addAll(book.manager(), people));
    EXPECT_EQ(book->getNumRecords(), 3u);
}
