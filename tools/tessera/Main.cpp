// The command line: which command, with which options, and what the shell is told.

#include <algorithm>
#include <exception>
#include <iostream>
#include <new>
#include <string>

#include "Command.h"
#include "DisplayText.h"
#include "Failure.h"
#include "Program.h"

namespace {

using Tool::ExitStatus;

int report(ExitStatus status, const std::string& why) {
    std::cout.flush();
    std::cerr << "tessera: " << Tool::displayable(why) << '\n';
    return static_cast<int>(status);
}

/// What the user took for a command, where there is none, behind the commands that there are; empty when the line
/// names one, or stops before it.
std::string unknownCommand(const CLI::App& program) {
    const CLI::App* innermost = &program;
    std::string behind;
    while (!innermost->get_subcommands().empty()) {
        innermost = innermost->get_subcommands().front();
        behind += innermost->get_name() + ' ';
    }
    if (innermost->get_subcommands([](const CLI::App*) { return true; }).empty()) return {};
    const auto words = program.remaining(true);
    const auto word =
        std::find_if(words.begin(), words.end(), [](const std::string& text) { return !text.starts_with('-'); });
    return word == words.end() ? std::string() : behind + *word;
}

/// Answers false when the line asked for help or the version, which are then printed.
bool parse(CLI::App& program, int argc, char** argv) {
    try {
        program.parse(argc, argv);
        return true;
    } catch (const CLI::ParseError& stop) {
        const std::string unknown = stop.get_exit_code() != 0 ? unknownCommand(program) : std::string();
        if (!unknown.empty()) throw Tool::wrongUsage("\"" + unknown + "\" is no command (see tessera --help)");
        if (stop.get_exit_code() != 0) throw Tool::wrongUsage(std::string(stop.what()) + " (see tessera --help)");
        program.exit(stop, std::cout, std::cerr);
        return false;
    }
}

ExitStatus run(int argc, char** argv) {
    Tool::Settings settings;
    Tool::Action chosen;
    Tool::Command program(Tool::programText());
    Tool::defineProgram(program, settings, chosen);
    const ExitStatus status = parse(program, argc, argv) ? chosen() : ExitStatus::done;
    if (!std::cout.flush()) throw Tool::Failure("cannot write to standard output");
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return static_cast<int>(run(argc, argv));
    } catch (const Tool::Failure& failure) {
        return report(failure.status(), failure.what());
    } catch (const std::bad_alloc&) {
        return report(ExitStatus::failure, "out of memory");
    } catch (const std::exception& error) {
        return report(ExitStatus::failure, error.what());
    }
}
