#include <array>
#include <atomic>
#include <fcntl.h>
#include <io.h>
#include <iostream>
#include <memory>
#include <new>
#include <streambuf>
#include <utility>

#include "Files.h"
#include "Shell.h"
#include "WindowsSystem.h"
#include "WindowsText.h"

namespace Tool::port {

namespace {

HANDLE handleOf(Stream stream) {
    return reinterpret_cast<HANDLE>(_get_osfhandle(static_cast<int>(stream)));
}

std::atomic<UINT> pageBefore = 0;
/// The streams whose console has been told to look for sequences, by their descriptors.
std::array<std::atomic<bool>, 3> wasToldToLook{};

/// The console's other programs are to find it as it was.
void restoreConsole() {
    if (const UINT page = pageBefore; page != 0) SetConsoleOutputCP(page);
    for (const Stream stream : {Stream::output, Stream::error}) {
        DWORD mode = 0;
        if (wasToldToLook[static_cast<std::size_t>(stream)] && GetConsoleMode(handleOf(stream), &mode) != 0)
            SetConsoleMode(handleOf(stream), mode & ~DWORD{ENABLE_VIRTUAL_TERMINAL_PROCESSING});
    }
}

/// Also when this program is interrupted.
BOOL WINAPI onEnd(DWORD /*event*/) {
    restoreConsole();
    return FALSE;
}

/// Standard error as it is written, whole texts at a time: a console can make nothing of single bytes of a character.
class ErrorStream : private std::streambuf {
public:
    ErrorStream() : before_(std::cerr.rdbuf(this)) {}
    ~ErrorStream() override { std::cerr.rdbuf(before_); }
    ErrorStream(const ErrorStream&) = delete;
    ErrorStream& operator=(const ErrorStream&) = delete;

private:
    int overflow(int ch) override {
        if (!traits_type::eq_int_type(ch, traits_type::eof())) text_ += traits_type::to_char_type(ch);
        return traits_type::not_eof(ch);
    }
    std::streamsize xsputn(const char* bytes, std::streamsize count) override {
        text_.append(bytes, static_cast<std::size_t>(count));
        return count;
    }
    int sync() override { return writeAll(static_cast<int>(Stream::error), std::exchange(text_, {})) ? 0 : -1; }

    std::string text_;
    std::streambuf* before_;
};

struct LocalFreeing {
    void operator()(void* memory) const { LocalFree(memory); }
};

}  // namespace

/// Those that main() is given are in the code page of the system's settings.
std::vector<std::string> argumentsOf(int /*argc*/, char** /*argv*/) {
    int count = 0;
    const std::unique_ptr<LPWSTR, LocalFreeing> words(CommandLineToArgvW(GetCommandLineW(), &count));
    if (words == nullptr) throw std::bad_alloc();
    std::vector<std::string> arguments;
    for (int i = 1; i < count; ++i)
        arguments.push_back(narrowed(words.get()[i]));
    return arguments;
}

bool isTerminal(Stream stream) {
    DWORD mode = 0;
    return GetConsoleMode(handleOf(stream), &mode) != 0;
}

std::optional<std::size_t> terminalColumns() {
    CONSOLE_SCREEN_BUFFER_INFO screen{};
    if (GetConsoleScreenBufferInfo(handleOf(Stream::output), &screen) == 0) return std::nullopt;
    return static_cast<std::size_t>(screen.srWindow.Right - screen.srWindow.Left + 1);
}

/// A console that knows them has to be told to look for them.
bool takesColour(Stream stream) {
    DWORD mode = 0;
    if (GetConsoleMode(handleOf(stream), &mode) == 0) return false;
    if ((mode & ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0) return true;
    if (SetConsoleMode(handleOf(stream), mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) == 0) return false;
    wasToldToLook[static_cast<std::size_t>(stream)] = true;
    return true;
}

struct StandardStreams::Replaced {
    ErrorStream error;
};

StandardStreams::StandardStreams() : replaced_(std::make_unique<Replaced>()) {
    for (const Stream stream : {Stream::output, Stream::error})
        _setmode(static_cast<int>(stream), _O_BINARY);
    if (!isTerminal(Stream::output) && !isTerminal(Stream::error)) return;
    pageBefore = GetConsoleOutputCP();
    SetConsoleOutputCP(CP_UTF8);
    SetConsoleCtrlHandler(onEnd, TRUE);
}

StandardStreams::~StandardStreams() {
    restoreConsole();
}

}  // namespace Tool::port
