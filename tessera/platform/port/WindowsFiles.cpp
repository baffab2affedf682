#include <algorithm>

#include "tessera/platform/port/Descriptor.h"
#include "tessera/platform/port/Files.h"
#include "tessera/platform/port/WindowsErrors.h"
#include "tessera/platform/port/WindowsSystem.h"

namespace Platform::port {

Descriptor::~Descriptor() {
    if (isOpen()) closeFile(value_);
}

DWORD openForReading(const std::filesystem::path& file, int& descriptor) {
    constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    Descriptor opened(descriptorOf(
        CreateFileW(file.c_str(), GENERIC_READ, shareAll, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)));
    if (!opened.isOpen()) return lastPlatformError();
    if (GetFileType(handleOf(opened.get())) != FILE_TYPE_DISK) return ERROR_ACCESS_DENIED;
    descriptor = opened.release();
    return ERROR_SUCCESS;
}

std::uint64_t fileLength(int descriptor) {
    LARGE_INTEGER length{};
    return GetFileSizeEx(handleOf(descriptor), &length) != 0 ? static_cast<std::uint64_t>(length.QuadPart) : 0;
}

std::size_t readFile(int descriptor, void* buffer, std::size_t count) {
    constexpr std::size_t atOnce = 1 << 30;
    auto* const bytes = static_cast<std::uint8_t*>(buffer);
    std::size_t total = 0;
    while (total < count) {
        SystemDword got = 0;
        const auto wanted = static_cast<SystemDword>(std::min(count - total, atOnce));
        if (ReadFile(handleOf(descriptor), bytes + total, wanted, &got, nullptr) == 0 || got == 0) break;
        total += got;
    }
    return total;
}

void closeFile(int descriptor) {
    CloseHandle(handleOf(descriptor));
}

}  // namespace Platform::port
