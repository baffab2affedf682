#include "tessera/platform/port/PosixErrors.h"

#include <array>
#include <cerrno>

#include "tessera/platform/base/Results.h"
#include "tessera/platform/port/ErrorText.h"

namespace Platform::port {
namespace {

struct ErrorPair {
    int system;
    DWORD platform;
};

constexpr std::array<ErrorPair, 16> errors_ = {{
    {0, ERROR_SUCCESS},
    {ENOENT, ERROR_FILE_NOT_FOUND},
    {ENOTDIR, ERROR_FILE_NOT_FOUND},
    {EACCES, ERROR_ACCESS_DENIED},
    {EPERM, ERROR_ACCESS_DENIED},
    {EROFS, ERROR_ACCESS_DENIED},
    {EISDIR, ERROR_ACCESS_DENIED},
    {EEXIST, ERROR_ALREADY_EXISTS},
    {ENOSPC, ERROR_DISK_FULL},
    {EDQUOT, ERROR_DISK_FULL},
    {EFBIG, ERROR_DISK_FULL},
    {ENOMEM, ERROR_NOT_ENOUGH_MEMORY},
    {EINVAL, ERROR_INVALID_PARAMETER},
    {ENAMETOOLONG, ERROR_INVALID_PARAMETER},
    {ELOOP, ERROR_INVALID_PARAMETER},
    {EBADF, ERROR_INVALID_HANDLE},
}};

}  // namespace

DWORD platformErrorOf(int systemError) {
    for (const ErrorPair& error : errors_) {
        if (error.system == systemError) return error.platform;
    }
    return ERROR_GEN_FAILURE;
}

std::string messageOf(const std::error_code& error) {
    return error.message();
}

}  // namespace Platform::port
