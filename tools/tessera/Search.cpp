// list, search and number: the contacts that match, in the phone book's order.

#include <functional>
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

using PhoneBook::PhoneBookDBMgr;

ExitStatus list(const Settings& settings) {
    Store store(settings, Store::WhenMissing::fail);
    const auto contacts =
        readContacts(store.manager(), store.manager().getIterator(PhoneBook::PBDBATTR_NAME, nullptr, nullptr));
    writeContacts(settings, contacts);
    return ExitStatus::done;  // an empty phone book is listed as well
}

ExitStatus report(const Settings& settings, const std::vector<Contact>& contacts, const std::string& whatIsMissing) {
    if (contacts.empty()) return nothingFound(settings, whatIsMissing, Json::array());
    writeContacts(settings, contacts);
    return ExitStatus::done;
}

ExitStatus search(const Settings& settings, const std::string& argument) {
    const CString text = textArgument("TEXT", argument);
    Store store(settings, Store::WhenMissing::fail);
    return report(settings,
                  readContacts(store.manager(), store.manager().searchPBRecord(PhoneBook::PBDBATTR_NAME, text)),
                  "no name holds \"" + argument + "\"");
}

ExitStatus number(const Settings& settings, const std::string& argument) {
    const CString given = textArgument("DIGITS", argument);
    const CString digits = PhoneBookDBMgr::makeCNIP(given);
    if (digits.IsEmpty() && !given.IsEmpty()) throw wrongUsage("\"" + argument + "\" holds no digits");
    Store store(settings, Store::WhenMissing::fail);
    return report(settings, readContacts(store.manager(), store.manager().searchPBRecordOfTelNo(nullptr, digits)),
                  "no number holds \"" + argument + "\"");
}

using Search = ExitStatus (*)(const Settings&, const std::string&);

void takeKey(CLI::App* command, const Settings& settings, Action& chosen, const char* argument, const char* description,
             Search run) {
    const auto key = std::make_shared<std::string>();
    command->add_option(argument, *key, description)->required();
    command->callback(
        [&settings, &chosen, key, run] { chosen = [&settings, key, run] { return run(settings, *key); }; });
}

}  // namespace

void defineList(CLI::App& program, const Settings& settings, Action& chosen) {
    CLI::App* command = program.add_subcommand("list", "List all contacts in the order of their names");
    command->footer("Example:\n  tessera list --json");
    command->callback([&settings, &chosen] { chosen = [&settings] { return list(settings); }; });
}

void defineSearch(CLI::App& program, const Settings& settings, Action& chosen) {
    CLI::App* command = program.add_subcommand("search", "Find contacts by a part of the name, or by its initials");
    command->footer("Examples:\n  tessera search kim\n  tessera search ㄱㅁ");
    takeKey(command, settings, chosen, "TEXT",
            "A part of the name in any case, or initial consonants from its beginning", search);
}

void defineNumber(CLI::App& program, const Settings& settings, Action& chosen) {
    CLI::App* command = program.add_subcommand("number", "Find contacts by a part of one of their numbers");
    command->footer("Example:\n  tessera number 5678");
    takeKey(command, settings, chosen, "DIGITS", "Digits that follow one another in the number", number);
}

}  // namespace Tool
