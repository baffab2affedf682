#include "Callers.h"

namespace Tool {

std::optional<Contact> callerWith(PhoneBook::PhoneBookDBMgr& manager, const CString& reduced) {
    Contact caller{0, wantingAllFields()};
    // The result does not tell whether anybody was found; the identifier does, as all fields were wanted.
    static_cast<void>(manager.queryCallerInfo(reduced, &caller.record, &caller.oid));
    if (caller.oid == 0) return std::nullopt;
    return caller;
}

}  // namespace Tool
