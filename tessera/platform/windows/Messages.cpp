#include "tessera/platform/windows/Messages.h"

#include <memory>
#include <optional>

#include "tessera/platform/windows/WindowSystem.h"

using Platform::MessageQueue;
using Platform::WindowSystem;

LRESULT SendMessage(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    return WindowSystem::instance().send({hwnd, message, wParam, lParam});
}

BOOL SendNotifyMessageW(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    return WindowSystem::instance().notify({hwnd, message, wParam, lParam});
}

BOOL PostMessage(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    return WindowSystem::instance().post({hwnd, message, wParam, lParam}, nullptr);
}

BOOL GetMessage(MSG* message) {
    if (message == nullptr) return FALSE;
    const std::shared_ptr<MessageQueue> queue = WindowSystem::instance().currentQueue();
    if (queue == nullptr) return FALSE;
    while (true) {
        if (const auto next = WindowSystem::instance().nextMessage(*queue)) {
            *message = *next;
            return TRUE;
        }
        if (!queue->waitForMessage()) return FALSE;
    }
}

BOOL PeekMessage(MSG* message) {
    if (message == nullptr) return FALSE;
    const std::shared_ptr<MessageQueue> queue = WindowSystem::instance().currentQueue();
    if (queue == nullptr) return FALSE;
    const auto next = WindowSystem::instance().nextMessage(*queue);
    if (!next) return FALSE;
    *message = *next;
    return TRUE;
}

LRESULT DispatchMessage(const MSG* message) {
    if (message == nullptr) return 0;
    CWnd* const object = WindowSystem::instance().ownObject(message->hwnd);
    return object != nullptr ? object->WindowProc(message->message, message->wParam, message->lParam) : 0;
}

BOOL IsWindow(HWND hwnd) {
    return WindowSystem::instance().exists(hwnd) ? TRUE : FALSE;
}

int messageQueueFd() {
    const std::shared_ptr<MessageQueue> queue = WindowSystem::instance().currentQueue();
    return queue != nullptr ? queue->fd() : -1;
}
