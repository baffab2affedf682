// show: one contact with all its fields.

#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "Arguments.h"
#include "Commands.h"
#include "Output.h"
#include "Records.h"
#include "Store.h"

namespace Tool {

namespace {

ExitStatus show(const Settings& settings, const std::string& argument) {
    const DWORD oid = numberArgument("OID", argument);
    Store store(settings, Store::WhenMissing::fail);
    const auto contact = readContact(store.manager(), oid);
    if (!contact) return nothingFound(settings, "there is no contact " + std::to_string(oid));
    writeContact(settings, *contact);
    return ExitStatus::done;
}

}  // namespace

void defineShow(CLI::App& program, const Settings& settings, Action& chosen) {
    CLI::App* command = program.add_subcommand("show", "Show one contact with all its fields");
    const auto oid = std::make_shared<std::string>();
    command->add_option("OID", *oid, "The contact's identifier, as list shows it")->required();
    command->footer("Example:\n  tessera show 12");
    command->callback([&settings, &chosen, oid] { chosen = [&settings, oid] { return show(settings, *oid); }; });
}

}  // namespace Tool
