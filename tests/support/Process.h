#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace testing_support {

/// A program to run: what is added to this process's environment, and what it reads from standard input. Texts are
/// UTF-8. Windows has no terminals for it.
struct Command {
    std::string program;
    std::vector<std::string> arguments;
    std::map<std::string, std::string> environment = {};
    std::string input = {};
    bool errorToTerminal = false;        ///< Standard error is a terminal, read back as `err`.
    std::string typed = {};              ///< Standard input is that terminal, and this is typed there.
    bool outputToTerminal = false;       ///< Standard output is a terminal of its own, read back as `out`.
    unsigned short terminalColumns = 0;  ///< How wide the terminals say that they are; 0 when they do not say.
    bool interruptible = false;          ///< Process::interrupt() will be called, which takes a console on Windows.
};

struct Outcome {
    int status = -1;  ///< What it exited with; -1 when a signal or a kill ended it.
    int signal = 0;   ///< Which signal ended it; 0 when none did.
    std::string out;
    std::string err;
};

/// Runs a program to its end. Throws when it cannot be started, and when it has not ended after a minute.
Outcome run(const Command& command);

/// A program that runs on while its output is read. Killed when this ends, if it still runs.
class Process {
public:
    explicit Process(const Command& command);
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    /// Reads what there is of standard output, waiting for it no longer than this; nothing at its end.
    std::optional<std::string> read(std::chrono::milliseconds patience);
    /// The same of standard error.
    std::optional<std::string> readError(std::chrono::milliseconds patience);
    /// Nobody reads its standard output any more.
    void closeOutput();
    /// How long it has kept a processor busy so far. There is none for Windows: Wine tells only of who asks.
    std::chrono::nanoseconds processorTime() const;
    /// Ends it at once, as the loss of the battery would.
    void kill();
    /// Asks it to end. There is none for Windows.
    void terminate();
    /// Asks it to end, as a person at the terminal does.
    void interrupt();
    /// Waits for the end, and reads what there is to be read by then.
    Outcome wait();

private:
    friend Outcome run(const Command& command);

    struct Running;
    std::unique_ptr<Running> running_;
};

}  // namespace testing_support
