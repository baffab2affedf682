#pragma once

#include <string>

namespace upgrade_test {

/// All that the mounted store holds, as text for people to read and for tests to compare: each record as the object
/// store gives it, some orders, and what the phone book makes of it. Makes the orders that are not kept yet. Throws
/// when something cannot be read.
std::string textOfStore();

}  // namespace upgrade_test
