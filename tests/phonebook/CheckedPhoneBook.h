#pragma once

#include <ostream>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "tessera/phonebook/PhoneBookCheck.h"
#include "tests/phonebook/Following.h"
#include "tests/phonebook/SpeedDialBuilders.h"
#include "tests/support/Builders.h"

// What tests of the check share: rows as nobody but a test writes them, and the findings.

namespace PhoneBook {

inline auto tied(const PhoneBookFinding& finding) {
    return std::tie(finding.kind, finding.contact, finding.row, finding.slot, finding.group, finding.category,
                    finding.name, finding.canBeMended, finding.text);
}

inline bool operator==(const PhoneBookFinding& left, const PhoneBookFinding& right) {
    return tied(left) == tied(right);
}

inline std::ostream& operator<<(std::ostream& out, const PhoneBookFinding& finding) {
    const auto show = [&out](const char* what, const auto& number) {
        if (number) out << what << *number;
    };
    out << "{kind " << static_cast<int>(finding.kind);
    show(", contact ", finding.contact);
    show(", row ", finding.row);
    show(", slot ", finding.slot);
    show(", group ", finding.group);
    show(", category ", finding.category);
    show(", name ", finding.name);
    return out << (finding.canBeMended ? ", can be mended: " : ": ") << finding.text << '}';
}

namespace check_test {

using Kind = PhoneBookFinding::Kind;
using Findings = std::vector<PhoneBookFinding>;

/// Adds a row past the manager; answers its identifier.
inline DWORD addRow(PBDBTableID table, std::initializer_list<CCeDBProp> props) {
    CCeDBRecord row;
    for (const CCeDBProp& prop : props)
        row.addProp(prop);
    DWORD oid = 0;
    if (following::openBeside(table)->insertRecord(&row, oid) != S_OK) throw std::runtime_error("no row was added");
    return oid;
}

inline DWORD addExtensionRow(DWORD contact, const CString& group = {}, DWORD slots = 0) {
    return addRow(PBDBTBL_PHONEBOOKEXT,
                  {CCeDBProp::ofUI4(0x100, contact), CCeDBProp::ofText(0x103, group), CCeDBProp::ofUI4(0x108, slots)});
}

inline DWORD addGroup(DWORD id, const CString& name) {
    return addRow(PBDBTBL_AVAILABLEPBGROUP, {CCeDBProp::ofUI4(0x300, id), CCeDBProp::ofText(0x301, name)});
}

/// The contacts and their rows, the slots, the groups, whoever wrote them.
struct Stored {
    std::vector<following::ExtensionRow> rows = following::extensionRows();
    std::vector<speed_dial::Row> slots = speed_dial::rows();
    std::vector<following::Group> groups = following::groups();

    friend bool operator==(const Stored&, const Stored&) = default;
};

/// A phone book on the mounted store, checked.
class CheckedPhoneBook : public testing_support::OpenPhoneBook {
public:
    Findings examine() {
        Findings findings;
        if (check_.examine(findings) != S_OK) throw std::runtime_error("the phone book cannot be examined");
        return findings;
    }
    /// What was mended, and what is left.
    std::pair<Findings, Findings> mend() {
        std::pair<Findings, Findings> result;
        if (check_.mend(result.first, result.second) != S_OK) throw std::runtime_error("nothing was mended");
        return result;
    }
    PhoneBookCheck& check() { return check_; }

private:
    PhoneBookCheck check_{manager()};
};

}  // namespace check_test
}  // namespace PhoneBook
