#pragma once

#include <filesystem>
#include <memory>

namespace Platform::port {

/// Tells a sleeper that somebody touched a file, in this process or another, or that a program which had it
/// open for writing has closed it or died. It may tell it for nothing, and many touches may be one.
class FileWatch {
public:
    /// Throws std::system_error when the file cannot be watched.
    explicit FileWatch(const std::filesystem::path& file);
    ~FileWatch();
    FileWatch(const FileWatch&) = delete;
    FileWatch& operator=(const FileWatch&) = delete;

    /// Readable from the first touch on until `clear`.
    int fd() const;
    void clear();

private:
    struct Watching;
    std::unique_ptr<Watching> watching_;
};

/// Wakes those who watch the file. Its contents stay; nothing happens when it is gone.
void touchFile(const std::filesystem::path& file) noexcept;

}  // namespace Platform::port
