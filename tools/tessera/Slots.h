#pragma once

#include <vector>

#include "Records.h"
#include "Store.h"

namespace Tool {

/// The speed-dial slots as people expect them: one number a slot, one slot a number, and a contact that changes
/// in nothing but its slots. Changes are part of a unit of the store that the caller has begun; what fails
/// throws a Failure.
class Slots {
public:
    static constexpr DWORD first = 1;
    static constexpr DWORD last = 99;

    explicit Slots(Store& store);

    /// A slot as it is by now; its `dwSDialID` is 0 when it is free. The owner may be unknown, as when the number
    /// was put there by an import.
    const PhoneBook::SpeedDialInfo& at(DWORD slot) { return manager().getSDialInfoCache(slot); }
    bool isTaken(DWORD slot) { return at(slot).dwSDialID != 0; }
    /// In their order.
    std::vector<PhoneBook::SpeedDialInfo> taken();

    /// Puts a contact's number, which it must have, into a slot; whoever has the slot loses it, and the number any
    /// other slot that it has.
    void give(DWORD slot, const Contact& contact, const Field& number);
    /// Moves what is in a slot to a free one.
    void move(DWORD from, DWORD to);
    void clear(DWORD slot);
    /// Answers how many were taken.
    std::size_t clearAll();

private:
    PhoneBook::PhoneBookDBMgr& manager() { return store_.manager(); }
    void reload();
    void insert(DWORD slot, const Contact& contact, const Field& number);
    DWORD moveWithOwner(DWORD from, DWORD to, const Contact& owner);
    void moveWithoutOwner(DWORD from, DWORD to);
    void keepOnlyLink(DWORD slot, DWORD owner, DWORD type);

    Store& store_;
};

/// The lowest slot that is free, 0 when none is.
DWORD lowestFreeSlot(Store& store);

}  // namespace Tool
