#include "tessera/platform/base/CFile.h"

#include <filesystem>
#include <utility>

#include "tessera/platform/base/Results.h"
#include "tessera/platform/port/Files.h"

namespace port = Platform::port;

namespace {

constexpr UINT knownFlags_ = CFile::modeRead | CFile::shareDenyWrite | CFile::typeBinary;

/// Answers a platform error.
DWORD openedFile(const WCHAR* path, UINT flags, int& descriptor) {
    if (path == nullptr || (flags & ~knownFlags_) != 0) return ERROR_INVALID_PARAMETER;
    try {
        return port::openForReading(std::filesystem::path(path), descriptor);
    } catch (const std::bad_alloc&) {
        return ERROR_NOT_ENOUGH_MEMORY;
    } catch (const std::exception&) {
        // The path has no spelling in the notation of the system.
        return ERROR_FILE_NOT_FOUND;
    }
}

}  // namespace

CFile::~CFile() {
    Close();
}

BOOL CFile::Open(const WCHAR* path, UINT flags) {
    Close();
    const DWORD error = openedFile(path, flags, descriptor_);
    if (error == ERROR_SUCCESS) return TRUE;
    SetLastError(error);
    return FALSE;
}

std::uint64_t CFile::GetLength() const {
    return descriptor_ >= 0 ? port::fileLength(descriptor_) : 0;
}

std::size_t CFile::Read(void* buffer, std::size_t count) {
    return descriptor_ >= 0 ? port::readFile(descriptor_, buffer, count) : 0;
}

void CFile::Close() {
    if (descriptor_ >= 0) port::closeFile(std::exchange(descriptor_, -1));
}
