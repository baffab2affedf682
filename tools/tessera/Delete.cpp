// delete: contacts that are named, or all of them.

#include <memory>
#include <string>
#include <vector>

#include "Arguments.h"
#include "Command.h"
#include "Commands.h"
#include "Deletion.h"
#include "Person.h"
#include "Store.h"
#include "tessera/platform/base/Results.h"
#include "tessera/platform/base/Unicode.h"

namespace Tool {

namespace {

struct DeleteArguments {
    std::vector<std::string> persons;
    bool all = false;
    bool yes = false;
};

bool eraseContact(Store& store, DWORD oid) {
    if (!readContact(store.manager(), oid)) return false;
    // A slot that the contact names and that is empty counts as a failure there: what counts here is that it is gone.
    const HRESULT result = store.manager().deletePBRecord(oid);
    store.require(SUCCEEDED(result) || !readContact(store.manager(), oid));
    return true;
}

std::optional<Named> contactToDelete(Store& store, const std::string& argument) {
    const auto contact = personNamed(store, argument, Purpose::removal);
    if (!contact) return std::nullopt;
    if (numberOf(argument) == contact->oid) return Named{contact->oid, {}};
    return Named{contact->oid, std::to_string(contact->oid) + ' ' + utf8Of(contact->record.strName.view())};
}

constexpr Deletable deletableContacts{"contact", "contacts", contactToDelete, nobodyText, eraseContact};

ExitStatus deleteAll(const Settings& settings, bool yes) {
    const Confirmation confirmation("delete --all", yes);
    Store store(settings, Store::WhenMissing::fail);
    const DWORD count = store.manager().getNumRecords();
    confirmation.ask("Delete all " + counted(count, deletableContacts) + " of " + store.path() + "?");
    store.require(SUCCEEDED(store.manager().deleteAllPBRecords()));
    reportDeleted(settings, deletableContacts, {.count = count});
    return ExitStatus::done;
}

ExitStatus deleteContacts(const Settings& settings, const DeleteArguments& arguments) {
    if (arguments.all) return deleteAll(settings, arguments.yes);
    if (arguments.persons.empty()) throw wrongUsage("delete wants a PERSON, such as 15 or 김민수, or --all");
    return deleteThose(settings, arguments.persons, deletableContacts);
}

}  // namespace

void defineDelete(Command& program, const Settings& settings, Action& chosen) {
    Command& command = program.add(
        {.name = "delete",
         .summary = "Delete contacts",
         .details = {"Contacts that there are not are named on standard error, and the exit status is 1; the "
                     "others are deleted. Each PERSON is one contact; when one can be several, and nobody can be "
                     "asked which, nothing is deleted.",
                     "Who is named by a part or the initials of a name alone is asked about before that, even if "
                     "nobody else is meant; where nobody can be asked, nothing is deleted, and the error says how "
                     "to name that contact for certain.",
                     "--all asks first on a terminal; anywhere else it needs --yes, which "
                     "also does without the question."},
         .examples = {"tessera delete 15 17", "tessera delete 김민수", "tessera delete --all --yes"}});
    const auto arguments = std::make_shared<DeleteArguments>();
    CLI::Option* persons = command.add_option("PERSON", arguments->persons, personText);
    command.completeWithNames(persons, Completion::persons);
    CLI::Option* all = command.add_flag("--all", arguments->all, "Delete every contact; asks first")->excludes(persons);
    command.add_flag("--yes", arguments->yes, "Do not ask")->needs(all);
    command.callback([&settings, &chosen, arguments] {
        chosen = [&settings, arguments] { return deleteContacts(settings, *arguments); };
    });
}

}  // namespace Tool
