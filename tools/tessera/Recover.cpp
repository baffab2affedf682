// recover: saves what can still be read of a damaged store.

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
    std::cout.flush();
    std::cerr << "tessera: " << displayable(arguments.damaged)
              << R"( could not be saved whole; see what that leaves with "tessera check")" << '\n';
    return ExitStatus::notAllRight;
}

}  // namespace

void defineRecover(CLI::App& program, const Settings& settings, Action& chosen) {
    CLI::App* command = program.add_subcommand("recover", "Make a new store of all that a damaged one still holds");
    const auto arguments = std::make_shared<RecoverArguments>();
    command->add_option("DAMAGED", arguments->damaged, "The damaged store, which stays as it is")->required();
    command->add_option("NEW", arguments->fresh, "The new one; a file that exists is never overwritten")->required();
    command->footer(
        "Exit status: 0 all was saved, 1 something is lost, 3 nothing was saved.\n"
        "Example:\n  tessera recover broken.db saved.db && tessera --store saved.db check --repair");
    command->final_callback(
        [&settings, &chosen, arguments] { chosen = [&settings, arguments] { return recover(settings, *arguments); }; });
}

}  // namespace Tool
