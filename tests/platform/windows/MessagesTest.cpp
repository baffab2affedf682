#include <array>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tessera/platform/base/Results.h"
#include "tessera/platform/port/WaitSet.h"
#include "tests/platform/windows/RecordingWindow.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr HWND noSuchWindow = 0xFFFFFFF0;

bool hasSomethingToPump() {
    return Platform::port::isReadable(messageQueueFd());
}

}  // namespace

TEST(SendMessage, RunsTheProcedureAtOnce) {
    RecordingWindow window;
    window.answer(WM_APP, [](WPARAM wParam, LPARAM lParam) { return static_cast<LRESULT>(wParam) - lParam; });
    ASSERT_TRUE(window.create());

    EXPECT_EQ(SendMessage(window.GetSafeHwnd(), WM_APP, 50, 8), 42);

    EXPECT_THAT(window.received, ElementsAre(WM_APP));
}

TEST(SendMessage, CarriesAPointer) {
    RecordingWindow window;
    int value = 0;
    window.answer(WM_APP, [](WPARAM, LPARAM lParam) { return *reinterpret_cast<int*>(lParam) = 42; });
    ASSERT_TRUE(window.create());

    SendMessage(window.GetSafeHwnd(), WM_APP, 0, reinterpret_cast<LPARAM>(&value));

    EXPECT_EQ(value, 42);
}

TEST(Messages, ForNoWindowAreRefused) {
    for (const HWND hwnd : {HWND{0}, noSuchWindow}) {
        SetLastError(ERROR_SUCCESS);
        EXPECT_EQ(SendMessage(hwnd, WM_APP, 0, 0), 0);
        EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
        SetLastError(ERROR_SUCCESS);
        EXPECT_FALSE(PostMessage(hwnd, WM_APP, 0, 0));
        EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
        SetLastError(ERROR_SUCCESS);
        EXPECT_FALSE(SendNotifyMessageW(hwnd, WM_APP, 0, 0));
        EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
        EXPECT_FALSE(IsWindow(hwnd));
    }
}

TEST(SendNotifyMessage, RunsTheProcedureAtOnceOnTheSameThread) {
    RecordingWindow window;
    window.answer(WM_APP, answerNothing);
    ASSERT_TRUE(window.create());

    EXPECT_TRUE(SendNotifyMessageW(window.GetSafeHwnd(), WM_APP, 0, 0));

    EXPECT_THAT(window.received, ElementsAre(WM_APP));
}

TEST(PostMessage, NothingIsDeliveredUntilTheThreadPumps) {
    RecordingWindow window;
    window.answer(WM_APP, answerNothing);
    ASSERT_TRUE(window.create());

    EXPECT_TRUE(PostMessage(window.GetSafeHwnd(), WM_APP, 0, 0));

    EXPECT_THAT(window.received, IsEmpty());
    EXPECT_EQ(pumpAll(), 1);
    EXPECT_THAT(window.received, ElementsAre(WM_APP));
}

TEST(PostMessage, MessagesArriveInOrderAcrossWindows) {
    RecordingWindow first;
    RecordingWindow second;
    ASSERT_TRUE(first.create());
    ASSERT_TRUE(second.create());
    PostMessage(first.GetSafeHwnd(), WM_APP, 1, 10);
    PostMessage(second.GetSafeHwnd(), WM_APP + 1, 2, 20);
    PostMessage(first.GetSafeHwnd(), WM_APP + 2, 3, 30);

    std::array<MSG, 3> taken;
    for (MSG& message : taken)
        ASSERT_TRUE(PeekMessage(&message));

    EXPECT_EQ(taken[0].hwnd, first.GetSafeHwnd());
    EXPECT_EQ(taken[1].hwnd, second.GetSafeHwnd());
    EXPECT_EQ(taken[2].message, WM_APP + 2);
    EXPECT_EQ(taken[2].wParam, 3U);
    EXPECT_EQ(taken[2].lParam, 30);
}

TEST(PeekMessage, AnswersFalseWhenNothingIsLeft) {
    MSG message{7, 7, 7, 7};

    EXPECT_FALSE(PeekMessage(&message));

    EXPECT_EQ(message.hwnd, 7U);
}

TEST(GetMessage, TakesAWaitingMessageWithoutSleeping) {
    RecordingWindow window;
    MSG message;
    ASSERT_TRUE(window.create());
    PostMessage(window.GetSafeHwnd(), WM_APP, 1, 2);

    EXPECT_TRUE(GetMessage(&message));

    EXPECT_EQ(message.message, WM_APP);
    EXPECT_FALSE(PeekMessage(&message));
}

TEST(Pump, ANullMessageIsRefused) {
    EXPECT_FALSE(GetMessage(nullptr));
    EXPECT_FALSE(PeekMessage(nullptr));
    EXPECT_EQ(DispatchMessage(nullptr), 0);
}

TEST(DispatchMessage, ReturnsTheProceduresAnswer) {
    RecordingWindow window;
    window.answer(WM_APP, [](WPARAM wParam, LPARAM) { return static_cast<LRESULT>(wParam) + 1; });
    ASSERT_TRUE(window.create());
    const MSG message{window.GetSafeHwnd(), WM_APP, 41, 0};

    EXPECT_EQ(DispatchMessage(&message), 42);
}

TEST(DispatchMessage, AMessageWhoseWindowIsGoneIsAnsweredWithZero) {
    RecordingWindow window;
    window.answer(WM_APP, [](WPARAM, LPARAM) { return 1; });
    MSG message;
    ASSERT_TRUE(window.create());
    PostMessage(window.GetSafeHwnd(), WM_APP, 0, 0);
    ASSERT_TRUE(PeekMessage(&message));

    window.DestroyWindow();

    EXPECT_EQ(DispatchMessage(&message), 0);
}

TEST(Pump, AHandlerMayPostAndSendAndPump) {
    RecordingWindow window;
    window.answer(WM_APP, [&](WPARAM, LPARAM) {
        PostMessage(window.GetSafeHwnd(), WM_APP + 1, 0, 0);
        SendMessage(window.GetSafeHwnd(), WM_APP + 2, 0, 0);
        return pumpAll();
    });
    window.answer(WM_APP + 1, answerNothing);
    window.answer(WM_APP + 2, answerNothing);
    ASSERT_TRUE(window.create());

    EXPECT_EQ(SendMessage(window.GetSafeHwnd(), WM_APP, 0, 0), 1);

    EXPECT_THAT(window.received, ElementsAre(WM_APP, WM_APP + 2, WM_APP + 1));
}

TEST(Pump, AHandlerMayEndItsWindow) {
    RecordingWindow window;
    window.answer(WM_APP, [&](WPARAM, LPARAM) { return window.DestroyWindow(); });
    ASSERT_TRUE(window.create());
    PostMessage(window.GetSafeHwnd(), WM_APP, 0, 0);
    PostMessage(window.GetSafeHwnd(), WM_APP, 0, 0);

    EXPECT_EQ(pumpAll(), 1);

    EXPECT_EQ(window.GetSafeHwnd(), 0U);
}

TEST(MessageQueueFd, IsReadableExactlyWhileThereIsSomethingToPump) {
    RecordingWindow window;
    MSG message;
    ASSERT_TRUE(window.create());
    EXPECT_FALSE(hasSomethingToPump());

    PostMessage(window.GetSafeHwnd(), WM_APP, 0, 0);
    PostMessage(window.GetSafeHwnd(), WM_APP, 0, 0);
    EXPECT_TRUE(hasSomethingToPump());

    ASSERT_TRUE(PeekMessage(&message));
    EXPECT_TRUE(hasSomethingToPump());
    ASSERT_TRUE(PeekMessage(&message));
    EXPECT_FALSE(hasSomethingToPump());
}

TEST(MessageQueueFd, IsQuietWhenTheMessagesWereDropped) {
    RecordingWindow window;
    ASSERT_TRUE(window.create());
    PostMessage(window.GetSafeHwnd(), WM_APP, 0, 0);

    window.DestroyWindow();

    EXPECT_FALSE(hasSomethingToPump());
}
