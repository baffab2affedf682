#pragma once

#include <array>
#include <map>
#include <optional>
#include <vector>

#include "tessera/platform/base/CString.h"
#include "tessera/platform/base/Results.h"
#include "tessera/platform/base/Types.h"

namespace PhoneBook {

/// What the tables of the mounted store say of each other, read once and kept in memory.
struct PhoneBookTables {
    struct Contact {
        CString categories;
        std::array<CString, 3> numbers;  ///< Those that slots are for, reduced; only when its row has slots.
    };
    struct ExtensionRow {
        DWORD oid = 0;
        std::optional<DWORD> contact;  ///< Nothing when the row cannot be found by it.
        CString group;
        DWORD slots = 0;
    };
    struct SpeedDialRow {
        int slot = 0;
        CString telNo;
    };
    struct Group {
        std::optional<DWORD> id;  ///< Nothing when the group cannot be found by it.
        CString name;
    };
    struct Category {
        DWORD oid = 0;
        DWORD id = 0;  ///< As its group has it.
        CString name;
    };

    std::map<DWORD, Contact> contacts;  ///< By their identifiers.
    // The others in the order in which they were created.
    std::vector<ExtensionRow> rows;
    std::vector<SpeedDialRow> speedDial;
    std::vector<Group> groups;
    std::vector<Category> categories;
    DWORD calls = 0;

    /// Reads all of it. E_FAIL, with the last error set, when a table cannot be read.
    [[nodiscard]] HRESULT read();

private:
    bool readContacts();
    bool readRows();
    bool readSpeedDial();
    bool readGroups();
    bool readCategories();
    bool countCalls();
};

}  // namespace PhoneBook
