#pragma once

#include <cwchar>
#include <string>
#include <string_view>

/// @file
/// The character of the platform: a UTF-16 code unit. Where the system's own wide characters are such, as on
/// Windows, it is their type, so that texts go to and from the system as they are.

/// @def TEXT
/// A literal of WCHAR: `TEXT("...")`.
#if WCHAR_MAX == 0xFFFF
/// A code unit: the system's wide character.
using WCHAR = wchar_t;
#define TEXT(literal) L##literal
#else
/// A code unit.
using WCHAR = char16_t;
#define TEXT(literal) u##literal
#endif

/// @{
/// Text of the platform that owns its characters, and a view of such.
using WString = std::basic_string<WCHAR>;
using WStringView = std::basic_string_view<WCHAR>;
/// @}
