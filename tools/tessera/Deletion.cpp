#include "Deletion.h"

#include <iostream>

#include "Arguments.h"
#include "DisplayText.h"
#include "Output.h"
#include "System.h"

namespace Tool {

namespace {

bool deleteOne(Store& store, DWORD oid, const Deletable& what) {
    WritingUnit unit(store);  // nobody else deletes it between the look and the deletion
    if (!what.erase(store, oid)) return false;
    unit.end();
    return true;
}

}  // namespace

Confirmation::Confirmation(const std::string& command, bool yes) : yes_(yes) {
    const bool canAsk = inputIsTerminal() && errorIsTerminal();
    if (!yes && !canAsk) throw wrongUsage(command + " needs --yes where it cannot ask");
}

void Confirmation::ask(const std::string& question) const {
    if (yes_) return;
    std::cerr << displayable(question) << " [y/N] " << std::flush;
    std::string answer;
    std::getline(std::cin, answer);
    if (answer != "y" && answer != "Y" && answer != "yes") throw Failure("nothing was deleted");
}

std::string counted(std::size_t count, const Deletable& what) {
    return std::to_string(count) + " " + (count == 1 ? what.one : what.several);
}

ExitStatus deleteThose(const Settings& settings, const std::vector<std::string>& arguments, const Deletable& what) {
    std::vector<DWORD> oids;
    oids.reserve(arguments.size());
    for (const std::string& argument : arguments)
        oids.push_back(numberArgument("OID", argument));
    Store store(settings, Store::WhenMissing::fail);
    std::vector<DWORD> missing;
    for (const DWORD oid : oids) {
        if (deleteOne(store, oid, what)) continue;
        missing.push_back(oid);
        std::cerr << "tessera: there is no " << what.one << ' ' << oid << '\n';
    }
    const std::size_t deleted = oids.size() - missing.size();
    if (deleted != 0 || settings.json) reportDeleted(settings, what, deleted, missing);
    return missing.empty() ? ExitStatus::done : ExitStatus::nothingFound;
}

void reportDeleted(const Settings& settings, const Deletable& what, std::size_t deleted,
                   const std::vector<DWORD>& missing) {
    if (settings.json) return writeJson({{"deleted", deleted}, {"missing", missing}});
    std::cout << "deleted " << counted(deleted, what) << '\n';
}

}  // namespace Tool
