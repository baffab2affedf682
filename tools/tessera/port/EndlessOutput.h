#pragma once

#include <memory>
#include <string_view>

namespace Tool::port {

/// Standard output of a command that goes on until it is told to end: by an interrupt or by whatever else of the
/// system ends a program in order, or by nobody reading it any more. From its making on none of these ends the process
/// of itself. One a process. What goes wrong is a std::runtime_error that says why.
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
    /// Writes at once, as fast as the reader takes it. False when the command is to end.
    bool write(std::string_view text);

private:
    struct Ending;  ///< What it is told by.
    std::unique_ptr<Ending> ending_;
};

}  // namespace Tool::port
