#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace testing_support {

/// A file that is gone with the process, however that ends, and that no disk is waited for.
class FileInMemory {
public:
    explicit FileInMemory(std::span<const std::byte> bytes);
    ~FileInMemory();
    FileInMemory(const FileInMemory&) = delete;
    FileInMemory& operator=(const FileInMemory&) = delete;

    /// As UTF-8.
    const std::string& path() const { return path_; }

private:
    int file_ = -1;  ///< A descriptor or, on Windows, a handle, of which only the low 32 bits count.
    std::string path_;
};

}  // namespace testing_support
