#pragma once

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>

#include "tessera/platform/port/WaitSet.h"
#include "tessera/platform/port/Wake.h"
#include "tessera/platform/windows/MessageSource.h"
#include "tessera/platform/windows/Messages.h"

namespace Platform {

class MessageQueue;

/// Frees what a message's lParam owns, for a message that will never be delivered.
using MessageRelease = void (*)(LPARAM);

/// Where the sender of a message waits for the answer.
struct PendingAnswer {
    std::shared_ptr<MessageQueue> sender;
    bool isDone = false;
    std::optional<LRESULT> result;  ///< Nothing when the window ended before it answered.
};

struct QueuedMessage {
    MSG msg;
    std::shared_ptr<PendingAnswer> answer;  ///< Null when nobody waits.
    MessageRelease release = nullptr;       ///< Null when the lParam owns nothing.
};

/// The messages that wait for one thread. Every member wants the lock of the window system, which is passed
/// to show that it is held; a message's release runs with it held.
class MessageQueue {
public:
    using Lock = std::unique_lock<std::mutex>;

    MessageQueue() { waitSet_.add(wake_.fd()); }
    MessageQueue(const MessageQueue&) = delete;
    MessageQueue& operator=(const MessageQueue&) = delete;

    void addSent(const Lock&, QueuedMessage message);
    void addPosted(const Lock&, QueuedMessage message);
    std::optional<QueuedMessage> takeSent(const Lock&);
    std::optional<QueuedMessage> takePosted(const Lock&);
    /// Drops what waits for a window; whoever waits for an answer is told that there is none.
    void dropMessagesOf(const Lock&, HWND hwnd);

    /// Sleeps until `answer` is done or something was sent to this thread. Gives up the lock meanwhile.
    void waitForAnswer(Lock& lock, const PendingAnswer& answer);
    /// Where messages come from beside those that are sent and posted; null when there is no such place. Throws
    /// std::system_error when the new one cannot be waited for.
    const std::shared_ptr<MessageSource>& source(const Lock&) const { return source_; }
    void setSource(const Lock&, std::shared_ptr<MessageSource> source);

    /// Sleeps, without the lock, until a message waits or the source may have one. False when the system cannot
    /// wait.
    [[nodiscard]] bool waitForMessage() const { return waitSet_.wait(); }
    int fd() const { return waitSet_.fd(); }

    /// Gives the answer, or that there is none, to whoever waits for it.
    static void complete(const Lock&, const std::shared_ptr<PendingAnswer>& answer, std::optional<LRESULT> result);

private:
    static void dropMessages(const Lock& lock, std::deque<QueuedMessage>& messages, HWND hwnd);
    static std::optional<QueuedMessage> takeFirst(std::deque<QueuedMessage>& messages);
    void lowerWakeWhenEmpty();

    std::deque<QueuedMessage> sent_;
    std::deque<QueuedMessage> posted_;
    std::condition_variable answered_;
    // Up exactly while a message waits, so that a sleeper cannot miss one and is not woken for nothing.
    port::Wake wake_;
    std::shared_ptr<MessageSource> source_;
    port::WaitSet waitSet_;
};

}  // namespace Platform
