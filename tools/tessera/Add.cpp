// add: a contact from the command line.

#include <iostream>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "Commands.h"
#include "ContactOptions.h"
#include "Output.h"
#include "Records.h"
#include "Store.h"
#include "tessera/platform/base/Results.h"

namespace Tool {

namespace {

/// An empty value is a field that the contact lacks, as it is in a file of contacts.
PhoneBook::PBRecord recordOf(const ContactOptions& options) {
    PhoneBook::PBRecord record;
    options.apply(record);
    if (record.dwCITypeMask == 0) throw wrongUsage("add wants at least one field, such as --name");
    requireStorable(record);
    return record;
}

ExitStatus add(const Settings& settings, const ContactOptions& options) {
    PhoneBook::PBRecord record = recordOf(options);
    Store store(settings, Store::WhenMissing::make);
    DWORD oid = 0;
    if (FAILED(store.manager().insertPBRecord(record, &oid)) || oid == 0) throw Failure(storeErrorText(store.path()));
    if (!settings.json) {
        std::cout << "added contact " << oid << '\n';
        return ExitStatus::done;
    }
    const auto added = readContact(store.manager(), oid);
    if (!added) throw Failure(storeErrorText(store.path()));
    writeContact(settings, *added);
    return ExitStatus::done;
}

}  // namespace

void defineAdd(CLI::App& program, const Settings& settings, Action& chosen) {
    CLI::App* command = program.add_subcommand("add", "Add a contact; makes the phone book when there is none");
    const auto options = std::make_shared<ContactOptions>();
    options->define(*command);
    command->footer(
        "A number stays as typed, but for a space behind the country calling code of one such as +821023456789.\n"
        "Example:\n  tessera add --name 김민수 --mobile 010-2345-6789 --group 친구 --birthday 1990-03-05");
    command->callback(
        [&settings, &chosen, options] { chosen = [&settings, options] { return add(settings, *options); }; });
}

}  // namespace Tool
