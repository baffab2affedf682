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

    EXPECT_EQ(names, (std::vector<CString>{u"QZ_POlContacts", u"QZ_PhoneBookExt", u"QZ_SpeedDialNo",
                                           u"QZ_AvailablePBGroup", u"QZ_CallHistory", u"\\Categories Database"}));
    EXPECT_EQ(CString(szPBDBName_), u"PhoneBookDB");
}

TEST(Schemas, ContactsPresentTenAttributesThreeOfThemWithoutIdent) {
    expectColumns(aRecDef_[PBDBTBL_POLCONTACTS], {{u"Name", 5, 1},
                                                  {u"Categories", 5, 3},
                                                  {u"MobileTelephoneNumber", 5, 4},
                                                  {u"HomeTelephoneNumber", 5, 5},
                                                  {u"BusinessTelephoneNumber", 5, 6},
                                                  {u"Email1Address", 5, 0},
                                                  {u"Body", 5, 0},
                                                  {u"Birtyday", 8, 0},
                                                  {u"PagerNumber", 5, 13},
                                                  {u"BusinessFaxNumber", 5, 14}});
}

TEST(Schemas, TheExtensionHasElevenAttributes) {
    expectColumns(aRecDef_[PBDBTBL_PHONEBOOKEXT], {{u"PODBOID", 3, 256},
                                                   {u"Name", 5, 257},
                                                   {u"TelNo", 5, 258},
                                                   {u"Group", 5, 259},
                                                   {u"Avatar", 5, 260},
                                                   {u"Photo", 5, 261},
                                                   {u"Bell", 5, 262},
                                                   {u"CallingScreen", 3, 263},
                                                   {u"Private", 3, 264},
                                                   {u"PrimaryTelephoneNumber", 3, 265},
                                                   {u"Flags", 1, 266}});
}

TEST(Schemas, SpeedDialHasFourAttributes) {
    expectColumns(
        aRecDef_[PBDBTBL_SPEEDDIALNO],
        {{u"SpeedDailID", 0, 512}, {u"TelephoneType", 3, 513}, {u"TelephoneNumber", 5, 514}, {u"Flags", 1, 515}});
}

TEST(Schemas, AvailableGroupsHaveSevenAttributes) {
    expectColumns(aRecDef_[PBDBTBL_AVAILABLEPBGROUP], {{u"ID", 3, 768},
                                                       {u"Name", 5, 769},
                                                       {u"Reject", 7, 770},
                                                       {u"BellCategory", 5, 771},
                                                       {u"Bell", 5, 772},
                                                       {u"SMSBell", 5, 773},
                                                       {u"Flags", 1, 774}});
}

TEST(Schemas, OnlyTheCallHistorysTimestampHasSortFlags) {
    expectColumns(aRecDef_[PBDBTBL_CALLHISTORY], {{u"Timestamp", 4, 1024, 1},
                                                  {u"CID", 5, 1025},
                                                  {u"Name", 5, 1026},
                                                  {u"TelType", 3, 1027},
                                                  {u"CallingTime", 3, 1028},
                                                  {u"CallType", 3, 1029},
                                                  {u"CNAP", 5, 1030},
                                                  {u"CDNIP", 5, 1031},
                                                  {u"Hint", 3, 1032},
                                                  {u"Flags", 1, 1033}});
}

TEST(Schemas, CategoriesHaveSixAttributes) {
    expectColumns(aRecDef_[PBDBTBL_CATEGORIES], {{u"Name", 5, 16385},
                                                 {u"ID", 0, 16386},
                                                 {u"Reserved1", 0, 16387},
                                                 {u"Reserved2", 0, 16388},
                                                 {u"Reserved3", 0, 16389},
                                                 {u"Reserved4", 0, 16390}});
}

TEST(Schemas, RawContactsAreThePlatformsPropertiesInTheContactsOrder) {
    expectColumns(recdefPOlCRaw_, {{u"FileAs", 5, 16403},
                                   {u"Categories", 5, 22},
                                   {u"MobileTelephoneNumber", 5, 14876},
                                   {u"HomeTelephoneNumber", 5, 14857},
                                   {u"BusinessTelephoneNumber", 5, 14856},
                                   {u"Email1Address", 5, 16515},
                                   {u"Body", 5, 23},
                                   {u"Birtyday", 4, 16385},
                                   {u"PagerNumber", 5, 16393},
                                   {u"BusinessFaxNumber", 5, 14884}});
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
