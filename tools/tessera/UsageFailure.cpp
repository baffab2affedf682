#include "UsageFailure.h"

#include <algorithm>

#include "NearestWord.h"

namespace Tool {

namespace {

using Texts = std::vector<std::string>;

/// The last command that the line names.
const Command& commandOf(const Command& program) {
    const CLI::App* innermost = &program;
    while (!innermost->get_subcommands().empty())
        innermost = innermost->get_subcommands().front();
    return dynamic_cast<const Command&>(*innermost);
}

std::string enumerated(const Texts& texts, const char* lastly) {
    std::string all;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if (i != 0) all += i + 1 == texts.size() ? lastly : ", ";
        all += texts[i];
    }
    return all;
}

std::string quoted(const std::string& text) {
    return '"' + text + '"';
}

std::string didYouMean(const std::string& nearest) {
    return nearest.empty() ? std::string() : "; did you mean " + quoted(nearest) + "?";
}

Texts namesBelow(const Command& command) {
    Texts names;
    for (const Command* below : command.commands())
        names.push_back(below->get_name());
    return names;
}

/// "--name" and the like, of the command and of those above it, whose options may stand behind it.
Texts longOptionsFor(const Command& command) {
    Texts names;
    for (const CLI::App* app = &command; app != nullptr; app = app->get_parent()) {
        for (const CLI::Option* option : app->get_options()) {
            for (const std::string& name : option->get_lnames())
                names.push_back("--" + name);
        }
    }
    return names;
}

std::string unknownCommand(const Command& family, const std::string& word) {
    const std::string behind = family.path().empty() ? "" : family.path() + ' ';
    const std::string nearest = nearestWord(word, namesBelow(family));
    return quoted(behind + word) + " is no command" + didYouMean(nearest.empty() ? nearest : behind + nearest);
}

std::string missingCommand(const Command& family) {
    if (family.path().empty()) return "a command is wanted, such as list";
    return family.path() + " wants a command behind it: " + enumerated(namesBelow(family), " or ");
}

std::string unknownWord(const Command& command, const Texts& words) {
    const auto isOption = [](const std::string& word) { return word.size() > 1 && word.front() == '-'; };
    const auto option = std::find_if(words.begin(), words.end(), isOption);
    if (option != words.end()) {
        const std::string name = option->substr(0, option->find('='));
        return command.get_display_name() + " has no option " + quoted(name) +
               didYouMean(nearestWord(name, longOptionsFor(command)));
    }
    const bool hasArguments =
        !command.get_options([](const CLI::Option* each) { return each->get_positional(); }).empty();
    const std::string hint = hasArguments ? "; a text with blanks in it wants quotes around it" : "";
    return command.path() + " does not know what to do with " + quoted(words.front()) + hint;
}

std::string missingArguments(const Command& command) {
    Texts names;
    for (const CLI::Option* option : command.get_options()) {
        if (option->get_required() && option->count() == 0) names.push_back(option->get_name(true));
    }
    return command.path() + " wants " + enumerated(names, " and ") + (command.count_all() > 1 ? " as well" : "");
}

/// The parser's sentence begins with the option's name.
std::string missingValue(const Command& command, const std::string& sentence) {
    const std::string name = sentence.substr(0, sentence.find(':'));
    for (const CLI::App* app = &command; app != nullptr; app = app->get_parent()) {
        if (const CLI::Option* option = app->get_option_no_throw(name); option != nullptr)
            return name + " wants a " + option->get_type_name() + " behind it";
    }
    return sentence;
}

/// "OID excludes --all" in the parser's words.
std::string replaced(std::string sentence, const std::string& verb, const std::string& between,
                     const std::string& end) {
    const std::size_t at = sentence.find(verb);
    return at == std::string::npos ? sentence : sentence.replace(at, verb.size(), between) + end;
}

/// A word that stands where the command should: the parser passes over it when a command follows. Empty when there is
/// none.
std::string wordBeforeCommand(const Command& program, const Texts& unexpected, const Texts& line) {
    if (program.get_subcommands().empty()) return {};
    const std::string command = program.get_subcommands().front()->get_name();
    const auto isTold = [&](const std::string& word) {
        return word == command || std::find(unexpected.begin(), unexpected.end(), word) != unexpected.end();
    };
    const auto first = std::find_if(line.begin(), line.end(), isTold);
    return first == line.end() || *first == command || first->starts_with('-') ? std::string() : *first;
}

std::string problemOf(const Command& program, const Command& command, const CLI::ParseError& stop) {
    const Texts words = program.remaining(true);
    if (!command.commands().empty()) {
        const auto word =
            std::find_if(words.begin(), words.end(), [](const auto& text) { return !text.starts_with('-'); });
        if (word != words.end()) return unknownCommand(command, *word);
        if (words.empty() && dynamic_cast<const CLI::RequiredError*>(&stop) != nullptr) return missingCommand(command);
    }
    if (!words.empty()) return unknownWord(command, words);
    std::string sentence = stop.what();
    if (dynamic_cast<const CLI::RequiredError*>(&stop) != nullptr) return missingArguments(command);
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&stop) != nullptr) return missingValue(command, sentence);
    if (dynamic_cast<const CLI::ExcludesError*>(&stop) != nullptr)
        return replaced(sentence, " excludes ", " and ", " do not go together");
    if (dynamic_cast<const CLI::RequiresError*>(&stop) != nullptr)
        return replaced(sentence, " requires ", " goes only with ", "");
    if (dynamic_cast<const CLI::ValidationError*>(&stop) != nullptr) return replaced(sentence, ": ", " ", "");
    return sentence;
}

}  // namespace

Failure usageFailure(const Command& program, const CLI::ParseError& stop, const Texts& line) {
    const std::string before = wordBeforeCommand(program, program.remaining(true), line);
    if (!before.empty()) return wrongUsage(unknownCommand(program, before) + " (see tessera --help)");
    const Command& command = commandOf(program);
    const std::string called = command.path().empty() ? "" : command.path() + ' ';
    return wrongUsage(problemOf(program, command, stop) + " (see tessera " + called + "--help)");
}

}  // namespace Tool
