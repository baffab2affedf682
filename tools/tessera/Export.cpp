// export: all contacts, as a file that import reads or as JSON.

#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <system_error>

#include "Command.h"
#include "Commands.h"
#include "ExportText.h"
#include "Output.h"
#include "Records.h"
#include "Store.h"
#include "System.h"

namespace Tool {

namespace {

void refuseStore(const Store& store, const std::string& path) {
    std::error_code missing;
    if (std::filesystem::equivalent(pathOf(path), pathOf(store.path()), missing))
        throw wrongUsage(path + ": is the phone book itself");
}

/// An empty path stands for standard output.
ExitStatus exportAll(const Settings& settings, const std::string& path) {
    // UTF-16 is nothing to look at, and the texts in it stand as they are, whatever they do to a terminal.
    if (path.empty() && !settings.json && outputIsTerminal())
        throw wrongUsage("export writes no UTF-16 to a terminal: it wants a FILE, or --json");
    Store store(settings, Store::WhenMissing::fail);
    refuseStore(store, path);
    const auto contacts =
        readContacts(store.manager(), store.manager().getIterator(PhoneBook::PBDBATTR_NAME, nullptr, nullptr));
    const std::string bytes = settings.json ? jsonText(contacts) : exportText(contacts);
    if (path.empty()) {
        std::cout << bytes;
    } else {
        replaceFile(path, bytes);
    }
    return ExitStatus::done;
}

}  // namespace

void defineExport(Command& program, const Settings& settings, Action& chosen) {
    Command& command = program.add(
        {.name = "export",
         .summary = "Write all contacts as a file that import reads, or as JSON",
         .details = {"The contacts are written in the order of their names. Standard output gets only JSON when "
                     "it is a terminal. A FILE that exists is replaced at once when all is written; nobody else "
                     "can read the new one.",
                     "A contact that the import format cannot hold is an error, and nothing is written. With "
                     "--json the contacts are written as 'list' writes them, and that holds all of them."},
         .examples = {"tessera export contacts.csv", "tessera export --json"}});
    const auto path = std::make_shared<std::string>();
    command.completeWithFiles(command.add_option("FILE", *path, "The file to make or replace; else standard output"));
    command.callback([&settings, &chosen, path] { chosen = [&settings, path] { return exportAll(settings, *path); }; });
}

}  // namespace Tool
