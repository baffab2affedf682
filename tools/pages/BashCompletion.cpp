#include <string>
#include <vector>

#include "Options.h"
#include "Pages.h"

namespace Pages {

namespace {

// The words of the line are read from the left, as the tool reads them: which command they name, how many arguments
// it has, and whether the word at the cursor is the value of an option.
constexpr const char* reader = R"bash(
# Puts the files, or those of the words in $1, that begin with what stands at the cursor into COMPREPLY.
_tessera_offer() {
    if [[ $1 == @file ]]; then
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$cursor")
    else
        mapfile -t COMPREPLY < <(compgen -W "$1" -- "$cursor")
    fi
}

_tessera() {
    local cursor=${COMP_WORDS[COMP_CWORD]} command= option= word i=1
    local commands flags valued arguments=() given=0
    _tessera_grammar ""
    local everywhere="--help $flags $valued" valued_everywhere=$valued
    [[ $cursor != "=" ]] || cursor=
    while ((i < COMP_CWORD)); do
        word=${COMP_WORDS[i++]}
        if [[ $word == "=" ]]; then
            continue  # bash has parted --option=value
        elif [[ -n $option ]]; then
            option=
        elif [[ " $valued $valued_everywhere " == *" $word "* ]]; then
            option=$word
        elif [[ $word == -* ]]; then
            continue
        elif [[ " $commands " == *" $word "* ]]; then
            command="${command:+$command }$word"
            _tessera_grammar "$command"
        else
            ((given++))
        fi
    done
    COMPREPLY=()
    if [[ -n $option ]]; then
        _tessera_offer "$(_tessera_value "$command $option")"
    elif [[ $cursor == -* ]]; then
        _tessera_offer "$flags $valued $everywhere"
    elif [[ -n $commands ]]; then
        _tessera_offer "$commands"
    else
        _tessera_offer "${arguments[given]-}"
    fi
}

complete -F _tessera tessera
)bash";

/// "@file", the words parted by blanks, or nothing.
std::string offerOf(const Command& command, const CLI::Option* option) {
    const Tool::Completion completion = command.completionOf(option);
    return completion.isFile ? "@file" : joined(completion.words);
}

std::string grammarOf(const Command& command) {
    std::vector<std::string> commands;
    std::vector<std::string> flags;
    std::vector<std::string> valued;
    std::string arguments;
    for (const Command* below : command.commands())
        commands.push_back(below->get_name());
    for (const CLI::Option* option : optionsOf(command))
        (takesValue(*option) ? valued : flags).push_back(nameOf(*option));
    for (const CLI::Option* argument : argumentsOf(command))
        arguments += (arguments.empty() ? "\"" : " \"") + offerOf(command, argument) + '"';
    return "        \"" + command.path() + "\")\n            commands=\"" + joined(commands) + "\" flags=\"" +
           joined(flags) + "\" valued=\"" + joined(valued) + "\" arguments=(" + arguments + ") ;;\n";
}

std::string valueOf(const Command& command, const CLI::Option& option) {
    const std::string offer = offerOf(command, &option);
    if (offer.empty()) return {};
    const std::string pattern = command.path().empty() ? "*\" " : "\"" + command.path() + ' ';
    return "        " + pattern + nameOf(option) + "\") echo \"" + offer + "\" ;;\n";
}

std::string valuesOf(const Command& command) {
    std::string cases;
    for (const CLI::Option* option : optionsOf(command))
        cases += valueOf(command, *option);
    return cases;
}

/// What `of` says of the command and of all commands below it.
template <class Of>
std::string ofAll(const Command& command, Of of) {
    std::string text = of(command);
    for (const Command* below : command.commands())
        text += ofAll(*below, of);
    return text;
}

}  // namespace

std::string bashCompletion(const Command& program) {
    return "# Completion of tessera's command line for bash, made from the commands that tessera has.\n"
           "\n"
           "# What can follow a command.\n"
           "_tessera_grammar() {\n    case $1 in\n" +
           ofAll(program, grammarOf) +
           "    esac\n}\n"
           "\n"
           "# What the value of an option can be: @file, words, or nothing for what nobody can know.\n"
           "_tessera_value() {\n    case $1 in\n" +
           ofAll(program, valuesOf) + "    esac\n}\n" + reader;
}

}  // namespace Pages
