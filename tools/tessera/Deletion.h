#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Failure.h"
#include "Settings.h"
#include "Store.h"

namespace Tool {

/// The question before something goes that cannot be had back.
class Confirmation {
public:
    /// Throws a Failure of wrong usage, which names the command, where `yes` was not said and nobody can be asked.
    Confirmation(const std::string& command, bool yes);

    /// Throws a Failure unless the user agrees to a question such as "Delete all 3 contacts of friends.db?".
    void ask(const std::string& question) const;

private:
    bool yes_;
};

/// What has identifiers and can be deleted by them.
struct Deletable {
    const char* one;
    const char* several;
    /// Deletes one, as part of a unit of the store; false when there is none.
    bool (*erase)(Store& store, DWORD oid);
};

/// How many: "1 contact", "2 contacts".
std::string counted(std::size_t count, const Deletable& what);

/// Deletes each, and names those that there are not on standard error.
ExitStatus deleteThose(const Settings& settings, const std::vector<std::string>& oids, const Deletable& what);

/// Says how many were deleted, and in JSON which there were not.
void reportDeleted(const Settings& settings, const Deletable& what, std::size_t deleted,
                   const std::vector<DWORD>& missing = {});

}  // namespace Tool
