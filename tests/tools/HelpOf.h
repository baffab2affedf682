#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/tools/ToolTest.h"

namespace tool_test {

/// What --help says of a command.
struct Help {
    std::string summary;
    std::vector<std::string> commands;
    std::vector<std::string> options;  ///< By their long names.
    std::vector<std::string> details;  ///< The lines below the lists.
    std::vector<std::string> examples;
};

/// The words of a command: none for the tool itself.
using CommandWords = std::vector<std::string>;

inline Help helpIn(const std::string& text) {
    Help help;
    std::string section;
    for (const std::string& line : linesOf(text)) {
        if (line.empty()) continue;
        const bool isIndented = line.starts_with("  ");
        const std::string word = isIndented ? line.substr(2, line.find(' ', 2) - 2) : line;
        if (!isIndented && line.ends_with(':')) {
            section = line;
        } else if (help.summary.empty()) {
            help.summary = line;
        } else if (section == "Subcommands:" && isIndented) {
            help.commands.push_back(word);
        } else if (section == "Options:" && isIndented && line[2] == '-') {
            help.options.push_back(word.substr(word.find("--")));
        } else if (section.starts_with("Example")) {
            help.examples.push_back(line.substr(2));
        } else if (!isIndented && !line.starts_with("Usage:")) {
            help.details.push_back(line);
        }
    }
    return help;
}

inline Help helpOf(const Tool& tool, CommandWords command) {
    command.emplace_back("--help");
    const Outcome outcome = run(tool.command(command));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    return helpIn(outcome.out);
}

/// The tool's help and that of all its commands, by their words.
inline std::map<CommandWords, Help> helpOfAll(const Tool& tool, const CommandWords& command = {}) {
    std::map<CommandWords, Help> all{{command, helpOf(tool, command)}};
    for (const std::string& name : all.begin()->second.commands) {
        CommandWords below = command;
        below.push_back(name);
        all.merge(helpOfAll(tool, below));
    }
    return all;
}

inline std::string joined(const CommandWords& words) {
    std::string text;
    for (const std::string& word : words)
        text += (text.empty() ? "" : " ") + word;
    return text;
}

}  // namespace tool_test
