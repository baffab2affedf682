#include "EndlessOutput.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <poll.h>
#include <string>
#include <sys/signalfd.h>
#include <unistd.h>

#include <climits>

#include "Failure.h"

namespace Tool {

namespace {

constexpr int forEver = -1;

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

EndlessOutput::EndlessOutput() : signals_(catchEndingSignals()) {
    if (signals_ < 0) throw Failure(std::string("cannot wait for signals: ") + std::strerror(errno));
    std::signal(SIGPIPE, SIG_IGN);  // a write then says that nobody reads
}

/// The signals stay caught: one that came would end the process now, in the midst of its clearing up.
EndlessOutput::~EndlessOutput() {
    close(signals_);
}

bool EndlessOutput::isOver() {
    constexpr pollfd nothing{-1, 0, 0};
    return !wait(nothing, 0);
}

bool EndlessOutput::waitFor(int descriptor) {
    return wait({descriptor, POLLIN, 0}, forEver);
}

bool EndlessOutput::write(std::string_view text) {
    // No more at a time than a pipe takes without waiting, which no signal would interrupt.
    while (!text.empty() && wait({STDOUT_FILENO, POLLOUT, 0}, forEver)) {
        const ssize_t written = ::write(STDOUT_FILENO, text.data(), std::min<std::size_t>(text.size(), PIPE_BUF));
        if (written > 0) text.remove_prefix(static_cast<std::size_t>(written));
        if (written >= 0 || errno == EAGAIN || errno == EINTR) continue;
        if (errno != EPIPE) throw Failure(std::string("cannot write to standard output: ") + std::strerror(errno));
        isOver_ = true;
    }
    return !isOver_;
}

bool EndlessOutput::wait(const pollfd& wanted, int timeoutMs) {
    std::array<pollfd, 3> descriptors = {{wanted, {signals_, POLLIN, 0}, {STDOUT_FILENO, 0, 0}}};
    while (!isOver_ && poll(descriptors.data(), descriptors.size(), timeoutMs) < 0) {
        if (errno != EINTR) throw Failure(std::string("cannot wait: ") + std::strerror(errno));
    }
    const bool nobodyReads = (descriptors[2].revents & (POLLERR | POLLHUP)) != 0;
    if (descriptors[1].revents != 0 || nobodyReads) isOver_ = true;
    return !isOver_;
}

}  // namespace Tool
