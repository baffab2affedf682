#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tessera/platform/base/Types.h"

// Which telephone numbers a contact is found by.

namespace Platform {

/// Whether the records of the database of that name are found by their telephone numbers: those of contacts are.
bool keepsNumbers(WStringView database);

/// The reduced telephone numbers of a contact, in ASCII, each once, ascending. None is empty.
std::vector<std::string> reducedNumbers(std::string_view packed);
/// Whether both records have the same numbers at the same properties, judged without reducing them.
bool sameNumbers(std::string_view before, std::string_view after);

}  // namespace Platform
