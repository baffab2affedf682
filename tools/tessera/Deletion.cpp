#include "Deletion.h"

#include <iostream>

#include "Arguments.h"
#include "DisplayText.h"
#include "Output.h"
#include "Question.h"

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
    if (!yes && !canAsk()) throw wrongUsage(command + " needs --yes where it cannot ask");
}

void Confirmation::ask(const std::string& question) const {
    if (!yes_) requireConsent(question);
}

std::string counted(std::size_t count, const Deletable& what) {
    return std::to_string(count) + " " + (count == 1 ? what.one : what.several);
}

ExitStatus deleteThose(const Settings& settings, const std::vector<std::string>& arguments, const Deletable& what) {
    Store store(settings, Store::WhenMissing::fail);
    std::vector<std::optional<Named>> meant;
    meant.reserve(arguments.size());
    for (const std::string& argument : arguments)
        meant.push_back(what.named(store, argument));
    Deleted deleted;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (meant[i] && deleteOne(store, meant[i]->oid, what)) {
            ++deleted.count;
            if (!meant[i]->text.empty()) deleted.texts.push_back(meant[i]->text);
            continue;
        }
        deleted.missing.push_back(arguments[i]);
        complain(settings, what.missingText(arguments[i]));
    }
    if (deleted.count != 0 || settings.json) reportDeleted(settings, what, deleted);
    return deleted.missing.empty() ? ExitStatus::done : ExitStatus::nothingFound;
}

void reportDeleted(const Settings& settings, const Deletable& what, const Deleted& deleted) {
    if (settings.json) {
        Json missing = Json::array();
        for (const std::string& argument : deleted.missing) {
            const auto oid = numberOf(argument);
            missing.push_back(oid ? Json(*oid) : Json(argument));
        }
        return writeJson({{"deleted", deleted.count}, {"missing", missing}});
    }
    std::cout << "deleted " << counted(deleted.count, what);
    for (std::size_t i = 0; i < deleted.texts.size(); ++i)
        std::cout << (i == 0 ? ": " : ", ") << displayable(deleted.texts[i]);
    std::cout << '\n';
}

}  // namespace Tool
