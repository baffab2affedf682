#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tessera/Export.h"
#include "tessera/phonebook/PhoneBookDBMgr.h"

namespace PhoneBook {

/// One thing that is wrong between the tables of a phone book, and what it is about.
struct PhoneBookFinding {
    /// What is wrong.
    enum class Kind {
        contactWithoutRow,     ///< A contact has categories, but no extension row.
        repeatedRow,           ///< A contact has several extension rows.
        rowOfMissingContact,   ///< An extension row is of a contact that does not exist.
        rowOfNoContact,        ///< An extension row names no contact.
        lostGroup,             ///< A contact is in a group that is not among its categories.
        repeatedSlot,          ///< A speed-dial slot has several rows.
        impossibleSlot,        ///< A speed-dial row is for a slot below 1 or above 99.
        repeatedGroupId,       ///< Several groups have one ID.
        repeatedGroupName,     ///< Several groups have one name.
        repeatedCategoryId,    ///< Several categories have one ID, and so one group.
        groupOfAnotherName,    ///< A group and the category with its ID have different names.
        categoryWithoutGroup,  ///< No group has the ID of a category.
        tooManyCalls,          ///< The call history is longer than it ever gets by itself.
    };

    Kind kind = Kind::contactWithoutRow;  ///< What is wrong.
    std::optional<DWORD> contact = {};    ///< The contact's identifier; of a row, the one that it names.
    std::optional<DWORD> row = {};        ///< The identifier of an extension row.
    std::optional<int> slot = {};         ///< A speed-dial slot.
    std::optional<DWORD> group = {};      ///< A group's ID.
    std::optional<DWORD> category = {};   ///< The identifier of a category's record.
    std::optional<CString> name = {};     ///< The name that several groups have.
    bool canBeMended = false;             ///< PhoneBookCheck::mend can.
    /// A sentence for people, UTF-8 without a full stop; where it cannot be mended, with what they can do.
    std::string text = {};
};

/// Looks for what does not fit together in the phone book of the mounted store: where a change that another
/// program made was never followed, or rows were written past the manager, or were lost.
///
/// What the manager's operations leave is in order: a number in a slot that no contact has, a contact's link to a slot
/// that is empty or holds another number, a group without a category, a contact in a group that there is no entry for,
/// and a row whose copy of a name or number is older than the contact's. Only a group that is renamed while its
/// members' categories are not is lost to them, as it would be when one of them is changed.
///
/// The manager is borrowed, and open. One thread, the manager's.
class TESSERA_API PhoneBookCheck {
public:
    /// The manager outlives the check.
    explicit PhoneBookCheck(PhoneBookDBMgr& manager) : manager_(manager) {}

    /// Reads every table once and changes nothing, nor where the manager's tables stand. What is found was all so at
    /// one moment: while others write, it takes the store's turn for writing.
    /// @return S_OK; E_FAIL, with the last error set, when a table cannot be read; E_OUTOFMEMORY. Without S_OK
    ///         nothing is told.
    [[nodiscard]] HRESULT examine(std::vector<PhoneBookFinding>& findings);

    /// Mends what can be mended, by following the changes that were missed (PhoneBookDBMgr::onCEOID...). All of it is
    /// one unit, during which other writers wait. It may leave the manager's tables in another order.
    /// @param mended receives what was found and is in order now
    /// @param left receives what is found behind that
    /// @return S_OK; else as `examine`. E_FAIL also when the store cannot be had for writing, or cannot keep what was
    ///         written.
    [[nodiscard]] HRESULT mend(std::vector<PhoneBookFinding>& mended, std::vector<PhoneBookFinding>& left);

private:
    void follow(const PhoneBookFinding& finding);

    PhoneBookDBMgr& manager_;
};

}  // namespace PhoneBook
