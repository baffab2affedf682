#pragma once

#include <sys/stat.h>

namespace testing_support {

/// The process's umask while this lives.
class ScopedUmask {
public:
    explicit ScopedUmask(mode_t mask) : before_(::umask(mask)) {}
    ~ScopedUmask() { ::umask(before_); }
    ScopedUmask(const ScopedUmask&) = delete;
    ScopedUmask& operator=(const ScopedUmask&) = delete;

private:
    mode_t before_;
};

}  // namespace testing_support
