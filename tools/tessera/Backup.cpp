// backup: copies the store, as it is at one moment, into a file.

#include <iostream>
#include <memory>
#include <string>

#include "Command.h"
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
    if (!ObjectStoreFile::backUp(store, file)) failStore(store, file);
    if (settings.json) {
        writeJson({{"store", store}, {"backup", file}});
    } else {
        std::cout << "backed " << displayable(store) << " up to " << displayable(file) << '\n';
    }
    return ExitStatus::done;
}

}  // namespace

void defineBackup(Command& program, const Settings& settings, Action& chosen) {
    Command& command = program.add(
        {.name = "backup",
         .summary = "Copy the store, which may be in use, into a new file",
         .details = {"The copy is the store as it is at one moment, though others write to it meanwhile, and a "
                     "store like any other. Only its owner may use it.",
                     "To go back to it, put it in the place of the store while nobody uses that, and remove the "
                     "file called as the store with '-wal' behind it if there is one."},
         .examples = {"tessera backup friday.db"}});
    const auto file = std::make_shared<std::string>();
    CLI::Option* option =
        command.add_option("FILE", *file, "Where to; a file that exists is never overwritten")->required();
    command.completeWithFiles(option);
    command.final_callback(
        [&settings, &chosen, file] { chosen = [&settings, file] { return backUp(settings, *file); }; });
}

}  // namespace Tool
