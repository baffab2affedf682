#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <windows.h>

#include "tests/support/FileInMemory.h"

namespace testing_support {
namespace {

HANDLE handleOf(int file) {
    return reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(file));
}

}  // namespace

FileInMemory::FileInMemory(std::span<const std::byte> bytes) {
    static int made = 0;
    const std::filesystem::path place =
        std::filesystem::temp_directory_path() /
        ("tessera-test-in-memory-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(++made));
    const HANDLE opened =
        CreateFileW(place.c_str(), GENERIC_WRITE | DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, CREATE_NEW, FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    DWORD written = 0;
    if (opened == INVALID_HANDLE_VALUE ||
        WriteFile(opened, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) == 0)
        throw std::runtime_error("no file");
    file_ = static_cast<int>(reinterpret_cast<std::intptr_t>(opened));
    path_ = place.string();
}

FileInMemory::~FileInMemory() {
    CloseHandle(handleOf(file_));
}

}  // namespace testing_support
