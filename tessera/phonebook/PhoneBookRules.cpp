#include "tessera/phonebook/PhoneBookRules.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <set>
#include <string>

#include "tessera/common/CommaSepValList.h"
#include "tessera/phonebook/ExtensionRow.h"
#include "tessera/phonebook/model/CallEntry.h"
#include "tessera/platform/base/Collections.h"
#include "tessera/platform/base/Unicode.h"

namespace PhoneBook {

namespace {

using Kind = PhoneBookFinding::Kind;
using Contact = PhoneBookTables::Contact;
using ExtensionRow = PhoneBookTables::ExtensionRow;
using Rows = std::vector<const ExtensionRow*>;

constexpr int firstSlot = 1;
constexpr int lastSlot = 99;

/// A group whose name reads differently in a list, for a comma or for blanks at its ends, counts as well where the
/// manager puts it: in front of the others, with commas for its semicolons.
bool isAmong(const CString& group, const CString& categories) {
    CString inFront = group;
    inFront.Replace(u';', u',');
    const auto text = categories.view();
    const auto length = inFront.view().size();
    if (text.starts_with(inFront.view()) && (text.size() == length || text[length] == u',')) return true;
    CStringArray names;
    common::CommaSepValList(categories).getList(names);
    return std::ranges::find(names, group) != names.end();
}

class ContactRules {
public:
    ContactRules(const PhoneBookTables& tables, std::vector<PhoneBookFinding>& findings);
    void apply();

private:
    void collectHeldSlots();
    void keepSlotsOf(const Contact& contact, const ExtensionRow& row);
    DWORD heldSlotIn(const Rows& rows) const;
    void checkContact(DWORD oid, const Contact& contact);
    void tellContactWithoutRow(DWORD oid);
    void tellRepeatedRow(DWORD oid, std::size_t count);
    void tellLostGroup(DWORD oid, const ExtensionRow& row);
    void tellRowsOfNobody(Kind kind, const Rows& rows, const std::string& whose);
    void tellUnreachableRow(const ExtensionRow& row);

    const PhoneBookTables& tables_;
    std::vector<PhoneBookFinding>& findings_;
    std::map<DWORD, Rows> rowsOf_;  ///< By the contact.
    Rows unreachable_;
    std::multimap<int, const CString*> dialled_;  ///< The number of each speed-dial row, by its slot.
    std::set<DWORD> heldSlots_;                   ///< Those that hold the number of a contact that has them.
};

ContactRules::ContactRules(const PhoneBookTables& tables, std::vector<PhoneBookFinding>& findings)
    : tables_(tables), findings_(findings) {
    for (const ExtensionRow& row : tables.rows)
        (row.contact ? rowsOf_[*row.contact] : unreachable_).push_back(&row);
    for (const PhoneBookTables::SpeedDialRow& row : tables.speedDial)
        dialled_.emplace(row.slot, &row.telNo);
    collectHeldSlots();
}

void ContactRules::apply() {
    for (const auto& [oid, contact] : tables_.contacts)
        checkContact(oid, contact);
    for (const auto& [oid, rows] : rowsOf_) {
        if (tables_.contacts.contains(oid)) continue;
        if (oid == 0) {
            tellRowsOfNobody(Kind::rowOfNoContact, rows, " is of no contact");
        } else {
            const std::string whose = " is of contact " + std::to_string(oid) + ", which does not exist";
            tellRowsOfNobody(Kind::rowOfMissingContact, rows, whose);
        }
    }
    for (const ExtensionRow* row : unreachable_)
        tellUnreachableRow(*row);
}

void ContactRules::collectHeldSlots() {
    for (const auto& [oid, rows] : rowsOf_) {
        const auto owner = tables_.contacts.find(oid);
        if (owner == tables_.contacts.end()) continue;
        for (const ExtensionRow* row : rows)
            keepSlotsOf(owner->second, *row);
    }
}

void ContactRules::keepSlotsOf(const Contact& contact, const ExtensionRow& row) {
    forEachSlot(row.slots, [&](DWORD slot, DWORD flag) {
        const CString& number = contact.numbers[static_cast<std::size_t>(getTelNoAttrIdx(flag))];
        const auto [first, last] = dialled_.equal_range(static_cast<int>(slot));
        if (std::any_of(first, last, [&](const auto& entry) { return *entry.second == number; }))
            heldSlots_.insert(slot);
    });
}

/// The last one that they name of the slots that others have by now; 0 when there is none.
DWORD ContactRules::heldSlotIn(const Rows& rows) const {
    DWORD held = 0;
    for (const ExtensionRow* row : rows) {
        forEachSlot(row->slots, [&](DWORD slot, DWORD) {
            if (heldSlots_.contains(slot)) held = slot;
        });
    }
    return held;
}

void ContactRules::checkContact(DWORD oid, const Contact& contact) {
    const auto found = rowsOf_.find(oid);
    if (found == rowsOf_.end()) {
        if (!contact.categories.IsEmpty()) tellContactWithoutRow(oid);
        return;
    }
    const Rows& rows = found->second;
    if (rows.size() > 1) return tellRepeatedRow(oid, rows.size());
    const CString& group = rows.front()->group;
    if (!group.IsEmpty() && !isAmong(group, contact.categories)) tellLostGroup(oid, *rows.front());
}

void ContactRules::tellContactWithoutRow(DWORD oid) {
    findings_.push_back({.kind = Kind::contactWithoutRow,
                         .contact = oid,
                         .canBeMended = true,
                         .text = "contact " + std::to_string(oid) + " has categories, but none became its group"});
}

void ContactRules::tellRepeatedRow(DWORD oid, std::size_t count) {
    findings_.push_back({.kind = Kind::repeatedRow,
                         .contact = oid,
                         .text = "contact " + std::to_string(oid) + " has " + std::to_string(count) +
                                 " extension rows; delete the contact and add it again"});
}

void ContactRules::tellLostGroup(DWORD oid, const ExtensionRow& row) {
    findings_.push_back({.kind = Kind::lostGroup,
                         .contact = oid,
                         .row = row.oid,
                         .canBeMended = true,
                         .text = "contact " + std::to_string(oid) + " is in group \"" + utf8Of(row.group.view()) +
                                 "\", which is not among its categories"});
}

/// Following a deletion takes the rows one by one, in no certain order, and empties the slots that they name: it is
/// done for all of them or for none.
void ContactRules::tellRowsOfNobody(Kind kind, const Rows& rows, const std::string& whose) {
    const DWORD held = heldSlotIn(rows);
    for (const ExtensionRow* row : rows) {
        std::string text = "extension row " + std::to_string(row->oid) + whose;
        if (held != 0) text += ", but has slot " + std::to_string(held) + " of another one; set that slot again";
        findings_.push_back(
            {.kind = kind, .contact = row->contact, .row = row->oid, .canBeMended = held == 0, .text = text});
    }
}

void ContactRules::tellUnreachableRow(const ExtensionRow& row) {
    findings_.push_back({.kind = Kind::rowOfNoContact,
                         .row = row.oid,
                         .text = "extension row " + std::to_string(row.oid) +
                                 " does not say whose it is; nobody finds it, and it can stay"});
}

}  // namespace

void checkContacts(const PhoneBookTables& tables, std::vector<PhoneBookFinding>& findings) {
    ContactRules(tables, findings).apply();
}

void checkSpeedDial(const PhoneBookTables& tables, std::vector<PhoneBookFinding>& findings) {
    std::map<int, std::size_t> rows;
    for (const PhoneBookTables::SpeedDialRow& row : tables.speedDial)
        ++rows[row.slot];
    for (const auto& [slot, count] : rows) {
        if (slot < firstSlot || slot > lastSlot) {
            findings.push_back({.kind = Kind::impossibleSlot,
                                .slot = slot,
                                .text = "there is no slot " + std::to_string(slot) +
                                        ", but a number is in it; clear all slots and set them again"});
        } else if (count > 1) {
            findings.push_back({.kind = Kind::repeatedSlot,
                                .slot = slot,
                                .text = "slot " + std::to_string(slot) + " holds " + std::to_string(count) +
                                        " numbers; clear it and set it again"});
        }
    }
}

void checkCalls(const PhoneBookTables& tables, std::vector<PhoneBookFinding>& findings) {
    if (tables.calls <= nMaxCallEntries_) return;
    findings.push_back({.kind = Kind::tooManyCalls,
                        .text = "the history has " + std::to_string(tables.calls) + " calls and should have " +
                                std::to_string(nMaxCallEntries_) + " at most; delete the oldest"});
}

}  // namespace PhoneBook
