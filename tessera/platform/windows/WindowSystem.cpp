#include "tessera/platform/windows/WindowSystem.h"

#include <exception>
#include <iterator>
#include <limits>
#include <utility>

#include "tessera/platform/base/Results.h"
#include "tessera/platform/port/ThreadLocal.h"

namespace Platform {
namespace {

BOOL failWith(DWORD error) {
    SetLastError(error);
    return FALSE;
}

}  // namespace

/// A thread's hold on its queue; lets go of it, and of the thread's windows, when the thread ends.
class ThreadQueue {
public:
    ThreadQueue() = default;
    ThreadQueue(const ThreadQueue&) = delete;
    ThreadQueue& operator=(const ThreadQueue&) = delete;
    ~ThreadQueue() { WindowSystem::instance().endThread(*queue_); }

    const std::shared_ptr<MessageQueue>& queue() const { return queue_; }

private:
    std::shared_ptr<MessageQueue> queue_ = std::make_shared<MessageQueue>();
};

WindowSystem& WindowSystem::instance() {
    static WindowSystem* const system = new WindowSystem;
    return *system;
}

std::shared_ptr<MessageQueue> WindowSystem::currentQueue() {
    try {
        return port::ofThisThread<ThreadQueue>().queue();
    } catch (const std::exception&) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
}

void WindowSystem::endThread(MessageQueue& queue) {
    const MessageQueue::Lock lock(mutex_);
    for (auto window = windows_.begin(); window != windows_.end();) {
        if (window->second.queue.get() != &queue) {
            ++window;
            continue;
        }
        queue.dropMessagesOf(lock, window->first);
        window = windows_.erase(window);
    }
}

HWND WindowSystem::addWindow(CWnd& object) {
    std::shared_ptr<MessageQueue> queue = currentQueue();
    if (queue == nullptr) return 0;
    const MessageQueue::Lock lock(mutex_);
    if (lastHandle_ == std::numeric_limits<HWND>::max()) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return 0;
    }
    try {
        windows_.emplace(lastHandle_ + 1, Window{&object, std::move(queue), std::this_thread::get_id()});
    } catch (const std::bad_alloc&) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return 0;
    }
    return ++lastHandle_;
}

void WindowSystem::removeWindow(HWND hwnd) {
    const MessageQueue::Lock lock(mutex_);
    const auto window = windows_.find(hwnd);
    if (window == windows_.end()) return;
    window->second.queue->dropMessagesOf(lock, hwnd);
    windows_.erase(window);
}

WindowSystem::Window* WindowSystem::findWindow(HWND hwnd) {
    const auto window = windows_.find(hwnd);
    return window != windows_.end() ? &window->second : nullptr;
}

WindowSystem::Window* WindowSystem::findOwnWindow(HWND hwnd) {
    Window* const window = findWindow(hwnd);
    return window != nullptr && window->owner == std::this_thread::get_id() ? window : nullptr;
}

bool WindowSystem::exists(HWND hwnd) {
    const MessageQueue::Lock lock(mutex_);
    return findWindow(hwnd) != nullptr;
}

CWnd* WindowSystem::ownObject(HWND hwnd) {
    const MessageQueue::Lock lock(mutex_);
    const Window* const window = findOwnWindow(hwnd);
    return window != nullptr ? window->object : nullptr;
}

CWnd* WindowSystem::beginDestruction(HWND hwnd) {
    const MessageQueue::Lock lock(mutex_);
    Window* const window = findOwnWindow(hwnd);
    if (window == nullptr || std::exchange(window->isEnding, true)) return nullptr;
    return window->object;
}

LRESULT WindowSystem::send(const MSG& msg) {
    if (CWnd* const object = ownObject(msg.hwnd)) return object->WindowProc(msg.message, msg.wParam, msg.lParam);
    if (!exists(msg.hwnd)) return failWith(ERROR_INVALID_HANDLE);
    const std::shared_ptr<MessageQueue> own = currentQueue();
    if (own == nullptr) return 0;

    std::optional<LRESULT> result;
    try {
        const auto answer = std::make_shared<PendingAnswer>(PendingAnswer{own, false, std::nullopt});
        MessageQueue::Lock lock(mutex_);
        const Window* const window = findWindow(msg.hwnd);
        if (window == nullptr) return failWith(ERROR_INVALID_HANDLE);
        window->queue->addSent(lock, {msg, answer});
        result = waitForAnswer(*own, *answer, lock);
    } catch (const std::bad_alloc&) {
        return failWith(ERROR_NOT_ENOUGH_MEMORY);
    }
    return result ? *result : failWith(ERROR_INVALID_HANDLE);
}

std::optional<LRESULT> WindowSystem::waitForAnswer(MessageQueue& queue, const PendingAnswer& answer,
                                                   MessageQueue::Lock& lock) {
    while (!answer.isDone) {
        queue.waitForAnswer(lock, answer);
        if (!answer.isDone) answerNextSent(queue, lock);
    }
    return answer.result;
}

BOOL WindowSystem::notify(const MSG& msg) {
    if (CWnd* const object = ownObject(msg.hwnd)) {
        object->WindowProc(msg.message, msg.wParam, msg.lParam);
        return TRUE;
    }
    const MessageQueue::Lock lock(mutex_);
    const Window* const window = findWindow(msg.hwnd);
    if (window == nullptr) return failWith(ERROR_INVALID_HANDLE);
    try {
        window->queue->addSent(lock, {msg, nullptr});
        return TRUE;
    } catch (const std::bad_alloc&) {
        return failWith(ERROR_NOT_ENOUGH_MEMORY);
    }
}

BOOL WindowSystem::post(const MSG& msg, MessageRelease release) {
    const MessageQueue::Lock lock(mutex_);
    const Window* const window = findWindow(msg.hwnd);
    if (window == nullptr) return failWith(ERROR_INVALID_HANDLE);
    try {
        window->queue->addPosted(lock, {msg, nullptr, release});
        return TRUE;
    } catch (const std::bad_alloc&) {
        return failWith(ERROR_NOT_ENOUGH_MEMORY);
    }
}

bool WindowSystem::answerNextSent(MessageQueue& queue, MessageQueue::Lock& lock) {
    const std::optional<QueuedMessage> sent = queue.takeSent(lock);
    if (!sent) return false;

    // The sender is told even when the procedure throws: it would wait for ever.
    std::optional<LRESULT> result;
    std::exception_ptr thrown;
    lock.unlock();
    try {
        if (CWnd* const object = ownObject(sent->msg.hwnd)) {
            result = object->WindowProc(sent->msg.message, sent->msg.wParam, sent->msg.lParam);
        }
    } catch (...) {
        thrown = std::current_exception();
    }
    lock.lock();
    MessageQueue::complete(lock, sent->answer, result);
    if (thrown) std::rethrow_exception(thrown);
    return true;
}

std::optional<MSG> WindowSystem::takeMessage(MessageQueue& queue, MessageQueue::Lock& lock) {
    while (answerNextSent(queue, lock)) {
    }
    const std::optional<QueuedMessage> posted = queue.takePosted(lock);
    return posted ? std::optional(posted->msg) : std::nullopt;
}

std::optional<MSG> WindowSystem::nextMessage(MessageQueue& queue) {
    MessageQueue::Lock lock(mutex_);
    if (auto message = takeMessage(queue, lock)) return message;
    const std::shared_ptr<MessageSource> source = queue.source(lock);
    if (source == nullptr) return std::nullopt;
    lock.unlock();
    source->collect();
    lock.lock();
    return takeMessage(queue, lock);
}

void WindowSystem::dropSource(const MessageSource& source) {
    const std::shared_ptr<MessageQueue> queue = currentQueue();
    if (queue == nullptr) return;
    const MessageQueue::Lock lock(mutex_);
    if (queue->source(lock).get() == &source) queue->setSource(lock, nullptr);
}

std::shared_ptr<MessageSource> WindowSystem::sourceOf(HWND hwnd) {
    const MessageQueue::Lock lock(mutex_);
    const Window* const window = findWindow(hwnd);
    return window != nullptr ? window->queue->source(lock) : nullptr;
}

bool WindowSystem::replaceSource(HWND hwnd, const std::shared_ptr<MessageSource>& present,
                                 std::shared_ptr<MessageSource> source) {
    const MessageQueue::Lock lock(mutex_);
    const Window* const window = findWindow(hwnd);
    if (window == nullptr) return failWith(ERROR_INVALID_HANDLE) != FALSE;
    if (window->queue->source(lock) != present) return failWith(ERROR_ALREADY_EXISTS) != FALSE;
    try {
        window->queue->setSource(lock, std::move(source));
        return true;
    } catch (const std::exception&) {
        return failWith(ERROR_NOT_ENOUGH_MEMORY) != FALSE;
    }
}

BOOL postOwnedMessage(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam, MessageRelease release) {
    return WindowSystem::instance().post({hwnd, message, wParam, lParam}, release);
}

}  // namespace Platform
