#pragma once

#include "tessera/platform/base/CString.h"
#include "tessera/platform/base/Types.h"

namespace PhoneBook {

/// A phone book group: a named set of contacts with ring settings of its own.
struct PBGroupInfo {
    DWORD dwID = 0;           ///< The ID of the category that the group follows.
    CString strName;          ///< The name of the platform's category that the group follows.
    BOOL bReject = FALSE;     ///< Calls from members are to be rejected.
    CString strBellCategory;  ///< Ring-tone category.
    CString strBell;          ///< Ring tone for calls.
    CString strSMSBell;       ///< Ring tone for messages.
    DWORD dwFlags = 0;        ///< 16 bits are stored; every write stores 7.
};

/// Asks for a group's settings alone: its ID and its name stay as they are.
inline constexpr DWORD dwKeepIdAndName_ = 0x1;

}  // namespace PhoneBook
