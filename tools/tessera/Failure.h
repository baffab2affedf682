#pragma once

#include <stdexcept>
#include <string>

namespace Tool {

/// What the program answers to the shell. Scripts depend on these numbers.
enum class ExitStatus : int {
    done = 0,
    nothingFound = 1,
    notAllRight = 1,  ///< A check found something, or a rescue could not save all.
    wrongUsage = 2,
    failure = 3
};

/// Ends a command; `what` is the line for standard error, without the program's name.
class Failure : public std::runtime_error {
public:
    Failure(ExitStatus status, const std::string& text) : std::runtime_error(text), status_(status) {}
    explicit Failure(const std::string& text) : Failure(ExitStatus::failure, text) {}

    ExitStatus status() const { return status_; }

private:
    ExitStatus status_;
};

inline Failure wrongUsage(const std::string& text) {
    return {ExitStatus::wrongUsage, text};
}

}  // namespace Tool
