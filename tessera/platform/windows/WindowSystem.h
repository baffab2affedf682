#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <unordered_map>

#include "tessera/platform/windows/CWnd.h"
#include "tessera/platform/windows/MessageQueue.h"

namespace Platform {

/// All windows of the process and the queues of their threads, behind one lock that is never held while a
/// procedure runs.
class WindowSystem {
public:
    /// Lives until the process ends, so that a window in a static object can still say goodbye.
    static WindowSystem& instance();

    /// The calling thread's queue, made when first asked for; null, with the last error set, when the system has
    /// no room for one. When the thread ends its windows end too, without a WM_DESTROY.
    std::shared_ptr<MessageQueue> currentQueue();

    /// A new handle for the object, on the calling thread; 0, with the last error set, when there is none to
    /// be had. A handle is never given twice.
    HWND addWindow(CWnd& object);
    /// Ends a window of whatever thread and drops its messages.
    void removeWindow(HWND hwnd);

    bool exists(HWND hwnd);
    /// The object behind a window of the calling thread; null when there is no such window.
    CWnd* ownObject(HWND hwnd);
    /// ownObject, once: the window is then on its way out, and nothing begins its end a second time.
    CWnd* beginDestruction(HWND hwnd);

    /// The four ways of a message; each but send answers FALSE with the last error set when it fails.
    LRESULT send(const MSG& msg);
    BOOL notify(const MSG& msg);
    BOOL post(const MSG& msg, MessageRelease release);
    /// Answers everything that was sent to the calling thread, then takes a posted message if there is one, or
    /// if the thread's source has one.
    std::optional<MSG> nextMessage(MessageQueue& queue);

    /// The source of a window's thread; null when it has none, or there is no such window.
    std::shared_ptr<MessageSource> sourceOf(HWND hwnd);
    /// Gives a window's thread a source in the place of `present`. False, with the last error set, when it has
    /// another one by now, there is no such window, or the source cannot be waited for.
    bool replaceSource(HWND hwnd, const std::shared_ptr<MessageSource>& present, std::shared_ptr<MessageSource> source);
    /// Takes the source away from the calling thread, if it is the one that it has.
    void dropSource(const MessageSource& source);

private:
    struct Window {
        CWnd* object;
        std::shared_ptr<MessageQueue> queue;
        std::thread::id owner;
        bool isEnding = false;
    };

    void endThread(MessageQueue& queue);
    /// Answers the next message that was sent to the calling thread; false when there is none. Gives up the
    /// lock while the procedure runs.
    bool answerNextSent(MessageQueue& queue, MessageQueue::Lock& lock);
    std::optional<MSG> takeMessage(MessageQueue& queue, MessageQueue::Lock& lock);
    Window* findWindow(HWND hwnd);
    Window* findOwnWindow(HWND hwnd);
    std::optional<LRESULT> waitForAnswer(MessageQueue& queue, const PendingAnswer& answer, MessageQueue::Lock& lock);

    friend class ThreadQueue;

    std::mutex mutex_;
    std::unordered_map<HWND, Window> windows_;
    HWND lastHandle_ = 0;
};

/// PostMessage for a message whose lParam owns something: `release` frees it if the window ends before the
/// message is taken. It must not call back into the window system. When the post fails the caller still owns it.
BOOL postOwnedMessage(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam, MessageRelease release);

}  // namespace Platform
