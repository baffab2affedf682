#pragma once

#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tessera/platform/objectstore/CeDB.h"
#include "tessera/platform/objectstore/ObjectStore.h"
#include "tessera/platform/windows/CWnd.h"
#include "tessera/platform/windows/Messages.h"

namespace objectstore_test {

/// The request's parameter, what happened, and to which record.
using Heard = std::tuple<DWORD, UINT, CEOID>;

/// A window that notes the notifications that it is sent, and frees them.
class ListeningWindow : public CWnd {
public:
    ListeningWindow() {
        EXPECT_TRUE(CreateEx(0, AfxRegisterWndClass(0), TEXT("listener"), 0, 0, 0, 0, 0, 0, 0, nullptr));
    }
    ~ListeningWindow() override { DestroyWindow(); }

    /// Pumps what there is to pump.
    std::vector<Heard> hear() {
        MSG message;
        while (PeekMessage(&message))
            DispatchMessage(&message);
        return std::exchange(heard_, {});
    }
    /// Waits for that many.
    std::vector<Heard> hear(std::size_t count) {
        MSG message;
        while (heard_.size() < count && GetMessage(&message))
            DispatchMessage(&message);
        return std::exchange(heard_, {});
    }

protected:
    const MessageEntry* findHandler(UINT message) const override {
        static const MessageEntry handler{WM_DBNOTIFICATION, [](CWnd& window, WPARAM, LPARAM lParam) -> LRESULT {
                                              static_cast<ListeningWindow&>(window).note(lParam);
                                              return 0;
                                          }};
        return message == WM_DBNOTIFICATION ? &handler : CWnd::findHandler(message);
    }

private:
    void note(LPARAM lParam) {
        auto* notification = reinterpret_cast<CENOTIFICATION*>(lParam);
        heard_.emplace_back(notification->dwParam, notification->uType, notification->oid);
        const CENOTIFYREQUEST request{};
        EXPECT_TRUE(CeFreeNotification(&request, notification));
    }

    std::vector<Heard> heard_;
};

/// A handle that has a window told of a database's changes.
class Subscription {
public:
    Subscription(const WCHAR* database, const CWnd& window, DWORD param = 0) {
        const CENOTIFYREQUEST request{sizeof(CENOTIFYREQUEST), window.GetSafeHwnd(), CEDB_EXNOTIFICATION, 0, param};
        CEOID oid = 0;
        handle_ = CeOpenDatabaseEx2(&oid, database, 0, 0, 0, &request);
        EXPECT_NE(handle_, INVALID_HANDLE_VALUE) << ObjectStore::errorText();
    }
    ~Subscription() { CloseHandle(handle_); }
    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;

private:
    HANDLE handle_;
};

}  // namespace objectstore_test
