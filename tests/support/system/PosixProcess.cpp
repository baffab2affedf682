#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

#include "tests/support/Process.h"

namespace testing_support {

namespace {

constexpr std::chrono::seconds longestRun{60};

void check(bool good, const char* what) {
    if (!good) throw std::system_error(errno, std::generic_category(), what);
}

void closeEnd(int& end) {
    if (end >= 0) ::close(end);
    end = -1;
}

struct Ends {
    int ours = -1;
    int theirs = -1;
};

Ends makePipe(bool weRead) {
    int ends[2];
    check(pipe2(ends, O_CLOEXEC) == 0, "pipe");
    return weRead ? Ends{ends[0], ends[1]} : Ends{ends[1], ends[0]};
}

Ends makeTerminal(unsigned short columns) {
    const int ours = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    check(ours >= 0 && grantpt(ours) == 0 && unlockpt(ours) == 0, "terminal");
    const int theirs = open(ptsname(ours), O_RDWR | O_NOCTTY | O_CLOEXEC);
    const winsize size{.ws_row = 0, .ws_col = columns, .ws_xpixel = 0, .ws_ypixel = 0};
    check(theirs >= 0 && ioctl(theirs, TIOCSWINSZ, &size) == 0, "terminal");
    return {ours, theirs};
}

std::vector<std::string> environmentOf(const Command& command) {
    std::map<std::string, std::string> all;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        const std::size_t equals = text.find('=');
        all[text.substr(0, equals)] = text.substr(equals + 1);
    }
    for (const auto& [name, value] : command.environment)
        all[name] = value;
    std::vector<std::string> entries;
    for (const auto& [name, value] : all)
        entries.push_back(name + "=" + value);
    return entries;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

/// Answers false when the other end was closed or is read dry.
bool drain(int& end, std::string& into) {
    char block[1 << 16];
    const ssize_t count = ::read(end, block, sizeof block);
    if (count < 0 && (errno == EINTR || errno == EAGAIN)) return true;
    if (count <= 0) {  // a terminal ends with an error
        closeEnd(end);
        return false;
    }
    into.append(block, static_cast<std::size_t>(count));
    return true;
}

std::optional<std::string> readWhatThereIs(int& end, std::chrono::milliseconds patience) {
    if (end < 0) return std::nullopt;
    pollfd waiting{end, POLLIN, 0};
    std::string text;
    if (poll(&waiting, 1, static_cast<int>(patience.count())) > 0 && !drain(end, text)) return std::nullopt;
    return text;
}

void feed(int& end, std::string& input) {
    const ssize_t count = ::write(end, input.data(), input.size());
    if (count > 0) input.erase(0, static_cast<std::size_t>(count));
    if (count < 0 || input.empty()) closeEnd(end);
}

}  // namespace

struct Process::Running {
    pid_t child = -1;
    int input = -1;
    int out = -1;
    int err = -1;
};

Process::Process(const Command& command) : running_(std::make_unique<Running>()) {
    Ends in = makePipe(false);
    Ends out = command.outputToTerminal ? makeTerminal(command.terminalColumns) : makePipe(true);
    Ends err = command.errorToTerminal ? makeTerminal(command.terminalColumns) : makePipe(true);
    check(command.typed.empty() || ::write(err.ours, command.typed.data(), command.typed.size()) > 0, "terminal");
    std::vector<std::string> arguments{command.program};
    arguments.insert(arguments.end(), command.arguments.begin(), command.arguments.end());
    std::vector<std::string> environment = environmentOf(command);
    const std::vector<char*> argumentPointers = pointersTo(arguments);
    const std::vector<char*> environmentPointers = pointersTo(environment);

    running_->child = fork();
    check(running_->child >= 0, "fork");
    if (running_->child == 0) {
        std::signal(SIGPIPE, SIG_DFL);
        dup2(command.typed.empty() ? in.theirs : err.theirs, STDIN_FILENO);
        dup2(out.theirs, STDOUT_FILENO);
        dup2(err.theirs, STDERR_FILENO);
        execve(command.program.c_str(), argumentPointers.data(), environmentPointers.data());
        _exit(127);
    }
    closeEnd(in.theirs);
    closeEnd(out.theirs);
    closeEnd(err.theirs);
    running_->input = in.ours;
    running_->out = out.ours;
    running_->err = err.ours;
}

Process::~Process() {
    closeEnd(running_->input);
    if (running_->child > 0) {
        kill();
        wait();
    }
    closeEnd(running_->out);
    closeEnd(running_->err);
}

std::optional<std::string> Process::read(std::chrono::milliseconds patience) {
    return readWhatThereIs(running_->out, patience);
}

std::optional<std::string> Process::readError(std::chrono::milliseconds patience) {
    return readWhatThereIs(running_->err, patience);
}

void Process::closeOutput() {
    closeEnd(running_->out);
}

std::chrono::nanoseconds Process::processorTime() const {
    clockid_t clock{};
    timespec busy{};
    errno = clock_getcpuclockid(running_->child, &clock);
    check(errno == 0 && clock_gettime(clock, &busy) == 0, "processor time");
    return std::chrono::seconds(busy.tv_sec) + std::chrono::nanoseconds(busy.tv_nsec);
}

void Process::kill() {
    if (running_->child > 0) ::kill(running_->child, SIGKILL);
}

void Process::terminate() {
    if (running_->child > 0) ::kill(running_->child, SIGTERM);
}

void Process::interrupt() {
    if (running_->child > 0) ::kill(running_->child, SIGINT);
}

Outcome Process::wait() {
    Outcome outcome;
    while (running_->out >= 0 && drain(running_->out, outcome.out)) {
    }
    while (running_->err >= 0 && drain(running_->err, outcome.err)) {
    }
    int status = 0;
    check(waitpid(running_->child, &status, 0) == running_->child, "waitpid");
    running_->child = -1;
    if (WIFEXITED(status)) outcome.status = WEXITSTATUS(status);
    if (WIFSIGNALED(status)) outcome.signal = WTERMSIG(status);
    return outcome;
}

Outcome run(const Command& command) {
    std::signal(SIGPIPE, SIG_IGN);  // of a program that does not read its input
    Process process(command);
    std::string input = command.input;
    if (input.empty()) closeEnd(process.running_->input);
    std::string out;
    std::string err;
    const auto deadline = std::chrono::steady_clock::now() + longestRun;
    while (process.running_->out >= 0 || process.running_->err >= 0) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0) throw std::runtime_error(command.program + " does not end");
        pollfd waiting[] = {{process.running_->out, POLLIN, 0},
                            {process.running_->err, POLLIN, 0},
                            {process.running_->input, POLLOUT, 0}};
        poll(waiting, 3, static_cast<int>(left.count()));
        if (waiting[0].revents != 0) drain(process.running_->out, out);
        if (waiting[1].revents != 0) drain(process.running_->err, err);
        if (waiting[2].revents != 0) feed(process.running_->input, input);
    }
    Outcome outcome = process.wait();
    outcome.out = out;
    outcome.err = err;
    return outcome;
}

}  // namespace testing_support
