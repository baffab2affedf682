#include "tessera/platform/port/Wake.h"
#include "tessera/platform/port/WindowsSignals.h"

namespace Platform::port {

Wake::Wake() : descriptor_(makeEvent()) {}

void Wake::wake() {
    raise(fd());
}

void Wake::clear() {
    lower(fd());
}

}  // namespace Platform::port
