#pragma once

#include <functional>
#include <map>
#include <utility>
#include <vector>

#include "tessera/platform/windows/CWnd.h"
#include "tessera/platform/windows/Messages.h"

/// A window that answers the messages that it was given an answer for, and remembers which of them came.
class RecordingWindow : public CWnd {
public:
    using Answer = std::function<LRESULT(WPARAM, LPARAM)>;

    RecordingWindow() = default;
    ~RecordingWindow() override { DestroyWindow(); }

    BOOL create(void* param = nullptr) {
        return CreateEx(WS_EX_NOACTIVATE, AfxRegisterWndClass(0), TEXT("RecordingWindow"), 0, CW_USEDEFAULT,
                        CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, 0, 0, param);
    }
    void answer(UINT message, Answer answer) { answers_[message] = std::move(answer); }

    std::vector<UINT> received;

protected:
    const MessageEntry* findHandler(UINT message) const override {
        const auto known = answers_.find(message);
        if (known == answers_.end()) return CWnd::findHandler(message);
        entry_ = {message, nullptr};
        // The map's rows are plain functions; the message tells them which answer is meant.
        current_ = &known->second;
        currentMessage_ = message;
        entry_.handler = [](CWnd& window, WPARAM wParam, LPARAM lParam) {
            auto& self = static_cast<RecordingWindow&>(window);
            self.received.push_back(self.currentMessage_);
            const Answer chosen = *self.current_;
            return chosen(wParam, lParam);
        };
        return &entry_;
    }

private:
    std::map<UINT, Answer> answers_;
    mutable MessageEntry entry_{};
    mutable const Answer* current_ = nullptr;
    mutable UINT currentMessage_ = 0;
};

inline LRESULT answerNothing(WPARAM, LPARAM) {
    return 0;
}

/// Takes and dispatches what was posted to this thread; answers how many messages that were.
inline int pumpAll() {
    int pumped = 0;
    for (MSG message; PeekMessage(&message); ++pumped)
        DispatchMessage(&message);
    return pumped;
}
