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
    {TEXT("Name"), typeText, PBDBATTR_NAME},
    {TEXT("Categories"), typeText, PBDBATTR_CATEGORIES},
    {TEXT("MobileTelephoneNumber"), typeText, PBDBATTR_MOBILETEL},
    {TEXT("HomeTelephoneNumber"), typeText, PBDBATTR_HOMETEL},
    {TEXT("BusinessTelephoneNumber"), typeText, PBDBATTR_BUSINESSTEL},
    {TEXT("Email1Address"), typeText, 0},  // these three have no ident: meant so
    {TEXT("Body"), typeText, 0},
    {TEXT("Birtyday"), typeR8, 0},
    {TEXT("PagerNumber"), typeText, PBDBATTR_PAGER},
    {TEXT("BusinessFaxNumber"), typeText, PBDBATTR_BUSINESSFAX},
};

AttrDef phoneBookExtAttrs[] = {
    {TEXT("PODBOID"), typeUI4, 0x100}, {TEXT("Name"), typeText, 0x101},
    {TEXT("TelNo"), typeText, 0x102},  {TEXT("Group"), typeText, 0x103},
    {TEXT("Avatar"), typeText, 0x104}, {TEXT("Photo"), typeText, 0x105},
    {TEXT("Bell"), typeText, 0x106},   {TEXT("CallingScreen"), typeUI4, 0x107},
    {TEXT("Private"), typeUI4, 0x108}, {TEXT("PrimaryTelephoneNumber"), typeUI4, 0x109},
    {TEXT("Flags"), typeUI2, 0x10A},
};

AttrDef speedDialAttrs[] = {
    {TEXT("SpeedDailID"), typeI2, 0x200},
    {TEXT("TelephoneType"), typeUI4, 0x201},
    {TEXT("TelephoneNumber"), typeText, 0x202},
    {TEXT("Flags"), typeUI2, 0x203},
};

AttrDef availableGroupAttrs[] = {
    {TEXT("ID"), typeUI4, 0x300},      {TEXT("Name"), typeText, 0x301},
    {TEXT("Reject"), typeBool, 0x302}, {TEXT("BellCategory"), typeText, 0x303},
    {TEXT("Bell"), typeText, 0x304},   {TEXT("SMSBell"), typeText, 0x305},
    {TEXT("Flags"), typeUI2, 0x306},
};

AttrDef callHistoryAttrs[] = {
    {TEXT("Timestamp"), typeFileTime, 0x400, sortDescending},
    {TEXT("CID"), typeText, 0x401},
    {TEXT("Name"), typeText, 0x402},
    {TEXT("TelType"), typeUI4, 0x403},
    {TEXT("CallingTime"), typeUI4, 0x404},
    {TEXT("CallType"), typeUI4, 0x405},
    {TEXT("CNAP"), typeText, 0x406},
    {TEXT("CDNIP"), typeText, 0x407},
    {TEXT("Hint"), typeUI4, 0x408},
    {TEXT("Flags"), typeUI2, 0x409},
};

AttrDef categoriesAttrs[] = {
    {TEXT("Name"), typeText, 0x4001},    {TEXT("ID"), typeI2, 0x4002},        {TEXT("Reserved1"), typeI2, 0x4003},
    {TEXT("Reserved2"), typeI2, 0x4004}, {TEXT("Reserved3"), typeI2, 0x4005}, {TEXT("Reserved4"), typeI2, 0x4006},
};

// The birthday is a time here and a date number in the contacts table: meant so.
AttrDef rawContactsAttrs[] = {
    {TEXT("FileAs"), typeText, identOf(ContactProperty::fileAs)},
    {TEXT("Categories"), typeText, identOf(ContactProperty::categories)},
    {TEXT("MobileTelephoneNumber"), typeText, identOf(ContactProperty::mobileTelephoneNumber)},
    {TEXT("HomeTelephoneNumber"), typeText, identOf(ContactProperty::homeTelephoneNumber)},
    {TEXT("BusinessTelephoneNumber"), typeText, identOf(ContactProperty::businessTelephoneNumber)},
    {TEXT("Email1Address"), typeText, identOf(ContactProperty::email1Address)},
    {TEXT("Body"), typeText, identOf(ContactProperty::body)},
    {TEXT("Birtyday"), typeFileTime, identOf(ContactProperty::birthday)},
    {TEXT("PagerNumber"), typeText, identOf(ContactProperty::pagerNumber)},
    {TEXT("BusinessFaxNumber"), typeText, identOf(ContactProperty::businessFaxNumber)},
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
