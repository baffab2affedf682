#pragma once

#include <functional>
#include <sys/types.h>

namespace benchmarks {

/// The clock that all processes share, in seconds.
double secondsNow();

/// Another process, which does a piece of work each time that it is told to. No store that it uses may be open here
/// when it is made. It ends with this.
class OtherProcess {
public:
    /// Does the piece of work, the first time with 0.
    using Work = std::function<void(int round)>;
    struct Times {
        double begun = 0;
        double done = 0;
    };

    /// `prepare` runs there and answers the work. Returns when it has; throws when it could not.
    explicit OtherProcess(const std::function<Work()>& prepare);
    ~OtherProcess();
    OtherProcess(const OtherProcess&) = delete;
    OtherProcess& operator=(const OtherProcess&) = delete;

    /// Lets it begin, and waits for it. Both throw when it has ended.
    void tell();
    Times wait();
    Times work() {
        tell();
        return wait();
    }

private:
    [[noreturn]] void obey(const std::function<Work()>& prepare) noexcept;

    int orders_[2] = {-1, -1};
    int reports_[2] = {-1, -1};
    pid_t process_ = -1;
};

}  // namespace benchmarks
