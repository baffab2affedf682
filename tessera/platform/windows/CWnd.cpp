#include "tessera/platform/windows/CWnd.h"

#include <map>
#include <mutex>
#include <string>
#include <utility>

#include "tessera/platform/base/Results.h"
#include "tessera/platform/windows/WindowSystem.h"

using Platform::WindowSystem;

CWnd::~CWnd() {
    // Whoever handles WM_DESTROY is gone by now; the window must not outlive its object on any thread.
    if (hwnd_ != 0) WindowSystem::instance().removeWindow(hwnd_);
}

BOOL CWnd::CreateEx(DWORD exStyle, const WCHAR* className, const WCHAR* windowName, DWORD style, int /*x*/, int /*y*/,
                    int /*width*/, int /*height*/, HWND /*parent*/, UINT /*menu*/, void* param) {
    if (hwnd_ != 0) {
        SetLastError(ERROR_ALREADY_EXISTS);
        return FALSE;
    }
    hwnd_ = WindowSystem::instance().addWindow(*this);
    if (hwnd_ == 0) return FALSE;

    CREATESTRUCT create{param, style, exStyle, windowName, className};
    const HWND made = hwnd_;
    if (WindowProc(WM_CREATE, 0, reinterpret_cast<LPARAM>(&create)) == -1) {
        WindowSystem::instance().removeWindow(made);
        hwnd_ = 0;
    }
    return hwnd_ == made ? TRUE : FALSE;
}

BOOL CWnd::DestroyWindow() {
    // A handler of WM_DESTROY that asks for the end again finds it begun.
    if (WindowSystem::instance().beginDestruction(hwnd_) == nullptr) {
        SetLastError(ERROR_INVALID_HANDLE);
        return FALSE;
    }
    WindowProc(WM_DESTROY, 0, 0);
    WindowSystem::instance().removeWindow(std::exchange(hwnd_, HWND{0}));
    return TRUE;
}

CWnd* CWnd::FromHandle(HWND hwnd) {
    return WindowSystem::instance().ownObject(hwnd);
}

LRESULT CWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    const MessageEntry* const entry = findHandler(message);
    return entry != nullptr ? entry->handler(*this, wParam, lParam) : 0;
}

const MessageEntry* CWnd::findHandler(UINT /*message*/) const {
    return nullptr;
}

int CWnd::OnCreate(LPCREATESTRUCT /*create*/) {
    return 0;
}

void CWnd::OnDestroy() {}

const WCHAR* AfxRegisterWndClass(UINT classStyle) {
    static std::mutex mutex;
    static auto& names = *new std::map<UINT, CString>;  // whoever was given a name may keep it
    const std::lock_guard lock(mutex);
    CString& name = names[classStyle];
    if (name.IsEmpty()) {
        name = TEXT("TesseraWindow:");
        for (const char digit : std::to_string(classStyle))
            name += static_cast<WCHAR>(digit);
    }
    return name;
}
