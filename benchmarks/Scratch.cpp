#include "benchmarks/Scratch.h"

#include <array>
#include <fcntl.h>
#include <random>
#include <sys/vfs.h>
#include <unistd.h>

namespace benchmarks {

namespace {

struct ScratchFolder {
    ScratchFolder() {
        std::random_device random;
        path = std::filesystem::temp_directory_path() / ("tessera-benchmarks-" + std::to_string(random()));
        std::filesystem::create_directory(path);
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    }
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    std::filesystem::path path;
};

struct FileSystemKind {
    unsigned long magic;
    const char* name;
    bool inMemory;
};
constexpr std::array<FileSystemKind, 7> fileSystems = {{
    {0xEF53, "ext4", false},
    {0x9123683E, "btrfs", false},
    {0x58465342, "xfs", false},
    {0xF2F52010, "f2fs", false},
    {0x794C7630, "overlayfs", false},
    {0x01021994, "tmpfs", true},
    {0x858458F6, "ramfs", true},
}};

const FileSystemKind* fileSystemKind() {
    struct statfs system {};
    if (::statfs(scratchFolder().c_str(), &system) != 0) return nullptr;
    for (const FileSystemKind& kind : fileSystems) {
        if (kind.magic == static_cast<unsigned long>(system.f_type)) return &kind;
    }
    return nullptr;
}

}  // namespace

const std::filesystem::path& scratchFolder() {
    static const ScratchFolder folder;
    return folder.path;
}

std::filesystem::path newFile(const std::string& name) {
    static int files = 0;
    return scratchFolder() / (std::to_string(++files) + "-" + name);
}

std::string fileSystem() {
    const FileSystemKind* kind = fileSystemKind();
    return kind == nullptr ? "" : kind->name;
}

bool isInMemory() {
    const FileSystemKind* kind = fileSystemKind();
    return kind != nullptr && kind->inMemory;
}

std::filesystem::path settledCopy(const std::filesystem::path& file) {
    const std::filesystem::path copy = newFile(file.filename().string());
    std::filesystem::copy_file(file, copy);
    settle(copy);
    return copy;
}

std::filesystem::path copyToChange(const std::filesystem::path& file) {
    std::filesystem::path copy = file;
    copy.replace_extension("to-change.db");
    if (!std::filesystem::exists(copy)) std::filesystem::rename(settledCopy(file), copy);
    return copy;
}

void settle(const std::filesystem::path& file) {
    const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return;
    ::fsync(descriptor);
    ::close(descriptor);
}

void removeDatabase(const std::filesystem::path& file) {
    for (const char* suffix : {"", "-wal", "-shm"})
        std::filesystem::remove(file.string() + suffix);
}

}  // namespace benchmarks
