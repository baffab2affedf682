#pragma once

#include <memory>
#include <optional>
#include <vector>

#include <rapidcheck.h>
#include <rapidcheck/state.h>

#include "tests/phonebook/SpeedDialBuilders.h"
#include "tests/phonebook/SpeedDialModel.h"

// A phone book beside its model: what is done to both, and what must then be the same.

namespace speed_dial {

using PhoneBook::PhoneBookDBMgr;
using PhoneBook::SpeedDialInfo;

/// The phone book, and which of its identifiers is which contact of the model.
struct System {
    System() : book(std::make_unique<testing_support::OpenPhoneBook>()) {}
    PhoneBookDBMgr& manager() { return book->manager(); }

    SpeedDialInfo infoOf(const Entry& entry) const {
        return dial(entry.slot)
            .of(entry.contact == 0 ? 0 : contacts.at(entry.contact))
            .name(entry.name)
            .set(entry.telType, entry.number)
            .flags(entry.flags);
    }

    std::unique_ptr<testing_support::OpenPhoneBook> book;
    std::map<int, DWORD> contacts;
};

using Command = rc::state::Command<Model, System>;

// A few of everything, so that they meet. Some numbers lie within others, and one has two spellings.

inline DWORD anySlot() {
    return *rc::gen::weightedOneOf<DWORD>(
        {{8, rc::gen::inRange<DWORD>(1, 5)},
         {1, rc::gen::element<DWORD>(0, 98, 99, 100, 255, 256, 0x7FFF, 0x8005, 0x10003, 0xFFFFFFFF)}});
}

inline WString anyNumber() {
    return *rc::gen::element<WString>(TEXT(""), TEXT("010-1"), TEXT("0101"), TEXT("010-12"), TEXT("02"), TEXT("02-2"),
                                      TEXT("031-333"));
}

inline DWORD anyType() {
    return *rc::gen::weightedElement<DWORD>({{4, 0x4}, {4, 0x8}, {4, 0x10}, {1, 0x400}, {1, 0}});
}

inline int anyContact(const Model& model) {
    return *rc::gen::weightedOneOf<int>({{1, rc::gen::just(0)}, {4, rc::gen::inRange(0, model.nextContact)}});
}

inline Entry anyEntry(const Model& model) {
    const int contact = anyContact(model);
    Entry entry{anySlot(), contact,     *rc::gen::element<WString>(TEXT(""), TEXT("someone")),
                anyType(), anyNumber(), *rc::gen::element<DWORD>(0, 7, 0x10, 0x12345)};
    // Half of the time the entry says what its contact says.
    const auto known = model.contacts.find(contact);
    if (known == model.contacts.end() || *rc::gen::arbitrary<bool>()) return entry;
    const int index = *rc::gen::inRange(0, 3);
    entry.telType = DWORD{4} << index;
    entry.number = known->second.numbers[static_cast<std::size_t>(index)];
    return entry;
}

inline std::optional<Entry> anyEntryOrNull(const Model& model) {
    return *rc::gen::inRange(0, 6) == 0 ? std::nullopt : std::optional(anyEntry(model));
}

inline std::ostream& operator<<(std::ostream& out, const Entry& entry) {
    return out << "slot " << entry.slot << " contact " << entry.contact << ' ' << CString(entry.name) << " type "
               << entry.telType << ' ' << CString(entry.number) << " flags " << entry.flags;
}

inline std::ostream& operator<<(std::ostream& out, const std::optional<Entry>& entry) {
    return entry ? out << *entry : out << "null";
}

inline void requireSameRows(const Model& model) {
    std::vector<Row> expected;
    for (const auto& [key, row] : model.rows)
        expected.push_back({row.slot, row.telType, row.number, 7});
    RC_ASSERT(rows() == expected);
}

inline void requireSameWords(const Model& model, System& system) {
    for (const auto& [key, contact] : model.contacts) {
        PhoneBook::PBRecord record;
        record.dwCITypeMask = PhoneBook::dwPrivateFlag_;
        const HRESULT result = system.manager().queryCallerInfo(system.contacts.at(key), &record);
        RC_ASSERT(result == (contact.word ? S_OK : S_FALSE));
        RC_ASSERT(record.dwPrivate == contact.word.value_or(0));
    }
    RC_ASSERT(system.manager().getNumRecords() == model.contacts.size());
}

inline void requireSameCache(const Cache& expected, const System& system, const SpeedDialInfo* cache) {
    for (std::size_t slot = 0; slot < expected.size(); ++slot)
        RC_ASSERT(cache[slot] == system.infoOf(expected[slot]));
}

/// An operation that is done to both; behind it all that there is must be the same.
class Operation : public Command {
public:
    void checkPreconditions(const Model& model) const override {
        const std::optional<Entry> entry = given();
        RC_PRE(!entry || entry->contact < model.nextContact);
    }
    void apply(Model& model) const override { onModel(model); }
    void run(const Model& before, System& system) const override {
        Model after = before;
        const Answer expected = onModel(after);
        std::optional<SpeedDialInfo> info;
        if (const std::optional<Entry> entry = given()) info = system.infoOf(*entry);
        RC_ASSERT(onBook(before, system, info ? &*info : nullptr) == expected.result);
        if (info && expected.filled) RC_ASSERT(*info == system.infoOf(*expected.filled));
        requireSameRows(after);
        requireSameWords(after, system);
        requireSameCache(after.cache, system, &system.manager().getSDialInfoCache(0));
    }

protected:
    virtual Answer onModel(Model& model) const = 0;
    virtual HRESULT onBook(const Model& before, System& system, SpeedDialInfo* info) const = 0;
    /// What the caller hands over as his entry.
    virtual std::optional<Entry> given() const { return std::nullopt; }
};

}  // namespace speed_dial
