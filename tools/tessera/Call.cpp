// call: the history of calls.

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "Arguments.h"
#include "CallLog.h"
#include "CallTimes.h"
#include "Callers.h"
#include "CommandFamily.h"
#include "Deletion.h"
#include "Numbers.h"
#include "tessera/platform/base/COleDateTime.h"
#include "tessera/platform/base/Results.h"

namespace Tool {

namespace {

using PhoneBook::CallEntry;
using PhoneBook::PhoneBookDBMgr;

struct CallArguments {
    std::optional<std::string> number;
    bool withheld = false;
    std::string type = "incoming";
    std::optional<std::string> at;
    std::string duration = "0";
    std::string name;
    std::string cnap;
    std::string cdnip;
    std::vector<std::string> oids;
    bool yes = false;
};

FILETIME callTimeOf(const CallArguments& arguments) {
    if (!arguments.at) return currentFileTime();
    const auto time = timeOfIso(*arguments.at);
    if (!time) throw wrongUsage("--at wants a time such as 2026-11-21T10:30, not \"" + *arguments.at + "\"");
    return *time;
}

/// The call as the command line has it, but for its number.
CallEntry entryOf(const CallArguments& arguments) {
    CallEntry entry;
    entry.ftTimestamp = callTimeOf(arguments);
    entry.dwCallType = callTypeArgument(arguments.type);
    entry.dwCallingTime = numberArgument("--duration", arguments.duration);
    entry.strName = textArgument("--name", arguments.name);
    entry.strCNAP = textArgument("--cnap", arguments.cnap);
    entry.strCDNIP = textArgument("--cdnip", arguments.cdnip);
    if (!fitARow({entry.strName, entry.strCNAP, entry.strCDNIP}))
        throw wrongUsage("the texts of the call are too long");
    return entry;
}

/// The forms that the number can have in the phone book; none for a call without a number.
std::vector<CString> formsArgument(const CallArguments& arguments) {
    if (arguments.withheld || arguments.number->empty()) return {};
    std::vector<CString> forms = formsOf(textArgument("NUMBER", *arguments.number));
    if (forms.empty())
        throw wrongUsage("\"" + *arguments.number + "\" holds no digits of a number, as 010-2345-6789 does");
    return forms;
}

/// The form that a contact has, else the likeliest.
CString numberToLog(PhoneBookDBMgr& manager, const std::vector<CString>& forms) {
    if (forms.empty()) return {};
    const auto known = std::find_if(forms.begin(), forms.end(),
                                    [&](const CString& form) { return callerWith(manager, form).has_value(); });
    return known != forms.end() ? *known : forms.front();
}

/// Logs the call and answers it as it is logged.
LoggedCall logged(Store& store, CallEntry entry) {
    // The phone book does not tell the row that it made: it is the one that was not there before.
    const std::vector<DWORD> before = callOids(store.manager());
    store.require(SUCCEEDED(store.manager().insertCallEntry(&entry)));
    for (const DWORD oid : callOids(store.manager())) {
        if (std::find(before.begin(), before.end(), oid) == before.end()) return {oid, entry};
    }
    failStore(store.path());
}

ExitStatus logCall(const Settings& settings, const CallArguments& arguments) {
    if (!arguments.number && !arguments.withheld) throw wrongUsage("call log wants a NUMBER, or --withheld");
    CallEntry entry = entryOf(arguments);
    const std::vector<CString> forms = formsArgument(arguments);
    Store store(settings, Store::WhenMissing::fail);
    entry.strCID = arguments.withheld ? CString(PhoneBook::szWithheldCID_) : numberToLog(store.manager(), forms);
    WritingUnit unit(store);
    const LoggedCall call = logged(store, entry);
    unit.end();
    writeCall(settings, call);
    return ExitStatus::done;
}

ExitStatus listCalls(const Settings& settings, const CallArguments& /*none*/) {
    Store store(settings, Store::WhenMissing::fail);
    writeCalls(settings, readCalls(store.manager()));
    return ExitStatus::done;
}

ExitStatus writeOneOf(const Settings& settings, const std::vector<LoggedCall>& calls, bool newest) {
    if (calls.empty()) return nothingFound(settings, "no call is logged");
    writeCall(settings, newest ? calls.front() : calls.back());
    return ExitStatus::done;
}

ExitStatus lastCall(const Settings& settings, const CallArguments& /*none*/) {
    Store store(settings, Store::WhenMissing::fail);
    return writeOneOf(settings, readCalls(store.manager()), true);
}

ExitStatus oldestCall(const Settings& settings, const CallArguments& /*none*/) {
    Store store(settings, Store::WhenMissing::fail);
    return writeOneOf(settings, readCalls(store.manager()), false);
}

bool eraseCall(Store& store, DWORD oid) {
    const std::vector<DWORD> oids = callOids(store.manager());
    if (std::find(oids.begin(), oids.end(), oid) == oids.end()) return false;
    store.require(SUCCEEDED(store.manager().deleteCallEntry(oid)));
    return true;
}

std::optional<Named> callToDelete(Store& /*none*/, const std::string& argument) {
    return Named{numberArgument("OID", argument), {}};
}

std::string noCallText(const std::string& argument) {
    return "there is no call " + argument;
}

constexpr Deletable deletableCalls{"call", "calls", callToDelete, noCallText, eraseCall};

ExitStatus deleteCalls(const Settings& settings, const CallArguments& arguments) {
    return deleteThose(settings, arguments.oids, deletableCalls);
}

ExitStatus clearCalls(const Settings& settings, const CallArguments& arguments) {
    const Confirmation confirmation("call clear", arguments.yes);
    Store store(settings, Store::WhenMissing::fail);
    const std::size_t count = callOids(store.manager()).size();
    confirmation.ask("Delete all " + counted(count, deletableCalls) + " of " + store.path() + "?");
    store.require(SUCCEEDED(store.manager().deleteAllCallEntries()));
    reportDeleted(settings, deletableCalls, {.count = count});
    return ExitStatus::done;
}

void defineLog(CommandFamily<CallArguments>& family) {
    CallArguments& arguments = family.arguments();
    Command& log = family.add(
        {.name = "log",
         .summary = "Log a call; the phone book says whose it is",
         .details = {"The number is kept in the form that a contact has it in, else in the likeliest. An empty "
                     "NUMBER stands for a call without one.",
                     "The phone book fills in name and kind of number: of the contact called --name, when there "
                     "is one, else of the first contact with the number. Another name is dropped, but for that "
                     "of a withheld call."},
         .examples = {"tessera call log 01023456789 --type missed",
                      "tessera call log --withheld --at 2026-11-21T10:30"}},
        logCall);
    CLI::Option* number = log.add_option_function<std::string>(
        "NUMBER", [&arguments](const std::string& value) { arguments.number = value; },
        "The number in any spelling; empty when there was none");
    log.add_flag("--withheld", arguments.withheld, "The number was withheld")->excludes(number);
    CLI::Option* type =
        log.add_option("--type", arguments.type, "incoming (as without it), outgoing, missed, or a number of your own");
    type->type_name("TYPE");
    log.completeWithWords(type, {"incoming", "outgoing", "missed"});
    log.add_option_function<std::string>(
           "--at", [&arguments](const std::string& value) { arguments.at = value; },
           "When it was: 2026-11-21T10:30, local, or with Z or +09:00 behind it; now without it")
        ->type_name("TIME");
    log.add_option("--duration", arguments.duration, "How many seconds it took")->type_name("N");
    CLI::Option* name =
        log.add_option("--name", arguments.name, "Whose contact to look for before the number's; kept if withheld");
    log.completeWithNames(name->type_name("TEXT"), Completion::persons);
    log.add_option("--cnap", arguments.cnap, "The name that the network gave")->type_name("TEXT");
    log.add_option("--cdnip", arguments.cdnip, "A second number")->type_name("TEXT");
}

}  // namespace

void defineCall(Command& program, const Settings& settings, Action& chosen) {
    CommandFamily<CallArguments> family(
        program, settings, chosen,
        {.name = "call",
         .summary = "Log calls, and tell of the last hundred",
         .details = {"The newest hundred calls are kept."},
         .examples = {"tessera call log 01023456789 --type missed", "tessera call list"}});
    CallArguments& arguments = family.arguments();

    defineLog(family);
    family.add({.name = "list",
                .summary = "List the calls, newest first",
                .details = {"Numbers are written with dashes, and times in the zone of the user."},
                .examples = {"tessera call list"}},
               listCalls);
    family.add({.name = "last",
                .summary = "Show the newest call",
                .details = {"When no call is logged the exit status is 1."},
                .examples = {"tessera call last"}},
               lastCall);
    family.add({.name = "oldest",
                .summary = "Show the oldest call",
                .details = {"When no call is logged the exit status is 1."},
                .examples = {"tessera call oldest"}},
               oldestCall);
    Command& erase = family.add(
        {.name = "delete",
         .summary = "Delete calls",
         .details = {"Calls that there are not are named on standard error, and the exit status is 1; the others "
                     "are deleted."},
         .examples = {"tessera call delete 21 22"}},
        deleteCalls);
    erase.add_option("OID", arguments.oids, "Identifiers of calls, as list shows them")->required();
    Command& clear = family.add({.name = "clear",
                                 .summary = "Delete every call; asks first",
                                 .details = {"Asks on a terminal; anywhere else it needs --yes."},
                                 .examples = {"tessera call clear --yes"}},
                                clearCalls);
    clear.add_flag("--yes", arguments.yes, "Do not ask");
}

}  // namespace Tool
