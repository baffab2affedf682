#include <array>
#include <cwctype>
#include <filesystem>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>
#include <windows.h>

#include "tests/support/Process.h"

namespace testing_support {

namespace {

constexpr std::chrono::seconds longestRun{60};
constexpr UINT killedStatus = static_cast<UINT>(-1);

void check(bool good, const char* what) {
    if (!good) throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), what);
}

std::wstring widened(const std::string& utf8) {
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end())).wstring();
}

class Handle {
public:
    explicit Handle(HANDLE value = nullptr) : value_(value == INVALID_HANDLE_VALUE ? nullptr : value) {}
    Handle(Handle&& other) noexcept : value_(std::exchange(other.value_, nullptr)) {}
    Handle& operator=(Handle&& other) noexcept {
        std::swap(value_, other.value_);
        return *this;
    }
    ~Handle() {
        if (value_ != nullptr) CloseHandle(value_);
    }

    HANDLE get() const { return value_; }
    bool isOpen() const { return value_ != nullptr; }

private:
    HANDLE value_;
};

/// Our end of a pipe, with at most one transfer under way.
class PipeEnd {
public:
    explicit PipeEnd(Handle pipe) : pipe_(std::move(pipe)), done_(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
        check(done_.isOpen(), "event");
    }
    ~PipeEnd() { close(); }
    PipeEnd(const PipeEnd&) = delete;
    PipeEnd& operator=(const PipeEnd&) = delete;

    bool isOpen() const { return pipe_.isOpen(); }
    /// Signalled when the transfer is over; null when there is none.
    HANDLE transfer() const { return isBusy_ ? done_.get() : nullptr; }

    void close() {
        DWORD ignored = 0;
        if (isBusy_ && CancelIoEx(pipe_.get(), &operation_) != 0)
            GetOverlappedResult(pipe_.get(), &operation_, &ignored, TRUE);
        isBusy_ = false;
        pipe_ = Handle();
    }

    /// Begins to read unless it does already. Closed when the other end is.
    void beginReading() {
        if (isBusy_ || !isOpen()) return;
        restart();
        begun(ReadFile(pipe_.get(), block_.data(), static_cast<DWORD>(block_.size()), nullptr, &operation_));
    }
    /// Takes what was read, waiting for it; nothing at the end.
    std::optional<std::string> finishReading() {
        const DWORD count = finish();
        return isOpen() ? std::optional(std::string(block_.data(), count)) : std::nullopt;
    }

    /// The text must stay until the transfer is over.
    void beginWriting(std::string_view text) {
        restart();
        begun(WriteFile(pipe_.get(), text.data(), static_cast<DWORD>(text.size()), nullptr, &operation_));
    }
    /// How much was written; closed when nobody reads.
    DWORD finishWriting() { return finish(); }

private:
    void restart() {
        operation_ = {};
        operation_.hEvent = done_.get();
    }
    void begun(BOOL isOver) {
        isBusy_ = isOver != 0 || GetLastError() == ERROR_IO_PENDING;
        if (!isBusy_) close();
    }
    DWORD finish() {
        DWORD count = 0;
        const bool good = isBusy_ && GetOverlappedResult(pipe_.get(), &operation_, &count, TRUE) != 0;
        isBusy_ = false;
        if (!good) close();
        return count;
    }

    Handle pipe_;
    Handle done_;
    OVERLAPPED operation_{};
    bool isBusy_ = false;
    std::array<char, 1 << 16> block_;
};

struct Ends {
    Handle ours;
    Handle theirs;
};

/// Ours does not wait, which only a pipe with a name can.
Ends makePipe(bool weRead) {
    static int made = 0;
    const std::wstring name =
        L"\\\\.\\pipe\\tessera-test-" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(++made);
    constexpr DWORD bytes = 1 << 16;
    const DWORD direction = weRead ? PIPE_ACCESS_INBOUND : PIPE_ACCESS_OUTBOUND;
    Ends ends{Handle(CreateNamedPipeW(name.c_str(), direction | FILE_FLAG_OVERLAPPED | FILE_FLAG_FIRST_PIPE_INSTANCE,
                                      PIPE_TYPE_BYTE | PIPE_REJECT_REMOTE_CLIENTS, 1, bytes, bytes, 0, nullptr)),
              Handle()};
    check(ends.ours.isOpen(), "pipe");
    SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    ends.theirs = Handle(CreateFileW(name.c_str(), weRead ? GENERIC_WRITE : GENERIC_READ, 0, &inherited, OPEN_EXISTING,
                                     FILE_ATTRIBUTE_NORMAL, nullptr));
    check(ends.theirs.isOpen(), "pipe");
    return ends;
}

/// So that the program finds the argument as it is: backslashes count double before a quote.
std::wstring quoted(const std::wstring& argument) {
    if (!argument.empty() && argument.find_first_of(L" \t\n\v\"") == std::wstring::npos) return argument;
    std::wstring text = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t unit : argument) {
        if (unit == L'"') text.append(backslashes + 1, L'\\');
        backslashes = unit == L'\\' ? backslashes + 1 : 0;
        text += unit;
    }
    return text.append(backslashes, L'\\') + L'"';
}

/// As short as can be: a line has 32,767 characters at most, and a text in it nearly as many.
std::wstring commandLineOf(const Command& command) {
    std::wstring line = quoted(std::filesystem::path(widened(command.program)).stem().wstring());
    for (const std::string& argument : command.arguments)
        line += L' ' + quoted(widened(argument));
    return line;
}

/// Names of variables are the same in either case.
struct ByName {
    bool operator()(const std::wstring& a, const std::wstring& b) const { return _wcsicmp(a.c_str(), b.c_str()) < 0; }
};

/// All variables, each with its end.
std::wstring environmentOf(const Command& command) {
    std::map<std::wstring, std::wstring, ByName> all;
    wchar_t* const own = GetEnvironmentStringsW();
    for (const wchar_t* entry = own; *entry != L'\0'; entry += std::wstring_view(entry).size() + 1) {
        const std::wstring text = entry;
        const std::size_t equals = text.find(L'=', 1);  // the folders of drives have names that begin with one
        all[text.substr(0, equals)] = text.substr(equals + 1);
    }
    FreeEnvironmentStringsW(own);
    for (const auto& [name, value] : command.environment)
        all[widened(name)] = widened(value);
    std::wstring block;
    for (const auto& [name, value] : all)
        block += name + L'=' + value + L'\0';
    return block + L'\0';
}

std::optional<std::string> readWhatThereIs(PipeEnd& end, DWORD patienceMs) {
    end.beginReading();
    if (!end.isOpen()) return std::nullopt;
    if (WaitForSingleObject(end.transfer(), patienceMs) != WAIT_OBJECT_0) return std::string();
    return end.finishReading();
}

/// Reads on to the end of the pipe, or of the program: a console of its own may keep the pipe open for longer.
void drain(PipeEnd& end, HANDLE program, std::string& into) {
    while (true) {
        end.beginReading();
        if (!end.isOpen()) return;
        const std::array either{end.transfer(), program};
        // The first of those that are there is told: what the program has written comes before its end.
        if (WaitForMultipleObjects(2, either.data(), FALSE, INFINITE) != WAIT_OBJECT_0) return;
        into += end.finishReading().value_or("");
    }
}

bool isOver(const PipeEnd& end) {
    return end.transfer() != nullptr && WaitForSingleObject(end.transfer(), 0) == WAIT_OBJECT_0;
}

void takeWhatCame(PipeEnd& end, std::string& into) {
    if (isOver(end)) into += end.finishReading().value_or("");
    end.beginReading();
}

void feed(PipeEnd& end, std::string_view& input) {
    if (isOver(end)) input.remove_prefix(end.finishWriting());
    if (!end.isOpen() || end.transfer() != nullptr) return;
    if (input.empty()) {
        end.close();
    } else {
        end.beginWriting(input);
    }
}

}  // namespace

struct Process::Running {
    Running(Handle toIt, Handle fromIt, Handle errorFromIt)
        : input(std::move(toIt)), out(std::move(fromIt)), err(std::move(errorFromIt)) {}

    Handle child;
    PipeEnd input;
    PipeEnd out;
    PipeEnd err;
};

Process::Process(const Command& command) {
    if (command.outputToTerminal || command.errorToTerminal || !command.typed.empty())
        throw std::invalid_argument("there are no terminals here");
    Ends in = makePipe(false);
    Ends out = makePipe(true);
    Ends err = makePipe(true);
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = in.theirs.get();
    start.hStdOutput = out.theirs.get();
    start.hStdError = err.theirs.get();
    std::wstring line = commandLineOf(command);
    std::wstring environment = environmentOf(command);
    const DWORD ownConsole = command.interruptible ? CREATE_NO_WINDOW : 0;
    PROCESS_INFORMATION made{};
    const auto isMade = [&] {
        return CreateProcessW(widened(command.program).c_str(), line.data(), nullptr, nullptr, TRUE,
                              CREATE_UNICODE_ENVIRONMENT | ownConsole, environment.data(), nullptr, &start, &made) != 0;
    };
    // Once in some thousand times Wine loses a program before it has begun.
    check(isMade() || (GetLastError() == ERROR_INTERNAL_ERROR && isMade()), command.program.c_str());
    const Handle thread(made.hThread);
    Handle child(made.hProcess);
    // Their ends close with this: who reads then learns of the program's end.
    const std::array<Handle, 3> theirs{std::move(in.theirs), std::move(out.theirs), std::move(err.theirs)};
    running_ = std::make_unique<Running>(std::move(in.ours), std::move(out.ours), std::move(err.ours));
    running_->child = std::move(child);
}

Process::~Process() {
    running_->input.close();
    if (running_->child.isOpen()) {
        kill();
        wait();
    }
}

std::optional<std::string> Process::read(std::chrono::milliseconds patience) {
    return readWhatThereIs(running_->out, static_cast<DWORD>(patience.count()));
}

std::optional<std::string> Process::readError(std::chrono::milliseconds patience) {
    return readWhatThereIs(running_->err, static_cast<DWORD>(patience.count()));
}

void Process::closeOutput() {
    running_->out.close();
}

void Process::kill() {
    if (running_->child.isOpen()) TerminateProcess(running_->child.get(), killedStatus);
}

void Process::interrupt() {
    // Everybody at the program's console is interrupted, and so are we, who have to go there.
    static const BOOL isOutlived = SetConsoleCtrlHandler([](DWORD) -> BOOL { return TRUE; }, TRUE);
    FreeConsole();
    check(isOutlived != 0 && AttachConsole(GetProcessId(running_->child.get())) != 0, "console");
    const bool isSent = GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0) != 0;
    FreeConsole();
    check(isSent, "interrupt");
}

Outcome Process::wait() {
    Outcome outcome;
    const Handle child = std::move(running_->child);
    drain(running_->out, child.get(), outcome.out);
    drain(running_->err, child.get(), outcome.err);
    check(WaitForSingleObject(child.get(), INFINITE) == WAIT_OBJECT_0, "wait");
    DWORD status = 0;
    check(GetExitCodeProcess(child.get(), &status) != 0, "exit code");
    outcome.status = static_cast<int>(status);
    return outcome;
}

Outcome run(const Command& command) {
    Process process(command);
    Process::Running& running = *process.running_;
    std::string_view input = command.input;
    std::string out;
    std::string err;
    const auto deadline = std::chrono::steady_clock::now() + longestRun;
    while (true) {
        takeWhatCame(running.out, out);
        takeWhatCame(running.err, err);
        feed(running.input, input);
        if (!running.out.isOpen() && !running.err.isOpen()) break;
        std::vector<HANDLE> transfers;
        for (const PipeEnd* end : {&running.out, &running.err, &running.input}) {
            if (end->transfer() != nullptr) transfers.push_back(end->transfer());
        }
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0) throw std::runtime_error(command.program + " does not end");
        WaitForMultipleObjects(static_cast<DWORD>(transfers.size()), transfers.data(), FALSE,
                               static_cast<DWORD>(left.count()));
    }
    Outcome outcome = process.wait();
    outcome.out = out;
    outcome.err = err;
    return outcome;
}

}  // namespace testing_support
