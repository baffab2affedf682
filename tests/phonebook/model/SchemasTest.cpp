#include <vector>

#include <gtest/gtest.h>

#include "tessera/phonebook/model/Schemas.h"
#include "tessera/platform/base/Unicode.h"
#include "tessera/platform/contacts/ContactProperties.h"

namespace PhoneBook {
namespace {

struct Column {
    const WCHAR* name;
    int type;
    WORD ident;
    WORD sortFlags = 0;
};

void expectColumns(const Database::RecordDef& schema, const std::vector<Column>& columns) {
    ASSERT_EQ(schema.getNumAttrs(), static_cast<int>(columns.size()));
    for (int i = 0; i < schema.getNumAttrs(); ++i) {
        const Column& column = columns[static_cast<std::size_t>(i)];
        const Database::AttrDef& attribute = *schema.getAttrDef(i);
        EXPECT_EQ(attribute.getName(), column.name) << i;
        EXPECT_EQ(static_cast<int>(attribute.getType()), column.type) << i;
        EXPECT_EQ(attribute.getIdent(), column.ident) << i;
        EXPECT_EQ(attribute.getSortFlags(), column.sortFlags) << i;
    }
}

TEST(Schemas, NamesOfTheDatabases) {
    const std::vector<CString> names(aszTableName_.begin(), aszTableName_.end());

    EXPECT_EQ(names, (std::vector<CString>{TEXT("QZ_POlContacts"), TEXT("QZ_PhoneBookExt"), TEXT("QZ_SpeedDialNo"),
                                           TEXT("QZ_AvailablePBGroup"), TEXT("QZ_CallHistory"),
                                           TEXT("\\Categories Database")}));
    EXPECT_EQ(CString(szPBDBName_), TEXT("PhoneBookDB"));
}

TEST(Schemas, ContactsPresentTenAttributesThreeOfThemWithoutIdent) {
    expectColumns(aRecDef_[PBDBTBL_POLCONTACTS], {{TEXT("Name"), 5, 1},
                                                  {TEXT("Categories"), 5, 3},
                                                  {TEXT("MobileTelephoneNumber"), 5, 4},
                                                  {TEXT("HomeTelephoneNumber"), 5, 5},
                                                  {TEXT("BusinessTelephoneNumber"), 5, 6},
                                                  {TEXT("Email1Address"), 5, 0},
                                                  {TEXT("Body"), 5, 0},
                                                  {TEXT("Birtyday"), 8, 0},
                                                  {TEXT("PagerNumber"), 5, 13},
                                                  {TEXT("BusinessFaxNumber"), 5, 14}});
}

TEST(Schemas, TheExtensionHasElevenAttributes) {
    expectColumns(aRecDef_[PBDBTBL_PHONEBOOKEXT], {{TEXT("PODBOID"), 3, 256},
                                                   {TEXT("Name"), 5, 257},
                                                   {TEXT("TelNo"), 5, 258},
                                                   {TEXT("Group"), 5, 259},
                                                   {TEXT("Avatar"), 5, 260},
                                                   {TEXT("Photo"), 5, 261},
                                                   {TEXT("Bell"), 5, 262},
                                                   {TEXT("CallingScreen"), 3, 263},
                                                   {TEXT("Private"), 3, 264},
                                                   {TEXT("PrimaryTelephoneNumber"), 3, 265},
                                                   {TEXT("Flags"), 1, 266}});
}

TEST(Schemas, SpeedDialHasFourAttributes) {
    expectColumns(aRecDef_[PBDBTBL_SPEEDDIALNO], {{TEXT("SpeedDailID"), 0, 512},
                                                  {TEXT("TelephoneType"), 3, 513},
                                                  {TEXT("TelephoneNumber"), 5, 514},
                                                  {TEXT("Flags"), 1, 515}});
}

TEST(Schemas, AvailableGroupsHaveSevenAttributes) {
    expectColumns(aRecDef_[PBDBTBL_AVAILABLEPBGROUP], {{TEXT("ID"), 3, 768},
                                                       {TEXT("Name"), 5, 769},
                                                       {TEXT("Reject"), 7, 770},
                                                       {TEXT("BellCategory"), 5, 771},
                                                       {TEXT("Bell"), 5, 772},
                                                       {TEXT("SMSBell"), 5, 773},
                                                       {TEXT("Flags"), 1, 774}});
}

TEST(Schemas, OnlyTheCallHistorysTimestampHasSortFlags) {
    expectColumns(aRecDef_[PBDBTBL_CALLHISTORY], {{TEXT("Timestamp"), 4, 1024, 1},
                                                  {TEXT("CID"), 5, 1025},
                                                  {TEXT("Name"), 5, 1026},
                                                  {TEXT("TelType"), 3, 1027},
                                                  {TEXT("CallingTime"), 3, 1028},
                                                  {TEXT("CallType"), 3, 1029},
                                                  {TEXT("CNAP"), 5, 1030},
                                                  {TEXT("CDNIP"), 5, 1031},
                                                  {TEXT("Hint"), 3, 1032},
                                                  {TEXT("Flags"), 1, 1033}});
}

TEST(Schemas, CategoriesHaveSixAttributes) {
    expectColumns(aRecDef_[PBDBTBL_CATEGORIES], {{TEXT("Name"), 5, 16385},
                                                 {TEXT("ID"), 0, 16386},
                                                 {TEXT("Reserved1"), 0, 16387},
                                                 {TEXT("Reserved2"), 0, 16388},
                                                 {TEXT("Reserved3"), 0, 16389},
                                                 {TEXT("Reserved4"), 0, 16390}});
}

TEST(Schemas, RawContactsAreThePlatformsPropertiesInTheContactsOrder) {
    expectColumns(recdefPOlCRaw_, {{TEXT("FileAs"), 5, 16403},
                                   {TEXT("Categories"), 5, 22},
                                   {TEXT("MobileTelephoneNumber"), 5, 14876},
                                   {TEXT("HomeTelephoneNumber"), 5, 14857},
                                   {TEXT("BusinessTelephoneNumber"), 5, 14856},
                                   {TEXT("Email1Address"), 5, 16515},
                                   {TEXT("Body"), 5, 23},
                                   {TEXT("Birtyday"), 4, 16385},
                                   {TEXT("PagerNumber"), 5, 16393},
                                   {TEXT("BusinessFaxNumber"), 5, 14884}});
}

TEST(Schemas, RawContactsCarryTheIdentifiersThatTheContactsModelWrites) {
    const std::vector<CEPROPID> written = {
        ContactProperty::fileAs,
        ContactProperty::categories,
        ContactProperty::mobileTelephoneNumber,
        ContactProperty::homeTelephoneNumber,
        ContactProperty::businessTelephoneNumber,
        ContactProperty::email1Address,
        ContactProperty::body,
        ContactProperty::birthday,
        ContactProperty::pagerNumber,
        ContactProperty::businessFaxNumber,
    };
    ASSERT_EQ(recdefPOlCRaw_.getNumAttrs(), static_cast<int>(written.size()));
    for (int i = 0; i < recdefPOlCRaw_.getNumAttrs(); ++i) {
        EXPECT_EQ(recdefPOlCRaw_.getAttrDef(i)->getProp().getPropId(), written[static_cast<std::size_t>(i)]) << i;
    }
}

}  // namespace
}  // namespace PhoneBook
