// The command line: which command, with which options, and what the shell is told.

#include <exception>
#include <iostream>
#include <new>
#include <string>
#include <vector>

#include "Command.h"
#include "Failure.h"
#include "Output.h"
#include "Program.h"
#include "StandardOutput.h"
#include "UsageFailure.h"
#include "port/Shell.h"

namespace {

using Tool::ExitStatus;
using Tool::Settings;

/// Answers false when the line asked for help or the version, which are then printed.
bool parse(Tool::Command& program, const std::vector<std::string>& words) {
    try {
        program.parse(std::vector<std::string>(words.rbegin(), words.rend()));
        return true;
    } catch (const CLI::ParseError& stop) {
        if (stop.get_exit_code() != 0) throw Tool::usageFailure(program, stop, words);
        program.exit(stop, std::cout, std::cerr);
        return false;
    }
}

ExitStatus run(Settings& settings, int argc, char** argv) {
    Tool::StandardOutput output;
    Tool::Action chosen;
    Tool::Command program(Tool::programText());
    Tool::defineProgram(program, settings, chosen);
    const ExitStatus status = parse(program, Tool::port::argumentsOf(argc, argv)) ? chosen() : ExitStatus::done;
    output.finish();
    return status;
}

int report(const Settings& settings, ExitStatus status, const std::string& why) {
    Tool::complain(settings, why);
    return static_cast<int>(status);
}

}  // namespace

int main(int argc, char** argv) {
    const Tool::port::StandardStreams streams;
    Settings settings;
    try {
        return static_cast<int>(run(settings, argc, argv));
    } catch (const Tool::Failure& failure) {
        return report(settings, failure.status(), failure.what());
    } catch (const std::bad_alloc&) {
        return report(settings, ExitStatus::failure, "out of memory");
    } catch (const std::exception& error) {
        return report(settings, ExitStatus::failure, error.what());
    }
}
