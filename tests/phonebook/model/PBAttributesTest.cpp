#include <set>
#include <vector>

#include <gtest/gtest.h>

#include "tessera/phonebook/model/PBAttributes.h"
#include "tessera/phonebook/model/Schemas.h"
#include "tests/phonebook/model/PrimaryNumbers.h"

namespace PhoneBook {
namespace {

struct Row {
    int id;
    int tableID;
    int attrIdx;
    DWORD mask;
    const WCHAR* name;
};

// Written out, so that the list that everything is made from is held against something.
constexpr Row expectedRows[] = {
    {0, -1, -1, 0x0, nullptr},
    {1, 0, 0, 0x1, TEXT("Name")},
    {2, 1, 3, 0x10000, TEXT("Group")},
    {3, 0, 1, 0x2, TEXT("Categories")},
    {4, 0, 2, 0x4, TEXT("MobileTelephoneNumber")},
    {5, 0, 3, 0x8, TEXT("HomeTelephoneNumber")},
    {6, 0, 4, 0x10, TEXT("BusinessTelephoneNumber")},
    {7, 0, 5, 0x20, TEXT("Email1Address")},
    {8, 1, 4, 0x20000, TEXT("Avatar")},
    {9, 1, 5, 0x40000, TEXT("Photo")},
    {10, 1, 6, 0x100000, TEXT("Bell")},
    {11, 0, 7, 0x200, TEXT("Birtyday")},
    {12, 1, 7, 0x80000, TEXT("CallingScreen")},
    {13, 0, 8, 0x400, TEXT("PagerNumber")},
    {14, 0, 9, 0x800, TEXT("BusinessFaxNumber")},
    {15, 0, 6, 0x100, TEXT("Body")},
    {16, 1, 8, 0x200000, TEXT("Private")},
    {17, 1, 9, 0x400000, TEXT("PrimaryTelephoneNumber")},
};

TEST(PBAttributes, EachIsStoredInItsPlaceUnderItsNameAndMask) {
    ASSERT_EQ(std::size(expectedRows), static_cast<std::size_t>(nNumPBAttrs_));
    for (const Row& row : expectedRows) {
        EXPECT_EQ(getTableID(row.id), row.tableID) << row.id;
        EXPECT_EQ(getAttrIDInTable(row.id), row.attrIdx) << row.id;
        EXPECT_EQ(getCITypeMaskFromPBDBAttrID(row.id), row.mask) << row.id;
        EXPECT_EQ(getPBDBAttrID(row.tableID, row.attrIdx), row.id);
        EXPECT_EQ(getPBDBAttrIDFromCITypeFlag(row.mask), row.id);
        if (row.name != nullptr) {
            EXPECT_EQ(aRecDef_[row.tableID].getAttrName(row.attrIdx), row.name) << row.id;
        }
    }
}

TEST(PBAttributes, TheMapsHoldTheSameRows) {
    for (const Row& row : expectedRows) {
        const auto id = static_cast<std::size_t>(row.id);
        EXPECT_EQ(atmDBAttrMap_[id].nTableID, row.tableID);
        EXPECT_EQ(atmDBAttrMap_[id].nAttrIdx, row.attrIdx);
        EXPECT_EQ(adwCITypeMaskMap_[id], row.mask);
    }
}

TEST(PBAttributes, EachIsOneMemberOfTheRecordAndNoTwoShareIt) {
    PBRecord record;
    std::set<const void*> members;
    for (const PBAttribute& attribute : aPBAttribute_) {
        if (attribute.text != nullptr) members.insert(&(record.*attribute.text));
        if (attribute.number != nullptr) members.insert(&(record.*attribute.number));
        if (attribute.date != nullptr) members.insert(&(record.*attribute.date));
        const int named = (attribute.text != nullptr) + (attribute.number != nullptr) + (attribute.date != nullptr);
        EXPECT_EQ(named, attribute.id == PBDBATTR_NONE ? 0 : 1) << attribute.id;
    }
    EXPECT_EQ(members.size(), 17u);
}

TEST(PBAttributes, AMemberHasTheTypeOfItsColumn) {
    for (const PBAttribute& attribute : aPBAttribute_) {
        if (attribute.id == PBDBATTR_NONE) continue;
        const auto type = aRecDef_[attribute.place.nTableID].getAttrDef(attribute.place.nAttrIdx)->getType();
        EXPECT_EQ(attribute.text != nullptr, type == CCeDBProp::typeText) << attribute.id;
        EXPECT_EQ(attribute.number != nullptr, type == CCeDBProp::typeUI4) << attribute.id;
        EXPECT_EQ(attribute.date != nullptr, type == CCeDBProp::typeR8) << attribute.id;
    }
}

TEST(PBAttributes, APlaceWithoutAnAttributeGives18) {
    EXPECT_EQ(getPBDBAttrID(0, 10), 18);
    EXPECT_EQ(getPBDBAttrID(1, 0), 18);
    EXPECT_EQ(getPBDBAttrID(2, 0), 18);
    EXPECT_EQ(getPBDBAttrID(-1, 0), 18);
    EXPECT_EQ(getPBDBAttrID(-1, -1), 0);
    EXPECT_EQ(getPBDBAttrID(1, 3), 2);
}

TEST(PBAttributes, OnlyExactlyOneMaskBitIsAnAttribute) {
    EXPECT_EQ(getPBDBAttrIDFromCITypeFlag(0x4 | 0x8), 18);
    EXPECT_EQ(getPBDBAttrIDFromCITypeFlag(0x40), 18);
    EXPECT_EQ(getPBDBAttrIDFromCITypeFlag(0x800000), 18);
    EXPECT_EQ(getPBDBAttrIDFromCITypeFlag(0), 0);
}

TEST(PBAttributes, TelephoneNumberFlagsComeInTheirOrder) {
    const std::vector<DWORD> flags = {0x4, 0x8, 0x10, 0x400, 0x800};
    DWORD all = 0;
    for (int i = 0; i < 5; ++i) {
        const DWORD flag = flags[static_cast<std::size_t>(i)];
        EXPECT_EQ(getTelNoAttrFlag(i), flag);
        EXPECT_EQ(getTelNoAttrIdx(flag), i);
        EXPECT_TRUE(isTelNoAttr(getPBDBAttrIDFromCITypeFlag(flag)));
        all |= flag;
    }
    EXPECT_EQ(all, dwTelNoMask_);
}

TEST(PBAttributes, WhatIsNoTelephoneNumberFlagGives5) {
    EXPECT_EQ(getTelNoAttrIdx(0x20), 5);
    EXPECT_EQ(getTelNoAttrIdx(0x4 | 0x8), 5);
    EXPECT_EQ(getTelNoAttrIdx(0), 5);
}

TEST(PBAttributes, SetsHoldTheirAttributesAndNoOthers) {
    const std::set<int> hidden = {3, 8, 16, 17};
    const std::set<int> speedDial = {4, 5, 6};
    const std::set<int> telNo = {4, 5, 6, 13, 14};
    for (int id = -2; id < 25; ++id) {
        EXPECT_EQ(isHiddenAttr(id), hidden.contains(id)) << id;
        EXPECT_EQ(isSDialNoAttr(id), speedDial.contains(id)) << id;
        EXPECT_EQ(isTelNoAttr(id), telNo.contains(id)) << id;
        EXPECT_EQ(isSMSReceiverAttr(id), telNo.contains(id)) << id;
    }
}

TEST(PBAttributes, DefaultGroupsAreFamilyFriendsCompanySchool) {
    const std::vector<CString> names(aszDefPBGroupName_.begin(), aszDefPBGroupName_.end());

    EXPECT_EQ(names, (std::vector<CString>{TEXT("가족"), TEXT("친구"), TEXT("회사"), TEXT("학교")}));
}

TEST(PrimaryTelNoFlag, IsWhatTheRecordStatesEvenWhenItLacksThatNumber) {
    EXPECT_EQ(getPrimaryTelNoFlag(recordWith(0x00400000, 0x10)), 0x10u);
    EXPECT_EQ(getPrimaryTelNoFlag(recordWith(0x00400004, 0x800)), 0x800u);
}

TEST(PrimaryTelNoFlag, KeepsTheStatedWordWhole) {
    EXPECT_EQ(getPrimaryTelNoFlag(recordWith(0x00400000, 0x80000013)), 0x80000013u);
}

TEST(PrimaryTelNoFlag, IsTheFirstNumberPresentWhenNoneIsStated) {
    EXPECT_EQ(getPrimaryTelNoFlag(recordWith(0x00400408, 0)), 0x8u);
    EXPECT_EQ(getPrimaryTelNoFlag(recordWith(0x408, 0)), 0x8u);
    EXPECT_EQ(getPrimaryTelNoFlag(recordWith(0xC00, 4)), 0x400u);
    EXPECT_EQ(getPrimaryTelNoFlag(recordWith(0x00400800, 0x3)), 0x800u);
}

TEST(PrimaryTelNoFlag, IsZeroWithoutANumber) {
    EXPECT_EQ(getPrimaryTelNoFlag(recordWith(0, 4)), 0u);
    EXPECT_EQ(getPrimaryTelNoFlag(recordWith(0x007F03E3 & ~0x00400000u, 0x4)), 0u);
}

}  // namespace
}  // namespace PhoneBook
