#include <cerrno>
#include <cstdint>
#include <sys/eventfd.h>
#include <system_error>
#include <unistd.h>

#include "tessera/platform/port/Wake.h"

namespace Platform::port {

Wake::Wake() : descriptor_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (!descriptor_.isOpen()) throw std::system_error(errno, std::generic_category(), "eventfd");
}

void Wake::wake() {
    const std::uint64_t one = 1;
    // Fails only when the counter is full, and then the flag is up.
    [[maybe_unused]] const ssize_t written = ::write(fd(), &one, sizeof(one));
}

void Wake::clear() {
    std::uint64_t count = 0;
    // Fails only when the flag is down already.
    [[maybe_unused]] const ssize_t got = ::read(fd(), &count, sizeof(count));
}

}  // namespace Platform::port
