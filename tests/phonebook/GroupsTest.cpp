#include <map>
#include <memory>
#include <optional>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tests/phonebook/GroupRows.h"
#include "tests/support/Builders.h"
#include "tests/support/TemporaryStore.h"
#include "tests/support/Values.h"

namespace PhoneBook {
namespace {

using groups_test::addCategory;
using groups_test::groupsOfContacts;
using groups_test::storedGroups;
using groups_test::writeCategory;
using testing::ElementsAre;
using testing::Pair;
using testing_support::contact;
using testing_support::MemoryStoreMount;
using testing_support::OpenPhoneBook;

/// The group of that ID, and its row.
struct StoredGroup {
    DWORD rowOid = 0;
    PBGroupInfo info;
};

std::optional<StoredGroup> groupOf(OpenPhoneBook& book, DWORD id) {
    for (const auto& [oid, group] : storedGroups(book.manager())) {
        if (group.dwID == id) return StoredGroup{oid, group};
    }
    return std::nullopt;
}

/// Everything that a group can have, of that name.
PBGroupInfo complete(const WCHAR* name, DWORD id = 0) {
    PBGroupInfo info;
    info.dwID = id;
    info.strName = name;
    info.bReject = TRUE;
    info.strBellCategory = TEXT("벨소리");
    info.strBell = TEXT("ding");
    info.strSMSBell = TEXT("dong");
    info.dwFlags = 7;
    return info;
}

PBGroupInfo named(const WCHAR* name, DWORD id = 0) {
    PBGroupInfo info;
    info.dwID = id;
    info.strName = name;
    return info;
}

TEST(Groups, SettingUpMakesAGroupOfEachCategory) {
    const MemoryStoreMount store;
    addCategory(TEXT("가족"), 3);
    addCategory(TEXT("Work"), 7);
    OpenPhoneBook book;
    EXPECT_EQ(2u, book->getTable(PBDBTBL_AVAILABLEPBGROUP)->getNumRecords());
    const auto family = groupOf(book, 3);
    ASSERT_TRUE(family.has_value());
    EXPECT_EQ(CString(TEXT("가족")), family->info.strName);
    EXPECT_EQ(FALSE, family->info.bReject);
    EXPECT_EQ(7u, family->info.dwFlags);
}

TEST(Groups, SettingUpAgainKeepsSettingsAndTakesNewNames) {
    const MemoryStoreMount store;
    const CEOID category = addCategory(TEXT("Family"), 3);
    {
        OpenPhoneBook book;
        StoredGroup group = *groupOf(book, 3);
        group.info.bReject = TRUE;
        group.info.strBell = TEXT("ding");
        ASSERT_EQ(S_OK, book->updateAvailablePBGroup(group.rowOid, &group.info));
    }
    ASSERT_TRUE(writeCategory(category, TEXT("Kin"), 3));
    OpenPhoneBook again;
    EXPECT_EQ(1u, again->getTable(PBDBTBL_AVAILABLEPBGROUP)->getNumRecords());
    const auto group = groupOf(again, 3);
    EXPECT_EQ(CString(TEXT("Kin")), group->info.strName);
    EXPECT_EQ(TRUE, group->info.bReject);
    EXPECT_EQ(CString(TEXT("ding")), group->info.strBell);
}

TEST(Groups, TheNextIdentifierIsOnePastTheLargest) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    DWORD next = 0;
    EXPECT_EQ(S_OK, book->getNextAvailablePBGroupID(&next));
    EXPECT_EQ(1u, next);
    for (const DWORD id : {DWORD{7}, DWORD{3}}) {
        PBGroupInfo info = named(TEXT("G"), id);
        ASSERT_EQ(S_OK, book->insertAvailablePBGroup(&info, false));
    }
    EXPECT_EQ(S_OK, book->getNextAvailablePBGroupID(&next));
    EXPECT_EQ(8u, next);
    EXPECT_EQ(E_POINTER, book->getNextAvailablePBGroupID(nullptr));
}

TEST(Groups, ANewGroupGetsTheNextIdentifierAndItsOwnStays) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    PBGroupInfo info = named(TEXT("G"), 40);
    info.dwFlags = 1;
    EXPECT_EQ(S_OK, book->insertAvailablePBGroup(&info, true));
    EXPECT_EQ(40u, info.dwID);
    EXPECT_EQ(7u, info.dwFlags);
    EXPECT_TRUE(groupOf(book, 1).has_value());
    EXPECT_FALSE(groupOf(book, 40).has_value());
}

TEST(Groups, WritingByIdentifierInsertsOrReplaces) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    PBGroupInfo info = named(TEXT("A"), 5);
    info.strSMSBell = TEXT("dong");
    EXPECT_EQ(S_OK, book->writeAvailablePBGroup(5, &info, 0));
    PBGroupInfo renamed = named(TEXT("B"), 5);
    EXPECT_EQ(S_OK, book->writeAvailablePBGroup(5, &renamed, 1));
    EXPECT_EQ(CString(TEXT("dong")), renamed.strSMSBell) << "what the group kept";
    EXPECT_EQ(CString(TEXT("B")), groupOf(book, 5)->info.strName);
    EXPECT_EQ(CString(TEXT("dong")), groupOf(book, 5)->info.strSMSBell);
    PBGroupInfo replaced = named(TEXT("C"), 5);
    EXPECT_EQ(S_OK, book->writeAvailablePBGroup(5, &replaced, 0));
    EXPECT_EQ(CString(TEXT("")), groupOf(book, 5)->info.strSMSBell);
    EXPECT_EQ(1u, book->getTable(PBDBTBL_AVAILABLEPBGROUP)->getNumRecords());
}

TEST(Groups, AreReadByIdentifierAndByName) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    for (PBGroupInfo info : {complete(TEXT("친구"), 4), complete(TEXT("가족"), 9)})
        ASSERT_EQ(S_OK, book->insertAvailablePBGroup(&info, false));
    PBGroupInfo read;
    EXPECT_EQ(S_OK, book->getAvailablePBGroup(4, &read));
    EXPECT_EQ(complete(TEXT("친구"), 4), read);
    EXPECT_EQ(S_OK, book->queryAvailablePBGroup(TEXT("가족"), &read));
    EXPECT_EQ(complete(TEXT("가족"), 9), read);
    EXPECT_EQ(E_FAIL, book->getAvailablePBGroup(5, &read));
    EXPECT_EQ(E_FAIL, book->queryAvailablePBGroup(TEXT("가"), &read));
    EXPECT_EQ(complete(TEXT("가족"), 9), read) << "as it was";
}

TEST(Groups, OfOneNameOrIdentifierTheFirstAddedIsRead) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    for (PBGroupInfo info : {complete(TEXT("B"), 4), complete(TEXT("A"), 4), complete(TEXT("A"), 3)})
        ASSERT_EQ(S_OK, book->insertAvailablePBGroup(&info, false));
    PBGroupInfo read;
    EXPECT_EQ(S_OK, book->getAvailablePBGroup(4, &read));
    EXPECT_EQ(CString(TEXT("B")), read.strName);
    EXPECT_EQ(S_OK, book->queryAvailablePBGroup(TEXT("A"), &read));
    EXPECT_EQ(4u, read.dwID);
    EXPECT_EQ(E_FAIL, book->queryAvailablePBGroup(TEXT("a"), &read)) << "case counts";
}

TEST(Groups, NamesAreListedInTheirOrderBehindWhatTheListHas) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    CStringArray names;
    names.Add(TEXT("All"));
    EXPECT_EQ(S_OK, book->getAvailablePBGroups(names));
    EXPECT_EQ(1, names.GetSize());
    for (const WCHAR* name : {TEXT("회사"), TEXT("가족"), TEXT("학교"), TEXT("친구")}) {
        PBGroupInfo info = named(name);
        ASSERT_EQ(S_OK, book->insertAvailablePBGroup(&info, true));
    }
    EXPECT_EQ(S_OK, book->getAvailablePBGroups(names));
    EXPECT_THAT(std::vector<CString>(names.begin(), names.end()),
                ElementsAre(CString(TEXT("All")), CString(TEXT("가족")), CString(TEXT("친구")), CString(TEXT("학교")),
                            CString(TEXT("회사"))));
}

TEST(Groups, WritingByANewNameAddsTheGroupUnderTheNextIdentifier) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    PBGroupInfo first = named(TEXT("A"), 7);
    ASSERT_EQ(S_OK, book->insertAvailablePBGroup(&first, false));
    CString wanted = TEXT("친구");
    PBGroupInfo info = complete(TEXT("동무"), 40);
    info.dwFlags = 0;
    EXPECT_EQ(S_OK, book->writeAvailablePBGroup(wanted, &info));
    EXPECT_EQ(complete(TEXT("동무"), 40), info) << "its flags are 7, its ID stays";
    EXPECT_EQ(complete(TEXT("동무"), 8), groupOf(book, 8)->info) << "under the name that it brings";
}

TEST(Groups, WritingByNameRenamesTheGroupForItsMembers) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    for (PBGroupInfo info : {named(TEXT("가족"), 3), named(TEXT("B"), 4)})
        ASSERT_EQ(S_OK, book->insertAvailablePBGroup(&info, false));
    const DWORD first = book.add(contact().name(TEXT("Kim")).group(TEXT("가족")).bell(TEXT("ding")).slots(0x0102));
    const DWORD other = book.add(contact().name(TEXT("Lee")).group(TEXT("B")));
    const DWORD second = book.add(contact().name(TEXT("Park")).group(TEXT("가족")));
    const DWORD alone = book.add(contact().name(TEXT("Choi")).bell(TEXT("dong")));
    CString wanted = TEXT("가족");
    PBGroupInfo info = complete(TEXT("Kin"), 5);
    EXPECT_EQ(S_OK, book->writeAvailablePBGroup(wanted, &info));
    EXPECT_EQ(complete(TEXT("Kin"), 5), groupOf(book, 5)->info);
    EXPECT_FALSE(groupOf(book, 3).has_value()) << "the identifier was written as well";
    const std::map<DWORD, CString> expected{
        {first, TEXT("Kin")}, {other, TEXT("B")}, {second, TEXT("Kin")}, {alone, CString()}};
    EXPECT_EQ(expected, groupsOfContacts(book.manager()));
    PBRecord record;
    record.dwCITypeMask = 0x00310000;
    EXPECT_EQ(S_OK, book->queryCallerInfo(first, &record));
    EXPECT_EQ(CString(TEXT("ding")), record.strBell) << "nothing else of the row changes";
    EXPECT_EQ(0x0102u, record.dwPrivate);
}

TEST(Groups, WritingByNameWithoutANewNameTouchesNoMember) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    PBGroupInfo info = named(TEXT("A"), 3);
    ASSERT_EQ(S_OK, book->insertAvailablePBGroup(&info, false));
    book.add(contact().name(TEXT("Kim")).group(TEXT("A")));
    const auto lastChange = [&] {
        CEOIDINFOEX about = {};
        EXPECT_TRUE(CeOidGetInfoEx2(book->getTable(PBDBTBL_PHONEBOOKEXT)->getCEOID(), &about));
        return ticksOf(about.ftLastModified);
    };
    const auto before = lastChange();
    CString wanted = TEXT("A");
    info = complete(TEXT("A"), 3);
    EXPECT_EQ(S_OK, book->writeAvailablePBGroup(wanted, &info));
    EXPECT_EQ(complete(TEXT("A"), 3), groupOf(book, 3)->info);
    EXPECT_EQ(before, lastChange());
}

TEST(Groups, AGroupThatCannotBeWrittenKeepsItsMembers) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    PBGroupInfo info = named(TEXT("A"), 3);
    ASSERT_EQ(S_OK, book->insertAvailablePBGroup(&info, false));
    const DWORD member = book.add(contact().name(TEXT("Kim")).group(TEXT("A")));
    CString wanted = TEXT("A");
    info.strName = TEXT("B");
    info.strBell = CString(u'x', 40'000);  // more than a property takes
    EXPECT_EQ(E_FAIL, book->writeAvailablePBGroup(wanted, &info));
    EXPECT_EQ(E_FAIL, book->insertAvailablePBGroup(&info, true));
    EXPECT_THAT(groupsOfContacts(book.manager()), ElementsAre(Pair(member, CString(TEXT("A")))));
    EXPECT_EQ(1u, storedGroups(book.manager()).size());
}

TEST(Groups, DeletingOneLeavesItsMembersWithoutAGroup) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    for (PBGroupInfo info : {named(TEXT("A"), 3), named(TEXT("친구"), 4), named(TEXT("C"), 5)})
        ASSERT_EQ(S_OK, book->insertAvailablePBGroup(&info, false));
    const DWORD kim = book.add(contact().name(TEXT("Kim")).group(TEXT("A")));
    const DWORD lee = book.add(contact().name(TEXT("Lee")).group(TEXT("친구")));
    const DWORD park = book.add(contact().name(TEXT("Park")).group(TEXT("C")));
    EXPECT_EQ(S_OK, book->deleteAvailablePBGroup(CString(TEXT("친구"))));
    EXPECT_EQ((std::map<DWORD, CString>{{kim, TEXT("A")}, {lee, CString()}, {park, TEXT("C")}}),
              groupsOfContacts(book.manager()));
    EXPECT_EQ(S_OK, book->deleteAvailablePBGroup(3));
    EXPECT_EQ((std::map<DWORD, CString>{{kim, CString()}, {lee, CString()}, {park, TEXT("C")}}),
              groupsOfContacts(book.manager()));
    EXPECT_EQ(S_OK, book->deleteAvailablePBGroup(5)) << "the last one";
    EXPECT_TRUE(storedGroups(book.manager()).empty());
}

TEST(Groups, DeletingOneThatIsNotThereChangesNothing) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    EXPECT_EQ(S_FALSE, book->deleteAvailablePBGroup(CString(TEXT("A")))) << "there is none at all";
    EXPECT_EQ(E_FAIL, book->deleteAvailablePBGroup(1));
    PBGroupInfo info = named(TEXT("A"), 3);
    ASSERT_EQ(S_OK, book->insertAvailablePBGroup(&info, false));
    const DWORD member = book.add(contact().name(TEXT("Kim")).group(TEXT("B")));
    EXPECT_EQ(S_FALSE, book->deleteAvailablePBGroup(CString(TEXT("B"))));
    EXPECT_EQ(E_FAIL, book->deleteAvailablePBGroup(4));
    EXPECT_THAT(groupsOfContacts(book.manager()), ElementsAre(Pair(member, CString(TEXT("B")))));
    EXPECT_EQ(1u, storedGroups(book.manager()).size());
}

TEST(Groups, RejectingChangesNothingElse) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    for (PBGroupInfo info : {complete(TEXT("A"), 3), complete(TEXT("가족"), 4), complete(TEXT("친구"), 5)})
        ASSERT_EQ(S_OK, book->insertAvailablePBGroup(&info, false));
    EXPECT_EQ(S_OK, book->rejectPBGroup(TEXT("가족"), false));
    PBGroupInfo expected = complete(TEXT("가족"), 4);
    expected.bReject = FALSE;
    EXPECT_EQ(expected, groupOf(book, 4)->info);
    EXPECT_EQ(complete(TEXT("A"), 3), groupOf(book, 3)->info);
    EXPECT_EQ(complete(TEXT("친구"), 5), groupOf(book, 5)->info);
    EXPECT_EQ(S_OK, book->rejectPBGroup(TEXT("가족"), true));
    EXPECT_EQ(complete(TEXT("가족"), 4), groupOf(book, 4)->info);
    EXPECT_EQ(E_FAIL, book->rejectPBGroup(TEXT("회사"), true));
}

TEST(Groups, MembersMoveByTheExactNameOfTheirGroup) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    const DWORD kim = book.add(contact().name(TEXT("Kim")).group(TEXT("A")));
    const DWORD lee = book.add(contact().name(TEXT("Lee")).group(TEXT("a")));
    const DWORD park = book.add(contact().name(TEXT("Park")).group(TEXT("AB")));
    const DWORD choi = book.add(contact().name(TEXT("Choi")).bell(TEXT("ding")));
    EXPECT_EQ(S_OK, book->modifyPBGroupInPBRecord(TEXT("A"), TEXT("가족")));
    EXPECT_EQ(S_OK, book->modifyPBGroupInPBRecord(TEXT("B"), TEXT("친구"))) << "nobody is in it";
    EXPECT_EQ((std::map<DWORD, CString>{{kim, TEXT("가족")}, {lee, TEXT("a")}, {park, TEXT("AB")}, {choi, CString()}}),
              groupsOfContacts(book.manager()));
    EXPECT_EQ(S_OK, book->modifyPBGroupInPBRecord(CString(), TEXT("B")))
        << "who has no group is moved by the empty name";
    EXPECT_EQ((std::map<DWORD, CString>{{kim, TEXT("가족")}, {lee, TEXT("a")}, {park, TEXT("AB")}, {choi, TEXT("B")}}),
              groupsOfContacts(book.manager()));
}

TEST(Groups, ManyMembersMoveIntoAGroupThatHasSome) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    std::map<DWORD, CString> expected;
    for (int i = 0; i < 300; ++i)
        expected.emplace(book.add(contact().name(TEXT("Kim")).group(i % 3 == 0 ? TEXT("B") : TEXT("A"))), TEXT("B"));
    EXPECT_EQ(S_OK, book->modifyPBGroupInPBRecord(TEXT("A"), TEXT("B")));
    EXPECT_EQ(expected, groupsOfContacts(book.manager()));
}

TEST(Groups, WithoutTheExtensionTableAGroupGoesButItsMembersStay) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    for (PBGroupInfo info : {named(TEXT("A"), 3), named(TEXT("B"), 4), named(TEXT("C"), 5)})
        ASSERT_EQ(S_OK, book->insertAvailablePBGroup(&info, false));
    book->getTable(PBDBTBL_PHONEBOOKEXT)->close();
    EXPECT_EQ(E_FAIL, book->modifyPBGroupInPBRecord(TEXT("A"), TEXT("B")));
    EXPECT_EQ(E_FAIL, book->modifyPBGroupInPBRecord(TEXT("A"), TEXT("A"))) << "not open comes first";
    EXPECT_EQ(E_FAIL, book->deleteAvailablePBGroup(3));
    EXPECT_EQ(E_FAIL, book->deleteAvailablePBGroup(CString(TEXT("B"))));
    CString wanted = TEXT("C");
    PBGroupInfo info = named(TEXT("D"), 5);
    EXPECT_EQ(E_FAIL, book->writeAvailablePBGroup(wanted, &info));
    const auto groups = storedGroups(book.manager());
    ASSERT_EQ(1u, groups.size());
    EXPECT_EQ(CString(TEXT("D")), groups.begin()->second.strName);
}

TEST(Groups, ARowIsCopiedByPositionAndWithoutItsNameIfSoWished) {
    PhoneBookDBMgr manager;
    CCeDBRecord row;
    row.addProp(CCeDBProp::ofUI4(0x300, 3));
    row.addProp(CCeDBProp::ofText(0x301, TEXT("A")));
    row.addProp(CCeDBProp::ofBool(0x302, false));
    row.addProp(CCeDBProp::ofText(0x303, TEXT("x")));
    PBGroupInfo info = complete(TEXT("B"), 4);
    manager.RecordToPBGroupInfo(nullptr, row, &info, 0xFF);
    PBGroupInfo expected = named(TEXT("B"), 4);
    expected.strBellCategory = TEXT("x");
    EXPECT_EQ(expected, info) << "what the row lacks is emptied";
    manager.RecordToPBGroupInfo(nullptr, row, &info, 0xFE);
    EXPECT_EQ(3u, info.dwID);
    EXPECT_EQ(CString(TEXT("A")), info.strName);
}

TEST(Groups, AnswerForBadArgumentsAndClosedTables) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    EXPECT_EQ(E_POINTER, book->insertAvailablePBGroup(nullptr, true));
    EXPECT_EQ(E_POINTER, book->writeAvailablePBGroup(1, nullptr, 0));
    EXPECT_EQ(E_POINTER, book->updateAvailablePBGroup(1, nullptr));
    PBGroupInfo info = named(TEXT("A"), 1);
    EXPECT_EQ(E_FAIL, book->updateAvailablePBGroup(99'999, &info));
    CString name = TEXT("A");
    EXPECT_EQ(E_POINTER, book->writeAvailablePBGroup(name, nullptr));
    EXPECT_EQ(E_POINTER, book->getAvailablePBGroup(1, nullptr));
    EXPECT_EQ(E_POINTER, book->queryAvailablePBGroup(name, nullptr));
    EXPECT_EQ(E_FAIL, book->initAvailablePBGroup()) << "the categories are not open";
    book->closeDB();
    CStringArray names;
    EXPECT_EQ(E_FAIL, book->getAvailablePBGroups(names));
    EXPECT_EQ(E_FAIL, book->getAvailablePBGroup(1, nullptr)) << "not open comes first";
    EXPECT_EQ(E_FAIL, book->queryAvailablePBGroup(name, &info));
    EXPECT_EQ(E_FAIL, book->deleteAvailablePBGroup(1));
    EXPECT_EQ(E_FAIL, book->deleteAvailablePBGroup(name));
    EXPECT_EQ(E_FAIL, book->writeAvailablePBGroup(name, &info));
    EXPECT_EQ(E_FAIL, book->modifyPBGroupInPBRecord(name, name));
    EXPECT_EQ(E_FAIL, book->rejectPBGroup(name, true));
    DWORD next = 0;
    EXPECT_EQ(E_FAIL, book->getNextAvailablePBGroupID(&next));
    EXPECT_EQ(E_FAIL, book->insertAvailablePBGroup(&info, true));
    EXPECT_EQ(E_FAIL, book->writeAvailablePBGroup(1, &info, 0));
    EXPECT_EQ(E_FAIL, book->updateAvailablePBGroup(1, &info));
}

}  // namespace
}  // namespace PhoneBook
