#include <gtest/gtest.h>

#include "tessera/platform/base/Results.h"
#include "tessera/platform/port/WindowsErrors.h"

using Platform::port::platformErrorOf;

TEST(PlatformError, StandsForTheSystemsOwn) {
    constexpr struct {
        DWORD system;
        DWORD platform;
    } errors[] = {
        {0, ERROR_SUCCESS},
        {2, ERROR_FILE_NOT_FOUND},    // no such file
        {3, ERROR_FILE_NOT_FOUND},    // no such folder
        {15, ERROR_FILE_NOT_FOUND},   // no such drive
        {53, ERROR_FILE_NOT_FOUND},   // no such machine
        {67, ERROR_FILE_NOT_FOUND},   // no such share
        {267, ERROR_FILE_NOT_FOUND},  // a file where a folder is wanted
        {5, ERROR_ACCESS_DENIED},     // access denied
        {19, ERROR_ACCESS_DENIED},    // write-protected
        {32, ERROR_ACCESS_DENIED},    // open elsewhere
        {65, ERROR_ACCESS_DENIED},    // access to another machine denied
        {1314, ERROR_ACCESS_DENIED},  // a privilege is missing
        {80, ERROR_ALREADY_EXISTS},   // the file exists
        {183, ERROR_ALREADY_EXISTS},  // so does the name
        {112, ERROR_DISK_FULL},       // the disk is full
        {39, ERROR_DISK_FULL},        // so it is
        {14, ERROR_NOT_ENOUGH_MEMORY},
        {1450, ERROR_NOT_ENOUGH_MEMORY},
        {1455, ERROR_NOT_ENOUGH_MEMORY},
        {123, ERROR_INVALID_PARAMETER},   // no name for a file
        {206, ERROR_INVALID_PARAMETER},   // too long a name
        {111, ERROR_INVALID_PARAMETER},   // so it is
        {1921, ERROR_INVALID_PARAMETER},  // links in a circle
        {6, ERROR_INVALID_HANDLE},
        {1117, ERROR_GEN_FAILURE},  // the disk does not answer
    };
    for (const auto& error : errors)
        EXPECT_EQ(platformErrorOf(error.system), error.platform) << error.system;
}
