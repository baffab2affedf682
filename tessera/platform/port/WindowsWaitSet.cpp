#include "tessera/platform/port/WaitSet.h"
#include "tessera/platform/port/WindowsSignals.h"

namespace Platform::port {

WaitSet::WaitSet() : descriptor_(makeEvent()) {}

WaitSet::~WaitSet() {
    forgetSet(fd());
}

void WaitSet::add(int fd) {
    addToSet(this->fd(), fd);
}

void WaitSet::remove(int fd) {
    removeFromSet(this->fd(), fd);
}

bool WaitSet::wait() const {
    constexpr unsigned long forEver = 0xFFFFFFFF;
    return awaitEvent(fd(), forEver);
}

bool isReadable(int fd) {
    return awaitEvent(fd, 0);
}

}  // namespace Platform::port
