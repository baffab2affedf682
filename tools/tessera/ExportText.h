#pragma once

#include <span>
#include <string>

#include "Records.h"

namespace Tool {

/// Contacts as a file that import reads: UTF-16LE with a byte-order mark, a header, a line a contact. Throws a
/// Failure that names the contact and the field when import would not make the same contact of its line.
std::string exportText(std::span<const Contact> contacts);

/// Throws a Failure that names the contact and the field when a text of it is none that UTF-8 can hold.
void requireWellFormed(const Contact& contact);

}  // namespace Tool
