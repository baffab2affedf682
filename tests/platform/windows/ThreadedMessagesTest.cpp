#include <algorithm>
#include <functional>
#include <future>
#include <stdexcept>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tessera/platform/base/Results.h"
#include "tessera/platform/port/WaitSet.h"
#include "tests/platform/windows/RecordingWindow.h"

using testing::ElementsAre;

namespace {

/// A thread that owns a window and pumps until it is joined.
class PumpingThread {
public:
    using Setup = std::function<void(RecordingWindow&)>;

    explicit PumpingThread(const Setup& setup) {
        std::promise<void> ready;
        std::future<void> isReady = ready.get_future();
        thread_ = std::thread([this, setup, &ready] { run(setup, ready); });
        isReady.wait();
    }
    ~PumpingThread() { join(); }
    PumpingThread(const PumpingThread&) = delete;
    PumpingThread& operator=(const PumpingThread&) = delete;

    HWND hwnd() const { return hwnd_; }
    /// Delivers what was posted so far, ends the thread and answers what its window was given.
    std::vector<UINT> join() {
        if (thread_.joinable()) {
            PostMessage(control_, WM_APP, 0, 0);
            thread_.join();
        }
        return received_;
    }

private:
    void run(const Setup& setup, std::promise<void>& ready) {
        RecordingWindow window;
        RecordingWindow control;
        bool isRunning = true;
        control.answer(WM_APP, [&](WPARAM, LPARAM) {
            isRunning = false;
            return 0;
        });
        setup(window);
        window.create();
        control.create();
        hwnd_ = window.GetSafeHwnd();
        control_ = control.GetSafeHwnd();
        ready.set_value();
        for (MSG message; isRunning && GetMessage(&message);)
            DispatchMessage(&message);
        received_ = window.received;
    }

    HWND hwnd_ = 0;
    HWND control_ = 0;
    std::vector<UINT> received_;
    std::thread thread_;
};

struct SendOutcome {
    LRESULT answer;
    DWORD error;
};

SendOutcome sendAndWait(HWND hwnd) {
    SetLastError(ERROR_SUCCESS);
    const LRESULT answer = SendMessage(hwnd, WM_APP, 0, 0);
    return {answer, GetLastError()};
}

void waitForSomethingToPump() {
    while (!Platform::port::isReadable(messageQueueFd()))
        std::this_thread::yield();
}

}  // namespace

TEST(SendMessageAcrossThreads, TheOwningThreadAnswers) {
    std::thread::id answering;
    PumpingThread other([&](RecordingWindow& window) {
        window.answer(WM_APP, [&](WPARAM wParam, LPARAM) {
            answering = std::this_thread::get_id();
            return static_cast<LRESULT>(wParam) + 1;
        });
    });

    EXPECT_EQ(SendMessage(other.hwnd(), WM_APP, 41, 0), 42);

    EXPECT_NE(answering, std::this_thread::get_id());
}

TEST(SendMessageAcrossThreads, FailsWhenTheWindowEndsBeforeItAnswers) {
    RecordingWindow window;
    window.answer(WM_APP, [](WPARAM, LPARAM) { return 1; });
    ASSERT_TRUE(window.create());
    auto outcome = std::async(std::launch::async, sendAndWait, window.GetSafeHwnd());
    waitForSomethingToPump();

    window.DestroyWindow();

    EXPECT_EQ(outcome.get().answer, 0);
    EXPECT_TRUE(window.received.empty());
}

TEST(SendMessageAcrossThreads, AFailureIsToldApartFromAnAnswerOfZero) {
    RecordingWindow window;
    ASSERT_TRUE(window.create());
    auto failed = std::async(std::launch::async, sendAndWait, window.GetSafeHwnd());
    waitForSomethingToPump();
    window.DestroyWindow();
    PumpingThread other([](RecordingWindow& answering) { answering.answer(WM_APP, answerNothing); });

    EXPECT_EQ(failed.get().error, ERROR_INVALID_HANDLE);
    EXPECT_EQ(sendAndWait(other.hwnd()).error, ERROR_SUCCESS);
}

TEST(SendMessageAcrossThreads, FailsWhenTheThreadEndsBeforeItAnswers) {
    std::promise<HWND> created;
    RecordingWindow window;
    std::thread owner([&] {
        ASSERT_TRUE(window.create());
        created.set_value(window.GetSafeHwnd());
        waitForSomethingToPump();
    });

    const SendOutcome outcome = sendAndWait(created.get_future().get());
    owner.join();

    EXPECT_EQ(outcome.answer, 0);
    EXPECT_EQ(outcome.error, ERROR_INVALID_HANDLE);
}

TEST(SendMessageAcrossThreads, AnAnswerGivenWhileTheWindowEndsCounts) {
    PumpingThread other([](RecordingWindow& window) {
        window.answer(WM_APP, [&](WPARAM, LPARAM) {
            window.DestroyWindow();
            return 42;
        });
    });

    EXPECT_EQ(SendMessage(other.hwnd(), WM_APP, 0, 0), 42);
    EXPECT_FALSE(IsWindow(other.hwnd()));
}

TEST(SendMessageAcrossThreads, AProcedureThatThrowsFailsTheSendAndThePump) {
    RecordingWindow window;
    window.answer(WM_APP, [](WPARAM, LPARAM) -> LRESULT { throw std::runtime_error("refused"); });
    ASSERT_TRUE(window.create());
    auto outcome = std::async(std::launch::async, sendAndWait, window.GetSafeHwnd());
    waitForSomethingToPump();
    MSG message;

    EXPECT_THROW(PeekMessage(&message), std::runtime_error);

    EXPECT_EQ(outcome.get().error, ERROR_INVALID_HANDLE);
}

TEST(SendMessageAcrossThreads, TwoThreadsMaySendToEachOther) {
    RecordingWindow here;
    here.answer(WM_APP + 1, [](WPARAM wParam, LPARAM) { return static_cast<LRESULT>(wParam) * 2; });
    ASSERT_TRUE(here.create());
    const HWND backTo = here.GetSafeHwnd();
    PumpingThread other([=](RecordingWindow& window) {
        window.answer(WM_APP, [=](WPARAM wParam, LPARAM) { return SendMessage(backTo, WM_APP + 1, wParam, 0) + 1; });
    });

    EXPECT_EQ(SendMessage(other.hwnd(), WM_APP, 20, 0), 41);
}

TEST(SendMessageAcrossThreads, WaitingDeliversNoPostedMessage) {
    RecordingWindow here;
    here.answer(WM_APP, answerNothing);
    here.answer(WM_APP + 1, answerNothing);
    ASSERT_TRUE(here.create());
    const HWND backTo = here.GetSafeHwnd();
    PumpingThread other([=](RecordingWindow& window) {
        window.answer(WM_APP, [=](WPARAM, LPARAM) {
            PostMessage(backTo, WM_APP, 0, 0);
            return SendMessage(backTo, WM_APP + 1, 0, 0);
        });
    });

    SendMessage(other.hwnd(), WM_APP, 0, 0);

    EXPECT_THAT(here.received, ElementsAre(WM_APP + 1));
    EXPECT_EQ(pumpAll(), 1);
}

TEST(SendNotifyMessageAcrossThreads, DoesNotWaitAndOvertakesWhatWasPosted) {
    RecordingWindow window;
    for (const UINT message : {WM_APP, WM_APP + 1, WM_APP + 2})
        window.answer(message, answerNothing);
    ASSERT_TRUE(window.create());
    const HWND hwnd = window.GetSafeHwnd();

    std::thread other([=] {
        EXPECT_TRUE(PostMessage(hwnd, WM_APP, 0, 0));
        EXPECT_TRUE(SendNotifyMessageW(hwnd, WM_APP + 1, 0, 0));
        EXPECT_TRUE(SendNotifyMessageW(hwnd, WM_APP + 2, 0, 0));
    });
    other.join();

    EXPECT_TRUE(window.received.empty());
    EXPECT_EQ(pumpAll(), 1);
    EXPECT_THAT(window.received, ElementsAre(WM_APP + 1, WM_APP + 2, WM_APP));
}

TEST(PumpAcrossThreads, ASentMessageIsDeliveredEvenWhenNothingWasPosted) {
    RecordingWindow window;
    window.answer(WM_APP, answerNothing);
    ASSERT_TRUE(window.create());
    const HWND hwnd = window.GetSafeHwnd();
    std::thread other([=] { SendNotifyMessageW(hwnd, WM_APP, 0, 0); });
    other.join();
    MSG message;

    EXPECT_FALSE(PeekMessage(&message));

    EXPECT_THAT(window.received, ElementsAre(WM_APP));
}

TEST(PumpAcrossThreads, APostWakesASleepingPump) {
    PumpingThread other([](RecordingWindow& window) { window.answer(WM_APP, answerNothing); });
    SendMessage(other.hwnd(), WM_APP, 0, 0);  // it has nothing left to do after this

    EXPECT_TRUE(PostMessage(other.hwnd(), WM_APP, 0, 0));

    EXPECT_THAT(other.join(), ElementsAre(WM_APP, WM_APP));
}

TEST(PumpAcrossThreads, AThreadTakesOnlyItsOwnMessages) {
    RecordingWindow here;
    here.answer(WM_APP, answerNothing);
    ASSERT_TRUE(here.create());
    PostMessage(here.GetSafeHwnd(), WM_APP, 0, 0);
    MSG ofHere{here.GetSafeHwnd(), WM_APP, 0, 0};
    BOOL taken = TRUE;

    std::thread other([&] {
        MSG message;
        taken = PeekMessage(&message);
        DispatchMessage(&ofHere);
    });
    other.join();

    EXPECT_FALSE(taken);
    EXPECT_TRUE(here.received.empty());
    EXPECT_EQ(pumpAll(), 1);
}

TEST(PumpAcrossThreads, NothingIsLostAndEachSendersOrderIsKept) {
    constexpr WPARAM senders = 4;
    constexpr LPARAM each = 500;
    std::vector<std::vector<LPARAM>> bySender(senders);
    PumpingThread receiver([&](RecordingWindow& window) {
        window.answer(WM_APP, [&](WPARAM sender, LPARAM number) {
            bySender[sender].push_back(number);
            return 0;
        });
    });

    std::vector<std::thread> threads;
    for (WPARAM sender = 0; sender < senders; ++sender) {
        threads.emplace_back([=, hwnd = receiver.hwnd()] {
            for (LPARAM number = 0; number < each; ++number)
                PostMessage(hwnd, WM_APP, sender, number);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    receiver.join();

    for (const std::vector<LPARAM>& numbers : bySender) {
        ASSERT_EQ(numbers.size(), static_cast<std::size_t>(each));
        EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
    }
}

TEST(PumpAcrossThreads, ManyThreadsAreAnsweredEachWithItsOwn) {
    PumpingThread receiver([](RecordingWindow& window) {
        window.answer(WM_APP, [](WPARAM wParam, LPARAM) { return static_cast<LRESULT>(wParam) + 1; });
    });
    std::vector<std::future<int>> wrong;
    for (WPARAM sender = 0; sender < 4; ++sender) {
        wrong.push_back(std::async(std::launch::async, [=, hwnd = receiver.hwnd()] {
            int mistaken = 0;
            for (WPARAM i = sender * 1000; i < sender * 1000 + 200; ++i) {
                if (SendMessage(hwnd, WM_APP, i, 0) != static_cast<LRESULT>(i) + 1) ++mistaken;
            }
            return mistaken;
        }));
    }

    for (std::future<int>& count : wrong)
        EXPECT_EQ(count.get(), 0);
}
