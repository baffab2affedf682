#pragma once

#include <cstddef>
#include <optional>
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

/// One of those that are to be deleted.
struct Named {
    DWORD oid = 0;
    std::string text;  ///< Tells people which one that is; empty when they said its identifier.
};

/// What can be deleted.
struct Deletable {
    const char* one;
    const char* several;
    /// The one that an argument of the command line names; nothing when there is none. Throws a Failure for an
    /// argument that names none for certain.
    std::optional<Named> (*named)(Store& store, const std::string& argument);
    /// Says that there is none that the argument names.
    std::string (*missingText)(const std::string& argument);
    /// Deletes one, as part of a unit of the store; false when there is none.
    bool (*erase)(Store& store, DWORD oid);
};

/// How many: "1 contact", "2 contacts".
std::string counted(std::size_t count, const Deletable& what);

/// Deletes each, once it is certain of all of them which is meant, and names those that there are not on standard
/// error.
ExitStatus deleteThose(const Settings& settings, const std::vector<std::string>& arguments, const Deletable& what);

/// What became of a deletion.
struct Deleted {
    std::size_t count = 0;
    std::vector<std::string> texts = {};
    std::vector<std::string> missing = {};  ///< The arguments.
};
/// Says how many were deleted; in JSON which there were not, for people which those were where that needs saying.
void reportDeleted(const Settings& settings, const Deletable& what, const Deleted& deleted);

}  // namespace Tool
