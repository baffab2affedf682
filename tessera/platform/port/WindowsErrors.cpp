#include "tessera/platform/port/WindowsErrors.h"

#include <filesystem>

#include "tessera/platform/port/ErrorText.h"
#include "tessera/platform/port/WindowsMemory.h"
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
        case ERROR_BAD_NET_NAME:
        case ERROR_INVALID_DRIVE:
        case ERROR_DIRECTORY:
            return ERROR_FILE_NOT_FOUND;
        case ERROR_WRITE_PROTECT:
        case ERROR_SHARING_VIOLATION:
        case ERROR_NETWORK_ACCESS_DENIED:
        case ERROR_PRIVILEGE_NOT_HELD:
            return ERROR_ACCESS_DENIED;
        case ERROR_OUTOFMEMORY:
        case ERROR_NO_SYSTEM_RESOURCES:
        case ERROR_COMMITMENT_LIMIT:
            return ERROR_NOT_ENOUGH_MEMORY;
        case ERROR_HANDLE_DISK_FULL:
        case ERROR_FILE_TOO_LARGE:
            return ERROR_DISK_FULL;
        case ERROR_FILE_EXISTS:
            return ERROR_ALREADY_EXISTS;
        case ERROR_BAD_PATHNAME:
        case ERROR_INVALID_NAME:
        case ERROR_FILENAME_EXCED_RANGE:
        case ERROR_BUFFER_OVERFLOW:
        case ERROR_CANT_RESOLVE_FILENAME:
            return ERROR_INVALID_PARAMETER;
        default:
            return ERROR_GEN_FAILURE;
    }
}

DWORD lastPlatformError() {
    return platformErrorOf(GetLastError());
}

/// The standard library's texts are in the code page of the system's settings.
std::string messageOf(const std::error_code& error) {
    if (error.category() != std::system_category()) return error.message();
    WCHAR* spelled = nullptr;
    constexpr SystemDword kind =
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    const SystemDword length = FormatMessageW(kind, nullptr, static_cast<SystemDword>(error.value()), 0,
                                              reinterpret_cast<WCHAR*>(&spelled), 0, nullptr);
    const LocalPointer<WCHAR> owned(spelled);
    if (length == 0) return "error " + std::to_string(error.value());
    const WStringView sentence(spelled, length);
    const std::u8string utf8 =
        std::filesystem::path(sentence.substr(0, sentence.find_last_not_of(L"\r\n .") + 1)).u8string();
    return {utf8.begin(), utf8.end()};
}

}  // namespace Platform::port
