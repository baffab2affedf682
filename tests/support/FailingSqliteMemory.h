#pragma once

namespace testing_support {

/// Makes SQLite's allocations fail while this lives: the n-th of the calling thread, counted from 1, or all from it on.
/// A program that is linked with this gives SQLite no memory but such as can fail. One at a time.
class FailingSqliteMemory {
public:
    enum class Lasting { once, fromThenOn };

    FailingSqliteMemory(long n, Lasting lasting);
    ~FailingSqliteMemory();
    FailingSqliteMemory(const FailingSqliteMemory&) = delete;
    FailingSqliteMemory& operator=(const FailingSqliteMemory&) = delete;

    /// Between these none is counted, and none fails.
    void pause();
    void resume();
    /// Whether there have been so many allocations.
    bool happened() const;
};

}  // namespace testing_support
