#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tessera/platform/base/Results.h"
#include "tessera/platform/port/Descriptor.h"
#include "tessera/platform/port/Files.h"
#include "tessera/platform/port/PosixErrors.h"

namespace Platform::port {

Descriptor::~Descriptor() {
    if (isOpen()) closeFile(value_);
}

DWORD openForReading(const std::filesystem::path& file, int& descriptor) {
    // Not blocking, so that a pipe that nobody writes to is refused at once instead of waited for.
    Descriptor opened(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!opened.isOpen()) return platformErrorOf(errno);

    struct stat status {};
    if (::fstat(opened.get(), &status) != 0) return platformErrorOf(errno);
    if (!S_ISREG(status.st_mode)) return ERROR_ACCESS_DENIED;
    descriptor = opened.release();
    return ERROR_SUCCESS;
}

std::uint64_t fileLength(int descriptor) {
    struct stat status {};
    return ::fstat(descriptor, &status) == 0 ? static_cast<std::uint64_t>(status.st_size) : 0;
}

std::size_t readFile(int descriptor, void* buffer, std::size_t count) {
    auto* const bytes = static_cast<std::uint8_t*>(buffer);
    std::size_t total = 0;
    while (total < count) {
        const ssize_t got = ::read(descriptor, bytes + total, count - total);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) break;
        total += static_cast<std::size_t>(got);
    }
    return total;
}

void closeFile(int descriptor) {
    ::close(descriptor);
}

}  // namespace Platform::port
