#pragma once

#include <optional>
#include <unordered_map>
#include <vector>

#include "tessera/phonebook/PhoneBookDBMgr.h"

namespace Tool {

/// Tells whether somebody is known already: has the same name and one of the same numbers, whatever their spelling, or,
/// where there is no number, the same e-mail address.
class Duplicates {
public:
    /// Where somebody is known from: the phone book, or, having a place in it, the file that is being read.
    struct Known {
        DWORD oid = 0;                      ///< 0 where the file is not imported.
        int place = 0;                      ///< Of the card or the line.
        std::vector<CString> newNumbers{};  ///< Of the one asked for, which the known one has not.
    };

    void addContactsOf(PhoneBook::PhoneBookDBMgr& manager);
    void add(const PhoneBook::PBRecord& record, const Known& from);

    std::optional<Known> find(const PhoneBook::PBRecord& record) const;

private:
    std::unordered_map<WString, Known> known_;
};

}  // namespace Tool
