#pragma once

#include "tessera/platform/base/Types.h"

namespace PhoneBook {

inline constexpr DWORD nameFlag = 0x1;
inline constexpr DWORD birthdayFlag = 0x200;
inline constexpr DWORD callingScreenFlag = 0x80000;

}  // namespace PhoneBook
