// list, search and number: the contacts that match, in the phone book's order.

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "Arguments.h"
#include "Command.h"
#include "Commands.h"
#include "Output.h"
#include "Records.h"
#include "Store.h"
#include "exchange/CategoryTexts.h"
#include "tessera/platform/base/Results.h"

namespace Tool {

namespace {

using PhoneBook::PhoneBookDBMgr;

struct ListArguments {
    std::string group;
    bool noGroup = false;
    std::string prefix;
    const CLI::Option* groupGiven = nullptr;
    const CLI::Option* prefixGiven = nullptr;

    bool hasGroup() const { return groupGiven->count() != 0; }
    bool hasPrefix() const { return prefixGiven->count() != 0; }
};

struct SearchArguments {
    std::string text;
    std::vector<std::string> narrowing;
};

ExitStatus report(const Settings& settings, const std::vector<Contact>& contacts, const std::string& whatIsMissing,
                  const CString& digits = CString()) {
    if (contacts.empty()) return nothingFound(settings, whatIsMissing, Json::array());
    writeContacts(settings, contacts, digits);
    return ExitStatus::done;
}

ExitStatus listAll(const Settings& settings) {
    Store store(settings, Store::WhenMissing::fail);
    const auto contacts =
        readContacts(store.manager(), store.manager().getIterator(PhoneBook::PBDBATTR_NAME, nullptr, nullptr));
    writeContacts(settings, contacts);
    return ExitStatus::done;  // an empty phone book is listed as well
}

ExitStatus listGroup(const Settings& settings, const CString& group, const std::string& whatIsMissing) {
    Store store(settings, Store::WhenMissing::fail);
    return report(settings, readContacts(store.manager(), store.manager().searchPBRecordOfPBGroup(group)),
                  whatIsMissing);
}

ExitStatus listPrefix(const Settings& settings, const std::string& argument) {
    const CString prefix = textArgument("--prefix", argument);
    Store store(settings, Store::WhenMissing::fail);
    return report(settings,
                  readContacts(store.manager(), store.manager().qSearchPBRecord(PhoneBook::PBDBATTR_NAME, prefix)),
                  "no name begins with \"" + argument + "\"");
}

ExitStatus list(const Settings& settings, const ListArguments& arguments) {
    if (arguments.noGroup) return listGroup(settings, CString(), "every contact has a group");
    if (arguments.hasPrefix()) return listPrefix(settings, arguments.prefix);
    if (!arguments.hasGroup()) return listAll(settings);
    if (arguments.group.empty()) throw wrongUsage("--group wants a name; --no-group lists who has none");
    return listGroup(settings, asCategory(textArgument("--group", arguments.group)),
                     "nobody is in the group \"" + arguments.group + "\"");
}

/// Keeps those contacts whose name the text finds as well.
void narrow(std::vector<Contact>& contacts, PhoneBookDBMgr& manager, const CString& text) {
    const std::unique_ptr<Database::Iterator> iterator(manager.searchPBRecord(PhoneBook::PBDBATTR_NAME, text));
    std::set<DWORD> found;
    while (iterator && iterator->next() == S_OK)
        found.insert(iterator->getCur());
    std::erase_if(contacts, [&](const Contact& contact) { return found.count(contact.oid) == 0; });
}

ExitStatus search(const Settings& settings, const SearchArguments& arguments) {
    const CString text = textArgument("TEXT", arguments.text);
    std::vector<CString> narrowing;
    for (const std::string& argument : arguments.narrowing)
        narrowing.push_back(textArgument("--and", argument));
    Store store(settings, Store::WhenMissing::fail);
    auto contacts = readContacts(store.manager(), store.manager().searchPBRecord(PhoneBook::PBDBATTR_NAME, text));
    std::string missing = "no name holds \"" + arguments.text + "\"";
    for (std::size_t i = 0; i < narrowing.size(); ++i) {
        narrow(contacts, store.manager(), narrowing[i]);
        missing += " and \"" + arguments.narrowing[i] + "\"";
    }
    return report(settings, contacts, missing);
}

ExitStatus number(const Settings& settings, const std::string& argument) {
    const CString given = textArgument("DIGITS", argument);
    const CString digits = PhoneBookDBMgr::makeCNIP(given);
    if (digits.IsEmpty() && !given.IsEmpty())
        throw wrongUsage("\"" + argument + "\" holds no digits to look for, as 2345 does");
    Store store(settings, Store::WhenMissing::fail);
    return report(settings, readContacts(store.manager(), store.manager().searchPBRecordOfTelNo(nullptr, digits)),
                  "no number holds \"" + argument + "\"", digits);
}

}  // namespace

void defineList(Command& program, const Settings& settings, Action& chosen) {
    Command& command = program.add(
        {.name = "list",
         .summary = "List contacts: all of them, or those of a group or a prefix",
         .details = {"The contacts are listed in the order of their names. The name of a group counts with its "
                     "case, a prefix without."},
         .examples = {"tessera list --json", "tessera list --group 친구", "tessera list --prefix min"}});
    const auto arguments = std::make_shared<ListArguments>();
    CLI::Option* group = command.add_option("--group", arguments->group, "Only whose one category is this group");
    CLI::Option* noGroup = command.add_flag("--no-group", arguments->noGroup, "Only who has no category");
    CLI::Option* prefix = command.add_option("--prefix", arguments->prefix, "Only whose name begins so, in any case");
    group->type_name("NAME")->excludes(noGroup)->excludes(prefix);
    prefix->type_name("TEXT")->excludes(noGroup);
    command.completeWithNames(group, Completion::groups);
    arguments->groupGiven = group;
    arguments->prefixGiven = prefix;
    command.callback(
        [&settings, &chosen, arguments] { chosen = [&settings, arguments] { return list(settings, *arguments); }; });
}

void defineSearch(Command& program, const Settings& settings, Action& chosen) {
    Command& command = program.add(
        {.name = "search",
         .summary = "Find contacts by a part of the name, or by its initials",
         .details = {"A text of Korean initial consonants finds the names whose syllables begin with them, from "
                     "the first one on. Each --and narrows the result to those contacts that its text finds as "
                     "well."},
         .examples = {"tessera search kim", "tessera search ㄱㅁ", "tessera search kim --and min"}});
    const auto arguments = std::make_shared<SearchArguments>();
    command
        .add_option("TEXT", arguments->text, "A part of the name in any case, or initial consonants from its beginning")
        ->required();
    command.add_option("--and", arguments->narrowing, "Only those that this text finds as well; may stand repeatedly")
        ->type_name("TEXT")
        ->allow_extra_args(false);
    command.callback(
        [&settings, &chosen, arguments] { chosen = [&settings, arguments] { return search(settings, *arguments); }; });
}

void defineNumber(Command& program, const Settings& settings, Action& chosen) {
    Command& command = program.add(
        {.name = "number",
         .summary = "Find contacts by a part of one of their numbers",
         .details = {"Blanks and dashes do not count, neither in DIGITS nor in the numbers. Where there are "
                     "colours the digits stand out in the numbers."},
         .examples = {"tessera number 2345"}});
    const auto digits = std::make_shared<std::string>();
    command.add_option("DIGITS", *digits, "Digits that follow one another in the number")->required();
    command.callback(
        [&settings, &chosen, digits] { chosen = [&settings, digits] { return number(settings, *digits); }; });
}

}  // namespace Tool
