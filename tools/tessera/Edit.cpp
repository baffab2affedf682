// edit: changes some fields of a contact and keeps the others.

#include <iostream>
#include <memory>
#include <string>

#include "Categories.h"
#include "Command.h"
#include "Commands.h"
#include "ContactOptions.h"
#include "Output.h"
#include "Person.h"
#include "Store.h"
#include "tessera/platform/base/Results.h"

namespace Tool {

namespace {

using PhoneBook::PBRecord;

struct EditArguments {
    std::string person;
    ContactOptions options;
};

/// False when there is no such contact.
bool change(Store& store, DWORD oid, const ContactOptions& options) {
    WritingUnit unit(store);  // from the reading on: nobody else changes the contact in between
    const auto contact = readContact(store.manager(), oid);
    if (!contact) return false;
    PBRecord edited = contact->record;
    options.apply(edited);
    requireStorable(edited);
    if (!hasRoomForUpdate(contact->record, edited.strGroup))
        throw wrongUsage("the group and the categories that the contact has are too long together");
    store.require(SUCCEEDED(store.manager().updatePBRecord(oid, edited)) &&
                  restoreCategories(oid, contact->record, edited.strGroup));
    unit.end();
    return true;
}

ExitStatus edit(const Settings& settings, const EditArguments& arguments) {
    if (arguments.options.empty()) throw wrongUsage("edit wants at least one field, such as --name");
    PBRecord tried;
    arguments.options.apply(tried);  // before the store: a bad value touches none
    Store store(settings, Store::WhenMissing::fail);
    const auto contact = personNamed(store, arguments.person, Purpose::change);
    if (!contact || !change(store, contact->oid, arguments.options)) return nobodyFound(settings, arguments.person);
    const DWORD oid = contact->oid;
    if (!settings.json) {
        std::cout << "changed contact " << oid << '\n';
        return ExitStatus::done;
    }
    const auto changed = readContact(store.manager(), oid);
    if (!changed) failStore(store.path());
    writeContact(settings, *changed);
    return ExitStatus::done;
}

}  // namespace

void defineEdit(Command& program, const Settings& settings, Action& chosen) {
    Command& command = program.add(
        {.name = "edit",
         .summary = "Change the named fields of a contact and keep the others",
         .details = {"An empty value empties the field. A contact whose group changes leaves the category of the "
                     "group that it had; its other categories stay, behind the group."},
         .examples = {"tessera edit 15 --home \"\" --group family", "tessera edit 김민수 --email minsu@example.com"}});
    const auto arguments = std::make_shared<EditArguments>();
    command.completeWithNames(command.add_option("PERSON", arguments->person, personText)->required(),
                              Completion::persons);
    arguments->options.define(command);
    command.callback(
        [&settings, &chosen, arguments] { chosen = [&settings, arguments] { return edit(settings, *arguments); }; });
}

}  // namespace Tool
