// backup: copies the store, as it is at one moment, into a file.

#include <iostream>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "Commands.h"
#include "DisplayText.h"
#include "Output.h"
#include "Store.h"
#include "tessera/platform/objectstore/ObjectStoreFile.h"

namespace Tool {

namespace {

ExitStatus backUp(const Settings& settings, const std::string& file) {
    if (file.empty()) throw wrongUsage("FILE wants the name of a file");
    const std::string store = storePathOf(settings);
    if (!ObjectStoreFile::backUp(store, file)) throw Failure(storeErrorText(store, file));
    if (settings.json) {
        writeJson({{"store", store}, {"backup", file}});
    } else {
        std::cout << "backed " << displayable(store) << " up to " << displayable(file) << '\n';
    }
    return ExitStatus::done;
}

}  // namespace

void defineBackup(CLI::App& program, const Settings& settings, Action& chosen) {
    CLI::App* command = program.add_subcommand("backup", "Copy the store, which may be in use, into a new file");
    const auto file = std::make_shared<std::string>();
    command->add_option("FILE", *file, "Where to; a file that exists is never overwritten")->required();
    command->footer("Example:\n  tessera backup phonebook-friday.db");
    command->final_callback(
        [&settings, &chosen, file] { chosen = [&settings, file] { return backUp(settings, *file); }; });
}

}  // namespace Tool
