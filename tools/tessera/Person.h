#pragma once

#include <optional>
#include <string>

#include "Records.h"
#include "Settings.h"
#include "Store.h"

namespace Tool {

/// What --help says of an argument PERSON.
inline constexpr const char* personText = "Whom: an identifier, a number, a name, or a part or the initials of one";

/// What a contact is looked for: what changes it is not to meet another one by a chance of digits, and what deletes it
/// is not to meet one by a part of a name alone.
enum class Purpose { look, change, removal };

/// The contact that an argument names by its identifier, one of its numbers, its name, or a part or the initials of
/// that: the first of these that somebody has counts. Nothing when nobody has any. Of several the user chooses one
/// where that can be asked; elsewhere throws a Failure of wrong usage that names some of them.
///
/// "oid:", "number:" and "name:" in front say which of these is meant. Not more than six digits without a zero in
/// front are an identifier and nothing else where something is to be changed. Where a contact is to be deleted, one
/// that is named by a part or the initials alone is asked about, even if nobody else is meant; where that cannot be
/// asked, throws a Failure of wrong usage that says how the contact is named for certain.
std::optional<Contact> personNamed(Store& store, const std::string& argument, Purpose purpose);

/// Says that nobody is meant by it.
std::string nobodyText(const std::string& argument);
ExitStatus nobodyFound(const Settings& settings, const std::string& argument);

}  // namespace Tool
