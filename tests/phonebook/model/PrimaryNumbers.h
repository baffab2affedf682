#pragma once

#include "tessera/phonebook/model/PBRecord.h"

namespace PhoneBook {

/// A record that has these fields, and states that number as its primary one.
inline PBRecord recordWith(DWORD mask, DWORD primary) {
    PBRecord record;
    record.dwCITypeMask = mask;
    record.dwPrimaryTelephoneNumber = primary;
    return record;
}

}  // namespace PhoneBook
