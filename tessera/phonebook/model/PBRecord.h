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
    DWORD dwCITypeMask = 0;
    CString strName;
    CString strGroup;
    CString strCategories;
    CString strMobileTelephoneNumber;
    CString strHomeTelephoneNumber;
    CString strBusinessTelephoneNumber;
    CString strEmail1Address;
    CString strAvatar;
    CString strPhoto;
    DWORD dwCallingScreen = 0;
    CString strBell;
    CString strBody;
    DATE dtBirthday = dtNoBirthday_;
    CString strPagerNumber;
    CString strBusinessFaxNumber;
    DWORD dwPrivate = 0;                 ///< Speed-dial slots, a byte each: mobile (lowest), home, business, other.
    DWORD dwPrimaryTelephoneNumber = 4;  ///< The mask bit of the primary number; mobile to begin with.
};

}  // namespace PhoneBook
