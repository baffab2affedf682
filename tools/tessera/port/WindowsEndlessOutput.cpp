#include <array>
#include <cerrno>
#include <cstdint>
#include <mutex>
#include <stdexcept>
#include <string>
#include <system_error>

#include "EndlessOutput.h"
#include "Files.h"
#include "WindowsErrors.h"
#include "WindowsSystem.h"

namespace Tool::port {

namespace {

[[noreturn]] void fail(const char* what, DWORD error = GetLastError()) {
    const std::error_code code(static_cast<int>(error), std::system_category());
    throw std::runtime_error(std::string(what) + ": " + messageOf(code));
}

HANDLE makeEvent(bool isUp) {
    HANDLE made = CreateEventW(nullptr, TRUE, isUp ? TRUE : FALSE, nullptr);
    if (made == nullptr) fail("cannot make an event");
    return made;
}

/// What the handler of interrupts is to know. The system calls it on a thread of its own, until the process is gone.
struct Shared {
    HANDLE ended = makeEvent(false);
    HANDLE notWriting = makeEvent(true);
    HANDLE writer = nullptr;
    std::mutex whetherWriting;  ///< Held to cancel a write, and to end one: nothing else of the writer is cancelled.
};

Shared& shared() {
    static Shared& forEver = *new Shared;
    return forEver;
}

bool isWriting(DWORD milliseconds) {
    return WaitForSingleObject(shared().notWriting, milliseconds) == WAIT_TIMEOUT;
}

void cancelWrite() {
    const std::lock_guard lock(shared().whetherWriting);
    if (isWriting(0)) CancelSynchronousIo(shared().writer);
}

BOOL WINAPI onEnd(DWORD event) {
    constexpr DWORD nextTry = 10;
    SetEvent(shared().ended);
    // Before a write has begun it cannot be cancelled.
    do {
        cancelWrite();
    } while (isWriting(nextTry));
    const bool canGoOn = event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT;
    if (!canGoOn) WaitForSingleObject(GetCurrentProcess(), INFINITE);  // when this returns the process is ended
    return TRUE;
}

}  // namespace

struct EndlessOutput::Ending {
    bool wait(HANDLE wanted, DWORD milliseconds);
    DWORD writeSome(std::string_view& text);

    HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    bool isOver = false;
};

bool EndlessOutput::Ending::wait(HANDLE wanted, DWORD milliseconds) {
    const std::array<HANDLE, 2> handles = {shared().ended, wanted};
    const DWORD count = wanted == nullptr ? 1 : 2;
    if (isOver) return false;
    const DWORD reached = WaitForMultipleObjects(count, handles.data(), FALSE, milliseconds);
    if (reached == WAIT_FAILED) fail("cannot wait");
    isOver = reached == WAIT_OBJECT_0;
    return !isOver;
}

/// Takes from the text what has been written. Answers an error of the system's.
DWORD EndlessOutput::Ending::writeSome(std::string_view& text) {
    DWORD written = 0;
    DWORD error = ERROR_OPERATION_ABORTED;
    ResetEvent(shared().notWriting);
    if (wait(nullptr, 0)) {
        const bool isDone = WriteFile(output, text.data(), static_cast<DWORD>(text.size()), &written, nullptr) != 0;
        error = isDone ? ERROR_SUCCESS : GetLastError();
    }
    {
        const std::lock_guard lock(shared().whetherWriting);
        SetEvent(shared().notWriting);
    }
    text.remove_prefix(written);
    return error;
}

EndlessOutput::EndlessOutput() : ending_(std::make_unique<Ending>()) {
    const bool isOpen = DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), &shared().writer,
                                        0, FALSE, DUPLICATE_SAME_ACCESS) != 0;
    if (!isOpen || SetConsoleCtrlHandler(onEnd, TRUE) == 0) fail("cannot wait for interrupts");
}

/// Interrupts stay caught: one that came would end the process now, in the midst of its clearing up.
EndlessOutput::~EndlessOutput() = default;

bool EndlessOutput::isOver() {
    return !ending_->wait(nullptr, 0);
}

bool EndlessOutput::waitFor(int descriptor) {
    return ending_->wait(reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(descriptor)), INFINITE);
}

bool EndlessOutput::write(std::string_view text) {
    while (!text.empty() && !ending_->isOver) {
        const DWORD error = ending_->writeSome(text);
        const bool isToEnd = error == ERROR_OPERATION_ABORTED || errnoOf(error) == EPIPE;
        if (error != ERROR_SUCCESS && !isToEnd) fail("cannot write to standard output", error);
        if (isToEnd) ending_->isOver = true;
    }
    return !ending_->isOver;
}

}  // namespace Tool::port
