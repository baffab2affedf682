#pragma once

#include "tessera/platform/base/Types.h"

// The operating system's own header, to be included behind all others. It gives names to scalar types that the
// platform has too, by other widths: the system's have System in front here. Its error codes are the same numbers as
// the platform's, whose Results.h cannot be included beside it.

#undef TEXT
#define BOOL SystemBool
#define DWORD SystemDword
#define LONG SystemLong
#define ULONG SystemUlong
#define HRESULT SystemHresult
#define LCID SystemLcid
#define HANDLE SystemHandle
#define HWND SystemHwnd
#define FILETIME SystemFileTime
#define UNICODE
#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <aclapi.h>
#include <sddl.h>
#include <windows.h>
#undef BOOL
#undef DWORD
#undef LONG
#undef ULONG
#undef HRESULT
#undef LCID
#undef HANDLE
#undef HWND
#undef FILETIME

namespace Platform::port {

// The system promises that only the low 32 bits of a handle count, so one is a descriptor as it is. A call that makes
// none answers a null pointer or, of files, -1.

inline int descriptorOf(SystemHandle handle) {
    return handle == nullptr ? -1 : static_cast<int>(reinterpret_cast<std::intptr_t>(handle));
}

inline SystemHandle handleOf(int descriptor) {
    return reinterpret_cast<SystemHandle>(static_cast<std::intptr_t>(descriptor));
}

}  // namespace Platform::port
