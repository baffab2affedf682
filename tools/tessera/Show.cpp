// show: one contact with all its fields.

#include <memory>
#include <string>

#include "Command.h"
#include "Commands.h"
#include "Output.h"
#include "Person.h"
#include "Store.h"

namespace Tool {

namespace {

ExitStatus show(const Settings& settings, const std::string& argument) {
    Store store(settings, Store::WhenMissing::fail);
    const auto contact = personNamed(store, argument, Purpose::look);
    if (!contact) return nobodyFound(settings, argument);
    writeContact(settings, *contact);
    return ExitStatus::done;
}

}  // namespace

void defineShow(Command& program, const Settings& settings, Action& chosen) {
    Command& command =
        program.add({.name = "show",
                     .summary = "Show one contact with all its fields",
                     .details = {"What the contact lacks is left out."},
                     .examples = {"tessera show 15", "tessera show 김민수", "tessera show 010-2345-6789"}});
    const auto person = std::make_shared<std::string>();
    command.completeWithNames(command.add_option("PERSON", *person, personText)->required(), Completion::persons);
    command.callback(
        [&settings, &chosen, person] { chosen = [&settings, person] { return show(settings, *person); }; });
}

}  // namespace Tool
