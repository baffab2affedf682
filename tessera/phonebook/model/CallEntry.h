#pragma once

#include "tessera/platform/base/CString.h"
#include "tessera/platform/base/Types.h"

namespace PhoneBook {

/// One call of the call history. Value semantics.
struct CallEntry {
    FILETIME ftTimestamp{};   ///< When the call happened, in 100 ns since 1601-01-01 UTC; the caller says.
    CString strCID;           ///< The other party's number, reduced; szWithheldCID_ when it was withheld.
    CString strName;          ///< Filled from the phone book when the call is logged.
    CString strCNAP;          ///< The network's name for the caller.
    CString strCDNIP;         ///< A second number of the caller's choosing.
    DWORD dwCallingTime = 0;  ///< Its unit is the caller's choice, as is the meaning of the type.
    DWORD dwCallType = 0;     ///< The caller says what it means.
    DWORD dwTelType = 0;      ///< Which of the contact's numbers: 0x4, 0x8, 0x10, 0x400 or 0x800.
    DWORD dwFlags = 0;        ///< The low 16 bits are the row's "Flags": 7 once it is logged.
};

/// The most calls that the history keeps.
inline constexpr DWORD nMaxCallEntries_ = 100;
/// The name of a call that came without number information.
inline constexpr const WCHAR* szNoNumberName_ = TEXT("번호정보없음");
/// The number of a call whose number was withheld: it is not looked up.
inline constexpr const WCHAR* szWithheldCID_ = TEXT("발신번호표시제한");

}  // namespace PhoneBook
