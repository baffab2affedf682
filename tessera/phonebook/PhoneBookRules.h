#pragma once

#include <vector>

#include "tessera/phonebook/PhoneBookCheck.h"
#include "tessera/phonebook/PhoneBookTables.h"

namespace PhoneBook {

// What does not fit together in these tables, added to `findings` in an order in which it can be mended one by one:
// none that can be mended stands in the way of another, nor makes anything new that is wrong.

/// Contacts, their extension rows, and the slots that these name.
void checkContacts(const PhoneBookTables& tables, std::vector<PhoneBookFinding>& findings);
void checkSpeedDial(const PhoneBookTables& tables, std::vector<PhoneBookFinding>& findings);
/// Groups, and the categories that they follow.
void checkGroups(const PhoneBookTables& tables, std::vector<PhoneBookFinding>& findings);
void checkCalls(const PhoneBookTables& tables, std::vector<PhoneBookFinding>& findings);

}  // namespace PhoneBook
