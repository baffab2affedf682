#pragma once

#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "Commands.h"

namespace Tool {

/// Commands that share their first word, and an object that their options fill.
template <class Arguments>
class CommandFamily {
public:
    using Run = ExitStatus (*)(const Settings& settings, const Arguments& arguments);

    CommandFamily(CLI::App& program, const Settings& settings, Action& chosen, const std::string& name,
                  const std::string& description)
        : app_(*program.add_subcommand(name, description)), settings_(settings), chosen_(chosen) {
        app_.require_subcommand(1);
    }

    /// The examples are lines behind "tessera" and the family's name.
    void explain(const std::string& firstExample, const std::string& secondExample) {
        app_.footer("Examples:\n" + exampleLine(firstExample) + '\n' + exampleLine(secondExample));
    }

    /// Adds a command; what it points to in the arguments lives as long as the program.
    CLI::App& add(const std::string& name, const std::string& description, const std::string& example, Run run) {
        CLI::App& command = *app_.add_subcommand(name, description);
        command.footer("Example:\n" + exampleLine(example));
        command.final_callback([settings = &settings_, chosen = &chosen_, arguments = arguments_, run] {
            *chosen = [settings, arguments, run] { return run(*settings, *arguments); };
        });
        return command;
    }

    Arguments& arguments() { return *arguments_; }

private:
    std::string exampleLine(const std::string& example) const { return "  tessera " + app_.get_name() + ' ' + example; }

    CLI::App& app_;
    const Settings& settings_;
    Action& chosen_;
    std::shared_ptr<Arguments> arguments_ = std::make_shared<Arguments>();
};

}  // namespace Tool
