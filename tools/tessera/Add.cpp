// add: a contact from the command line.

#include <iostream>
#include <memory>
#include <string>

#include "Command.h"
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
    if (FAILED(store.manager().insertPBRecord(record, &oid)) || oid == 0) failStore(store.path());
    if (!settings.json) {
        std::cout << "added contact " << oid << '\n';
        return ExitStatus::done;
    }
    const auto added = readContact(store.manager(), oid);
    if (!added) failStore(store.path());
    writeContact(settings, *added);
    return ExitStatus::done;
}

}  // namespace

void defineAdd(Command& program, const Settings& settings, Action& chosen) {
    Command& command = program.add(
        {.name = "add",
         .summary = "Add a contact; makes the phone book when there is none",
         .details = {"A number stays as typed, but when it begins with a plus sign and a country calling code, "
                     "and the phone book could not tell the code from the rest, it gets a space behind the code: "
                     "+821023456789 becomes +82 1023456789."},
         .examples = {"tessera add --name 김민수 --mobile 010-2345-6789 --group 친구 --birthday 1990-03-05"}});
    const auto options = std::make_shared<ContactOptions>();
    options->define(command);
    command.callback(
        [&settings, &chosen, options] { chosen = [&settings, options] { return add(settings, *options); }; });
}

}  // namespace Tool
