#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "tessera/database/ScanIterator.h"
#include "tessera/platform/base/CString.h"

namespace Database {

/// What a scan looks at in one contact.
struct ScannedContact {
    DWORD oid = 0;
    std::string sortKey;  ///< Contacts are in the order of (sort key, identifier): name order.
    WString name;
    std::vector<std::string> numbers;   ///< Reduced, in the record's property order.
    std::size_t numbersBeforeName = 0;  ///< How many of them stand before the name in the record.
    std::optional<WString> categories{};
};

/// The names, reduced numbers and categories of all contacts, packed so that a search is one pass over memory.
///
/// The device's search reads every record of the contacts database, in name order, for each key. This holds
/// what such a reading looks at, so that its result, in its order, comes without the reading. Contacts are
/// appended in name order first, and then put and removed one by one as they change. A contact that is
/// gone leaves its texts behind until the image is made anew: see `wasteful`.
class ContactsImage {
public:
    /// Adds a contact that stands behind all others in name order. One that moved while all were read may
    /// come twice; it is there twice until it is put or removed.
    void append(const ScannedContact& contact);
    /// Puts a contact at its place in name order, instead of whatever has its identifier.
    void put(const ScannedContact& contact);
    void remove(DWORD oid);
    void clear() { *this = ContactsImage(); }
    /// Gives back the memory that growing took beyond what is used, but for an eighth: some contacts will be put.
    void fit();

    std::size_t size() const { return order_.size(); }
    /// True when more is kept for contacts that are gone than a fresh image would be worth.
    bool wasteful() const;

    /// Contacts whose name holds the key in any case; for a key that begins with a Hangul consonant, those
    /// whose name begins with these initial consonants, blanks and commas passed over.
    std::vector<ScanMatch> matchingName(const CString& key) const;
    /// Contacts one of whose numbers holds the key. A match has the contact's name, or none when the number
    /// that holds the key stands before the name in the record.
    std::vector<ScanMatch> matchingNumber(const CString& key) const;
    /// Contacts whose categories are exactly that text, or that have none at all.
    std::vector<ScanMatch> withCategories(const CString& categories) const;
    std::vector<ScanMatch> withoutCategories() const;

private:
    using Slot = std::uint32_t;
    using CategoriesNumber = std::uint32_t;
    static constexpr CategoriesNumber noCategories = 0;

    struct Contact {
        DWORD oid;
        std::uint32_t nameStart;
        std::uint32_t nameLength;
        std::uint32_t numbersStart;
        std::uint32_t numbersEnd;
        std::uint32_t keyStart;
        std::uint32_t keyEnd;
        CategoriesNumber categories;
        std::uint16_t numbersBeforeName;
        bool live;
    };
    /// What a search by initials compares first; a zero where the name has none left.
    using FirstInitials = std::array<WCHAR, 2>;
    struct Identifier {
        DWORD oid;
        Slot slot;
    };

    Slot addSlot(const ScannedContact& contact);
    CategoriesNumber numberOf(const std::optional<WString>& categories);
    std::vector<ScanMatch> categorized(CategoriesNumber categories) const;
    ScanMatch matchOf(Slot slot) const;
    WStringView nameOf(const Contact& contact) const;
    WStringView lowerNameOf(const Contact& contact) const;
    std::string_view keyOf(const Contact& contact) const;
    bool standsBefore(Slot left, Slot right) const;
    bool firstHitStandsBehindName(const Contact& contact, std::string_view digits) const;

    /// The last slot from `from` on whose texts of a kind begin at `place` or before. Near ones are found soonest.
    Slot slotAt(std::uint32_t Contact::*start, std::size_t place, Slot from) const;
    std::vector<Slot> slotsWithNumber(std::string_view digits) const;
    std::vector<Slot> slotsWithName(WStringView lowerKey) const;
    std::vector<Slot> slotsWithInitials(WStringView initials) const;
    std::vector<Slot> inNameOrder(std::vector<Slot> slots) const;

    std::vector<Contact> contacts_;        ///< By slot: the order in which they came.
    std::vector<Identifier> identifiers_;  ///< Live contacts by identifier, once they are sorted.
    bool identifiersSorted_ = true;
    std::vector<Slot> order_;                   ///< Live contacts in name order.
    bool slotsInOrder_ = true;                  ///< Slots ascend along order_.
    WString names_;                             ///< All names, each behind the other, a zero after each.
    WString lowerNames_;                        ///< The same in lower case, at the same places.
    std::string numbers_;                       ///< All numbers, a zero after each.
    std::string keys_;                          ///< All sort keys.
    std::vector<FirstInitials> firstInitials_;  ///< By slot.
    std::unordered_map<WString, CategoriesNumber> categories_;  ///< Every text met, numbered from 1.
};

}  // namespace Database
