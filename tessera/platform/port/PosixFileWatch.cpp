#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "tessera/platform/port/Descriptor.h"
#include "tessera/platform/port/FileWatch.h"

namespace Platform::port {

struct FileWatch::Watching {
    Descriptor events{::inotify_init1(IN_CLOEXEC | IN_NONBLOCK)};
};

FileWatch::FileWatch(const std::filesystem::path& file) : watching_(std::make_unique<Watching>()) {
    const bool watched = fd() >= 0 && ::inotify_add_watch(fd(), file.c_str(), IN_ATTRIB | IN_CLOSE_WRITE) >= 0;
    if (!watched) throw std::system_error(errno, std::generic_category(), "inotify");
}

FileWatch::~FileWatch() = default;

int FileWatch::fd() const {
    return watching_->events.get();
}

void FileWatch::clear() {
    alignas(inotify_event) std::array<char, 4096> events;
    while (::read(fd(), events.data(), events.size()) > 0) {
    }
}

void touchFile(const std::filesystem::path& file) noexcept {
    // Only those who watch are to hear of it: when it fails there is nothing to watch.
    [[maybe_unused]] const int touched = ::utimensat(AT_FDCWD, file.c_str(), nullptr, AT_SYMLINK_NOFOLLOW);
}

}  // namespace Platform::port
