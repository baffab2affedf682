#pragma once

#include <array>
#include <streambuf>

namespace Tool {

/// Standard output while this lives: std::cout writes through it. When nobody reads it any more, the command goes on
/// without it, so that an import does not stop half-way; what cannot be written for another reason is said at the end.
/// One a process.
class StandardOutput : private std::streambuf {
public:
    StandardOutput();
    ~StandardOutput() override;
    StandardOutput(const StandardOutput&) = delete;
    StandardOutput& operator=(const StandardOutput&) = delete;

    /// Writes what is left. Throws a Failure that says why, when something could not be written to a reader that there
    /// is.
    void finish();

private:
    int overflow(int ch) override;
    int sync() override;
    bool send();

    std::array<char, 1 << 16> buffer_;
    std::streambuf* before_;
    int error_ = 0;  ///< Why the first write that failed did so.
};

}  // namespace Tool
