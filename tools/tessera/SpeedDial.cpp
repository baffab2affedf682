// speed-dial: numbers under slots of one or two digits.

#include <iostream>
#include <string>
#include <vector>

#include "Arguments.h"
#include "CommandFamily.h"
#include "Deletion.h"
#include "DisplayText.h"
#include "Output.h"
#include "Person.h"
#include "SlotGrid.h"
#include "Slots.h"
#include "System.h"
#include "TextTable.h"
#include "tessera/platform/base/Results.h"
#include "tessera/platform/base/Unicode.h"

namespace Tool {

namespace {

using PhoneBook::PhoneBookDBMgr;
using PhoneBook::SpeedDialInfo;

struct SlotArguments {
    std::string slot;
    std::string person;
    std::string type;
    std::string to;
    bool all = false;
    bool yes = false;
};

DWORD slotArgument(const std::string& name, const std::string& value) {
    const auto slot = numberOf(value);
    if (!slot || *slot < Slots::first || *slot > Slots::last)
        throw wrongUsage(name + " wants a slot from 1 to 99, not \"" + value + "\"");
    return *slot;
}

const Field& typeArgument(const std::string& value) {
    for (const Field& field : fields) {
        if (PhoneBookDBMgr::isSDialNoAttr(field.attribute) && value == field.key) return field;
    }
    throw wrongUsage("the number is one of mobile, home and business, not \"" + value + "\"");
}

std::string slotText(DWORD slot) {
    return "slot " + std::to_string(slot);
}

std::string typeOf(const SpeedDialInfo& slot) {
    const Field* field = numberField(slot.dwTelType);
    return field != nullptr ? field->key : "";
}

std::string dialledText(const CString& number) {
    return utf8Of(PhoneBookDBMgr::makeTelNoStrFromCID(number).view());
}

Json jsonOf(const SpeedDialInfo& slot) {
    Json object{{"slot", slot.dwSDialID}};
    if (slot.dwOID != 0) object["oid"] = slot.dwOID;
    if (!slot.strName.IsEmpty()) object["name"] = utf8Of(slot.strName.view());
    if (const Field* field = numberField(slot.dwTelType); field != nullptr) object["type"] = field->key;
    if (!slot.strTelNo.IsEmpty()) object["number"] = utf8Of(slot.strTelNo.view());
    return object;
}

void writeSlotTable(const Settings& settings, const std::vector<SpeedDialInfo>& slots) {
    std::vector<Row> rows{{"Slot", "Oid", "Name", "Type", "Number"}};
    for (const SpeedDialInfo& slot : slots) {
        rows.push_back({std::to_string(slot.dwSDialID), slot.dwOID != 0 ? std::to_string(slot.dwOID) : "",
                        displayable(utf8Of(slot.strName.view())), typeOf(slot),
                        displayable(dialledText(slot.strTelNo))});
    }
    writeTable(settings, rows);
}

ExitStatus listSlots(const Settings& settings, const SlotArguments& /*none*/) {
    Store store(settings, Store::WhenMissing::fail);
    Slots slots(store);
    if (settings.json) {
        std::vector<Json> objects;
        for (const SpeedDialInfo& slot : slots.taken())
            objects.push_back(jsonOf(slot));
        writeJsonArray(objects);
    } else if (outputIsTerminal()) {
        std::cout << slotGrid({&slots.at(Slots::first), Slots::last}, terminalWidth());
    } else {
        writeSlotTable(settings, slots.taken());
    }
    return ExitStatus::done;
}

ExitStatus nothingIn(const Settings& settings, DWORD slot) {
    return nothingFound(settings, slotText(slot) + " is empty");
}

/// What a slot holds behind a change.
void reportSlot(const Settings& settings, const SpeedDialInfo& slot) {
    if (settings.json) return writeJson(jsonOf(slot));
    std::cout << slotText(slot.dwSDialID) << " dials " << displayable(dialledText(slot.strTelNo));
    if (!slot.strName.IsEmpty())
        std::cout << ", " << typeOf(slot) << " of " << displayable(utf8Of(slot.strName.view()));
    std::cout << '\n';
}

void requireNumber(const Contact& contact, const Field& number) {
    const std::string whose = "contact " + std::to_string(contact.oid);
    if (!contact.has(number))
        throw Failure(whose + " has no " + number.key + " number; give it one with \"tessera edit " +
                      std::to_string(contact.oid) + " --" + number.key + " NUMBER\"");
    if (PhoneBookDBMgr::makeCNIP(contact.record.*number.model().text).IsEmpty())
        throw Failure("the " + std::string(number.key) + " number of " + whose + " holds nothing to dial");
}

ExitStatus setSlot(const Settings& settings, const SlotArguments& arguments) {
    const DWORD slot = slotArgument("SLOT", arguments.slot);
    const Field& number = typeArgument(arguments.type);
    Store store(settings, Store::WhenMissing::fail);
    const auto person = personNamed(store, arguments.person, Purpose::change);
    if (!person) return nobodyFound(settings, arguments.person);
    WritingUnit unit(store);
    const auto contact = readContact(store.manager(), person->oid);
    if (!contact) return nobodyFound(settings, arguments.person);
    requireNumber(*contact, number);
    Slots slots(store);
    slots.give(slot, *contact, number);
    unit.end();
    reportSlot(settings, slots.at(slot));
    return ExitStatus::done;
}

ExitStatus moveSlot(const Settings& settings, const SlotArguments& arguments) {
    const DWORD from = slotArgument("FROM", arguments.slot);
    const DWORD to = slotArgument("TO", arguments.to);
    if (from == to) throw wrongUsage("FROM and TO are the same slot");
    Store store(settings, Store::WhenMissing::fail);
    WritingUnit unit(store);
    Slots slots(store);
    if (!slots.isTaken(from)) return nothingIn(settings, from);
    if (slots.isTaken(to)) throw Failure(slotText(to) + " is taken; clear it first");
    slots.move(from, to);
    unit.end();
    reportSlot(settings, slots.at(to));
    return ExitStatus::done;
}

void reportCleared(const Settings& settings, const std::string& what, std::size_t count) {
    if (settings.json) return writeJson({{"cleared", count}});
    std::cout << "cleared " << what << '\n';
}

ExitStatus clearSlot(const Settings& settings, DWORD slot) {
    Store store(settings, Store::WhenMissing::fail);
    WritingUnit unit(store);
    Slots slots(store);
    if (!slots.isTaken(slot)) return nothingIn(settings, slot);
    slots.clear(slot);
    unit.end();
    reportCleared(settings, slotText(slot), 1);
    return ExitStatus::done;
}

ExitStatus clearAllSlots(const Settings& settings, bool yes) {
    const Confirmation confirmation("speed-dial clear --all", yes);
    Store store(settings, Store::WhenMissing::fail);
    const auto counted = [](std::size_t count) { return std::to_string(count) + (count == 1 ? " slot" : " slots"); };
    confirmation.ask("Clear all " + counted(Slots(store).taken().size()) + " of " + store.path() + "?");
    const std::size_t cleared = Slots(store).clearAll();
    reportCleared(settings, counted(cleared), cleared);
    return ExitStatus::done;
}

ExitStatus clearSlots(const Settings& settings, const SlotArguments& arguments) {
    if (arguments.all) return clearAllSlots(settings, arguments.yes);
    if (arguments.slot.empty()) throw wrongUsage("speed-dial clear wants a SLOT, or --all");
    return clearSlot(settings, slotArgument("SLOT", arguments.slot));
}

ExitStatus freeSlot(const Settings& settings, const SlotArguments& /*none*/) {
    Store store(settings, Store::WhenMissing::fail);
    const DWORD slot = lowestFreeSlot(store);
    if (slot == 0)
        return nothingFound(settings, "all 99 slots are taken; empty one with \"tessera speed-dial clear SLOT\"");
    if (settings.json) {
        writeJson({{"slot", slot}});
    } else {
        std::cout << slot << '\n';
    }
    return ExitStatus::done;
}

ExitStatus callSlot(const Settings& settings, const SlotArguments& arguments) {
    const DWORD slot = slotArgument("SLOT", arguments.slot);
    Store store(settings, Store::WhenMissing::fail);
    CString number;
    const HRESULT result = store.manager().queryCID(slot, &number);
    store.require(SUCCEEDED(result));
    if (result != S_OK) return nothingIn(settings, slot);
    if (settings.json) {
        writeJson({{"slot", slot}, {"number", utf8Of(number.view())}});
    } else {
        std::cout << displayable(dialledText(number)) << '\n';
    }
    return ExitStatus::done;
}

}  // namespace

void defineSpeedDial(Command& program, const Settings& settings, Action& chosen) {
    CommandFamily<SlotArguments> family(
        program, settings, chosen,
        {.name = "speed-dial",
         .summary = "Dial numbers by slots from 1 to 99",
         .details = {"A slot stands for the mobile, home or business number of a contact."},
         .examples = {"tessera speed-dial set 5 15 mobile", "tessera speed-dial call 5"}});
    SlotArguments& arguments = family.arguments();

    family.add({.name = "list",
                .summary = "Show the slots: all of them on a terminal, else those that are taken",
                .details = {"On a terminal the slots stand in as many columns as it has room for."},
                .examples = {"tessera speed-dial list"}},
               listSlots);
    Command& set =
        family.add({.name = "set",
                    .summary = "Give a slot to a contact's number",
                    .details = {"A number that has another slot moves out of that."},
                    .examples = {"tessera speed-dial set 5 15 mobile", "tessera speed-dial set 6 김민수 mobile"}},
                   setSlot);
    set.add_option("SLOT", arguments.slot, "The slot; who has it loses it")->required();
    set.completeWithNames(set.add_option("PERSON", arguments.person, personText)->required(), Completion::persons);
    CLI::Option* number =
        set.add_option("NUMBER", arguments.type, "Which number: mobile, home or business")->required();
    set.completeWithWords(number, {"mobile", "home", "business"});
    Command& move = family.add({.name = "move",
                                .summary = "Move what is in a slot to a free one",
                                .details = {"A slot that is taken has to be cleared first."},
                                .examples = {"tessera speed-dial move 5 7"}},
                               moveSlot);
    move.add_option("FROM", arguments.slot, "The slot that it is in")->required();
    move.add_option("TO", arguments.to, "The slot that it is to be in")->required();
    Command& clear = family.add({.name = "clear",
                                 .summary = "Empty a slot, or all of them",
                                 .details = {"--all asks first on a terminal; anywhere else it needs --yes."},
                                 .examples = {"tessera speed-dial clear 5", "tessera speed-dial clear --all --yes"}},
                                clearSlots);
    CLI::Option* slot = clear.add_option("SLOT", arguments.slot, "The slot");
    CLI::Option* all = clear.add_flag("--all", arguments.all, "Empty every slot; asks first")->excludes(slot);
    clear.add_flag("--yes", arguments.yes, "Do not ask")->needs(all);
    family.add({.name = "free",
                .summary = "Tell the lowest free slot",
                .details = {"When all are taken the exit status is 1."},
                .examples = {"tessera speed-dial free"}},
               freeSlot);
    Command& call = family.add({.name = "call",
                                .summary = "Print the number to dial for a slot",
                                .details = {"It prints nothing else."},
                                .examples = {"tessera speed-dial call 5"}},
                               callSlot);
    call.add_option("SLOT", arguments.slot, "The slot")->required();
}

}  // namespace Tool
