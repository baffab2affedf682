#pragma once

#include <span>

#include "tessera/Export.h"
#include "tessera/platform/base/CString.h"
#include "tessera/platform/base/Types.h"

/// @file
/// Windows: what messages are sent to.

class CWnd;

inline constexpr UINT WM_CREATE = 0x0001;          ///< A window is made; lParam is its CREATESTRUCT.
inline constexpr UINT WM_DESTROY = 0x0002;         ///< A window is about to end.
inline constexpr UINT WM_DBNOTIFICATION = 0x03FD;  ///< A record has changed; lParam is a CENOTIFICATION.
inline constexpr UINT WM_APP = 0x8000;             ///< The first message that a program may give a meaning of its own.

inline constexpr DWORD WS_EX_NOACTIVATE = 0x08000000;               ///< For CreateEx; means nothing here.
inline constexpr int CW_USEDEFAULT = static_cast<int>(0x80000000);  ///< For CreateEx; means nothing here.

/// What a window was made with, during WM_CREATE.
struct CREATESTRUCT {
    void* lpCreateParams;    ///< The last argument of CreateEx.
    DWORD style;             ///< As given.
    DWORD dwExStyle;         ///< As given.
    const WCHAR* lpszName;   ///< The window's name, lent.
    const WCHAR* lpszClass;  ///< The name of its class, lent.
};
/// As WM_CREATE passes it on.
using LPCREATESTRUCT = CREATESTRUCT*;

/// One row of a message map: which member answers which message.
struct MessageEntry {
    UINT message;                               ///< The message.
    LRESULT (*handler)(CWnd&, WPARAM, LPARAM);  ///< Answers it.
};

/// A window: a handle that messages are sent and posted to, answered by the object that owns it.
///
/// Made by CreateEx on the thread that will own it; only that thread's pump delivers posted messages. A
/// thread that ends takes its windows with it, without a WM_DESTROY. A handle is never used twice.
/// The object destroys its window when it is destroyed; a class that handles WM_DESTROY calls
/// DestroyWindow in its own destructor, while it is still itself.
class TESSERA_API CWnd {
public:
    CWnd() = default;
    virtual ~CWnd();
    CWnd(const CWnd&) = delete;
    CWnd& operator=(const CWnd&) = delete;

    /// Makes the window and sends it WM_CREATE; FALSE, and no window, when that answers -1 (no WM_DESTROY
    /// follows then) or the object has a window already. Position, size, parent and menu mean nothing to a window that
    /// is never shown.
    BOOL CreateEx(DWORD exStyle, const WCHAR* className, const WCHAR* windowName, DWORD style, int x, int y, int width,
                  int height, HWND parent, UINT menu, void* param = nullptr);
    /// Sends WM_DESTROY and ends the window; its waiting messages are dropped. FALSE when there is
    /// none of this thread, or its WM_DESTROY is being answered.
    BOOL DestroyWindow();

    /// The window's handle; 0 when there is none.
    HWND GetSafeHwnd() const { return hwnd_; }
    /// The object of a window of this thread; null when there is none.
    static CWnd* FromHandle(HWND hwnd);

    /// Looks the message up in the map, most derived class first; what nobody handles answers 0.
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);

protected:
    /// The handlers of this class, and of its base when it finds none.
    virtual const MessageEntry* findHandler(UINT message) const;

    /// Does nothing: what a derived class's handler of WM_CREATE calls first. 0; -1 would refuse the window.
    int OnCreate(LPCREATESTRUCT create);
    /// The same for WM_DESTROY.
    void OnDestroy();

private:
    HWND hwnd_ = 0;
};

/// A name for a class of windows with that style; the same name for the same style.
TESSERA_API const WCHAR* AfxRegisterWndClass(UINT classStyle);
