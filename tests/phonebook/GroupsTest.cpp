#include <memory>
#include <optional>

#include <gtest/gtest.h>

#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tests/support/Builders.h"
#include "tests/support/TemporaryStore.h"
#include "tests/support/Values.h"

namespace PhoneBook {
namespace {

using testing_support::MemoryStoreMount;
using testing_support::OpenPhoneBook;

/// Adds a category as another program would.
CEOID addCategory(const WCHAR* name, std::int16_t id) {
    CCeDBDatabase categories;
    categories.open(u"\\Categories Database", nullptr, nullptr);
    CCeDBRecord row;
    row.addProp(CCeDBProp::ofText(0x4001, name));
    row.addProp(CCeDBProp::ofI2(0x4002, id));
    return categories.add(row);
}

void renameCategory(CEOID oid, const WCHAR* name) {
    CCeDBDatabase categories;
    categories.open(u"\\Categories Database", nullptr, nullptr);
    CCeDBRecord row;
    row.addProp(CCeDBProp::ofText(0x4001, name));
    categories.seekToRecord(oid);
    ASSERT_TRUE(categories.writeCurrent(row));
}

/// The group of that ID, and its row.
struct StoredGroup {
    DWORD rowOid = 0;
    PBGroupInfo info;
};

std::optional<StoredGroup> groupOf(OpenPhoneBook& book, DWORD id) {
    CCeDBProp key = CCeDBProp::ofUI4(768, id);
    StoredGroup group;
    CCeDBRecord row;
    Database::Table* groups = book->getTable(PBDBTBL_AVAILABLEPBGROUP);
    if (groups->queryRecord(key, &group.rowOid, &row) != S_OK) return std::nullopt;
    book->RecordToPBGroupInfo(groups, row, &group.info, 0);
    return group;
}

PBGroupInfo named(const WCHAR* name, DWORD id = 0) {
    PBGroupInfo info;
    info.dwID = id;
    info.strName = name;
    return info;
}

TEST(Groups, SettingUpMakesAGroupOfEachCategory) {
    const MemoryStoreMount store;
    addCategory(u"가족", 3);
    addCategory(u"Work", 7);
    OpenPhoneBook book;
    EXPECT_EQ(2u, book->getTable(PBDBTBL_AVAILABLEPBGROUP)->getNumRecords());
    const auto family = groupOf(book, 3);
    ASSERT_TRUE(family.has_value());
    EXPECT_EQ(CString(u"가족"), family->info.strName);
    EXPECT_EQ(FALSE, family->info.bReject);
    EXPECT_EQ(7u, family->info.dwFlags);
}

TEST(Groups, SettingUpAgainKeepsSettingsAndTakesNewNames) {
    const MemoryStoreMount store;
    const CEOID category = addCategory(u"Family", 3);
    {
        OpenPhoneBook book;
        StoredGroup group = *groupOf(book, 3);
        group.info.bReject = TRUE;
        group.info.strBell = u"ding";
        ASSERT_EQ(S_OK, book->updateAvailablePBGroup(group.rowOid, &group.info));
    }
    renameCategory(category, u"Kin");
    OpenPhoneBook again;
    EXPECT_EQ(1u, again->getTable(PBDBTBL_AVAILABLEPBGROUP)->getNumRecords());
    const auto group = groupOf(again, 3);
    EXPECT_EQ(CString(u"Kin"), group->info.strName);
    EXPECT_EQ(TRUE, group->info.bReject);
    EXPECT_EQ(CString(u"ding"), group->info.strBell);
}

TEST(Groups, TheNextIdentifierIsOnePastTheLargest) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    DWORD next = 0;
    EXPECT_EQ(S_OK, book->getNextAvailablePBGroupID(&next));
    EXPECT_EQ(1u, next);
    for (const DWORD id : {DWORD{7}, DWORD{3}}) {
        PBGroupInfo info = named(u"G", id);
        ASSERT_EQ(S_OK, book->insertAvailablePBGroup(&info, false));
    }
    EXPECT_EQ(S_OK, book->getNextAvailablePBGroupID(&next));
    EXPECT_EQ(8u, next);
    EXPECT_EQ(E_POINTER, book->getNextAvailablePBGroupID(nullptr));
}

TEST(Groups, ANewGroupGetsTheNextIdentifierAndItsOwnStays) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    PBGroupInfo info = named(u"G", 40);
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
    PBGroupInfo info = named(u"A", 5);
    info.strSMSBell = u"dong";
    EXPECT_EQ(S_OK, book->writeAvailablePBGroup(5, &info, 0));
    PBGroupInfo renamed = named(u"B", 5);
    EXPECT_EQ(S_OK, book->writeAvailablePBGroup(5, &renamed, 1));
    EXPECT_EQ(CString(u"dong"), renamed.strSMSBell) << "what the group kept";
    EXPECT_EQ(CString(u"B"), groupOf(book, 5)->info.strName);
    EXPECT_EQ(CString(u"dong"), groupOf(book, 5)->info.strSMSBell);
    PBGroupInfo replaced = named(u"C", 5);
    EXPECT_EQ(S_OK, book->writeAvailablePBGroup(5, &replaced, 0));
    EXPECT_EQ(CString(u""), groupOf(book, 5)->info.strSMSBell);
    EXPECT_EQ(1u, book->getTable(PBDBTBL_AVAILABLEPBGROUP)->getNumRecords());
}

TEST(Groups, AnswerForBadArgumentsAndClosedTables) {
    const MemoryStoreMount store;
    OpenPhoneBook book;
    EXPECT_EQ(E_POINTER, book->insertAvailablePBGroup(nullptr, true));
    EXPECT_EQ(E_POINTER, book->writeAvailablePBGroup(1, nullptr, 0));
    EXPECT_EQ(E_POINTER, book->updateAvailablePBGroup(1, nullptr));
    PBGroupInfo info = named(u"A", 1);
    EXPECT_EQ(E_FAIL, book->updateAvailablePBGroup(99'999, &info));
    EXPECT_EQ(E_FAIL, book->initAvailablePBGroup()) << "the categories are not open";
    book->closeDB();
    DWORD next = 0;
    EXPECT_EQ(E_FAIL, book->getNextAvailablePBGroupID(&next));
    EXPECT_EQ(E_FAIL, book->insertAvailablePBGroup(&info, true));
    EXPECT_EQ(E_FAIL, book->writeAvailablePBGroup(1, &info, 0));
    EXPECT_EQ(E_FAIL, book->updateAvailablePBGroup(1, &info));
}

}  // namespace
}  // namespace PhoneBook
