#pragma once

#include <filesystem>

#include "tessera/platform/port/Descriptor.h"

namespace Platform::port {

/// Tells a sleeper that somebody touched a file, in this process or another, or that a program which had it
/// open for writing has closed it or died. It may tell it for nothing, and many touches may be one.
class FileWatch {
public:
    /// Throws std::system_error when the file cannot be watched.
    explicit FileWatch(const std::filesystem::path& file);

    /// Readable from the first touch on until `clear`.
    int fd() const { return descriptor_.get(); }
    void clear();

private:
    Descriptor descriptor_;
};

/// Wakes those who watch the file. Its contents stay; nothing happens when it is gone.
void touchFile(const std::filesystem::path& file) noexcept;

}  // namespace Platform::port
