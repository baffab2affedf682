#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// What the shell has given to the program.

namespace Tool::port {

/// By the descriptors that they have on every system.
enum class Stream { input = 0, output = 1, error = 2 };

/// The words behind the program's name, in UTF-8.
std::vector<std::string> argumentsOf(int argc, char** argv);

bool isTerminal(Stream stream);
/// Nothing when standard output is no terminal, or one that does not say it.
std::optional<std::size_t> terminalColumns();
/// Whether what is written there is for a terminal that knows the sequences for colours.
bool takesColour(Stream stream);

/// Makes standard output and error take bytes of UTF-8 as they are, while this lives, whether a terminal, a file or a
/// pipe is behind them. When nobody reads them any more the process is not ended. One a process.
class StandardStreams {
public:
    StandardStreams();
    ~StandardStreams();
    StandardStreams(const StandardStreams&) = delete;
    StandardStreams& operator=(const StandardStreams&) = delete;

private:
    struct Replaced;  ///< What the system needs in place of the standard library's own.
    std::unique_ptr<Replaced> replaced_;
};

}  // namespace Tool::port
