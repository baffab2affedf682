#include <string>

#include "Options.h"
#include "Pages.h"

namespace Pages {

namespace {

// The functions are called one by the other, each with what is left of the line: the first keeps all of it.
constexpr const char* namesReader = R"zsh(
# Offers the names of the kind in the last argument that the phone book has; those before are for compadd.
_tessera_names() {
    local -a names store
    local at=${_tessera_line[(I)--store]} joined=${_tessera_line[(R)--store=*]}
    ((at)) && store=(--store ${~${(Q)_tessera_line[at + 1]}})
    [[ -n $joined ]] && store=(--store ${~${(Q)joined#--store=}})
    names=(${(f)"$(command ${~${(Q)_tessera_line[1]}} $store candidates $argv[-1] -- "${(Q)PREFIX}" 2>/dev/null)"})
    compadd "${(@)argv[1,-2]}" -a names
}

)zsh";

/// Between single quotes, where nothing but they mean anything to the shell.
std::string shellQuoted(const std::string& text) {
    std::string result = "'";
    for (const char ch : text)
        result += ch == '\'' ? "'\\''" : std::string(1, ch);
    return result + '\'';
}

std::string actionOf(const Command& command, const CLI::Option* option) {
    const Tool::Completion completion = command.completionOf(option);
    if (completion.isFile) return "_files";
    if (!completion.names.empty()) return "_tessera_names " + completion.names;
    return completion.words.empty() ? " " : '(' + joined(completion.words) + ')';
}

/// The names of the options that exclude this one, as _arguments wants them in front.
std::string exclusionsOf(const CLI::Option& option) {
    std::vector<std::string> names;
    for (const CLI::Option* other : option.get_excludes())
        if (!other->get_positional()) names.push_back(nameOf(*other));
    return names.empty() ? "" : '(' + joined(names) + ')';
}

std::string specificationOf(const Command& command, const CLI::Option* option) {
    const bool isRepeatable = takesValue(*option) && takesMany(*option);
    std::string text = (isRepeatable ? "*" : exclusionsOf(*option)) + nameOf(*option) +
                       (takesValue(*option) ? "=" : "") + '[' + escaped(option->get_description(), "[]:\\") + ']';
    if (takesValue(*option)) text += ':' + option->get_type_name() + ':' + actionOf(command, option);
    return shellQuoted(text);
}

std::string argumentOf(const Command& command, const CLI::Option* argument) {
    const std::string count = takesMany(*argument) ? "*" : "";
    return shellQuoted(count + ':' + nameOf(*argument) + ':' + actionOf(command, argument));
}

std::string functionNameOf(const Command& command) {
    std::string name = "_tessera";
    for (const char ch : command.path().empty() ? "" : '_' + command.path())
        name += ch == ' ' ? '_' : ch;
    return name;
}

std::string specificationsOf(const Command& command) {
    std::string lines;
    for (const CLI::Option* option : optionsOf(command))
        lines += " \\\n        " + specificationOf(command, option);
    for (const CLI::Option* argument : argumentsOf(command))
        lines += " \\\n        " + argumentOf(command, argument);
    return lines;
}

std::string functionOfLeaf(const Command& command) {
    return functionNameOf(command) + "() {\n    _arguments $_tessera_everywhere" + specificationsOf(command) +
           "\n}\n\n";
}

std::string functionsOf(const Command& command);

/// Of a family, or of the tool itself.
std::string functionOfFamily(const Command& family) {
    std::string commands;
    std::string functions;
    for (const Command* command : family.commands()) {
        commands +=
            "        " + shellQuoted(command->get_name() + ':' + escaped(command->text().summary, ":\\")) + '\n';
        functions += functionsOf(*command);
    }
    return functions + functionNameOf(family) +
           "() {\n"
           "    local curcontext=$curcontext state line ret=1\n" +
           (family.path().empty() ? "    local -a _tessera_line=($words)\n" : "") + "    local -a commands=(\n" +
           commands +
           "    )\n"
           "    _arguments -C $_tessera_everywhere '1: :->command' '*:: :->rest' && ret=0\n"
           "    case $state in\n"
           "        command) _describe -t commands command commands && ret=0 ;;\n"
           "        rest) (( $+functions[" +
           functionNameOf(family) + "_$words[1]] )) && " + functionNameOf(family) +
           "_$words[1] && ret=0 ;;\n"
           "    esac\n"
           "    return ret\n"
           "}\n\n";
}

std::string functionsOf(const Command& command) {
    return command.commands().empty() ? functionOfLeaf(command) : functionOfFamily(command);
}

std::string optionsEverywhere(const Command& program) {
    std::string lines = "        '(- *)--help[" + escaped(program.get_help_ptr()->get_description(), "[]:\\") + "]'\n";
    for (const CLI::Option* option : optionsOf(program))
        lines += "        " + specificationOf(program, option) + '\n';
    return lines;
}

}  // namespace

std::string zshCompletion(const Command& program) {
    return "#compdef tessera\n"
           "# Completion of tessera's command line for zsh, made from the commands that tessera has.\n"
           "\n"
           "typeset -ga _tessera_everywhere=(\n" +
           optionsEverywhere(program) + ")\n" + namesReader + functionsOf(program) + "_tessera \"$@\"\n";
}

}  // namespace Pages
