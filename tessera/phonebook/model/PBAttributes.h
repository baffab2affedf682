#pragma once

#include <array>
#include <cstddef>

#include "tessera/Export.h"
#include "tessera/phonebook/model/PBRecord.h"

namespace PhoneBook {

/// The tables. The first five are managed; the last is the platform's.
enum PBDBTableID : int {
    PBDBTBL_POLCONTACTS = 0,       ///< The platform's contacts.
    PBDBTBL_PHONEBOOKEXT = 1,      ///< What the phone book adds to a contact: a row each.
    PBDBTBL_SPEEDDIALNO = 2,       ///< The speed-dial slots.
    PBDBTBL_AVAILABLEPBGROUP = 3,  ///< The groups.
    PBDBTBL_CALLHISTORY = 4,       ///< The calls.
    PBDBTBL_CATEGORIES = 5,        ///< The platform's contact categories.
};
inline constexpr int nNumTables_ = 5;        ///< How many tables are managed.
inline constexpr int nNumTableSchemas_ = 6;  ///< How many tables are known.

/// The phone book attributes: the fields of a PBRecord, numbered flat over the tables they are stored in.
enum PBDBAttrID : int {
    PBDBATTR_NONE = 0,            ///< No attribute.
    PBDBATTR_NAME = 1,            ///< The display name.
    PBDBATTR_GROUP = 2,           ///< The group.
    PBDBATTR_CATEGORIES = 3,      ///< The contact's categories.
    PBDBATTR_MOBILETEL = 4,       ///< The mobile number.
    PBDBATTR_HOMETEL = 5,         ///< The number at home.
    PBDBATTR_BUSINESSTEL = 6,     ///< The number at work.
    PBDBATTR_EMAIL = 7,           ///< The e-mail address.
    PBDBATTR_AVATAR = 8,          ///< The name of an avatar.
    PBDBATTR_PHOTO = 9,           ///< The name of a photo.
    PBDBATTR_BELL = 10,           ///< The name of a ring tone.
    PBDBATTR_BIRTHDAY = 11,       ///< The birthday.
    PBDBATTR_CALLINGSCREEN = 12,  ///< The number of a calling screen.
    PBDBATTR_PAGER = 13,          ///< The pager number.
    PBDBATTR_BUSINESSFAX = 14,    ///< The fax number at work.
    PBDBATTR_BODY = 15,           ///< The notes.
    PBDBATTR_PRIVATE = 16,        ///< The speed-dial slots of the numbers.
    PBDBATTR_PRIMARYTELNO = 17,   ///< Which number is the primary one.
};
inline constexpr int nNumPBAttrs_ = 18;  ///< How many attributes there are, PBDBATTR_NONE included.

/// A row of the attribute map: where an attribute is stored.
struct TupleMapEntry {
    LONG nTableID;  ///< A PBDBTableID; -1 for PBDBATTR_NONE.
    LONG nAttrIdx;  ///< The attribute's index in that table.
};

/// The sets that an attribute belongs to.
enum PBAttributeClass : unsigned {
    attrPlain = 0,      ///< None of the sets.
    attrHidden = 1,     ///< Not offered to people.
    attrTelNo = 2,      ///< A telephone number, and so one that messages can be sent to.
    attrSpeedDial = 4,  ///< A number that can have a speed-dial slot.
};

/// Everything there is to know of one attribute. Of the three members one is set: the field of the record.
struct PBAttribute {
    PBDBAttrID id;                      ///< Its place in the list.
    TupleMapEntry place;                ///< Where it is stored.
    DWORD mask;                         ///< Its bit in PBRecord::dwCITypeMask.
    unsigned classes;                   ///< A sum of PBAttributeClass.
    CString PBRecord::*text = nullptr;  ///< The field of a text.
    DWORD PBRecord::*number = nullptr;  ///< The field of a number.
    DATE PBRecord::*date = nullptr;     ///< The field of a date.
};

/// The attributes by ID: the one list from which the map, the masks, the sets and the field texts come.
inline constexpr std::array<PBAttribute, nNumPBAttrs_> aPBAttribute_ = {{
    {.id = PBDBATTR_NONE, .place = {-1, -1}, .mask = 0, .classes = attrPlain},
    {.id = PBDBATTR_NAME,
     .place = {PBDBTBL_POLCONTACTS, 0},
     .mask = 0x1,
     .classes = attrPlain,
     .text = &PBRecord::strName},
    {.id = PBDBATTR_GROUP,
     .place = {PBDBTBL_PHONEBOOKEXT, 3},
     .mask = 0x10000,
     .classes = attrPlain,
     .text = &PBRecord::strGroup},
    {.id = PBDBATTR_CATEGORIES,
     .place = {PBDBTBL_POLCONTACTS, 1},
     .mask = 0x2,
     .classes = attrHidden,
     .text = &PBRecord::strCategories},
    {.id = PBDBATTR_MOBILETEL,
     .place = {PBDBTBL_POLCONTACTS, 2},
     .mask = 0x4,
     .classes = attrTelNo | attrSpeedDial,
     .text = &PBRecord::strMobileTelephoneNumber},
    {.id = PBDBATTR_HOMETEL,
     .place = {PBDBTBL_POLCONTACTS, 3},
     .mask = 0x8,
     .classes = attrTelNo | attrSpeedDial,
     .text = &PBRecord::strHomeTelephoneNumber},
    {.id = PBDBATTR_BUSINESSTEL,
     .place = {PBDBTBL_POLCONTACTS, 4},
     .mask = 0x10,
     .classes = attrTelNo | attrSpeedDial,
     .text = &PBRecord::strBusinessTelephoneNumber},
    {.id = PBDBATTR_EMAIL,
     .place = {PBDBTBL_POLCONTACTS, 5},
     .mask = 0x20,
     .classes = attrPlain,
     .text = &PBRecord::strEmail1Address},
    {.id = PBDBATTR_AVATAR,
     .place = {PBDBTBL_PHONEBOOKEXT, 4},
     .mask = 0x20000,
     .classes = attrHidden,
     .text = &PBRecord::strAvatar},
    {.id = PBDBATTR_PHOTO,
     .place = {PBDBTBL_PHONEBOOKEXT, 5},
     .mask = 0x40000,
     .classes = attrPlain,
     .text = &PBRecord::strPhoto},
    {.id = PBDBATTR_BELL,
     .place = {PBDBTBL_PHONEBOOKEXT, 6},
     .mask = 0x100000,
     .classes = attrPlain,
     .text = &PBRecord::strBell},
    {.id = PBDBATTR_BIRTHDAY,
     .place = {PBDBTBL_POLCONTACTS, 7},
     .mask = 0x200,
     .classes = attrPlain,
     .date = &PBRecord::dtBirthday},
    {.id = PBDBATTR_CALLINGSCREEN,
     .place = {PBDBTBL_PHONEBOOKEXT, 7},
     .mask = 0x80000,
     .classes = attrPlain,
     .number = &PBRecord::dwCallingScreen},
    {.id = PBDBATTR_PAGER,
     .place = {PBDBTBL_POLCONTACTS, 8},
     .mask = 0x400,
     .classes = attrTelNo,
     .text = &PBRecord::strPagerNumber},
    {.id = PBDBATTR_BUSINESSFAX,
     .place = {PBDBTBL_POLCONTACTS, 9},
     .mask = 0x800,
     .classes = attrTelNo,
     .text = &PBRecord::strBusinessFaxNumber},
    {.id = PBDBATTR_BODY,
     .place = {PBDBTBL_POLCONTACTS, 6},
     .mask = 0x100,
     .classes = attrPlain,
     .text = &PBRecord::strBody},
    {.id = PBDBATTR_PRIVATE,
     .place = {PBDBTBL_PHONEBOOKEXT, 8},
     .mask = 0x200000,
     .classes = attrHidden,
     .number = &PBRecord::dwPrivate},
    {.id = PBDBATTR_PRIMARYTELNO,
     .place = {PBDBTBL_PHONEBOOKEXT, 9},
     .mask = 0x400000,
     .classes = attrHidden,
     .number = &PBRecord::dwPrimaryTelephoneNumber},
}};

static_assert(
    [] {
        for (std::size_t i = 0; i < aPBAttribute_.size(); ++i) {
            if (static_cast<std::size_t>(aPBAttribute_[i].id) != i) return false;
        }
        return true;
    }(),
    "an attribute's ID is its position in the list");

/// The attribute map: table and attribute index of each attribute, by ID.
inline constexpr std::array<TupleMapEntry, nNumPBAttrs_> atmDBAttrMap_ = [] {
    std::array<TupleMapEntry, nNumPBAttrs_> map{};
    for (std::size_t i = 0; i < map.size(); ++i)
        map[i] = aPBAttribute_[i].place;
    return map;
}();

/// The mask bit of each attribute, by ID.
inline constexpr std::array<DWORD, nNumPBAttrs_> adwCITypeMaskMap_ = [] {
    std::array<DWORD, nNumPBAttrs_> masks{};
    for (std::size_t i = 0; i < masks.size(); ++i)
        masks[i] = aPBAttribute_[i].mask;
    return masks;
}();

/// All mask bits of the attributes that are stored in a table.
constexpr DWORD ciTypeMaskOfTable(int tableID) {
    DWORD mask = 0;
    for (const PBAttribute& attribute : aPBAttribute_) {
        if (attribute.place.nTableID == tableID) mask |= attribute.mask;
    }
    return mask;
}

/// The mask bits of the five telephone numbers, in the order in which they are preferred.
inline constexpr std::array<DWORD, 5> adwTelNoAttrFlagMap_ = {0x4, 0x8, 0x10, 0x400, 0x800};

inline constexpr DWORD dwExtensionMask_ = 0x007F0000;     ///< The bits of what the phone adds to a contact.
inline constexpr DWORD dwTelNoMask_ = 0x00000C1C;         ///< The bits of the telephone numbers.
inline constexpr DWORD dwPrivateFlag_ = 0x00200000;       ///< The bit of the speed-dial slots.
inline constexpr DWORD dwPrimaryTelNoFlag_ = 0x00400000;  ///< The bit of the primary number.
static_assert(ciTypeMaskOfTable(PBDBTBL_PHONEBOOKEXT) == dwExtensionMask_);

/// The groups that a phone book starts with: family, friends, company, school.
inline constexpr std::array<const WCHAR*, 4> aszDefPBGroupName_ = {TEXT("가족"), TEXT("친구"), TEXT("회사"),
                                                                   TEXT("학교")};

// The lookups by attribute ID or index do not test it for range.

/// @{
/// Where an attribute is stored: the table, and its index there.
[[nodiscard]] TESSERA_API int getTableID(int pbAttrID);
[[nodiscard]] TESSERA_API int getAttrIDInTable(int pbAttrID);
/// @}
/// The attribute stored at that place; 18 when there is none, PBDBATTR_NONE for (-1, -1).
[[nodiscard]] TESSERA_API int getPBDBAttrID(int tableID, int attrIdx);
/// The bit of an attribute in PBRecord::dwCITypeMask.
[[nodiscard]] TESSERA_API DWORD getCITypeMaskFromPBDBAttrID(int pbAttrID);
/// The attribute whose mask is exactly `flag`; 18 when there is none, PBDBATTR_NONE for 0.
[[nodiscard]] TESSERA_API int getPBDBAttrIDFromCITypeFlag(DWORD flag);
/// The mask bit of the telephone number at that place, 0 to 4, in the order in which they are preferred.
[[nodiscard]] TESSERA_API DWORD getTelNoAttrFlag(int idx);
/// The place of exactly `flag` among the five telephone-number flags; 5 when it is none of them.
[[nodiscard]] TESSERA_API int getTelNoAttrIdx(DWORD flag);
/// Which of its numbers the record calls primary: what it says itself, else the first number it has, 0
/// when it has none. A record that says so itself is answered with its whole word.
[[nodiscard]] TESSERA_API DWORD getPrimaryTelNoFlag(const PBRecord& record);

// The sets; what is no attribute belongs to none.

/// Not offered to people.
[[nodiscard]] TESSERA_API bool isHiddenAttr(int pbAttrID);
/// A number that can have a speed-dial slot.
[[nodiscard]] TESSERA_API bool isSDialNoAttr(int pbAttrID);
/// A telephone number.
[[nodiscard]] TESSERA_API bool isTelNoAttr(int pbAttrID);
/// The same attributes as isTelNoAttr: meant so.
[[nodiscard]] TESSERA_API bool isSMSReceiverAttr(int pbAttrID);

}  // namespace PhoneBook
