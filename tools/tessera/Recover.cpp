// recover: saves what can still be read of a damaged store.

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

struct RecoverArguments {
    std::string damaged;
    std::string fresh;
};

void writeRecovery(const Settings& settings, const RecoverArguments& arguments,
                   const ObjectStoreFile::Recovery& recovery) {
    if (settings.json) {
        return writeJson({{"damaged", arguments.damaged},
                          {"store", arguments.fresh},
                          {"databases", recovery.databases},
                          {"records", recovery.records},
                          {"losses", recovery.losses}});
    }
    for (const std::string& loss : recovery.losses)
        std::cout << "lost: " << displayable(loss) << '\n';
    std::cout << "saved " << recovery.records << (recovery.records == 1 ? " record" : " records") << " of "
              << recovery.databases << " databases in " << displayable(arguments.fresh) << '\n';
}

ExitStatus recover(const Settings& settings, const RecoverArguments& arguments) {
    if (!settings.storePath.empty()) throw wrongUsage("recover wants its stores as DAMAGED and NEW, without --store");
    if (arguments.damaged.empty() || arguments.fresh.empty())
        throw wrongUsage("DAMAGED and NEW want the names of files");
    ObjectStoreFile::Recovery recovery;
    if (!ObjectStoreFile::recover(arguments.damaged, arguments.fresh, recovery))
        throw Failure(storeErrorText(arguments.damaged, arguments.fresh));
    writeRecovery(settings, arguments, recovery);
    if (recovery.losses.empty()) return ExitStatus::done;
    complain(settings, arguments.damaged + R"( could not be saved whole; see what that leaves with "tessera check")");
    return ExitStatus::notAllRight;
}

}  // namespace

void defineRecover(Command& program, const Settings& settings, Action& chosen) {
    Command& command = program.add(
        {.name = "recover",
         .summary = "Make a new store of all that a damaged one still holds",
         .details = {"Every record that can still be read is saved, and what is lost is told. Both stores are "
                     "named here, without --store. What that leaves in the phone book shows 'check' on the new "
                     "one.",
                     "Exit status: 0 all was saved, 1 something is lost, 3 nothing was saved."},
         .examples = {"tessera recover damaged.db saved.db; tessera --store saved.db check --repair"}});
    const auto arguments = std::make_shared<RecoverArguments>();
    const auto addFile = [&](const char* name, std::string& value, const char* description) {
        CLI::Option* file = command.add_option(name, value, description)->required();
        command.completeWithFiles(file);
    };
    addFile("DAMAGED", arguments->damaged, "The damaged store, which stays as it is");
    addFile("NEW", arguments->fresh, "The new one; a file that exists is never overwritten");
    command.final_callback(
        [&settings, &chosen, arguments] { chosen = [&settings, arguments] { return recover(settings, *arguments); }; });
}

}  // namespace Tool
