#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "tessera/phonebook/PhoneBookDBMgr.h"

namespace Tool {

/// How many UTF-16 units a field can hold.
inline constexpr int longestText = 32'735;

/// The lengths of a contact's texts, in UTF-16 units, by attribute.
using TextLengths = std::array<std::size_t, PhoneBook::nNumPBAttrs_>;

TextLengths lengthsOf(const PhoneBook::PBRecord& record);

/// Whether a contact with texts of these lengths can be stored whole: each and all of them together fit. `more` are
/// units that stand in its row besides those that the phone book puts there by itself.
bool canBeStored(const TextLengths& lengths, std::size_t more = 0);

/// Whether one row can hold these texts, beside some numbers.
bool fitARow(const std::vector<CString>& texts);

/// Whether the phone book can keep this day as a birthday. It cannot keep one before 1601, nor the two days
/// that stand for none.
bool canBeBirthday(DATE day);

/// A field of a contact as the tool names it.
struct Field {
    const char* key;    ///< In JSON.
    const char* label;  ///< For people.
    PhoneBook::PBDBAttrID attribute;

    const PhoneBook::PBAttribute& model() const { return PhoneBook::aPBAttribute_[attribute]; }
    DWORD mask() const { return model().mask; }
};

/// In the order in which they are written.
inline constexpr std::array<Field, 17> fields = {{
    {"name", "Name", PhoneBook::PBDBATTR_NAME},
    {"group", "Group", PhoneBook::PBDBATTR_GROUP},
    {"categories", "Categories", PhoneBook::PBDBATTR_CATEGORIES},
    {"mobile", "Mobile", PhoneBook::PBDBATTR_MOBILETEL},
    {"home", "Home", PhoneBook::PBDBATTR_HOMETEL},
    {"business", "Business", PhoneBook::PBDBATTR_BUSINESSTEL},
    {"email", "E-mail", PhoneBook::PBDBATTR_EMAIL},
    {"pager", "Pager", PhoneBook::PBDBATTR_PAGER},
    {"fax", "Fax", PhoneBook::PBDBATTR_BUSINESSFAX},
    {"birthday", "Birthday", PhoneBook::PBDBATTR_BIRTHDAY},
    {"body", "Body", PhoneBook::PBDBATTR_BODY},
    {"avatar", "Avatar", PhoneBook::PBDBATTR_AVATAR},
    {"photo", "Photo", PhoneBook::PBDBATTR_PHOTO},
    {"bell", "Bell", PhoneBook::PBDBATTR_BELL},
    {"callingScreen", "Calling screen", PhoneBook::PBDBATTR_CALLINGSCREEN},
    {"private", "Private", PhoneBook::PBDBATTR_PRIVATE},
    {"primary", "Primary", PhoneBook::PBDBATTR_PRIMARYTELNO},
}};

const Field& fieldOf(PhoneBook::PBDBAttrID attribute);

/// The telephone number of which `type` is the mask; null when that is none of the five.
const Field* numberField(DWORD type);

/// A contact with all its fields; the record's mask says which it has.
struct Contact {
    DWORD oid = 0;
    PhoneBook::PBRecord record;

    bool has(const Field& field) const { return (record.dwCITypeMask & field.mask()) != 0; }
};

/// The value of a field that is a text, a number or a date, for people and JSON alike; UTF-8. Empty when
/// the contact lacks it.
std::string fieldText(const Contact& contact, const Field& field);

/// A record that asks for every field.
PhoneBook::PBRecord wantingAllFields();

/// Nothing when there is no such contact.
std::optional<Contact> readContact(PhoneBook::PhoneBookDBMgr& manager, DWORD oid);

/// The contacts of an iterator, in its order. Takes the iterator, which may be null: then there are none.
std::vector<Contact> readContacts(PhoneBook::PhoneBookDBMgr& manager, Database::Iterator* taken);

/// One of the contact's five numbers reduces to just this.
bool holdsNumber(const Contact& contact, const CString& reduced);

/// A date as 1990-03-05.
std::string isoDate(DATE date);

}  // namespace Tool
