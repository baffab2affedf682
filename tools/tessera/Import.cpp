// import: contacts from a comma-separated file.

#include <memory>
#include <string>

#include "Arguments.h"
#include "Command.h"
#include "Commands.h"
#include "ImportFile.h"
#include "ImportReport.h"
#include "Store.h"
#include "tessera/platform/base/Results.h"

namespace Tool {

namespace {

constexpr int contactLines = 0;  // the mode in which a file's name is not looked at

ExitStatus import(const Settings& settings, const std::string& path) {
    const ImportFile file(path);  // before the store: a bad file makes none
    Store store(settings, Store::WhenMissing::make);
    ImportReport report(settings, file);
    CString clean = textArgument("FILE", file.cleanPath());
    if (FAILED(store.manager().buildDBFromFile(clean, contactLines, &report))) {
        throw Failure("the import stopped; " + std::to_string(report.imported()) +
                      " lines are in the phone book: " + storeErrorText(store.path()));
    }
    report.finish();
    return ExitStatus::done;
}

}  // namespace

void defineImport(Command& program, const Settings& settings, Action& chosen) {
    Command& command = program.add(
        {.name = "import",
         .summary = "Add the contacts of a file; makes the phone book when there is none",
         .details = {"Columns: name, group, categories, mobile, home, business, e-mail, avatar, photo, bell, "
                     "birthday, calling screen, pager, fax, notes, private, primary. A value in double quotes "
                     "may hold commas and loses the quotes. Blanks before a value, and blanks, tabs and quotes "
                     "at its end, are dropped. A number such as +821023456789 gets a space behind its country "
                     "calling code."},
         .examples = {"tessera import contacts.csv"}});
    const auto path = std::make_shared<std::string>();
    CLI::Option* file =
        command.add_option("FILE", *path, "Comma-separated text in UTF-8 or UTF-16LE, the first line being a header")
            ->required();
    command.completeWithFiles(file);
    command.callback([&settings, &chosen, path] { chosen = [&settings, path] { return import(settings, *path); }; });
}

}  // namespace Tool
