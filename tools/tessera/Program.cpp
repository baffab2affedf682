#include "Program.h"

#include <string>

#include "Command.h"

namespace Tool {

namespace {

constexpr auto define = {defineInit,     defineImport,    defineExport, defineAdd,      defineEdit,
                         defineDelete,   defineShow,      defineList,   defineSearch,   defineNumber,
                         defineIdentify, defineSpeedDial, defineGroup,  defineCategory, defineCall,
                         defineWatch,    defineCheck,     defineBackup, defineRecover,  defineCandidates};

Settings::Colour colourArgument(const std::string& when) {
    if (when == "auto") return Settings::Colour::automatic;
    if (when == "always") return Settings::Colour::always;
    if (when == "never") return Settings::Colour::never;
    throw wrongUsage("--color is auto, always or never, not \"" + when + "\"");
}

}  // namespace

CommandText programText() {
    return {
        .name = "tessera",
        .summary = "Keeps a phone book and tells who is calling.",
        .details = {"A PERSON is a contact, named by its identifier, one of its numbers, its name, or a part or the "
                    "initials of that; the first of these that fits anybody counts. 'oid:15', 'number:112' and "
                    "'name:15' say which it is to be: a script does well to say 'oid:15'. To change a contact, a "
                    "short number such as 15 is an identifier and nothing else. When several fit, the program "
                    "asks which at a terminal, and fails elsewhere.",
                    "Exit status: 0 done or found, 1 nothing found or not all right, 2 wrong usage, 3 failure.",
                    "The manual, 'man tessera', has all of this, and what is in files and in JSON."},
        .examples = {"tessera import contacts.csv && tessera identify \"+82 10-2345-6789\""}};
}

void defineProgram(Command& program, Settings& settings, Action& chosen) {
    program.set_version_flag("--version", "tessera " TESSERA_VERSION, "Print the version");
    CLI::Option* store =
        program.add_option("--store", settings.storePath,
                           "The store's file; else $TESSERA_STORE, else tessera/store.db in the user's data folder");
    store->type_name("FILE")->check(
        [](const std::string& path) { return std::string(path.empty() ? "wants the name of a file" : ""); });
    program.completeWithFiles(store);
    program.add_flag("--json", settings.json, "Write JSON instead of text");
    CLI::Option* colour = program.add_option_function<std::string>(
        "--color", [&settings](const std::string& when) { settings.colour = colourArgument(when); },
        "auto (as without it: on a terminal, unless NO_COLOR is set), always or never");
    program.completeWithWords(colour->type_name("WHEN"), {"auto", "always", "never"});
    program.require_subcommand(1);
    program.fallthrough();  // the options above may also stand behind the command
    for (const auto& defineCommand : define)
        defineCommand(program, settings, chosen);
}

}  // namespace Tool
