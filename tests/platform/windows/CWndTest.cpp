#include <memory>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tessera/platform/base/Results.h"
#include "tests/platform/windows/RecordingWindow.h"

using testing::ElementsAre;

namespace {

/// A window with a message map of its own, and a second class below it that adds a row.
class CountingWindow : public CWnd {
public:
    BOOL create() { return CreateEx(0, TEXT("Counting"), TEXT("Counting"), 0, 0, 0, 0, 0, 0, 0); }

    int created = 0;
    int counted = 0;
    int createAnswer = 0;

protected:
    const MessageEntry* findHandler(UINT message) const override {
        static constexpr MessageEntry entries[] = {
            {WM_CREATE,
             [](CWnd& window, WPARAM, LPARAM lParam) {
                 auto& self = static_cast<CountingWindow&>(window);
                 ++self.created;
                 const int base = self.OnCreate(reinterpret_cast<LPCREATESTRUCT>(lParam));
                 return static_cast<LRESULT>(base == -1 ? -1 : self.createAnswer);
             }},
            {WM_APP, [](CWnd& window, WPARAM,
                        LPARAM) { return static_cast<LRESULT>(++static_cast<CountingWindow&>(window).counted); }},
        };
        for (const MessageEntry& entry : entries) {
            if (entry.message == message) return &entry;
        }
        return CWnd::findHandler(message);
    }
};

class DerivedWindow : public CountingWindow {
protected:
    const MessageEntry* findHandler(UINT message) const override {
        static constexpr MessageEntry entry = {WM_APP + 1, [](CWnd&, WPARAM, LPARAM) { return LRESULT{42}; }};
        return message == entry.message ? &entry : CountingWindow::findHandler(message);
    }
};

}  // namespace

TEST(CWnd, HasNoHandleUntilItIsCreated) {
    CountingWindow window;
    EXPECT_EQ(window.GetSafeHwnd(), 0U);

    EXPECT_TRUE(window.create());

    EXPECT_NE(window.GetSafeHwnd(), 0U);
    EXPECT_EQ(window.created, 1);
    EXPECT_TRUE(IsWindow(window.GetSafeHwnd()));
    EXPECT_EQ(CWnd::FromHandle(window.GetSafeHwnd()), &window);
}

TEST(CWnd, AnAnswerOfMinusOneToItsCreationMeansNoWindow) {
    CountingWindow window;
    window.createAnswer = -1;

    EXPECT_FALSE(window.create());
    EXPECT_EQ(window.GetSafeHwnd(), 0U);

    window.createAnswer = 0;
    EXPECT_TRUE(window.create());
}

TEST(CWnd, AFailedCreationSendsNoDestroy) {
    RecordingWindow window;
    window.answer(WM_CREATE, [](WPARAM, LPARAM) { return -1; });
    window.answer(WM_DESTROY, answerNothing);

    EXPECT_FALSE(window.create());

    EXPECT_THAT(window.received, ElementsAre(WM_CREATE));
}

TEST(CWnd, TheHandleIsKnownWhileItIsBeingCreated) {
    RecordingWindow window;
    HWND seen = 0;
    BOOL posted = FALSE;
    window.answer(WM_APP, answerNothing);
    window.answer(WM_CREATE, [&](WPARAM, LPARAM) {
        seen = window.GetSafeHwnd();
        posted = PostMessage(seen, WM_APP, 0, 0);
        return 0;
    });

    ASSERT_TRUE(window.create());

    EXPECT_EQ(seen, window.GetSafeHwnd());
    EXPECT_TRUE(posted);
    EXPECT_EQ(pumpAll(), 1);
}

TEST(CWnd, CreationIsToldWhatItWasGiven) {
    RecordingWindow window;
    int given = 0;
    CREATESTRUCT seen{};
    window.answer(WM_CREATE, [&](WPARAM, LPARAM lParam) {
        seen = *reinterpret_cast<LPCREATESTRUCT>(lParam);
        return 0;
    });

    ASSERT_TRUE(window.create(&given));

    EXPECT_EQ(seen.lpCreateParams, &given);
    EXPECT_EQ(seen.dwExStyle, WS_EX_NOACTIVATE);
    EXPECT_EQ(seen.style, 0U);
    EXPECT_EQ(CString(seen.lpszName), CString(TEXT("RecordingWindow")));
    EXPECT_EQ(CString(seen.lpszClass), CString(AfxRegisterWndClass(0)));
}

TEST(CWnd, IsNotCreatedTwice) {
    CountingWindow window;
    ASSERT_TRUE(window.create());
    const HWND first = window.GetSafeHwnd();

    EXPECT_FALSE(window.create());

    EXPECT_EQ(GetLastError(), ERROR_ALREADY_EXISTS);
    EXPECT_EQ(window.GetSafeHwnd(), first);
    EXPECT_EQ(window.created, 1);
}

TEST(CWnd, AWindowThatEndsWhileItIsCreatedIsNoWindow) {
    RecordingWindow window;
    window.answer(WM_CREATE, [&](WPARAM, LPARAM) {
        window.DestroyWindow();
        return 0;
    });

    EXPECT_FALSE(window.create());

    EXPECT_EQ(window.GetSafeHwnd(), 0U);
}

TEST(DestroyWindow, SendsWmDestroyOnce) {
    RecordingWindow window;
    window.answer(WM_DESTROY, [&](WPARAM, LPARAM) {
        EXPECT_NE(window.GetSafeHwnd(), 0U);
        EXPECT_FALSE(window.DestroyWindow());
        return 0;
    });
    ASSERT_TRUE(window.create());
    const HWND handle = window.GetSafeHwnd();

    EXPECT_TRUE(window.DestroyWindow());
    EXPECT_FALSE(window.DestroyWindow());

    EXPECT_THAT(window.received, ElementsAre(WM_DESTROY));
    EXPECT_EQ(window.GetSafeHwnd(), 0U);
    EXPECT_FALSE(IsWindow(handle));
    EXPECT_EQ(CWnd::FromHandle(handle), nullptr);
}

TEST(DestroyWindow, DropsTheWindowsMessagesAndNoOthers) {
    RecordingWindow going;
    RecordingWindow staying;
    going.answer(WM_APP, answerNothing);
    staying.answer(WM_APP, answerNothing);
    ASSERT_TRUE(going.create());
    ASSERT_TRUE(staying.create());
    PostMessage(going.GetSafeHwnd(), WM_APP, 0, 0);
    PostMessage(staying.GetSafeHwnd(), WM_APP, 0, 0);

    going.DestroyWindow();

    EXPECT_EQ(pumpAll(), 1);
    EXPECT_THAT(staying.received, ElementsAre(WM_APP));
    EXPECT_TRUE(going.received.empty());
}

TEST(DestroyWindow, TheWindowMayBeCreatedAgainUnderAnotherHandle) {
    CountingWindow window;
    ASSERT_TRUE(window.create());
    const HWND first = window.GetSafeHwnd();
    ASSERT_TRUE(window.DestroyWindow());

    EXPECT_TRUE(window.create());

    EXPECT_NE(window.GetSafeHwnd(), first);
    EXPECT_FALSE(IsWindow(first));
}

TEST(DestroyWindow, WithoutAWindowFailsAndSaysWhy) {
    CountingWindow window;
    SetLastError(ERROR_SUCCESS);

    EXPECT_FALSE(window.DestroyWindow());

    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
}

TEST(DestroyWindow, IsForTheWindowsOwnThread) {
    CountingWindow window;
    ASSERT_TRUE(window.create());
    BOOL destroyed = TRUE;
    const CWnd* seen = &window;

    std::thread other([&] {
        destroyed = window.DestroyWindow();
        seen = CWnd::FromHandle(window.GetSafeHwnd());
    });
    other.join();

    EXPECT_FALSE(destroyed);
    EXPECT_EQ(seen, nullptr);
    EXPECT_TRUE(IsWindow(window.GetSafeHwnd()));
}

TEST(CWnd, WithoutAWindowItGoesSilently) {
    SetLastError(ERROR_SEEK);
    { const CountingWindow window; }

    EXPECT_EQ(GetLastError(), ERROR_SEEK);
}

TEST(CWnd, TheObjectTakesItsWindowAlong) {
    HWND handle = 0;
    {
        CountingWindow window;
        ASSERT_TRUE(window.create());
        handle = window.GetSafeHwnd();
    }

    EXPECT_FALSE(IsWindow(handle));
    EXPECT_FALSE(PostMessage(handle, WM_APP, 0, 0));
}

TEST(CWnd, TheObjectTakesItsWindowAlongOnAnotherThreadToo) {
    auto window = std::make_unique<CountingWindow>();
    ASSERT_TRUE(window->create());
    const HWND handle = window->GetSafeHwnd();

    std::thread other([&] { window.reset(); });
    other.join();

    EXPECT_FALSE(IsWindow(handle));
    EXPECT_EQ(SendMessage(handle, WM_APP, 0, 0), 0);
}

TEST(MessageMap, TheMostDerivedHandlerIsFoundAndThenItsBases) {
    DerivedWindow window;
    ASSERT_TRUE(window.create());

    EXPECT_EQ(window.created, 1);
    EXPECT_EQ(window.WindowProc(WM_APP + 1, 0, 0), 42);
    EXPECT_EQ(window.WindowProc(WM_APP, 0, 0), 1);
    EXPECT_EQ(window.WindowProc(WM_APP, 0, 0), 2);
}

TEST(MessageMap, WhatNobodyHandlesIsAnsweredWithZero) {
    CWnd plain;
    EXPECT_TRUE(plain.CreateEx(0, TEXT("Plain"), TEXT("Plain"), 0, 0, 0, 0, 0, 0, 0));

    EXPECT_EQ(plain.WindowProc(WM_CREATE, 0, 0), 0);
    EXPECT_EQ(plain.WindowProc(WM_APP + 7, 1, 2), 0);
}

TEST(AfxRegisterWndClass, GivesOneNameAStyle) {
    const CString plain = AfxRegisterWndClass(0);

    EXPECT_FALSE(plain.IsEmpty());
    EXPECT_EQ(plain, CString(AfxRegisterWndClass(0)));
    EXPECT_NE(plain, CString(AfxRegisterWndClass(3)));
}
