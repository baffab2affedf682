#pragma once

#include <string>

namespace Tool {

/// Whether somebody is there to be asked.
bool canAsk();

/// Asks on standard error, and answers the line that is typed; empty when none is.
std::string answerTo(const std::string& question);

/// Throws a Failure unless the user agrees to a question such as "Delete all 3 contacts of friends.db?".
void requireConsent(const std::string& question);

}  // namespace Tool
