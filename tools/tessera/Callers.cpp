#include "Callers.h"

#include "tessera/platform/base/Unicode.h"

namespace Tool {

namespace {

using PhoneBook::PhoneBookDBMgr;

std::vector<Contact> contactsWith(PhoneBookDBMgr& manager, const CString& form) {
    std::vector<Contact> contacts = readContacts(manager, manager.searchPBRecordOfTelNo(nullptr, form));
    std::erase_if(contacts, [&](const Contact& contact) { return !holdsNumber(contact, form); });
    return contacts;
}

}  // namespace

std::optional<Contact> callerWith(PhoneBookDBMgr& manager, const CString& reduced) {
    Contact caller{0, wantingAllFields()};
    // The result does not tell whether anybody was found; the identifier does, as all fields were wanted.
    static_cast<void>(manager.queryCallerInfo(reduced, &caller.record, &caller.oid));
    if (caller.oid == 0) return std::nullopt;
    return caller;
}

Callers firstCallerWith(PhoneBookDBMgr& manager, const std::vector<CString>& forms) {
    for (const CString& form : forms) {
        if (auto caller = callerWith(manager, form)) return {{std::move(*caller)}, utf8Of(form.view())};
    }
    return {};
}

Callers allCallersWith(PhoneBookDBMgr& manager, const std::vector<CString>& forms) {
    for (const CString& form : forms) {
        auto contacts = contactsWith(manager, form);
        if (!contacts.empty()) return {std::move(contacts), utf8Of(form.view())};
    }
    return {};
}

}  // namespace Tool
