#pragma once

// The operating system's own header, to be included behind all others. Its scalar types have the names of the
// platform's, whose Types.h cannot be included beside it.

#undef TEXT
#define UNICODE
#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

// These need the above.
#include <sddl.h>
#include <shellapi.h>
