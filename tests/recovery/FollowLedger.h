#pragma once

#include <string>
#include <vector>

#include "tessera/platform/base/CString.h"
#include "tessera/platform/base/Types.h"
#include "tests/support/Forked.h"

// What a writer has done, so far as it decides what those who follow it must have made of it.

namespace follow_test {

/// What contacts are filed under. Some categories, and so their groups, have these names as well.
inline constexpr const WCHAR* filedUnder[] = {TEXT("Family"), TEXT("Work"), TEXT("Friends"), TEXT("Club")};
inline constexpr unsigned filedUnderCount = 4;

/// The ID of a group that is there from the beginning. Groups made by name have larger ones, categories smaller.
inline constexpr DWORD fixedGroup = 50'000;

inline WString digits(unsigned number) {
    const std::string text = std::to_string(number);
    return {text.begin(), text.end()};
}
inline CString nameOf(unsigned contactNumber) {
    return CString(TEXT("Person ") + digits(contactNumber));
}
inline CString mobileOf(unsigned contactNumber) {
    return CString(TEXT("010-") + digits(contactNumber));
}
inline CString setNameOf(unsigned groupNumber) {
    return CString(TEXT("Set ") + digits(groupNumber));
}

struct ContactNote {
    CEOID oid = 0;
    unsigned number = 0;
    unsigned slot = 0;          ///< Of its mobile number; 0 for none.
    bool bornFiled = false;     ///< Another program made it, with categories.
    bool everUnfiled = false;   ///< It was without categories at some time.
    bool everFiled = false;     ///< It had categories at some time.
    bool rowOfManager = false;  ///< A manager has written its extension row.
    bool exists = true;
    unsigned born = 0;     ///< In which half of the work.
    unsigned changed = 0;  ///< In which half its categories were changed last.
    unsigned died = 0;
};

struct CategoryNote {
    CEOID oid = 0;
    unsigned id = 0;
    int sharedName = -1;   ///< Which of `filedUnder` it is called, for good; else
    unsigned renamed = 0;  ///< how often it was renamed.
    bool exists = true;
    unsigned died = 0;

    CString name(unsigned renaming) const {
        return sharedName >= 0 ? CString(filedUnder[sharedName])
                               : CString(TEXT("Category ") + digits(id) + TEXT('.') + digits(renaming));
    }
};

struct SetNote {
    unsigned number = 0;
    bool exists = true;
};

struct Ledger {
    std::vector<ContactNote> contacts;
    std::vector<CategoryNote> categories;
    std::vector<SetNote> sets;
    std::vector<unsigned> sharedChanged;  ///< In which half each of the shared contacts was changed last.

    void sayTo(testing_support::Line& line) const {
        line.say(contacts);
        line.say(categories);
        line.say(sets);
        line.say(sharedChanged);
    }
    static Ledger hearFrom(testing_support::Line& line) {
        Ledger ledger;
        ledger.contacts = line.hearAll<ContactNote>();
        ledger.categories = line.hearAll<CategoryNote>();
        ledger.sets = line.hearAll<SetNote>();
        ledger.sharedChanged = line.hearAll<unsigned>();
        return ledger;
    }
};

}  // namespace follow_test
