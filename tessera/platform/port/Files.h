#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>

#include "tessera/platform/base/Types.h"

// Reading a file by a descriptor. Platform::port::Descriptor owns one; closeFile ends one that is not owned so.

namespace Platform::port {

/// Opens a regular file for reading; anything else, such as a folder or a pipe, is refused with
/// ERROR_ACCESS_DENIED. Answers a platform error.
[[nodiscard]] DWORD openForReading(const std::filesystem::path& file, int& descriptor);

/// The length in bytes; 0 when it cannot be had.
std::uint64_t fileLength(int descriptor);

/// Reads until `count` bytes are there, the file ends or reading fails; answers how many bytes there are.
std::size_t readFile(int descriptor, void* buffer, std::size_t count);

void closeFile(int descriptor);

}  // namespace Platform::port
