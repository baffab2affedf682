#include "tessera/phonebook/model/Schemas.h"

#include <cstddef>

#include "tessera/platform/contacts/ContactProperties.h"

namespace PhoneBook {
namespace {

using Database::AttrDef;
using Database::RecordDef;
using enum CCeDBProp::enType;

constexpr WORD sortDescending = CEDB_SORT_DESCENDING;

// The spellings "Birtyday" and "SpeedDailID" are meant so: import files and stores carry them.

AttrDef contactsAttrs[] = {
    {u"Name", typeText, PBDBATTR_NAME},
    {u"Categories", typeText, PBDBATTR_CATEGORIES},
    {u"MobileTelephoneNumber", typeText, PBDBATTR_MOBILETEL},
    {u"HomeTelephoneNumber", typeText, PBDBATTR_HOMETEL},
    {u"BusinessTelephoneNumber", typeText, PBDBATTR_BUSINESSTEL},
    {u"Email1Address", typeText, 0},  // these three have no ident: meant so
    {u"Body", typeText, 0},
    {u"Birtyday", typeR8, 0},
    {u"PagerNumber", typeText, PBDBATTR_PAGER},
    {u"BusinessFaxNumber", typeText, PBDBATTR_BUSINESSFAX},
};

AttrDef phoneBookExtAttrs[] = {
    {u"PODBOID", typeUI4, 0x100}, {u"Name", typeText, 0x101},
    {u"TelNo", typeText, 0x102},  {u"Group", typeText, 0x103},
    {u"Avatar", typeText, 0x104}, {u"Photo", typeText, 0x105},
    {u"Bell", typeText, 0x106},   {u"CallingScreen", typeUI4, 0x107},
    {u"Private", typeUI4, 0x108}, {u"PrimaryTelephoneNumber", typeUI4, 0x109},
    {u"Flags", typeUI2, 0x10A},
};

AttrDef speedDialAttrs[] = {
    {u"SpeedDailID", typeI2, 0x200},
    {u"TelephoneType", typeUI4, 0x201},
    {u"TelephoneNumber", typeText, 0x202},
    {u"Flags", typeUI2, 0x203},
};

AttrDef availableGroupAttrs[] = {
    {u"ID", typeUI4, 0x300},      {u"Name", typeText, 0x301},
    {u"Reject", typeBool, 0x302}, {u"BellCategory", typeText, 0x303},
    {u"Bell", typeText, 0x304},   {u"SMSBell", typeText, 0x305},
    {u"Flags", typeUI2, 0x306},
};

AttrDef callHistoryAttrs[] = {
    {u"Timestamp", typeFileTime, 0x400, sortDescending},
    {u"CID", typeText, 0x401},
    {u"Name", typeText, 0x402},
    {u"TelType", typeUI4, 0x403},
    {u"CallingTime", typeUI4, 0x404},
    {u"CallType", typeUI4, 0x405},
    {u"CNAP", typeText, 0x406},
    {u"CDNIP", typeText, 0x407},
    {u"Hint", typeUI4, 0x408},
    {u"Flags", typeUI2, 0x409},
};

AttrDef categoriesAttrs[] = {
    {u"Name", typeText, 0x4001},    {u"ID", typeI2, 0x4002},        {u"Reserved1", typeI2, 0x4003},
    {u"Reserved2", typeI2, 0x4004}, {u"Reserved3", typeI2, 0x4005}, {u"Reserved4", typeI2, 0x4006},
};

// The birthday is a time here and a date number in the contacts table: meant so.
AttrDef rawContactsAttrs[] = {
    {u"FileAs", typeText, identOf(ContactProperty::fileAs)},
    {u"Categories", typeText, identOf(ContactProperty::categories)},
    {u"MobileTelephoneNumber", typeText, identOf(ContactProperty::mobileTelephoneNumber)},
    {u"HomeTelephoneNumber", typeText, identOf(ContactProperty::homeTelephoneNumber)},
    {u"BusinessTelephoneNumber", typeText, identOf(ContactProperty::businessTelephoneNumber)},
    {u"Email1Address", typeText, identOf(ContactProperty::email1Address)},
    {u"Body", typeText, identOf(ContactProperty::body)},
    {u"Birtyday", typeFileTime, identOf(ContactProperty::birthday)},
    {u"PagerNumber", typeText, identOf(ContactProperty::pagerNumber)},
    {u"BusinessFaxNumber", typeText, identOf(ContactProperty::businessFaxNumber)},
};

template <std::size_t count>
constexpr int countOf(const AttrDef (&)[count]) {
    return static_cast<int>(count);
}

}  // namespace

constinit const RecordDef aRecDef_[nNumTableSchemas_] = {
    {countOf(contactsAttrs), contactsAttrs},       {countOf(phoneBookExtAttrs), phoneBookExtAttrs},
    {countOf(speedDialAttrs), speedDialAttrs},     {countOf(availableGroupAttrs), availableGroupAttrs},
    {countOf(callHistoryAttrs), callHistoryAttrs}, {countOf(categoriesAttrs), categoriesAttrs},
};

constinit const RecordDef recdefPOlCRaw_{countOf(rawContactsAttrs), rawContactsAttrs};

}  // namespace PhoneBook
