#pragma once

#include <memory>

#include "Command.h"
#include "Commands.h"

namespace Tool {

/// Commands that share their first word, and an object that their options fill.
template <class Arguments>
class CommandFamily {
public:
    using Run = ExitStatus (*)(const Settings& settings, const Arguments& arguments);

    CommandFamily(Command& program, const Settings& settings, Action& chosen, const CommandText& text)
        : family_(program.add(text)), settings_(settings), chosen_(chosen) {
        family_.require_subcommand(1);
    }

    /// Adds a command; what it points to in the arguments lives as long as the program.
    Command& add(const CommandText& text, Run run) {
        Command& command = family_.add(text);
        command.final_callback([settings = &settings_, chosen = &chosen_, arguments = arguments_, run] {
            *chosen = [settings, arguments, run] { return run(*settings, *arguments); };
        });
        return command;
    }

    Arguments& arguments() { return *arguments_; }

private:
    Command& family_;
    const Settings& settings_;
    Action& chosen_;
    std::shared_ptr<Arguments> arguments_ = std::make_shared<Arguments>();
};

}  // namespace Tool
