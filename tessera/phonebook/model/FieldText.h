#pragma once

#include "tessera/phonebook/model/PBRecord.h"

namespace PhoneBook {

/// The field of that mask bit as text: numbers as 0x and eight hexadecimal digits, the birthday as a date
/// of the user's locale. Empty when the record has no such field.
[[nodiscard]] CString getPBRecordFieldStr(const PBRecord& record, DWORD mask);

/// Puts a text into the field of that mask bit and adds the bit; the empty text empties the field and
/// removes the bit. Numbers are read with base 0, a birthday as a date of the user's locale without its
/// time of day; what is neither reads as 0.
/// @return 1; 0, and nothing changed, when the bit is not within 0x007F0FFF.
int setPBRecordFieldStr(PBRecord& record, DWORD mask, const CString& text);

}  // namespace PhoneBook
