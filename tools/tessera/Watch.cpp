// watch: tells what others do to contacts and categories, and brings the phone book into step with it.

#include <algorithm>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include "CallTimes.h"
#include "Command.h"
#include "Commands.h"
#include "DisplayText.h"
#include "Output.h"
#include "RecordChanges.h"
#include "Store.h"
#include "TextTable.h"
#include "port/EndlessOutput.h"
#include "tessera/platform/base/Results.h"
#include "tessera/platform/base/Unicode.h"
#include "tessera/platform/contacts/ContactProperties.h"
#include "tessera/platform/objectstore/CCeDBDatabase.h"
#include "tessera/platform/windows/Messages.h"

namespace Tool {

namespace {

/// How a change is called: for people, and in JSON.
struct ChangeWords {
    RecordChange::Of of;
    StoreChange::Kind kind;
    const char* text;
    const char* key;
};

constexpr ChangeWords changeWords[] = {
    {RecordChange::Of::contact, StoreChange::Kind::created, "contact added", "contact-created"},
    {RecordChange::Of::contact, StoreChange::Kind::changed, "contact changed", "contact-changed"},
    {RecordChange::Of::contact, StoreChange::Kind::deleted, "contact deleted", "contact-deleted"},
    {RecordChange::Of::category, StoreChange::Kind::created, "category added", "category-created"},
    {RecordChange::Of::category, StoreChange::Kind::changed, "category changed", "category-changed"},
    {RecordChange::Of::category, StoreChange::Kind::deleted, "category deleted", "category-deleted"},
};

const ChangeWords& wordsFor(const RecordChange& changed) {
    return *std::ranges::find_if(changeWords, [&](const ChangeWords& words) {
        return words.of == changed.of && words.kind == changed.change.kind;
    });
}

Json jsonOf(const RecordChange& changed, const std::string& name) {
    Json object{{"sequence", changed.change.sequence},
                {"time", isoTime(changed.change.time)},
                {"what", wordsFor(changed).key},
                {"oid", changed.change.oid}};
    if (!name.empty()) object["name"] = name;
    return object;
}

Row rowOf(const RecordChange& changed, const std::string& name) {
    return {std::to_string(changed.change.sequence), localText(changed.change.time), wordsFor(changed).text,
            std::to_string(changed.change.oid), displayable(name)};
}

/// The phone book in step with what others do, while this pumps, and what they do told line by line.
class Watcher {
public:
    /// The store's manager has a window.
    Watcher(const Settings& settings, const Store& store) : settings_(settings), store_(store), changes_(store) {}

    /// Until the command is told to end.
    void run();

private:
    void catchUp();
    void lookForChanges();
    bool followOne();
    void tell();
    std::string lineOf(const RecordChange& changed);

    const Settings& settings_;
    const Store& store_;
    RecordChanges changes_;
    std::vector<RecordChange> untold_;
    port::EndlessOutput output_;
    GrowingTable table_{{6, 0, 16, 6, 0}};
};

void Watcher::run() {
    std::cerr << "following " << displayable(store_.path()) << "; interrupt to end\n";
    do {
        catchUp();
    } while (output_.waitFor(messageQueueFd()));
}

/// Tells when nothing is left to follow, and only what it has seen by then: all of that has been followed.
void Watcher::catchUp() {
    do {
        lookForChanges();  // each time: while many are followed the store might forget some
    } while (followOne());
    tell();
}

void Watcher::lookForChanges() {
    const auto found = changes_.next();
    if (found) {
        untold_.insert(untold_.end(), found->begin(), found->end());
    } else {
        complain(settings_, "more has changed at once than the store remembers; going on from now");
    }
}

/// False when there is nothing to follow.
bool Watcher::followOne() {
    MSG message;
    if (output_.isOver() || !PeekMessage(&message)) return false;
    DispatchMessage(&message);
    return true;
}

void Watcher::tell() {
    for (const RecordChange& changed : std::exchange(untold_, {})) {
        if (!output_.write(lineOf(changed) + '\n')) return;
    }
}

std::string Watcher::lineOf(const RecordChange& changed) {
    const std::string name = utf8Of(changes_.nameOf(changed).view());
    if (settings_.json) return jsonLine(jsonOf(changed, name));
    return table_.lineOf(rowOf(changed, name));
}

/// From here on the manager is told what others do; what they did to categories before is made up for.
void makeWindow(Store& store) {
    store.require(store.manager().Create() != FALSE);
    // Where the system has no watch left the window would be told nothing, and nobody would say so: asking does.
    CCeDBDatabase asked;
    store.require(asked.open(szContactsDatabase, nullptr, &store.manager()) != FALSE);
    store.bringGroupsIntoStep();
}

ExitStatus watch(const Settings& settings) {
    Store store(settings, Store::WhenMissing::fail);
    makeWindow(store);
    Watcher(settings, store).run();
    return ExitStatus::done;
}

}  // namespace

void defineWatch(Command& program, const Settings& settings, Action& chosen) {
    Command& command = program.add(
        {.name = "watch",
         .summary = "Tell of each change to contacts and categories as it comes, and keep groups and slots in "
                    "step",
         .details = {"Each change that is made from now on, by this program or another, is told in a line of its "
                     "own: the number that the change has among all changes to the store, the time, what was "
                     "done, the identifier, and the name that the contact or the category has by then. Goes on "
                     "until it is interrupted or terminated, or until nobody reads its output any more; the exit "
                     "status is then 0. It takes no processor time while nothing changes.",
                     "Meanwhile the phone book is kept in step with programs that know nothing of it. A contact "
                     "that comes with categories gets the first of them as its group, and loses the group with "
                     "that category; the speed-dial slots of a contact that is deleted are emptied; groups come "
                     "and go with their categories. When the line of a change is written, all this has been done "
                     "for it. At the start groups are made for categories that have none.",
                     "The store remembers the last hundred thousand changes. If more were made before they could "
                     "be told, a line on standard error says so."},
         .examples = {"tessera watch", "tessera --json watch | grep --line-buffered contact-created"}});
    command.final_callback([&settings, &chosen] { chosen = [&settings] { return watch(settings); }; });
}

}  // namespace Tool
