#include <csignal>
#include <cstdlib>
#include <string_view>
#include <sys/ioctl.h>
#include <unistd.h>

#include "Shell.h"

namespace Tool::port {

std::vector<std::string> argumentsOf(int argc, char** argv) {
    return {argv + (argc > 0 ? 1 : 0), argv + argc};
}

bool isTerminal(Stream stream) {
    return isatty(static_cast<int>(stream)) == 1;
}

std::optional<std::size_t> terminalColumns() {
    winsize size{};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return std::nullopt;
    return size.ws_col;
}

bool takesColour(Stream stream) {
    const char* const value = std::getenv("TERM");
    const std::string_view terminal = value != nullptr ? value : "";
    return isTerminal(stream) && !terminal.empty() && terminal != "dumb";
}

struct StandardStreams::Replaced {};

StandardStreams::StandardStreams() {
    std::signal(SIGPIPE, SIG_IGN);  // a write then says that nobody reads
}

StandardStreams::~StandardStreams() = default;

}  // namespace Tool::port
