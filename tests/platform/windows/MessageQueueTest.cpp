#include <algorithm>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tessera/platform/base/Results.h"
#include "tessera/platform/windows/WindowSystem.h"
#include "tests/platform/windows/RecordingWindow.h"

using Platform::postOwnedMessage;
using testing::ElementsAre;

namespace {

void setFreed(LPARAM lParam) {
    *reinterpret_cast<bool*>(lParam) = true;
}

LPARAM addressOf(bool& flag) {
    return reinterpret_cast<LPARAM>(&flag);
}

}  // namespace

TEST(OwnedMessage, IsFreedWhenItsWindowEnds) {
    RecordingWindow window;
    bool freed = false;
    ASSERT_TRUE(window.create());
    ASSERT_TRUE(postOwnedMessage(window.GetSafeHwnd(), WM_APP, 0, addressOf(freed), setFreed));
    EXPECT_FALSE(freed);

    window.DestroyWindow();

    EXPECT_TRUE(freed);
}

TEST(OwnedMessage, BelongsToWhoeverTookIt) {
    RecordingWindow window;
    bool freed = false;
    MSG message;
    ASSERT_TRUE(window.create());
    ASSERT_TRUE(postOwnedMessage(window.GetSafeHwnd(), WM_APP, 0, addressOf(freed), setFreed));

    ASSERT_TRUE(PeekMessage(&message));
    window.DestroyWindow();

    EXPECT_FALSE(freed);
    EXPECT_EQ(message.lParam, addressOf(freed));
}

TEST(OwnedMessage, StaysWithTheSenderWhenThereIsNoWindow) {
    bool freed = false;

    EXPECT_FALSE(postOwnedMessage(0, WM_APP, 0, addressOf(freed), setFreed));

    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    EXPECT_FALSE(freed);
}

TEST(OwnedMessage, IsFreedWhenItsThreadEnds) {
    bool freed = false;
    HWND handle = 0;
    RecordingWindow window;

    std::thread owner([&] {
        ASSERT_TRUE(window.create());
        handle = window.GetSafeHwnd();
        ASSERT_TRUE(postOwnedMessage(handle, WM_APP, 0, addressOf(freed), setFreed));
    });
    owner.join();

    EXPECT_TRUE(freed);
    EXPECT_FALSE(IsWindow(handle));
}

TEST(Handles, AreNeverUsedTwice) {
    std::vector<HWND> handles;
    for (int i = 0; i < 1000; ++i) {
        RecordingWindow window;
        ASSERT_TRUE(window.create());
        handles.push_back(window.GetSafeHwnd());
    }

    std::sort(handles.begin(), handles.end());
    EXPECT_EQ(std::adjacent_find(handles.begin(), handles.end()), handles.end());
}
