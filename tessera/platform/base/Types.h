#pragma once

#include <cstdint>

#include "tessera/platform/port/Character.h"

/// @file
/// The scalar types of the platform. The device that they come from was a 32-bit one, and its widths
/// are kept: a `long` of an interface is 32 bits here whatever the machine's own is.

/// @{
/// A scalar of the platform, of the width that it has everywhere.
using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using UINT = std::uint32_t;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using BOOL = std::int32_t;
using HRESULT = std::int32_t;
using LCID = std::uint32_t;
/// @}

/// Days since 30 December 1899, the time of day as the fraction.
using DATE = double;

/// Identifies a record or a database of the object store; 0 means none.
using CEOID = DWORD;
/// Identifies a property: the ident in the high 16 bits, the CEVT kind in the low 16 bits.
using CEPROPID = DWORD;

/// @{
/// Opaque 32-bit values: a handle is never a pointer.
using HANDLE = DWORD;
using HWND = DWORD;
/// @}

/// @{
/// Message parameters; wide enough to hold a pointer.
using WPARAM = std::uintptr_t;
using LPARAM = std::intptr_t;
using LRESULT = std::intptr_t;
/// @}

/// @{
/// The two values of a BOOL that are answered; any other than FALSE means true.
inline constexpr BOOL FALSE = 0;
inline constexpr BOOL TRUE = 1;
/// @}
/// What is no handle.
inline constexpr HANDLE INVALID_HANDLE_VALUE = 0xFFFFFFFF;
/// The locale of the user, the only one there is.
inline constexpr LCID LOCALE_USER_DEFAULT = 0x0400;

/// 100-nanosecond intervals since 1 January 1601 (UTC), in two halves.
struct FILETIME {
    DWORD dwLowDateTime = 0;   ///< The low 32 bits.
    DWORD dwHighDateTime = 0;  ///< The high 32 bits.

    /// The same time.
    friend bool operator==(const FILETIME&, const FILETIME&) = default;
};

/// Both halves as one number.
constexpr std::uint64_t ticksOf(const FILETIME& time) {
    return std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
}

/// The time of that number.
constexpr FILETIME fileTimeOf(std::uint64_t ticks) {
    return {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
}
