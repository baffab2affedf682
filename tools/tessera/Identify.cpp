// identify: who is calling?

#include <memory>
#include <string>
#include <vector>

#include "Arguments.h"
#include "Callers.h"
#include "Command.h"
#include "Commands.h"
#include "Numbers.h"
#include "Output.h"
#include "Records.h"
#include "Store.h"

namespace Tool {

namespace {

struct Arguments {
    std::string number;
    bool all = false;
};

Json jsonOfCaller(const Contact& contact, const std::string& matched) {
    Json object = jsonOf(contact);
    object["matched"] = matched;
    return object;
}

void write(const Settings& settings, const Callers& callers, bool all) {
    if (!settings.json) {
        if (all) {
            writeContacts(settings, callers.contacts);
        } else {
            writeContact(settings, callers.contacts.front());
        }
        return writeMatch(settings, "Matched", callers.matched);
    }
    if (!all) return writeJson(jsonOfCaller(callers.contacts.front(), callers.matched));
    std::vector<Json> objects;
    for (const Contact& contact : callers.contacts)
        objects.push_back(jsonOfCaller(contact, callers.matched));
    writeJsonArray(objects);
}

ExitStatus identify(const Settings& settings, const Arguments& arguments) {
    const std::vector<CString> forms = formsOf(textArgument("NUMBER", arguments.number));
    if (forms.empty())
        throw wrongUsage("\"" + arguments.number + "\" holds no digits of a number, as 010-2345-6789 does");
    Store store(settings, Store::WhenMissing::fail);
    const Callers callers =
        arguments.all ? allCallersWith(store.manager(), forms) : firstCallerWith(store.manager(), forms);
    if (callers.contacts.empty()) {
        return nothingFound(settings, "nobody in the phone book has the number " + arguments.number,
                            arguments.all ? Json::array() : Json());
    }
    write(settings, callers, arguments.all);
    return ExitStatus::done;
}

}  // namespace

void defineIdentify(Command& program, const Settings& settings, Action& chosen) {
    Command& command = program.add(
        {.name = "identify",
         .summary = "Tell who has a number, as it was received or typed",
         .details = {"A country calling code behind a plus sign or behind 00 is separated from the rest. When "
                     "nobody has the number so, the other forms that it can have are tried, with the leading "
                     "zero and without; the form that matched is told."},
         .examples = {"tessera identify \"+82 10-2345-6789\"", "tessera identify 01023456789 --all"}});
    const auto arguments = std::make_shared<Arguments>();
    command.add_option("NUMBER", arguments->number, "The number in any spelling")->required();
    command.add_flag("--all", arguments->all, "List everybody who has the number, not just the first");
    command.callback([&settings, &chosen, arguments] {
        chosen = [&settings, arguments] { return identify(settings, *arguments); };
    });
}

}  // namespace Tool
