#pragma once

#include <string>

#include "tools/tessera/Records.h"
#include "tools/tessera/exchange/CategoryTexts.h"
#include "tools/tessera/exchange/ContactDraft.h"

namespace exchange_test {

/// A record as the phone book would give it back: the categories come with the group, and that no number has a slot
/// comes with every other field that only our phone books have.
inline PhoneBook::PBRecord stored(PhoneBook::PBRecord record) {
    constexpr DWORD categories = PhoneBook::aPBAttribute_[PhoneBook::PBDBATTR_CATEGORIES].mask;
    constexpr DWORD slots = PhoneBook::aPBAttribute_[PhoneBook::PBDBATTR_PRIVATE].mask;
    if ((record.dwCITypeMask & categories) == 0) record.strCategories = Tool::asCategory(record.strGroup);
    record.dwCITypeMask &= ~categories;
    if (!record.strCategories.IsEmpty()) record.dwCITypeMask |= categories;
    constexpr DWORD ours = PhoneBook::ciTypeMaskOfTable(PhoneBook::PBDBTBL_PHONEBOOKEXT);
    if ((record.dwCITypeMask & ours) != 0) record.dwCITypeMask |= slots;
    return record;
}

/// All that the record has, to be compared and to be looked at.
inline std::string describe(const PhoneBook::PBRecord& record) {
    std::string all;
    for (const Tool::Field& field : Tool::fields)
        all += std::string(field.key) + "=[" + Tool::fieldText({0, record}, field) + "] ";
    return all;
}

}  // namespace exchange_test
