#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Records.h"

namespace Tool {

/// Those who have a number, and the form of it that they have it in; neither when nobody has it.
struct Callers {
    std::vector<Contact> contacts;
    std::string matched;
};

/// The first contact with just this reduced number, as the phone book itself identifies a caller.
std::optional<Contact> callerWith(PhoneBook::PhoneBookDBMgr& manager, const CString& reduced);

/// The first contact with the first of these forms of a number that anybody has.
Callers firstCallerWith(PhoneBook::PhoneBookDBMgr& manager, const std::vector<CString>& forms);
/// The same for all contacts that have it.
Callers allCallersWith(PhoneBook::PhoneBookDBMgr& manager, const std::vector<CString>& forms);

}  // namespace Tool
