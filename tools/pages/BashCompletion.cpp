#include <string>
#include <vector>

#include "Options.h"
#include "Pages.h"

namespace Pages {

namespace {

// The words of the line are read from the left, as the tool reads them: which command they name, how many arguments
// it has, and whether the word at the cursor is the value of an option.
constexpr const char* reader = R"bash(
# Puts a word as it is typed into REPLY, without its quotes and backslashes, and the quote that is still open into quote.
_tessera_plain() {
    local typed=$1 char
    REPLY= quote=
    while [[ -n $typed ]]; do
        char=${typed:0:1} typed=${typed:1}
        if [[ -n $quote && $char == "$quote" ]]; then
            quote=
        elif [[ -z $quote && $char == [\'\"] ]]; then
            quote=$char
        elif [[ $char == \\ && $quote != \' ]]; then
            REPLY+=${typed:0:1} typed=${typed:1}
        else
            REPLY+=$char
        fi
    done
    REPLY=${REPLY/#\~\//$HOME/}
}

# Puts the names of a kind that the phone book has, and that begin with what stands at the cursor, into COMPREPLY.
# Within quotes bash itself quotes what it inserts; elsewhere it would leave a $ or a ` as it is.
_tessera_offer_names() {
    local beginning name open quote at=()
    if [[ -n $store ]]; then
        _tessera_plain "$store"
        at=(--store "$REPLY")
    fi
    _tessera_plain "$cursor"
    beginning=$REPLY open=$quote
    _tessera_plain "$program"
    while IFS= read -r name; do
        [[ $name == "$beginning"* ]] || continue
        if [[ -z $open ]]; then
            printf -v name %q "$name"
            name=${name//[:]/\\:} name=${name//[=]/\\=} name=${name//[@]/\\@}  # where bash parts words
        fi
        COMPREPLY+=("$name")
    done < <(command "$REPLY" "${at[@]}" candidates "$1" -- "$beginning" 2>/dev/null)
    [[ -z $open ]] || compopt -o filenames 2>/dev/null
}

# Puts the files, the names of a kind, or those of the words in $1, that begin with what stands at the cursor into
# COMPREPLY.
_tessera_offer() {
    case $1 in
        @file)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -f -- "$cursor") ;;
        @*) _tessera_offer_names "${1#@}" ;;
        *) mapfile -t COMPREPLY < <(compgen -W "$1" -- "$cursor") ;;
    esac
}

_tessera() {
    local cursor=${COMP_WORDS[COMP_CWORD]} program=${1:-tessera} command= option= store= word i=1
    local commands flags valued arguments=() repeated given=0
    COMPREPLY=()
    _tessera_grammar ""
    local everywhere="--help $flags $valued" valued_everywhere=$valued
    [[ $cursor != "=" ]] || cursor=
    while ((i < COMP_CWORD)); do
        word=${COMP_WORDS[i++]}
        if [[ $word == "=" ]]; then
            continue  # bash has parted --option=value
        elif [[ $word == ":" ]]; then
            ((i++))  # and oid:15
        elif [[ -n $option ]]; then
            [[ $option != --store ]] || store=$word
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
    if [[ $cursor == ":" ]] || ((i > COMP_CWORD)); then
        return  # within oid:15
    elif [[ -n $option ]]; then
        _tessera_offer "$(_tessera_value "$command $option")"
    elif [[ $cursor == -* ]]; then
        _tessera_offer "$flags $valued $everywhere"
    elif [[ -n $commands ]]; then
        _tessera_offer "$commands"
    else
        _tessera_offer "${arguments[given]-$repeated}"
    fi
}

complete -F _tessera tessera
)bash";

/// "@file", the kind of names as in "@persons", the words parted by blanks, or nothing.
std::string offerOf(const Command& command, const CLI::Option* option) {
    const Tool::Completion completion = command.completionOf(option);
    if (completion.isFile) return "@file";
    return completion.names.empty() ? joined(completion.words) : '@' + completion.names;
}

std::string grammarOf(const Command& command) {
    std::vector<std::string> commands;
    std::vector<std::string> flags;
    std::vector<std::string> valued;
    std::string arguments;
    std::string repeated;
    for (const Command* below : command.commands())
        commands.push_back(below->get_name());
    for (const CLI::Option* option : optionsOf(command))
        (takesValue(*option) ? valued : flags).push_back(nameOf(*option));
    for (const CLI::Option* argument : argumentsOf(command)) {
        arguments += (arguments.empty() ? "\"" : " \"") + offerOf(command, argument) + '"';
        if (takesMany(*argument)) repeated = offerOf(command, argument);
    }
    return "        \"" + command.path() + "\")\n            commands=\"" + joined(commands) + "\" flags=\"" +
           joined(flags) + "\" valued=\"" + joined(valued) + "\" arguments=(" + arguments + ") repeated=\"" + repeated +
           "\" ;;\n";
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
           "# What the value of an option can be: @file, words, @ and a kind of names, or nothing for what nobody can "
           "know.\n"
           "_tessera_value() {\n    case $1 in\n" +
           ofAll(program, valuesOf) + "    esac\n}\n" + reader;
}

}  // namespace Pages
