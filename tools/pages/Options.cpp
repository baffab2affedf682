#include "Options.h"

namespace Pages {

namespace {

std::vector<const CLI::Option*> optionsThat(const Command& command, bool areArguments) {
    return command.get_options([&](const CLI::Option* option) {
        return option != command.get_help_ptr() && option->get_positional() == areArguments;
    });
}

}  // namespace

std::vector<const CLI::Option*> optionsOf(const Command& command) {
    return optionsThat(command, false);
}

std::vector<const CLI::Option*> argumentsOf(const Command& command) {
    return optionsThat(command, true);
}

std::string nameOf(const CLI::Option& option) {
    return option.get_name(option.get_positional());
}

bool takesValue(const CLI::Option& option) {
    return option.get_items_expected_max() != 0;
}

bool takesMany(const CLI::Option& argument) {
    return argument.get_items_expected_max() > 1;
}

std::vector<const Command*> leavesOf(const Command& program) {
    std::vector<const Command*> leaves;
    for (const Command* command : program.commands()) {
        const auto below = leavesOf(*command);
        if (below.empty()) {
            leaves.push_back(command);
        } else {
            leaves.insert(leaves.end(), below.begin(), below.end());
        }
    }
    return leaves;
}

std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words)
        text += (text.empty() ? "" : " ") + word;
    return text;
}

std::string escaped(const std::string& text, const std::string& characters) {
    std::string result;
    for (const char ch : text) {
        if (characters.find(ch) != std::string::npos) result += '\\';
        result += ch;
    }
    return result;
}

}  // namespace Pages
