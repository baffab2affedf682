#include "tests/recovery/FollowWriter.h"

#include <algorithm>
#include <iterator>

#include "tests/phonebook/SpeedDialBuilders.h"
#include "tests/support/Builders.h"

namespace follow_test {

using namespace PhoneBook;
using testing_support::contact;
using testing_support::require;

namespace {

constexpr unsigned mostContacts = 40;
constexpr unsigned slotsOfAWriter = 60;
constexpr unsigned numbersOfAWriter = 5'000;  // IDs of categories are of 16 bits

/// All that a record of a contact must have: what it lacks, an update empties.
contact recordOf(const ContactNote& of) {
    contact built = contact().name(nameOf(of.number).view()).mobile(mobileOf(of.number).view());
    return of.slot == 0 ? built : built.slots(of.slot);
}

}  // namespace

Writer::Writer(unsigned number, unsigned seed, std::vector<CEOID> shared)
    : number_(number), random_(seed), shared_(std::move(shared)) {
    require(manager_.openDB(nullptr));
    ledger_.sharedChanged.resize(shared_.size());
    categories_ = following::openBeside(PBDBTBL_CATEGORIES);
}

void Writer::change(unsigned half) {
    half_ = half;
    constexpr void (Writer::*changes[])() = {
        &Writer::add,        &Writer::add,       &Writer::file,        &Writer::file,           &Writer::file,
        &Writer::fileShared, &Writer::remove,    &Writer::addCategory, &Writer::renameCategory, &Writer::deleteCategory,
        &Writer::insert,     &Writer::update,    &Writer::update,      &Writer::erase,          &Writer::setSlot,
        &Writer::setSlot,    &Writer::clearSlot, &Writer::makeSet,     &Writer::deleteSet};
    const auto living = std::ranges::count_if(ledger_.contacts, &ContactNote::exists);
    if (living >= static_cast<std::ptrdiff_t>(mostContacts)) return remove();
    (this->*changes[random(std::size(changes))])();
}

unsigned Writer::nextNumber() {
    return number_ * numbersOfAWriter + ++made_;
}

/// 0 when all are in use, or were a dead contact's: those may still be on their way to being freed.
unsigned Writer::freeSlot() {
    const unsigned first = 1 + number_ * slotsOfAWriter;
    for (unsigned slot = first; slot < first + slotsOfAWriter; ++slot) {
        if (std::ranges::none_of(ledger_.contacts, [=](const ContactNote& of) { return of.slot == slot; })) return slot;
    }
    return 0;
}

WString Writer::anyCategories() {
    WString categories;
    for (unsigned count = random(4); count != 0; --count) {
        if (!categories.empty()) categories += TEXT(", ");
        categories += filedUnder[random(filedUnderCount)];
    }
    return categories;
}

template <class Note, class Condition>
Note* Writer::any(std::vector<Note>& notes, Condition admits) {
    std::vector<Note*> admitted;
    for (Note& each : notes) {
        if (each.exists && admits(each)) admitted.push_back(&each);
    }
    return admitted.empty() ? nullptr : admitted[random(static_cast<unsigned>(admitted.size()))];
}

ContactNote* Writer::anyContact() {
    return any(ledger_.contacts, [](const ContactNote&) { return true; });
}

ContactNote& Writer::note(CEOID oid, unsigned number, bool isFiled) {
    return ledger_.contacts.emplace_back(ContactNote{
        .oid = oid, .number = number, .everUnfiled = !isFiled, .everFiled = isFiled, .born = half_, .changed = half_});
}

template <class Change>
void Writer::changing(ContactNote& of, Change change) {
    const auto categories = [&] {
        return testing_support::textOf(program_.contact(of.oid), &IContact::get_Categories);
    };
    const WString before = categories();
    change();
    const WString after = categories();
    if (after == before) return;  // and perhaps nothing was written, so that nobody hears of it
    of.changed = half_;
    (after.empty() ? of.everUnfiled : of.everFiled) = true;
}

void Writer::noteDeath(ContactNote& of) {
    of.exists = false;
    of.died = half_;
}

// As another program

void Writer::add() {
    const unsigned number = nextNumber();
    const WString categories = anyCategories();
    const CEOID oid = program_.addFiled(nameOf(number).view(), categories, mobileOf(number).view());
    note(oid, number, !categories.empty()).bornFiled = !categories.empty();
}

void Writer::file() {
    ContactNote* picked = anyContact();
    if (picked == nullptr) return add();
    changing(*picked, [&] { program_.file(picked->oid, anyCategories()); });
}

void Writer::fileShared() {
    const unsigned picked = random(static_cast<unsigned>(shared_.size()));
    if (program_.file(shared_[picked], anyCategories())) ledger_.sharedChanged[picked] = half_;
}

void Writer::remove() {
    ContactNote* picked = anyContact();
    if (picked == nullptr) return add();
    program_.remove(picked->oid);
    noteDeath(*picked);
}

void Writer::addCategory() {
    CategoryNote made{.id = nextNumber()};
    if (random(2) == 0) made.sharedName = static_cast<int>(random(filedUnderCount));
    CCeDBRecord row = groups_test::categoryRow(made.name(0), static_cast<std::int16_t>(made.id));
    require(categories_->insertRecord(&row, made.oid));
    ledger_.categories.push_back(made);
}

void Writer::renameCategory() {
    CategoryNote* picked = any(ledger_.categories, [](const CategoryNote& of) { return of.sharedName < 0; });
    if (picked == nullptr) return addCategory();
    ++picked->renamed;
    CCeDBRecord row = groups_test::categoryRow(picked->name(picked->renamed), static_cast<std::int16_t>(picked->id));
    require(categories_->updateRecord(picked->oid, &row, 0, nullptr));
}

void Writer::deleteCategory() {
    CategoryNote* picked = any(ledger_.categories, [](const CategoryNote&) { return true; });
    if (picked == nullptr) return addCategory();
    require(categories_->deleteRecord(picked->oid));
    picked->exists = false;
    picked->died = half_;
}

// Through the manager

void Writer::insert() {
    ContactNote made{.number = nextNumber()};
    contact built = recordOf(made);
    const bool isFiled = random(2) == 0;
    if (isFiled) built.group(filedUnder[random(filedUnderCount)]);
    PBRecord record = built.record();
    require(manager_.insertPBRecord(record, &made.oid));
    note(made.oid, made.number, isFiled).rowOfManager = isFiled;
}

void Writer::update() {
    ContactNote* picked = anyContact();
    if (picked == nullptr) return insert();
    contact built = recordOf(*picked);
    const bool isFiled = random(2) == 0;
    if (isFiled) built.group(filedUnder[random(filedUnderCount)]);
    PBRecord record = built.record();
    changing(*picked, [&] { require(manager_.updatePBRecord(picked->oid, record)); });
    if (isFiled) picked->rowOfManager = true;
}

void Writer::erase() {
    ContactNote* picked = anyContact();
    if (picked == nullptr) return insert();
    require(manager_.deletePBRecord(picked->oid));
    noteDeath(*picked);
    picked->slot = 0;  // freed with it
}

void Writer::setSlot() {
    ContactNote* picked = any(ledger_.contacts, [](const ContactNote& of) { return of.slot == 0; });
    const unsigned slot = freeSlot();
    if (picked == nullptr || slot == 0) return clearSlot();
    SpeedDialInfo entry = speed_dial::dial(slot).of(picked->oid).mobile(mobileOf(picked->number).view());
    changing(*picked, [&] { require(manager_.insertSpeedDialInfo(slot, &entry)); });
    picked->slot = slot;
    picked->rowOfManager = true;
}

void Writer::clearSlot() {
    ContactNote* picked = any(ledger_.contacts, [](const ContactNote& of) { return of.slot != 0; });
    if (picked == nullptr) return add();
    SpeedDialInfo entry = speed_dial::dial(picked->slot).of(picked->oid).mobile(mobileOf(picked->number).view());
    changing(*picked, [&] { require(manager_.deleteSpeedDialInfo(picked->slot, &entry)); });
    picked->slot = 0;
}

void Writer::makeSet() {
    const SetNote made{.number = nextNumber()};
    CString name = setNameOf(made.number);
    PBGroupInfo group;
    group.strName = name;
    require(manager_.writeAvailablePBGroup(name, &group));
    ledger_.sets.push_back(made);
}

void Writer::deleteSet() {
    SetNote* picked = any(ledger_.sets, [](const SetNote&) { return true; });
    if (picked == nullptr) return makeSet();
    require(manager_.deleteAvailablePBGroup(setNameOf(picked->number)));
    picked->exists = false;
}

}  // namespace follow_test
