// candidates: what an argument on the command line can be, for the completions of the shells.

#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Arguments.h"
#include "CategoryTable.h"
#include "Command.h"
#include "Commands.h"
#include "DisplayText.h"
#include "GroupBook.h"
#include "Records.h"
#include "Store.h"
#include "tessera/platform/base/Results.h"
#include "tessera/platform/base/Unicode.h"

namespace Tool {

namespace {

struct CandidateArguments {
    std::string kind;
    std::string beginning;
};

using Names = std::vector<std::string>;

/// Of those whose name begins so, in any case: the shell knows whether that matters to the user.
Names personsWith(Store& store, const CString& beginning) {
    Names names;
    const std::unique_ptr<Database::Iterator> persons(
        store.manager().qSearchPBRecord(PhoneBook::PBDBATTR_NAME, beginning));
    while (persons && persons->next() == S_OK) {
        PhoneBook::PBRecord record;
        record.dwCITypeMask = fieldOf(PhoneBook::PBDBATTR_NAME).mask();
        if (FAILED(store.manager().queryCallerInfo(persons->getCur(), &record))) continue;
        std::string name = utf8Of(record.strName.view());
        if (!name.empty() && (names.empty() || names.back() != name)) names.push_back(std::move(name));
    }
    return names;
}

Names allGroups(Store& store, const CString& /*beginning*/) {
    Names names;
    for (const PhoneBook::PBGroupInfo& group : GroupBook(store).groups())
        names.push_back(utf8Of(group.strName.view()));
    return names;
}

Names allCategories(Store& store, const CString& /*beginning*/) {
    Names names;
    for (const Category& category : CategoryTable(store).inNameOrder())
        names.push_back(utf8Of(category.name.view()));
    return names;
}

/// Where the phone book cannot be had, nobody who presses a key wants to hear of that.
Names candidates(const Settings& settings, const CandidateArguments& arguments) {
    using Find = Names (*)(Store&, const CString&);
    static const std::map<std::string, Find> finders = {
        {Completion::persons, personsWith}, {Completion::groups, allGroups}, {Completion::categories, allCategories}};
    const Find find = choiceArgument("WHAT", arguments.kind, finders);
    try {
        const CString beginning = textArgument("BEGINNING", arguments.beginning);
        Store store(settings, Store::WhenMissing::fail);
        return find(store, beginning);
    } catch (const Failure&) {
        return {};
    }
}

ExitStatus writeCandidates(const Settings& settings, const CandidateArguments& arguments) {
    for (const std::string& name : candidates(settings, arguments)) {
        const bool canBeTyped = displayable(name) == name;
        if (canBeTyped) std::cout << name << '\n';
    }
    return ExitStatus::done;
}

}  // namespace

void defineCandidates(Command& program, const Settings& settings, Action& chosen) {
    Command& command = program.addHidden(
        {.name = "candidates",
         .summary = "Print what an argument can be, a line each",
         .details = {"The completions of the shells ask for this. Without a phone book there is nothing to print."},
         .examples = {"tessera candidates persons 김"}});
    const auto arguments = std::make_shared<CandidateArguments>();
    command.add_option("WHAT", arguments->kind, "persons, groups or categories")->required();
    command.add_option("BEGINNING", arguments->beginning, "How the name of a person begins");
    command.final_callback([&settings, &chosen, arguments] {
        chosen = [&settings, arguments] { return writeCandidates(settings, *arguments); };
    });
}

}  // namespace Tool
