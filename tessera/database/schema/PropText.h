#pragma once

#include "tessera/Export.h"
#include "tessera/platform/base/CString.h"
#include "tessera/platform/objectstore/CCeDBProp.h"

namespace Database {

/// The value as text, the same in every locale: signed numbers and booleans in decimal, unsigned ones as
/// 0x and all their hexadecimal digits, a time as its high and low half joined by a colon, a double with
/// six decimals, a text as it is. A blob shows the address of its bytes, which no other copy shares. The
/// empty property, and one of an unknown type, give the empty text.
[[nodiscard]] TESSERA_API CString renderText(const CCeDBProp& prop);

}  // namespace Database
