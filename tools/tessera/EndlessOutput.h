#pragma once

#include <string_view>

struct pollfd;

namespace Tool {

/// Standard output of a command that goes on until it is told to end: by an interrupt (SIGINT), by SIGTERM, or by
/// nobody reading it any more. From its making on none of these ends the process of itself. One a process.
class EndlessOutput {
public:
    EndlessOutput();
    ~EndlessOutput();
    EndlessOutput(const EndlessOutput&) = delete;
    EndlessOutput& operator=(const EndlessOutput&) = delete;

    /// Whether the command has been told to end.
    bool isOver();
    /// Sleeps until something can be read from the descriptor. False when the command is to end.
    bool waitFor(int descriptor);
    /// Writes at once, as fast as the reader takes it. False when the command is to end. Throws a Failure when it
    /// cannot be written.
    bool write(std::string_view text);

private:
    bool wait(const pollfd& wanted, int timeoutMs);

    int signals_;
    bool isOver_ = false;
};

}  // namespace Tool
