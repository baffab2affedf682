#include "tessera/platform/port/WindowsErrors.h"

#include "tessera/platform/port/WindowsSystem.h"

namespace Platform::port {

DWORD platformErrorOf(DWORD systemError) {
    switch (systemError) {
        case ERROR_SUCCESS:
        case ERROR_FILE_NOT_FOUND:
        case ERROR_ACCESS_DENIED:
        case ERROR_INVALID_HANDLE:
        case ERROR_NOT_ENOUGH_MEMORY:
        case ERROR_LOCK_VIOLATION:
        case ERROR_INVALID_PARAMETER:
        case ERROR_DISK_FULL:
        case ERROR_ALREADY_EXISTS:
            return systemError;
        case ERROR_PATH_NOT_FOUND:
        case ERROR_BAD_NETPATH:
            return ERROR_FILE_NOT_FOUND;
        case ERROR_WRITE_PROTECT:
        case ERROR_SHARING_VIOLATION:
            return ERROR_ACCESS_DENIED;
        case ERROR_OUTOFMEMORY:
            return ERROR_NOT_ENOUGH_MEMORY;
        case ERROR_HANDLE_DISK_FULL:
        case ERROR_FILE_TOO_LARGE:
            return ERROR_DISK_FULL;
        case ERROR_FILE_EXISTS:
            return ERROR_ALREADY_EXISTS;
        case ERROR_BAD_PATHNAME:
        case ERROR_INVALID_NAME:
        case ERROR_FILENAME_EXCED_RANGE:
            return ERROR_INVALID_PARAMETER;
        default:
            return ERROR_GEN_FAILURE;
    }
}

DWORD lastPlatformError() {
    return platformErrorOf(GetLastError());
}

}  // namespace Platform::port
