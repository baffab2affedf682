// show: one contact with all its fields.

#include <memory>
#include <string>

#include "Arguments.h"
#include "Command.h"
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

void defineShow(Command& program, const Settings& settings, Action& chosen) {
    Command& command = program.add({.name = "show",
                                    .summary = "Show one contact with all its fields",
                                    .details = {"What the contact lacks is left out."},
                                    .examples = {"tessera show 15"}});
    const auto oid = std::make_shared<std::string>();
    command.add_option("OID", *oid, "The contact's identifier, as list shows it")->required();
    command.callback([&settings, &chosen, oid] { chosen = [&settings, oid] { return show(settings, *oid); }; });
}

}  // namespace Tool
