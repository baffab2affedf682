// check: looks for damage in the store, and for what does not fit together in the phone book, and mends it.

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "CheckReport.h"
#include "Command.h"
#include "Commands.h"
#include "Store.h"
#include "System.h"
#include "tessera/phonebook/PhoneBookCheck.h"
#include "tessera/platform/base/Results.h"
#include "tessera/platform/objectstore/ObjectStoreFile.h"

namespace Tool {

namespace {

using PhoneBook::PhoneBookCheck;
using PhoneBook::PhoneBookFinding;

struct CheckArguments {
    bool full = false;
    bool repair = false;
};

void checkFile(CheckReport& report) {
    const auto depth = report.full ? ObjectStoreFile::Depth::full : ObjectStoreFile::Depth::quick;
    if (!ObjectStoreFile::check(report.store, depth, report.file)) failStore(report.store);
}

/// The local time as 20261121-103015.
std::string timeForName() {
    const std::tm now = localTimeOf(std::time(nullptr)).value_or(std::tm{});
    char text[64];
    return {text, std::strftime(text, sizeof text, "%Y%m%d-%H%M%S", &now)};
}

/// Answers the name of the backup, which is told from others by the time, and a number if need be.
std::string backUpBeside(const std::string& store) {
    constexpr int mostWithinASecond = 99;
    const std::string name = store + ".backup-" + timeForName();
    std::string file = name;
    for (int number = 2; number <= mostWithinASecond; ++number) {
        if (ObjectStoreFile::backUp(store, file)) return file;
        if (GetLastError() != ERROR_ALREADY_EXISTS) break;
        file = name + '-' + std::to_string(number);
    }
    throw Failure("nothing was repaired, as no backup could be made: " + storeErrorText(store, file));
}

void repair(Store& store, PhoneBookCheck& check, CheckReport& report) {
    report.mended.emplace();
    if (std::ranges::none_of(*report.phoneBook, &PhoneBookFinding::canBeMended)) return;
    report.backup = backUpBeside(store.path());
    store.require(SUCCEEDED(check.mend(*report.mended, *report.phoneBook)));
    checkFile(report);
}

void checkPhoneBook(const Settings& settings, const CheckArguments& arguments, CheckReport& report) {
    Store store(settings, Store::WhenMissing::fail);
    PhoneBookCheck check(store.manager());
    if (SUCCEEDED(check.examine(report.phoneBook.emplace()))) {
        if (arguments.repair) repair(store, check, report);
        return;
    }
    // A record can be damaged in a file that is whole: a quick look does not see that.
    if (GetLastError() != ERROR_FILE_CORRUPT) failStore(report.store);
    report.phoneBook.reset();
    report.file.push_back(storeErrorText(report.store));
}

void checkAll(const Settings& settings, const CheckArguments& arguments, CheckReport& report) {
    checkFile(report);
    // To open a damaged store could make it worse.
    if (report.file.empty()) checkPhoneBook(settings, arguments, report);
}

ExitStatus check(const Settings& settings, const CheckArguments& arguments) {
    CheckReport report{.store = storePathOf(settings), .full = arguments.full};
    try {
        checkAll(settings, arguments, report);
    } catch (const DamagedStore& damaged) {  // whose advice is to do what has just been done
        throw Failure(damaged.why() +
                      R"(; save what can be read with "tessera recover", or take a backup in its place)");
    }
    return writeReport(settings, report);
}

}  // namespace

void defineCheck(Command& program, const Settings& settings, Action& chosen) {
    Command& command = program.add(
        {.name = "check",
         .summary = "Look for damage in the store and in the phone book",
         .details = {"Each thing that is damaged in the file, or does not fit together in the phone book, is "
                     "named in a line of its own. Nothing is changed without --repair, others may write "
                     "meanwhile, and a store that is missing is not made.",
                     "With --repair what can be mended is mended, all of it at once, and looked at again. First "
                     "the store is copied to a file beside it that has '.backup-' and the time behind its name; "
                     "without that copy nothing is mended.",
                     "Exit status: 0 nothing is wrong, or is left, 1 something is wrong, 3 it could not be "
                     "looked at."},
         .examples = {"tessera check --full", "tessera check --repair"}});
    const auto arguments = std::make_shared<CheckArguments>();
    command.add_flag("--full", arguments->full, "Look at every record and at its place in every order");
    command.add_flag("--repair", arguments->repair, "Mend what can be mended, after a backup beside the store");
    command.final_callback(
        [&settings, &chosen, arguments] { chosen = [&settings, arguments] { return check(settings, *arguments); }; });
}

}  // namespace Tool
