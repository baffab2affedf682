#include "tessera/platform/objectstore/Notifications.h"

#include <algorithm>
#include <utility>

#include "tessera/platform/objectstore/Boundary.h"
#include "tessera/platform/objectstore/MountedStore.h"
#include "tessera/platform/port/WaitSet.h"
#include "tessera/platform/windows/WindowSystem.h"

namespace Platform {
namespace {

/// So many changes are looked at before the thread pumps their messages.
constexpr std::size_t changesAtOnce = 512;

void release(LPARAM notification) {
    delete reinterpret_cast<CENOTIFICATION*>(notification);
}

}  // namespace

Notifications::Notifications(std::unique_ptr<CommitWatch> watch, std::uint64_t mountNumber, std::uint64_t sequence)
    : watch_(std::move(watch)), mountNumber_(mountNumber), sequence_(sequence) {}

DWORD Notifications::subscribe(Session& session, const std::shared_ptr<DatabaseHandle>& handle) {
    const HWND window = handle->request()->hwnd;
    while (WindowSystem::instance().exists(window)) {
        const auto present = WindowSystem::instance().sourceOf(window);
        auto* const serving = static_cast<Notifications*>(present.get());  // there is no other kind of source
        if (serving != nullptr && serving->mountNumber_ == session.mountNumber()) {
            Subscription subscription{handle, 0};
            if (const DWORD error = session.engine().lastChange(subscription.since)) return error;
            if (serving->add(std::move(subscription))) return ERROR_SUCCESS;
        }
        const DWORD error = replace(session, handle, present);
        if (error != ERROR_ALREADY_EXISTS) return error == ERROR_INVALID_HANDLE ? ERROR_SUCCESS : error;
    }
    return ERROR_SUCCESS;
}

/// Gives the window's thread a new source, with this one handle to serve.
DWORD Notifications::replace(Session& session, const std::shared_ptr<DatabaseHandle>& handle,
                             const std::shared_ptr<MessageSource>& present) {
    auto watch = session.watchCommits();  // before the log's end is asked for: no commit comes in between
    if (watch == nullptr) return GetLastError();
    Subscription subscription{handle, 0};
    if (const DWORD error = session.engine().lastChange(subscription.since)) return error;
    auto made = std::make_shared<Notifications>(std::move(watch), session.mountNumber(), subscription.since);
    made->add(std::move(subscription));
    const bool taken = WindowSystem::instance().replaceSource(handle->request()->hwnd, present, std::move(made));
    return taken ? ERROR_SUCCESS : GetLastError();
}

bool Notifications::add(Subscription subscription) {
    const std::lock_guard lock(mutex_);
    if (gone_) return false;
    subscriptions_.push_back(std::move(subscription));
    return true;
}

/// Forgets handles that were closed and windows that have ended. When nobody is left this is gone for good.
bool Notifications::hasSubscribers() {
    std::erase_if(subscriptions_, [](const Subscription& subscription) {
        const auto handle = subscription.handle.lock();
        return handle == nullptr || !WindowSystem::instance().exists(handle->request()->hwnd);
    });
    gone_ = subscriptions_.empty();
    return !gone_;
}

void Notifications::collect() noexcept {
    if (!mayHaveMore_ && !port::isReadable(watch_->fd())) return;
    guarded(false, [this] {
        const std::lock_guard lock(mutex_);
        if (!hasSubscribers()) {
            WindowSystem::instance().dropSource(*this);
            return true;
        }
        watch_->clear();
        mayHaveMore_ = true;  // unless all goes well
        Session* const session = Session::current();
        // Inside a batch the log ends with the thread's own changes, which may yet come to nothing.
        if (session == nullptr || session->inBatch()) return false;
        post(*session);
        return true;
    });
}

void Notifications::post(Session& session) {
    bool posted = false;
    // What concerns no window is passed over at once: a thread that got nothing would go to sleep before the rest.
    while (mayHaveMore_ && !posted) {
        std::vector<Change> changes;
        DWORD error = session.engine().changesAfter(sequence_, changesAtOnce, changes);
        if (error == ERROR_NO_MORE_ITEMS) {
            error = passOverLost(session);
            if (error == ERROR_SUCCESS) continue;
        }
        if (error != ERROR_SUCCESS) return;
        for (const Change& change : changes) {
            if (change.origin != session.engine().origin() && postChange(change)) posted = true;
            sequence_ = change.sequence;
        }
        mayHaveMore_ = changes.size() == changesAtOnce;
    }
}

/// When the log no longer reaches back, what it has lost is lost: goes to the oldest change that it keeps.
DWORD Notifications::passOverLost(Session& session) {
    std::uint64_t newest = 0;
    if (const DWORD error = session.engine().lastChange(newest)) return error;
    sequence_ = newest - std::min(newest, keptChanges);
    return ERROR_SUCCESS;
}

/// False when it concerned no window.
bool Notifications::postChange(const Change& change) {
    bool posted = false;
    for (const Subscription& subscription : subscriptions_) {
        const auto handle = subscription.handle.lock();
        if (handle == nullptr || handle->database() != change.database || change.sequence <= subscription.since)
            continue;
        const CENOTIFYREQUEST& request = *handle->request();
        auto notification = std::make_unique<CENOTIFICATION>(CENOTIFICATION{
            sizeof(CENOTIFICATION), request.dwParam, static_cast<UINT>(change.kind), change.record, change.database});
        const auto lParam = reinterpret_cast<LPARAM>(notification.get());
        if (!postOwnedMessage(request.hwnd, WM_DBNOTIFICATION, 0, lParam, release)) continue;
        static_cast<void>(notification.release());  // the message has it now
        posted = true;
    }
    return posted;
}

}  // namespace Platform
