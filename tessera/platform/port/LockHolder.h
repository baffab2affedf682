#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace Platform::port {

/// A process, for people.
struct Process {
    long id = 0;
    std::string program;  ///< What the system calls it; empty when it does not say.
    bool self = false;
};

/// Who keeps others from writing the byte at `offset` of a file. Nothing when nobody does, or the system does not
/// tell. Looks at the system's table of locks: opening and closing the file would end this process's own.
std::optional<Process> lockHolder(const std::filesystem::path& file, std::uint64_t offset);

}  // namespace Platform::port
