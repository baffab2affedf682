#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include "tessera/platform/objectstore/DatabaseHandle.h"
#include "tessera/platform/windows/MessageSource.h"

namespace Platform {

/// Tells the windows of one thread of the changes that their handles asked for, out of the store's change log:
/// in its order, each once, and none that the thread made itself.
///
/// A thread gets one with the first handle that names a window of it. It serves the handles while they are
/// open and their windows exist; when none is left it goes.
class Notifications : public MessageSource {
public:
    /// Has the changes from now on that the handle asks for posted to its window. A window that does not exist is
    /// told nothing, which is no error. Any thread.
    [[nodiscard]] static DWORD subscribe(Session& session, const std::shared_ptr<DatabaseHandle>& handle);

    Notifications(std::unique_ptr<CommitWatch> watch, std::uint64_t mountNumber, std::uint64_t sequence);

    int fd() const override { return watch_->fd(); }
    void collect() noexcept override;

private:
    struct Subscription {
        std::weak_ptr<DatabaseHandle> handle;
        std::uint64_t since;  ///< The newest change when the handle was opened.
    };

    static DWORD replace(Session& session, const std::shared_ptr<DatabaseHandle>& handle,
                         const std::shared_ptr<MessageSource>& present);
    /// False when this has gone.
    bool add(Subscription subscription);
    bool hasSubscribers();
    void post(Session& session);
    DWORD passOverLost(Session& session);
    bool postChange(const Change& change);

    std::mutex mutex_;  // handles may be opened on other threads
    std::unique_ptr<CommitWatch> watch_;
    std::uint64_t mountNumber_;
    std::vector<Subscription> subscriptions_;
    std::uint64_t sequence_;  ///< How far the log was read.
    bool mayHaveMore_ = false;
    bool gone_ = false;
};

}  // namespace Platform
