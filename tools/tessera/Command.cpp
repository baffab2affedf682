#include "Command.h"

#include <memory>
#include <sstream>

#include "DisplayText.h"

namespace Tool {

namespace {

/// The text in lines that fit a terminal of 80 columns.
std::string wrapped(const std::string& text) {
    constexpr std::size_t columns = 79;
    std::string lines;
    std::size_t used = 0;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        const std::size_t width = displayWidth(word);
        const bool isFirst = lines.empty();
        const bool fits = used + 1 + width <= columns;
        if (!isFirst) lines += fits ? ' ' : '\n';
        used = isFirst || !fits ? width : used + 1 + width;
        lines += word;
    }
    return lines + '\n';
}

/// What --help says below the options.
std::string footerOf(const CommandText& text) {
    std::string footer;
    for (const std::string& paragraph : text.details)
        footer += wrapped(paragraph) + '\n';
    footer += text.examples.size() == 1 ? "Example:" : "Examples:";
    for (const std::string& example : text.examples)
        footer += "\n  " + example;
    return footer;
}

}  // namespace

Command::Command(const CommandText& text) : Command(text, nullptr) {
    set_help_flag("-h,--help", "Explain the program, or the command that it stands behind");
    allow_windows_style_options(false);  // a word with a slash in front is a path or a text on every system
}

Command::Command(const CommandText& text, CLI::App* parent) : CLI::App(text.summary, text.name, parent), text_(text) {
    footer(footerOf(text));
}

Command& Command::add(const CommandText& text) {
    const std::shared_ptr<Command> command(new Command(text, this));
    add_subcommand(command);
    return *command;
}

Command& Command::addHidden(const CommandText& text) {
    Command& command = add(text);
    command.group("");
    return command;
}

std::vector<const Command*> Command::commands() const {
    std::vector<const Command*> below;
    for (const CLI::App* app : get_subcommands([](const CLI::App* each) { return !each->get_group().empty(); }))
        below.push_back(dynamic_cast<const Command*>(app));
    return below;
}

std::string Command::path() const {
    const auto* parent = dynamic_cast<const Command*>(get_parent());
    if (parent == nullptr) return {};
    const std::string above = parent->path();
    return above.empty() ? get_name() : above + ' ' + get_name();
}

Completion Command::completionOf(const CLI::Option* option) const {
    const auto found = completions_.find(option);
    return found != completions_.end() ? found->second : Completion();
}

}  // namespace Tool
