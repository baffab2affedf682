#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Failure.h"
#include "Settings.h"
#include "tessera/phonebook/PhoneBookCheck.h"

namespace Tool {

/// What a check of a store has come to.
struct CheckReport {
    using Findings = std::vector<PhoneBook::PhoneBookFinding>;

    std::string store;
    bool full = false;
    std::vector<std::string> file = {};      ///< What is wrong with the file, a sentence each.
    std::optional<Findings> phoneBook = {};  ///< What is wrong in the phone book; nothing: it was not looked at.
    std::optional<std::string> backup = {};  ///< Where the store is kept as it was before it was repaired.
    std::optional<Findings> mended = {};     ///< What was repaired; nothing: that was not asked for.
};

/// Writes it to standard output and, when there is something wrong, how much to standard error.
ExitStatus writeReport(const Settings& settings, const CheckReport& report);

}  // namespace Tool
