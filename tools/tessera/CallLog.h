#pragma once

#include <string>
#include <vector>

#include "Output.h"
#include "Settings.h"
#include "Store.h"

namespace Tool {

/// A call of the history, and its row.
struct LoggedCall {
    DWORD oid = 0;
    PhoneBook::CallEntry entry;
};

/// What the tool makes of a call's type: a word for those that it knows, else the number. The word or the
/// number as text.
std::string callTypeText(DWORD type);
/// The other way round. Throws a Failure of wrong usage for what is neither.
DWORD callTypeArgument(const std::string& value);

/// The identifiers of all calls, newest first.
std::vector<DWORD> callOids(PhoneBook::PhoneBookDBMgr& manager);
/// All calls, newest first.
std::vector<LoggedCall> readCalls(PhoneBook::PhoneBookDBMgr& manager);

/// A call line by line, or as one JSON object.
void writeCall(const Settings& settings, const LoggedCall& call);
/// A table of calls, or a JSON array.
void writeCalls(const Settings& settings, const std::vector<LoggedCall>& calls);

}  // namespace Tool
