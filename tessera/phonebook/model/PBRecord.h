#pragma once

#include "tessera/platform/base/CString.h"
#include "tessera/platform/base/Types.h"

namespace PhoneBook {

/// The birthday by which the contacts store marks that there is none: 1 January 4501.
inline constexpr DATE dtNoBirthday_ = 949998.0;

/// One phone book entry as callers see it: a contact and what the phone adds to it. Value semantics.
///
/// `dwCITypeMask` says which fields hold a value: one bit a field (see PBAttributes.h). Callers set it to
/// the fields they ask for, and find in it the fields they were given.
struct PBRecord {
    DWORD dwCITypeMask = 0;              ///< Which of the fields below hold a value, a bit each.
    CString strName;                     ///< The display name.
    CString strGroup;                    ///< The phone book group.
    CString strCategories;               ///< The contact's categories, separated by commas.
    CString strMobileTelephoneNumber;    ///< As typed.
    CString strHomeTelephoneNumber;      ///< As typed.
    CString strBusinessTelephoneNumber;  ///< As typed.
    CString strEmail1Address;            ///< The e-mail address.
    CString strAvatar;                   ///< The name of an avatar.
    CString strPhoto;                    ///< The name of a photo.
    DWORD dwCallingScreen = 0;           ///< The number of a calling screen.
    CString strBell;                     ///< The name of a ring tone.
    CString strBody;                     ///< The notes.
    DATE dtBirthday = dtNoBirthday_;     ///< The birthday, a whole day.
    CString strPagerNumber;              ///< As typed.
    CString strBusinessFaxNumber;        ///< As typed.
    DWORD dwPrivate = 0;                 ///< Speed-dial slots, a byte each: mobile (lowest), home, business, other.
    DWORD dwPrimaryTelephoneNumber = 4;  ///< The mask bit of the primary number; mobile to begin with.
};

}  // namespace PhoneBook
