#pragma once

#include "tessera/Export.h"
#include "tessera/platform/base/Types.h"

/// @file
/// Messages between windows. Each thread that has windows, or waits for messages, has a queue. Messages of
/// one sender arrive in the order in which they were sent or posted; a sent one overtakes all posted ones.
///
/// A window's procedure runs on the window's own thread only, and only while that thread is in one of these
/// calls: nothing interrupts it, and no thread is started.
///
/// A failing call sets the thread's last error: ERROR_INVALID_HANDLE for a window that does not exist (any
/// more), ERROR_NOT_ENOUGH_MEMORY when the system has no room for a queue or a message.

/// A posted message, taken from the queue.
struct MSG {
    HWND hwnd = 0;     ///< The window that it is for.
    UINT message = 0;  ///< What it is: WM_...
    /// @{
    /// What it means, the message says.
    WPARAM wParam = 0;
    LPARAM lParam = 0;
    /// @}
};

/// Has the window's procedure answer a message. At once when the window is this thread's; else when the
/// window's thread next pumps, and this thread waits meanwhile, answering what is sent to its own windows.
/// @return the procedure's answer; 0, with the last error set, when there is no such window or it ends
///         before it answers.
TESSERA_API LRESULT SendMessage(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

/// SendMessage without waiting for another thread's answer.
/// @return FALSE when there is no such window.
TESSERA_API BOOL SendNotifyMessageW(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

/// Leaves a message for the window's thread to take with GetMessage or PeekMessage, this thread too.
/// @return FALSE when there is no such window.
TESSERA_API BOOL PostMessage(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

/// Waits for a posted message of this thread and takes it, answering what is sent meanwhile.
/// @return FALSE only when `message` is null or the system cannot wait.
TESSERA_API BOOL GetMessage(MSG* message);

/// GetMessage without waiting: FALSE when no posted message is left.
TESSERA_API BOOL PeekMessage(MSG* message);

/// Hands a message to its window's procedure and returns the answer; 0 when the window is not, or no
/// longer, a window of this thread.
TESSERA_API LRESULT DispatchMessage(const MSG* message);

/// Whether there is such a window, on whatever thread.
TESSERA_API BOOL IsWindow(HWND hwnd);

/// A descriptor that is readable while there may be something for this thread to pump: a loop of its own can
/// watch it, and call PeekMessage until that answers FALSE, before which more may come unannounced. It belongs to the
/// thread's queue: it is only to be watched, and lives as long as the thread. -1 when the system has no room for a
/// queue.
TESSERA_API int messageQueueFd();
