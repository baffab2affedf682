#include "benchmarks/OtherProcess.h"

#include <csignal>
#include <cstdio>
#include <ctime>
#include <exception>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace benchmarks {

double secondsNow() {
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

OtherProcess::OtherProcess(const std::function<Work()>& prepare) {
    if (::pipe(orders_) != 0 || ::pipe(reports_) != 0) throw std::runtime_error("no pipe");
    process_ = ::fork();
    if (process_ < 0) throw std::runtime_error("no process");
    if (process_ == 0) obey(prepare);
    // Its end is then the end of what it reports.
    ::close(orders_[0]);
    ::close(reports_[1]);
    wait();
}

OtherProcess::~OtherProcess() {
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
    ::close(orders_[1]);
    ::close(reports_[0]);
}

void OtherProcess::tell() {
    const char now = 'w';
    if (::write(orders_[1], &now, 1) != 1) throw std::runtime_error("the other process has ended");
}

OtherProcess::Times OtherProcess::wait() {
    Times times;
    if (::read(reports_[0], &times, sizeof times) != sizeof times) {
        throw std::runtime_error("the other process has ended");
    }
    return times;
}

void OtherProcess::obey(const std::function<Work()>& prepare) noexcept {
    ::close(orders_[1]);
    ::close(reports_[0]);
    try {
        const Work work = prepare();
        Times times;
        char told = 0;
        for (int round = 0; ::write(reports_[1], &times, sizeof times) == sizeof times; ++round) {
            if (::read(orders_[0], &told, 1) != 1) break;
            times.begun = secondsNow();
            work(round);
            times.done = secondsNow();
        }
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "the other process: %s\n", failure.what());
    }
    ::_exit(1);
}

}  // namespace benchmarks
