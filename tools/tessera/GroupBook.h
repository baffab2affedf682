#pragma once

#include <optional>
#include <string>
#include <vector>

#include "CategoryTable.h"
#include "Store.h"

namespace Tool {

/// The groups, the categories that they follow, and the contacts that carry a category. A step that changes
/// something is part of a unit of the store that the caller has begun; what fails throws a Failure.
class GroupBook {
public:
    /// A category's ID has 16 bits, one of them for the sign.
    static constexpr int largestId = 0x7FFF;

    explicit GroupBook(Store& store) : store_(store), categories_(store) {}

    CategoryTable& categories() { return categories_; }
    /// In the order of their names.
    std::vector<PhoneBook::PBGroupInfo> groups();
    std::optional<PhoneBook::PBGroupInfo> group(const CString& name);
    std::optional<PhoneBook::PBGroupInfo> group(int id);
    /// A group or a category has the name.
    bool isTaken(const CString& name) { return group(name) || categories_.named(name); }

    /// The ID for another group and its category: one past the largest of all.
    int nextId();

    /// Renames a category in all contacts that carry it, or takes it out of them when `newName` is empty.
    void renameInContacts(const CString& oldName, const CString& newName);

private:
    Store& store_;
    CategoryTable categories_;
};

/// The name of a group or a category. Throws a Failure of wrong usage, which says what the user calls the argument,
/// for an empty one.
CString groupNameArgument(const std::string& name, const std::string& value);
/// The same for a name that is to be given: it must be able to stand in a list of categories.
CString newGroupNameArgument(const std::string& name, const std::string& value);

}  // namespace Tool
