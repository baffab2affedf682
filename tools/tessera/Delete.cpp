// delete: contacts by their identifiers, or all of them.

#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "Arguments.h"
#include "Commands.h"
#include "DisplayText.h"
#include "Output.h"
#include "Records.h"
#include "Store.h"
#include "System.h"
#include "tessera/platform/base/Results.h"
#include "tessera/platform/objectstore/ObjectStore.h"

namespace Tool {

namespace {

struct DeleteArguments {
    std::vector<std::string> oids;
    bool all = false;
    bool yes = false;
};

std::string counted(std::size_t count) {
    return std::to_string(count) + (count == 1 ? " contact" : " contacts");
}

/// False when there is no such contact.
bool deleteContact(Store& store, DWORD oid) {
    ObjectStoreBatch batch;  // nobody else deletes it between the look and the deletion
    if (!batch.begun()) throw Failure(storeErrorText(store.path()));
    if (!readContact(store.manager(), oid)) return false;
    if (FAILED(store.manager().deletePBRecord(oid)) || !batch.end()) throw Failure(storeErrorText(store.path()));
    return true;
}

void reportDeleted(const Settings& settings, std::size_t deleted, const std::vector<DWORD>& missing) {
    if (settings.json) return writeJson({{"deleted", deleted}, {"missing", missing}});
    std::cout << "deleted " << counted(deleted) << '\n';
}

ExitStatus deleteThose(const Settings& settings, const std::vector<std::string>& arguments) {
    std::vector<DWORD> oids;
    for (const std::string& argument : arguments)
        oids.push_back(numberArgument("OID", argument));
    Store store(settings, Store::WhenMissing::fail);
    std::vector<DWORD> missing;
    for (const DWORD oid : oids) {
        if (deleteContact(store, oid)) continue;
        missing.push_back(oid);
        std::cerr << "tessera: there is no contact " << oid << '\n';
    }
    const std::size_t deleted = oids.size() - missing.size();
    if (deleted != 0 || settings.json) reportDeleted(settings, deleted, missing);
    return missing.empty() ? ExitStatus::done : ExitStatus::nothingFound;
}

bool agreed(const Store& store, DWORD count) {
    std::cerr << "Delete all " << counted(count) << " of " << displayable(store.path()) << "? [y/N] " << std::flush;
    std::string answer;
    std::getline(std::cin, answer);
    return answer == "y" || answer == "Y" || answer == "yes";
}

ExitStatus deleteAll(const Settings& settings, bool yes) {
    const bool canAsk = inputIsTerminal() && errorIsTerminal();
    if (!yes && !canAsk) throw wrongUsage("delete --all needs --yes where it cannot ask");
    Store store(settings, Store::WhenMissing::fail);
    const DWORD count = store.manager().getNumRecords();
    if (!yes && !agreed(store, count)) throw Failure("nothing was deleted");
    if (FAILED(store.manager().deleteAllPBRecords())) throw Failure(storeErrorText(store.path()));
    reportDeleted(settings, count, {});
    return ExitStatus::done;
}

ExitStatus deleteContacts(const Settings& settings, const DeleteArguments& arguments) {
    if (arguments.all) return deleteAll(settings, arguments.yes);
    if (arguments.oids.empty()) throw wrongUsage("delete wants an OID, or --all");
    return deleteThose(settings, arguments.oids);
}

}  // namespace

void defineDelete(CLI::App& program, const Settings& settings, Action& chosen) {
    CLI::App* command = program.add_subcommand("delete", "Delete contacts");
    const auto arguments = std::make_shared<DeleteArguments>();
    CLI::Option* oids = command->add_option("OID", arguments->oids, "Identifiers of contacts, as list shows them");
    CLI::Option* all = command->add_flag("--all", arguments->all, "Delete every contact; asks first")->excludes(oids);
    command->add_flag("--yes", arguments->yes, "Do not ask")->needs(all);
    command->footer("Examples:\n  tessera delete 12 15\n  tessera delete --all --yes");
    command->callback([&settings, &chosen, arguments] {
        chosen = [&settings, arguments] { return deleteContacts(settings, *arguments); };
    });
}

}  // namespace Tool
