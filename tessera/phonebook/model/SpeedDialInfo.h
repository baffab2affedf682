#pragma once

#include "tessera/platform/base/CString.h"
#include "tessera/platform/base/Types.h"

namespace PhoneBook {

/// One speed-dial slot and the number it dials. Default-constructed it is an empty slot. Value semantics.
struct SpeedDialInfo {
    DWORD dwSDialID = 0;  ///< The slot, 1 to 99; 0 marks an empty entry.
    DWORD dwOID = 0;      ///< The contact; 0 when unknown.
    CString strName;      ///< The contact's name.
    DWORD dwTelType = 0;  ///< Which of its numbers: 0x4 mobile, 0x8 home, 0x10 business.
    CString strTelNo;     ///< The number to dial: reduced in a row, and as the contact has it where it is asked for.
    DWORD dwFlags = 0;    ///< The low 16 bits are the row's "Flags"; 0x10 marks a cache entry not yet written.
};

}  // namespace PhoneBook
