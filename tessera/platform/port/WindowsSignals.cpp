#include "tessera/platform/port/WindowsSignals.h"

#include <algorithm>
#include <mutex>
#include <system_error>
#include <vector>

#include "tessera/platform/port/WindowsSystem.h"

namespace Platform::port {
namespace {

struct Membership {
    int set;
    int event;
};

// One lock for all: a set's event is to follow its members', whatever two threads do to them at once.
std::mutex mutex_;
std::vector<Membership> memberships_;

bool isUp(int event) {
    return WaitForSingleObject(handleOf(event), 0) == WAIT_OBJECT_0;
}

void followMembersOfSetsWith(int event);

void followMembers(int set) {
    const bool anyIsUp = std::any_of(memberships_.begin(), memberships_.end(), [set](const Membership& membership) {
        return membership.set == set && isUp(membership.event);
    });
    if (anyIsUp)
        SetEvent(handleOf(set));
    else
        ResetEvent(handleOf(set));
    followMembersOfSetsWith(set);  // a set may be a member of another
}

void followMembersOfSetsWith(int event) {
    for (const Membership& membership : memberships_) {
        if (membership.event == event) followMembers(membership.set);
    }
}

}  // namespace

Descriptor makeEvent() {
    Descriptor made(descriptorOf(CreateEventW(nullptr, TRUE, FALSE, nullptr)));
    if (!made.isOpen())
        throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), "CreateEvent");
    return made;
}

void raise(int event) noexcept {
    const std::lock_guard lock(mutex_);
    SetEvent(handleOf(event));
    followMembersOfSetsWith(event);
}

void lower(int event) noexcept {
    const std::lock_guard lock(mutex_);
    ResetEvent(handleOf(event));
    followMembersOfSetsWith(event);
}

void addToSet(int set, int event) {
    const std::lock_guard lock(mutex_);
    memberships_.push_back({set, event});
    followMembers(set);
}

void removeFromSet(int set, int event) noexcept {
    const std::lock_guard lock(mutex_);
    std::erase_if(memberships_,
                  [=](const Membership& membership) { return membership.set == set && membership.event == event; });
    followMembers(set);
}

void forgetSet(int set) noexcept {
    const std::lock_guard lock(mutex_);
    std::erase_if(memberships_, [set](const Membership& membership) { return membership.set == set; });
}

bool awaitEvent(int event, unsigned long milliseconds) noexcept {
    return WaitForSingleObject(handleOf(event), milliseconds) == WAIT_OBJECT_0;
}

}  // namespace Platform::port
