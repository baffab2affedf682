#include <cerrno>
#include <poll.h>
#include <sys/epoll.h>
#include <system_error>

#include "tessera/platform/port/WaitSet.h"

namespace Platform::port {
namespace {

/// True when it became readable; a timeout of 0 does not wait, -1 waits for ever.
bool awaitReadable(int fd, int timeoutMs) {
    pollfd watched{fd, POLLIN, 0};
    int ready = 0;
    do {
        ready = ::poll(&watched, 1, timeoutMs);
    } while (ready < 0 && errno == EINTR);
    return ready == 1;
}

}  // namespace

WaitSet::WaitSet() : descriptor_(::epoll_create1(EPOLL_CLOEXEC)) {
    if (!descriptor_.isOpen()) throw std::system_error(errno, std::generic_category(), "epoll");
}

WaitSet::~WaitSet() = default;

void WaitSet::add(int fd) {
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.fd = fd;
    if (::epoll_ctl(descriptor_.get(), EPOLL_CTL_ADD, fd, &event) != 0)
        throw std::system_error(errno, std::generic_category(), "epoll");
}

void WaitSet::remove(int fd) {
    // Fails only when it is not in the set.
    [[maybe_unused]] const int removed = ::epoll_ctl(descriptor_.get(), EPOLL_CTL_DEL, fd, nullptr);
}

bool WaitSet::wait() const {
    return awaitReadable(fd(), -1);
}

bool isReadable(int fd) {
    return awaitReadable(fd, 0);
}

}  // namespace Platform::port
