#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <poll.h>
#include <sys/signalfd.h>
#include <system_error>
#include <unistd.h>

#include <climits>

#include "EndlessOutput.h"

namespace Tool::port {

namespace {

constexpr int forEver = -1;

[[noreturn]] void fail(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

/// Readable once one of the signals has come that would end the process.
int catchEndingSignals() {
    sigset_t ending;
    sigemptyset(&ending);
    sigaddset(&ending, SIGINT);
    sigaddset(&ending, SIGTERM);
    sigprocmask(SIG_BLOCK, &ending, nullptr);
    return signalfd(-1, &ending, SFD_CLOEXEC);
}

}  // namespace

struct EndlessOutput::Ending {
    Ending() : signals(catchEndingSignals()) {
        if (signals < 0) fail("cannot wait for signals");
        std::signal(SIGPIPE, SIG_IGN);  // a write then says that nobody reads
    }
    /// The signals stay caught: one that came would end the process now, in the midst of its clearing up.
    ~Ending() { close(signals); }
    Ending(const Ending&) = delete;
    Ending& operator=(const Ending&) = delete;

    bool wait(const pollfd& wanted, int timeoutMs);

    int signals;
    bool isOver = false;
};

bool EndlessOutput::Ending::wait(const pollfd& wanted, int timeoutMs) {
    std::array<pollfd, 3> descriptors = {{wanted, {signals, POLLIN, 0}, {STDOUT_FILENO, 0, 0}}};
    while (!isOver && poll(descriptors.data(), descriptors.size(), timeoutMs) < 0) {
        if (errno != EINTR) fail("cannot wait");
    }
    const bool nobodyReads = (descriptors[2].revents & (POLLERR | POLLHUP)) != 0;
    if (descriptors[1].revents != 0 || nobodyReads) isOver = true;
    return !isOver;
}

EndlessOutput::EndlessOutput() : ending_(std::make_unique<Ending>()) {}

EndlessOutput::~EndlessOutput() = default;

bool EndlessOutput::isOver() {
    constexpr pollfd nothing{-1, 0, 0};
    return !ending_->wait(nothing, 0);
}

bool EndlessOutput::waitFor(int descriptor) {
    return ending_->wait({descriptor, POLLIN, 0}, forEver);
}

bool EndlessOutput::write(std::string_view text) {
    // No more at a time than a pipe takes without waiting, which no signal would interrupt.
    while (!text.empty() && ending_->wait({STDOUT_FILENO, POLLOUT, 0}, forEver)) {
        const ssize_t written = ::write(STDOUT_FILENO, text.data(), std::min<std::size_t>(text.size(), PIPE_BUF));
        if (written > 0) text.remove_prefix(static_cast<std::size_t>(written));
        if (written >= 0 || errno == EAGAIN || errno == EINTR) continue;
        if (errno != EPIPE) fail("cannot write to standard output");
        ending_->isOver = true;
    }
    return !ending_->isOver;
}

}  // namespace Tool::port
