#pragma once

namespace testing_support {

/// Makes one allocation of the calling thread fail while this lives: the n-th through operator new,
/// counted from 1. What does not allocate through it (the engine's and the text library's C code) is not
/// counted. One at a time.
class FailingAllocation {
public:
    explicit FailingAllocation(long n);
    ~FailingAllocation();
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;

    /// Between these none is counted, and none fails.
    void pause();
    void resume();
    /// Whether there have been so many allocations.
    bool happened() const;
};

/// Makes every allocation of the calling thread through operator new fail while this lives.
class NoAllocation {
public:
    NoAllocation();
    ~NoAllocation();
    NoAllocation(const NoAllocation&) = delete;
    NoAllocation& operator=(const NoAllocation&) = delete;
};

}  // namespace testing_support
