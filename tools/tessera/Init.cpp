// init: makes the phone book.

#include <iostream>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "Command.h"
#include "Commands.h"
#include "DisplayText.h"
#include "Output.h"
#include "Store.h"

namespace Tool {

namespace {

ExitStatus init(const Settings& settings) {
    const Store store(settings, Store::WhenMissing::make);
    if (settings.json) {
        writeJson({{"store", store.path()}, {"made", store.wasMade()}});
    } else {
        std::cout << (store.wasMade() ? "made a phone book in " : "there is a phone book already in ")
                  << displayable(store.path()) << '\n';
    }
    return ExitStatus::done;
}

}  // namespace

void defineInit(Command& program, const Settings& settings, Action& chosen) {
    Command& command = program.add(
        {.name = "init",
         .summary = "Make the phone book; one that exists stays as it is",
         .details = {"A new one has four groups to begin with (family, friends, company and school, in Korean), "
                     "unless another program has made contact categories in the store already: then those are "
                     "its groups."},
         .examples = {"tessera --store family.db init"}});
    command.final_callback([&settings, &chosen] { chosen = [&settings] { return init(settings); }; });
}

}  // namespace Tool
