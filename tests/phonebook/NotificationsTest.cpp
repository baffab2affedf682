#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/phonebook/Following.h"
#include "tests/phonebook/SpeedDialBuilders.h"
#include "tests/platform/objectstore/CountingStore.h"
#include "tests/support/Builders.h"
#include "tests/support/TemporaryStore.h"

// What others did to a contact, followed step by step.

namespace PhoneBook {
namespace {

using following::ExtensionRow;
using following::extensionRowOf;
using following::extensionRows;
using following::lastChangeOf;
using following::Manager;
using following::notificationOf;
using following::OtherProgram;
using speed_dial::dial;
using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::contact;
using testing_support::MemoryStoreMount;
using testing_support::OpenPhoneBook;

/// A manager whose tables are closed, or open: as each test finds them it must leave them.
class FollowingContacts : public testing::TestWithParam<bool> {
protected:
    FollowingContacts() {
        EXPECT_EQ(S_OK, manager.initDB(false));
        if (GetParam()) {
            EXPECT_EQ(S_OK, manager.openDB(nullptr));
        }
    }
    ~FollowingContacts() override {
        for (UINT table = 0; table < 5; ++table)
            EXPECT_EQ(GetParam(), manager.isOpen(table)) << "table " << table;
        EXPECT_FALSE(manager.isOpen(PBDBTBL_CATEGORIES));
    }

    HRESULT follow(HRESULT (PhoneBookDBMgr::*handler)(const CENOTIFICATION*), CEOID oid) {
        const CENOTIFICATION notification = notificationOf(oid);
        return (manager.*handler)(&notification);
    }
    HRESULT followCreated(CEOID oid) { return follow(&PhoneBookDBMgr::onCEOIDCreatedContacts, oid); }
    HRESULT followChanged(CEOID oid) { return follow(&PhoneBookDBMgr::onCEOIDChangedContacts, oid); }
    HRESULT followDeleted(CEOID oid) { return follow(&PhoneBookDBMgr::onCEOIDRecordDeletedContacts, oid); }
    HRESULT followCategories(CEOID oid) { return follow(&PhoneBookDBMgr::onContactsCategoriesChanged, oid); }

    const MemoryStoreMount store;
    Manager manager;
    OtherProgram other;
};
INSTANTIATE_TEST_SUITE_P(Tables, FollowingContacts, testing::Bool(),
                         [](const auto& open) { return std::string(open.param ? "Open" : "Closed"); });

// A new contact

TEST_P(FollowingContacts, ANewOneWithCategoriesGetsARowWithTheFirstAsItsGroup) {
    const CEOID oid = other.addFiled(TEXT("김민수"), TEXT("Family, Work"), TEXT("010-1234-5678"));
    EXPECT_EQ(S_OK, followCreated(oid));
    EXPECT_THAT(extensionRows(),
                ElementsAre(ExtensionRow{
                    .contact = oid, .name = TEXT("김민수"), .telNo = TEXT("01012345678"), .group = TEXT("Family")}));
}

TEST_P(FollowingContacts, ANewOneGetsTheRowThatItHadGotFromAManager) {
    const CEOID oid = other.addFiled(TEXT("Kim"), TEXT("Family"), TEXT("+82 10-1234-5678"));
    EXPECT_EQ(S_OK, followCreated(oid));
    OpenPhoneBook book;
    const DWORD own = book.add(contact().name(TEXT("Kim")).group(TEXT("Family")).mobile(TEXT("+82 10-1234-5678")));

    const auto table = following::openBeside(PBDBTBL_PHONEBOOKEXT);
    CCeDBRecord theirs;
    CCeDBRecord ours;
    CCeDBProp theirKey = CCeDBProp::ofUI4(0x100, oid);
    CCeDBProp ourKey = CCeDBProp::ofUI4(0x100, own);
    ASSERT_EQ(S_OK, table->queryRecord(theirKey, &theirs));
    ASSERT_EQ(S_OK, table->queryRecord(ourKey, &ours));
    theirs.replaceProp(ourKey);
    ASSERT_EQ(ours.getNumProps(), theirs.getNumProps());
    for (int i = 0; i < ours.getNumProps(); ++i)
        EXPECT_TRUE(ours.getPropAt(i) == theirs.getPropAt(i)) << "property " << i;
}

TEST_P(FollowingContacts, ANewOneWithoutCategoriesGetsNoRow) {
    const CEOID oid = other.add(TEXT("Kim"));
    EXPECT_EQ(S_OK, followCreated(oid));
    EXPECT_THAT(extensionRows(), IsEmpty());
}

TEST_P(FollowingContacts, TheTelephoneNumberOfANewRowIsTheFirstThatTheContactHas) {
    const ComPtr<IContact> made = other.newContact();
    made->put_Categories(testing_support::bstr(TEXT("Work")).get());
    made->put_BusinessFaxNumber(testing_support::bstr(TEXT("02-999")).get());
    made->put_BusinessTelephoneNumber(testing_support::bstr(TEXT("(02) 123-4567")).get());
    ASSERT_EQ(S_OK, made->Save());
    const CEOID oid = testing_support::oidOf(made);
    EXPECT_EQ(S_OK, followCreated(oid));
    EXPECT_THAT(extensionRows(),
                ElementsAre(ExtensionRow{.contact = oid, .telNo = TEXT("021234567"), .group = TEXT("Work")}));
}

TEST_P(FollowingContacts, APagerOrAFaxIsTheTelephoneNumberOfWhoHasNoOther) {
    const ComPtr<IContact> paged = other.newContact();
    paged->put_Categories(testing_support::bstr(TEXT("Work")).get());
    paged->put_BusinessFaxNumber(testing_support::bstr(TEXT("02-999")).get());
    paged->put_PagerNumber(testing_support::bstr(TEXT("012-345")).get());
    ASSERT_EQ(S_OK, paged->Save());
    const ComPtr<IContact> faxed = other.newContact();
    faxed->put_Categories(testing_support::bstr(TEXT("Work")).get());
    faxed->put_BusinessFaxNumber(testing_support::bstr(TEXT("02-888")).get());
    ASSERT_EQ(S_OK, faxed->Save());
    EXPECT_EQ(S_OK, followCreated(testing_support::oidOf(paged)));
    EXPECT_EQ(S_OK, followCreated(testing_support::oidOf(faxed)));
    EXPECT_EQ(CString(TEXT("012345")), extensionRowOf(testing_support::oidOf(paged))->telNo);
    EXPECT_EQ(CString(TEXT("02888")), extensionRowOf(testing_support::oidOf(faxed))->telNo);
}

TEST_P(FollowingContacts, ACategoryInQuotesIsOneGroup) {
    const CEOID oid = other.addFiled(TEXT("Kim"), TEXT(" \"Work, home\" , Family"));
    EXPECT_EQ(S_OK, followCreated(oid));
    EXPECT_EQ(CString(TEXT("Work, home")), extensionRowOf(oid)->group);
}

TEST_P(FollowingContacts, AnEmptyFirstCategoryIsNoGroupButMakesARow) {
    const CEOID oid = other.addFiled(TEXT("Kim"), TEXT(",Family"));
    EXPECT_EQ(S_OK, followCreated(oid));
    EXPECT_THAT(extensionRows(), ElementsAre(ExtensionRow{.contact = oid, .name = TEXT("Kim")}));
}

TEST_P(FollowingContacts, ARowThatIsThereStaysAsItIs) {
    OpenPhoneBook book;
    const DWORD oid = book.add(contact().name(TEXT("Kim")).group(TEXT("Family")).bell(TEXT("ding")).slots(5));
    other.file(oid, TEXT("Work"));
    const auto before = lastChangeOf(PBDBTBL_PHONEBOOKEXT);
    EXPECT_EQ(S_OK, followCreated(oid));
    EXPECT_EQ(S_OK, followCreated(oid)) << "a second time";
    EXPECT_EQ(before, lastChangeOf(PBDBTBL_PHONEBOOKEXT));
    EXPECT_EQ(CString(TEXT("Family")), extensionRowOf(oid)->group);
}

TEST_P(FollowingContacts, ANewOneThatIsGoneAlreadyIsPassedOver) {
    const CEOID oid = other.addFiled(TEXT("Kim"), TEXT("Family"));
    other.remove(oid);
    EXPECT_EQ(E_FAIL, followCreated(oid));
    EXPECT_EQ(E_FAIL, followCreated(0));
    EXPECT_THAT(extensionRows(), IsEmpty());
}

TEST_P(FollowingContacts, ARecordOfAnotherDatabaseIsNoNewContact) {
    const CEOID category = groups_test::addCategory(TEXT("Family"), 3);
    EXPECT_EQ(E_FAIL, followCreated(category));
    EXPECT_THAT(extensionRows(), IsEmpty());
}

// A changed contact

TEST_P(FollowingContacts, OneThatKeepsItsGroupAmongItsCategoriesIsLeftAsItIs) {
    const CEOID oid = other.addFiled(TEXT("Kim"), TEXT("Family, Work"), TEXT("010-1"));
    ASSERT_EQ(S_OK, followCreated(oid));
    const auto before = lastChangeOf(PBDBTBL_PHONEBOOKEXT);
    for (const WCHAR* categories : {TEXT("Work, Family"), TEXT("Friends,Work,Family"), TEXT("Family")}) {
        other.file(oid, categories);
        EXPECT_EQ(S_OK, followChanged(oid));
    }
    other.rename(oid, TEXT("Lee"));
    EXPECT_EQ(S_OK, followChanged(oid));
    EXPECT_EQ(before, lastChangeOf(PBDBTBL_PHONEBOOKEXT)) << "the row was written";
    EXPECT_EQ(CString(TEXT("Family")), extensionRowOf(oid)->group);
}

TEST_P(FollowingContacts, OneThatLosesItsGroupAmongItsCategoriesHasNone) {
    for (const WCHAR* categories : {TEXT("Work"), TEXT("family"), TEXT("Family friends"), TEXT("")}) {
        const CEOID oid = other.addFiled(TEXT("Kim"), TEXT("Family, Work"));
        ASSERT_EQ(S_OK, followCreated(oid));
        other.file(oid, categories);
        EXPECT_EQ(S_OK, followChanged(oid));
        EXPECT_EQ(CString(), extensionRowOf(oid)->group) << CString(categories);
    }
}

TEST_P(FollowingContacts, AGroupThatWasLostDoesNotComeBack) {
    const CEOID oid = other.addFiled(TEXT("Kim"), TEXT("Family"));
    ASSERT_EQ(S_OK, followCreated(oid));
    other.file(oid, TEXT("Work"));
    ASSERT_EQ(S_OK, followChanged(oid));
    other.file(oid, TEXT("Family"));
    EXPECT_EQ(S_OK, followChanged(oid));
    EXPECT_EQ(CString(), extensionRowOf(oid)->group);
}

TEST_P(FollowingContacts, ALostGroupTakesNothingElseOfTheRowAlong) {
    OpenPhoneBook book;
    const DWORD oid = book.add(contact()
                                   .name(TEXT("Kim"))
                                   .mobile(TEXT("010-1"))
                                   .group(TEXT("Family"))
                                   .bell(TEXT("ding"))
                                   .slots(0x502)
                                   .primary(4));
    ExtensionRow expected = *extensionRowOf(oid);
    other.file(oid, TEXT("Work"));
    EXPECT_EQ(S_OK, followChanged(oid));
    expected.group = TEXT("");
    EXPECT_THAT(extensionRows(), ElementsAre(expected));
}

TEST_P(FollowingContacts, AChangeMakesNoRow) {
    const CEOID oid = other.add(TEXT("Kim"));
    other.file(oid, TEXT("Family"));
    EXPECT_EQ(S_OK, followChanged(oid));
    EXPECT_THAT(extensionRows(), IsEmpty());
}

TEST_P(FollowingContacts, AChangedOneThatIsGoneKeepsItsRowUntilItsEndIsFollowed) {
    const CEOID oid = other.addFiled(TEXT("Kim"), TEXT("Family"));
    ASSERT_EQ(S_OK, followCreated(oid));
    other.remove(oid);
    EXPECT_EQ(E_FAIL, followChanged(oid));
    EXPECT_EQ(CString(TEXT("Family")), extensionRowOf(oid)->group);
}

// A contact that is gone

/// The rows of the mobile number's slot 2 and the business number's slot 5, and the cache that knows of them; the
/// numbers that the rows hold are not the contact's any more.
DWORD addWithSlots(Manager& manager, OpenPhoneBook& book) {
    const DWORD oid = book.add(contact()
                                   .name(TEXT("Kim"))
                                   .mobile(TEXT("010-1"))
                                   .business(TEXT("02-2"))
                                   .group(TEXT("Family"))
                                   .slots(0x09'05'00'02));
    for (const int slot : {2, 5, 9})
        speed_dial::addRow({slot, speed_dial::mobileType, TEXT("0319999")});
    SpeedDialInfo entries[100];
    for (DWORD slot : {2, 5, 9}) {
        entries[slot] = dial(slot).of(oid).mobile(TEXT("0319999"));
        EXPECT_EQ(S_OK, manager.writeSDialInfoCache(slot, &entries[slot]));
    }
    return oid;
}

TEST_P(FollowingContacts, OneThatIsGoneFreesItsThreeSlotsWhateverNumbersTheyHold) {
    OpenPhoneBook book;
    const DWORD oid = addWithSlots(manager, book);
    other.remove(oid);
    EXPECT_EQ(S_OK, followDeleted(oid));
    EXPECT_THAT(extensionRows(), IsEmpty());
    EXPECT_THAT(speed_dial::rows(), ElementsAre(speed_dial::Row{9, speed_dial::mobileType, TEXT("0319999")}))
        << "the fourth byte is the slot of no number";
    EXPECT_EQ(SpeedDialInfo(), manager.getSDialInfoCache(2));
    EXPECT_EQ(SpeedDialInfo(), manager.getSDialInfoCache(5));
    EXPECT_EQ(9u, manager.getSDialInfoCache(9).dwSDialID);
}

TEST_P(FollowingContacts, TheFreedSlotsAreUnlinkedFromNobodyElse) {
    OpenPhoneBook book;
    const DWORD gone = book.add(contact().name(TEXT("Kim")).mobile(TEXT("010-1")).slots(2));
    const DWORD stays = book.add(contact().name(TEXT("Lee")).mobile(TEXT("010-1")).slots(3));
    speed_dial::addRow({2, speed_dial::mobileType, TEXT("0101")});
    speed_dial::addRow({3, speed_dial::mobileType, TEXT("0101")});
    other.remove(gone);
    EXPECT_EQ(S_OK, followDeleted(gone));
    EXPECT_EQ(3u, extensionRowOf(stays)->slots);
    EXPECT_THAT(speed_dial::rows(), ElementsAre(speed_dial::Row{3, speed_dial::mobileType, TEXT("0101")}));
}

TEST_P(FollowingContacts, OneThatIsGoneWithoutSlotsLeavesTheSpeedDialAlone) {
    OpenPhoneBook book;
    const DWORD oid = book.add(contact().name(TEXT("Kim")).group(TEXT("Family")).slots(0x09'00'00'00));
    speed_dial::addRow({9, speed_dial::mobileType, TEXT("0101")});
    const auto before = lastChangeOf(PBDBTBL_SPEEDDIALNO);
    other.remove(oid);
    EXPECT_EQ(S_OK, followDeleted(oid));
    EXPECT_THAT(extensionRows(), IsEmpty());
    EXPECT_EQ(before, lastChangeOf(PBDBTBL_SPEEDDIALNO));
}

TEST_P(FollowingContacts, TheLastSlotDecidesWhatAnEndAnswers) {
    OpenPhoneBook book;
    const DWORD first = book.add(contact().name(TEXT("Kim")).slots(0x03'02));
    const DWORD second = book.add(contact().name(TEXT("Lee")).slots(0x05'04));
    speed_dial::addRow({3, speed_dial::homeType, TEXT("0101")});  // slot 2 has no row
    speed_dial::addRow({4, speed_dial::mobileType, TEXT("0101")});
    other.remove(first);
    other.remove(second);
    EXPECT_EQ(S_OK, followDeleted(first));
    EXPECT_EQ(E_FAIL, followDeleted(second)) << "slot 5 has no row";
    EXPECT_THAT(extensionRows(), IsEmpty());
    EXPECT_THAT(speed_dial::rows(), IsEmpty());
}

TEST_P(FollowingContacts, OneThatIsGoneWithoutARowIsNothingToFollow) {
    const CEOID oid = other.add(TEXT("Kim"));
    other.remove(oid);
    EXPECT_EQ(E_FAIL, followDeleted(oid));
}

// A lost group that is renamed

TEST_P(FollowingContacts, TheEntryOfALostGroupIsRenamedToWhatIsLeftAndSoAreItsMembers) {
    OpenPhoneBook book;
    groups_test::addCategory(TEXT("Family"), 3);
    ASSERT_EQ(S_OK, manager.initDB(false)) << "makes the group of it";
    if (GetParam()) {
        ASSERT_EQ(S_OK, manager.openDB(nullptr));
    }
    const DWORD oid = book.add(contact().name(TEXT("Kim")).group(TEXT("Family")));
    const DWORD member = book.add(contact().name(TEXT("Lee")).group(TEXT("Family")));
    other.file(oid, TEXT("Work"));
    EXPECT_EQ(S_OK, followCategories(oid));
    EXPECT_EQ(CString(), extensionRowOf(oid)->group);
    EXPECT_EQ(CString(), extensionRowOf(member)->group);
    EXPECT_THAT(following::groups(), ElementsAre(following::Group(3, TEXT(""))));
}

TEST_P(FollowingContacts, AGroupThatIsKeptKeepsItsEntry) {
    OpenPhoneBook book;
    PBGroupInfo group;
    group.dwID = 3;
    group.strName = TEXT("Family");
    ASSERT_EQ(S_OK, book->insertAvailablePBGroup(&group, false));
    const DWORD oid = book.add(contact().name(TEXT("Kim")).group(TEXT("Family")));
    other.file(oid, TEXT("Work, Family"));
    const auto before = lastChangeOf(PBDBTBL_PHONEBOOKEXT);
    EXPECT_EQ(S_OK, followCategories(oid));
    EXPECT_EQ(before, lastChangeOf(PBDBTBL_PHONEBOOKEXT));
    EXPECT_THAT(following::groups(), ElementsAre(following::Group(3, TEXT("Family"))));
}

TEST_P(FollowingContacts, ALostGroupWithoutAnEntryGetsNone) {
    OpenPhoneBook book;
    const DWORD oid = book.add(contact().name(TEXT("Kim")).group(TEXT("Family")));
    other.file(oid, TEXT(""));
    EXPECT_EQ(S_OK, followCategories(oid));
    EXPECT_EQ(CString(), extensionRowOf(oid)->group);
    EXPECT_THAT(following::groups(), IsEmpty());
}

TEST_P(FollowingContacts, ARenamedGroupWantsAContactAndARowWithAGroup) {
    const CEOID gone = other.addFiled(TEXT("Kim"), TEXT("Family"));
    other.remove(gone);
    EXPECT_EQ(E_FAIL, followCategories(gone));
    const CEOID rowless = other.addFiled(TEXT("Lee"), TEXT("Family"));
    EXPECT_EQ(E_FAIL, followCategories(rowless));
    const auto table = following::openBeside(PBDBTBL_PHONEBOOKEXT);
    CCeDBRecord groupless;
    groupless.addProp(CCeDBProp::ofUI4(0x100, rowless));
    DWORD row = 0;
    ASSERT_EQ(S_OK, table->insertRecord(&groupless, row));
    EXPECT_EQ(E_FAIL, followCategories(rowless));
    EXPECT_EQ(1u, extensionRows().size());
}

// What every handler has in common

constexpr HRESULT (PhoneBookDBMgr::*handlers[])(const CENOTIFICATION*) = {
    &PhoneBookDBMgr::onCEOIDCreatedContacts,         &PhoneBookDBMgr::onCEOIDChangedContacts,
    &PhoneBookDBMgr::onCEOIDRecordDeletedContacts,   &PhoneBookDBMgr::onCEOIDCreatedCategories,
    &PhoneBookDBMgr::onCEOIDRecordDeletedCategories, &PhoneBookDBMgr::onContactsCategoriesChanged};

TEST_P(FollowingContacts, ANotificationIsWanted) {
    for (const auto handler : handlers)
        EXPECT_EQ(E_POINTER, (manager.*handler)(nullptr));
}

TEST(FollowingWithoutTables, FailsAndLeavesThemClosed) {
    const MemoryStoreMount store;
    Manager manager;
    const OtherProgram other;
    const CENOTIFICATION contact = notificationOf(other.addFiled(TEXT("Kim"), TEXT("Family")));
    const CENOTIFICATION category = notificationOf(groups_test::addCategory(TEXT("Family"), 3));
    EXPECT_EQ(E_FAIL, manager.onCEOIDCreatedContacts(&contact));
    EXPECT_EQ(E_FAIL, manager.onCEOIDChangedContacts(&contact));
    EXPECT_EQ(E_FAIL, manager.onCEOIDRecordDeletedContacts(&contact));
    EXPECT_EQ(E_FAIL, manager.onCEOIDCreatedCategories(&category));
    EXPECT_EQ(E_FAIL, manager.onCEOIDRecordDeletedCategories(&category));
    EXPECT_EQ(E_FAIL, manager.onContactsCategoriesChanged(&contact));
    for (UINT table = 0; table < 6; ++table)
        EXPECT_FALSE(manager.isOpen(table)) << "table " << table;
}

TEST(FollowingWithoutSpeedDial, DeletesTheRowOfAContactThatIsGoneAndFailsOverItsSlots) {
    const MemoryStoreMount store;
    Manager manager;
    const OtherProgram other;
    const auto follow = [&](const contact& built) {
        DWORD oid = 0;
        {
            OpenPhoneBook book;
            oid = book.add(built);
        }
        EXPECT_TRUE(manager.dropTable(PBDBTBL_SPEEDDIALNO));
        other.remove(oid);
        const CENOTIFICATION notification = notificationOf(oid);
        const HRESULT result = manager.onCEOIDRecordDeletedContacts(&notification);
        EXPECT_THAT(extensionRows(), IsEmpty());
        return result;
    };
    EXPECT_EQ(E_FAIL, follow(contact().name(TEXT("Kim")).slots(5)));
    EXPECT_EQ(S_OK, follow(contact().name(TEXT("Kim")).group(TEXT("Family"))));
    EXPECT_EQ(S_OK, follow(contact().name(TEXT("Kim")).slots(0x09'00'00'00))) << "the slot of no number";
}

TEST(FollowingContactsBesideAWriter, WhoeverHasNothingToDoNeedNotWaitForIt) {
    ObjectStore::Options impatient = testing_support::quickOptions();
    impatient.writerWait = std::chrono::milliseconds(1);
    const testing_support::TemporaryStore store(impatient);
    OpenPhoneBook book;
    const CENOTIFICATION notification = notificationOf(book.add(contact().name(TEXT("Kim")).group(TEXT("Family"))));
    ASSERT_EQ(S_OK, book->onCEOIDChangedContacts(&notification));  // the first look at the rows sorts them
    std::promise<void> isBusy;
    std::promise<void> mayEnd;
    std::thread writer([&] {
        const ObjectStoreBatch batch;
        isBusy.set_value();
        mayEnd.get_future().wait();
    });
    isBusy.get_future().wait();

    EXPECT_EQ(S_OK, book->onCEOIDCreatedContacts(&notification));
    EXPECT_EQ(S_OK, book->onCEOIDChangedContacts(&notification));

    mayEnd.set_value();
    writer.join();
}

TEST(FollowingContactsBesideAWriter, ARowThatTheWriterMadeMeanwhileStaysTheOnlyOne) {
    objectstore_test::CountingMount store;
    OpenPhoneBook book;
    const CENOTIFICATION notification = notificationOf(OtherProgram().addFiled(TEXT("Kim"), TEXT("Family")));
    const auto followAsWell = [&notification] {
        PhoneBookDBMgr manager;
        EXPECT_EQ(S_OK, manager.onCEOIDCreatedContacts(&notification));
    };
    store.log.beforeNextUnit = [&] { std::thread(followAsWell).join(); };

    EXPECT_EQ(S_OK, book->onCEOIDCreatedContacts(&notification));

    EXPECT_EQ(1u, extensionRows().size());
}

}  // namespace
}  // namespace PhoneBook
